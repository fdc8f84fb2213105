#include "cli/progress.h"

#include <cstdio>
#include <string_view>

#include "cli/report.h"
#include "cli/text.h"
#include "platform/logging.h"

namespace NCli {

using NTamriskSharedUtil::Logging::VLogging;
using NTamriskSharedUtil::Logging::VLogLevel;

namespace {

// The beginnings of messages in which the library hands on why there is no workbook, what stands before and
// behind the reason, and what makes a sentence of it.
constexpr struct {
    std::string_view message;
    std::string_view before;
    std::string_view behind;
    std::string_view sentence;
} kOpeningFailures[] = {
    {"Couldn't start Excel.", "Reason: ", "", "Excel could not be started: "},
    {"OleDispatch Error: ", "OleDispatch Error: ", "", ""},
    {"Could not read out existing sheets of excel file. (", "\nReason: ", "\nSource: ", ""},
};

bool isShown = false;
std::string openingFailure;

void LookForOpeningFailure(std::string_view message) {
    for (const auto& failure : kOpeningFailures) {
        const std::size_t before = message.find(failure.before);
        if (!message.starts_with(failure.message) || before == std::string_view::npos) continue;
        const std::string_view reason = message.substr(before + failure.before.size());
        const std::size_t end = failure.behind.empty() ? reason.size() : reason.rfind(failure.behind);
        openingFailure.assign(failure.sentence).append(reason.substr(0, end));
    }
}

void Listen(VLogLevel::VSeverityLevel, std::uint32_t, const VLogging::WideChar* text) {
    std::string line = EncodeUtf8(text);
    LookForOpeningFailure(line);
    KeepMessage(line);
    if (!isShown) return;
    line += '\n';
    Show(line, stderr);
}

}  // namespace

void ListenToProgress(bool shows) {
    constexpr std::uint32_t kAllGroups = 0xFFFFFFFF;
    constexpr VLogLevel::VSeverityLevel kProgress{2};
    isShown = shows;
    VLogging::GetInstance().SwitchOn(kAllGroups, kProgress, Listen);
}

std::string OpeningFailure() { return openingFailure; }

}  // namespace NCli
