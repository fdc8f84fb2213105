#include "platform/automation.h"

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

const AutomationServer::Start* AutomationServer::Find(std::u16string_view progId) {
    const AutomationServer* server = latestServer;
    while (server != nullptr && server->progId_ != progId) server = server->next_;
    return server == nullptr ? nullptr : &server->start_;
}

Dispatch::Dispatch(const Dispatch& other) : object_(other.object_) {
    if (object_ != nullptr) object_->AddReference();
}

void Dispatch::Create(std::u16string_view progId) {
    const AutomationServer::Start* const start = AutomationServer::Find(progId);
    if (start == nullptr) throw OleException(kClassNotRegistered, u"Class not registered.");
    *this = (*start)();
}

void Dispatch::Release() noexcept {
    DispatchObject* const object = std::exchange(object_, nullptr);
    if (object != nullptr) object->Release();
}

Variant Dispatch::Invoke(DispatchId member, InvokeKind kind, std::span<const Variant> arguments) const {
    return object_ == nullptr ? Variant() : object_->Invoke(member, kind, arguments);
}

}  // namespace NPlatform
