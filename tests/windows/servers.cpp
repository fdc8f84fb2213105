#include "platform/windows/com_object.h"
#include "tests/recording_server.h"
#include "tests/windows/system_object.h"

namespace NTest {

Dispatch StartThroughSystem(std::u16string_view progId) {
    return NPlatform::WrapComObject(NPlatform::MakeSystemObject(NPlatform::AutomationServer::Run(progId)));
}

}  // namespace NTest
