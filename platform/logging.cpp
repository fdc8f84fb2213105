// The logging library for hosts that have none.
#include "platform/logging.h"

#include <string>
#include <vector>

namespace NTamriskSharedUtil::Logging {

namespace {

struct Settings {
    std::vector<std::string> groups;
    std::uint32_t mask = 0;
    VLogLevel::VSeverityLevel level{};
    VLogging::Sink sink = nullptr;
};

// There from the beginning, because libraries ask for their groups while they are loaded.
constinit Settings settings;

}  // namespace

VLogging& VLogging::GetInstance() {
    static constinit VLogging instance;
    return instance;
}

std::uint32_t VLogging::GetOrCreateGroupId(const char* name) {
    constexpr std::size_t kLastBit = 31;
    std::vector<std::string>& groups = settings.groups;
    std::size_t bit = 0;
    while (bit < groups.size() && groups[bit] != name) ++bit;
    if (bit == groups.size()) groups.emplace_back(name);
    return std::uint32_t{1} << (bit < kLastBit ? bit : kLastBit);
}

bool VLogging::IsEnabled() const { return settings.sink != nullptr; }

std::uint32_t VLogging::GetGlobalLogGroupMask() const { return settings.mask; }

VLogLevel::VSeverityLevel VLogging::GetGlobalLogLevel() const { return settings.level; }

void VLogging::Log(VLogLevel::VSeverityLevel severity, std::uint32_t group, const WideChar* text) {
    if (IsEnabled()) settings.sink(severity, group, text);
}

void VLogging::SwitchOn(std::uint32_t mask, VLogLevel::VSeverityLevel level, Sink sink) {
    settings.mask = mask;
    settings.level = level;
    settings.sink = sink;
}

void VLogging::SwitchOff() { settings.sink = nullptr; }

}  // namespace NTamriskSharedUtil::Logging
