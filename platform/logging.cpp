// The stand-in of the host's logging library.
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

// Made at the first use, because libraries ask for their groups while they are loaded.
Settings& TheSettings() {
    static Settings settings;
    return settings;
}

}  // namespace

VLogging& VLogging::GetInstance() {
    static VLogging instance;
    return instance;
}

std::uint32_t VLogging::GetOrCreateGroupId(const char* name) {
    constexpr std::size_t kLastBit = 31;
    std::vector<std::string>& groups = TheSettings().groups;
    std::size_t bit = 0;
    while (bit < groups.size() && groups[bit] != name) ++bit;
    if (bit == groups.size()) groups.emplace_back(name);
    return std::uint32_t{1} << (bit < kLastBit ? bit : kLastBit);
}

bool VLogging::IsEnabled() const { return TheSettings().sink != nullptr; }

std::uint32_t VLogging::GetGlobalLogGroupMask() const { return TheSettings().mask; }

VLogLevel::VSeverityLevel VLogging::GetGlobalLogLevel() const { return TheSettings().level; }

void VLogging::Log(VLogLevel::VSeverityLevel severity, std::uint32_t group, const WideChar* text) {
    if (IsEnabled()) TheSettings().sink(severity, group, text);
}

void VLogging::SwitchOn(std::uint32_t mask, VLogLevel::VSeverityLevel level, Sink sink) {
    Settings& settings = TheSettings();
    settings.mask = mask;
    settings.level = level;
    settings.sink = sink;
}

void VLogging::SwitchOff() { TheSettings().sink = nullptr; }

}  // namespace NTamriskSharedUtil::Logging
