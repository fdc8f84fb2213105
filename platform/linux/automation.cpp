#include "platform/automation.h"

#include "platform/automation_servers.h"

namespace NPlatform {

constinit Replaceable<Dispatch(std::u16string_view)> StartApplication{AutomationServer::Run};

}  // namespace NPlatform
