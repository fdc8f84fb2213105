#include "platform/automation_servers.h"

namespace NPlatform {

namespace {

constexpr auto kClassNotRegistered = static_cast<std::int32_t>(0x80040154);

constinit AutomationServer* latestServer = nullptr;

}  // namespace

AutomationServer::AutomationServer(std::u16string_view progId, Start start)
    : progId_(progId), start_(std::move(start)), next_(latestServer) {
    latestServer = this;
}

AutomationServer::~AutomationServer() {
    AutomationServer** link = &latestServer;
    while (*link != this) link = &(*link)->next_;
    *link = next_;
}

Dispatch AutomationServer::Run(std::u16string_view progId) {
    const AutomationServer* server = latestServer;
    while (server != nullptr && server->progId_ != progId) server = server->next_;
    if (server == nullptr) throw OleException(kClassNotRegistered, u"Class not registered.");
    return server->start_();
}

}  // namespace NPlatform
