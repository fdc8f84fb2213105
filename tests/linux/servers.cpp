#include "tests/recording_server.h"

namespace NTest {

Dispatch StartThroughSystem(std::u16string_view progId) { return NPlatform::AutomationServer::Run(progId); }

}  // namespace NTest
