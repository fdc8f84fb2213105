// An object of an application in another process.
#pragma once

#include "platform/automation.h"
#include "platform/windows/com.h"

namespace NPlatform {

Dispatch WrapComObject(ComPointer<IDispatch> object);

}  // namespace NPlatform
