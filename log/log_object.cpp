#include "log/log_object.h"

#include "platform/clock.h"
#include "platform/logging.h"

namespace VCSVReader {

namespace {

using NTamriskSharedUtil::Logging::VLogging;
using NTamriskSharedUtil::Logging::VLogLevel;

constexpr auto kSeverity = static_cast<VLogLevel::VSeverityLevel>(2);

const std::uint32_t logGroupId = VLogging::GetInstance().GetOrCreateGroupId("GroupSorbel");

// The range of the host's date-time values.
bool IsValid(const NPlatform::CalendarTime& time) {
    return time.year >= 100 && time.year <= 9999 && time.month >= 1 && time.month <= 12 && time.day >= 1 &&
           time.day <= 31 && time.hour >= 0 && time.hour <= 23 && time.minute >= 0 && time.minute <= 59 &&
           time.second >= 0 && time.second <= 59;
}

void AppendDigits(std::u16string& text, int number, int digits) {
    if (digits > 1) AppendDigits(text, number / 10, digits - 1);
    text.push_back(static_cast<char16_t>(u'0' + number % 10));
}

std::u16string Stamp() {
    NPlatform::CalendarTime time{};
    if (!NPlatform::LocalTime(time) || !IsValid(time)) return u"Invalid DateTime";
    std::u16string stamp = u"[";
    const auto append = [&stamp](int number, int digits, char16_t end) {
        AppendDigits(stamp, number, digits);
        stamp.push_back(end);
    };
    append(time.year, 4, u'/');
    append(time.month, 2, u'/');
    append(time.day, 2, u' ');
    append(time.hour, 2, u':');
    append(time.minute, 2, u':');
    append(time.second, 2, u']');
    return stamp + u' ';
}

void Forward(std::u16string_view message) {
    VLogging& logging = VLogging::GetInstance();
    if (!logging.IsEnabled()) return;
    if ((logging.GetGlobalLogGroupMask() & logGroupId) == 0) return;
    if (logging.GetGlobalLogLevel() < kSeverity) return;
    const std::basic_string<VLogging::WideChar> text(message.begin(), message.end());
    logging.Log(kSeverity, logGroupId, text.c_str());
}

}  // namespace

void VLogObject::LogMessage(std::u16string_view message) {
    lastLine_ = Stamp();
    lastLine_.append(message);
    lastLine_.push_back(u'\n');
    if (listener_) listener_(message);
    if (forward_) Forward(message);
}

}  // namespace VCSVReader
