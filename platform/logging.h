// The host's logging library, as far as this library uses it: the host's class, its operations and their
// meaning.
//
// Where there is no host, a small library of ours replaces it. It is switched off until a program that
// plays the host calls SwitchOn.
#pragma once

#include <cstdint>

#if defined(_WIN32)
#if defined(ZO_LOGGING_BUILDING)
#define ZO_LOGGING_API __declspec(dllexport)
#else
#define ZO_LOGGING_API __declspec(dllimport)
#endif
#else
#define ZO_LOGGING_API __attribute__((visibility("default")))
#endif

namespace NTamriskSharedUtil::Logging {

struct VLogLevel {
    // The values belong to the logging library; this library uses 2 alone.
    enum VSeverityLevel : std::int32_t {};
};

class ZO_LOGGING_API VLogging {
  public:
    // One UTF-16 code unit, in the type that hosts of the system use for text.
#if defined(_WIN32)
    using WideChar = wchar_t;
#else
    using WideChar = char16_t;
#endif
    // Receives each message that is logged; the text is valid during the call.
    using Sink = void (*)(VLogLevel::VSeverityLevel severity, std::uint32_t group, const WideChar* text);

    static VLogging& GetInstance();
    VLogging(const VLogging&) = delete;
    VLogging& operator=(const VLogging&) = delete;

    // The bit of the group, the same for the same name. Names beyond the 32nd share the last
    // bit.
    std::uint32_t GetOrCreateGroupId(const char* name);

    [[nodiscard]] bool IsEnabled() const;
    [[nodiscard]] std::uint32_t GetGlobalLogGroupMask() const;
    [[nodiscard]] VLogLevel::VSeverityLevel GetGlobalLogLevel() const;

    void Log(VLogLevel::VSeverityLevel severity, std::uint32_t group, const WideChar* text);

    // For the program that plays the host: messages of the groups in `mask`, up to `level`, go to `sink`.
    void SwitchOn(std::uint32_t mask, VLogLevel::VSeverityLevel level, Sink sink);
    void SwitchOff();

  private:
    VLogging() = default;
};

}  // namespace NTamriskSharedUtil::Logging
