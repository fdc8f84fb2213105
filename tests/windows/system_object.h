// Objects of this process for the system's automation, as a server or a test hands them out.
#pragma once

#include "platform/automation.h"
#include "platform/windows/com.h"

namespace NPlatform {

// The object behind the reference, which answers Invoke and lives as long as somebody holds it. So do the
// objects that its members return; arrays are handed out as the system's own. A failure becomes an EXCEPINFO
// or the status that it has.
ComPointer<IDispatch> MakeSystemObject(const Dispatch& object);

}  // namespace NPlatform
