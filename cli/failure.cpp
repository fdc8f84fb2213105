#include "cli/failure.h"

#include <cstdio>
#include <new>
#include <system_error>

#include "cli/report.h"
#include "cli/text.h"

namespace NCli {

std::string_view SentenceOf(const std::exception& error) {
    const bool isOutOfMemory = dynamic_cast<const std::bad_alloc*>(&error) != nullptr;
    return isOutOfMemory ? "Not enough memory to convert this table." : error.what();
}

std::string_view SentenceOf(const std::exception* error) {
    return error == nullptr ? std::string_view() : SentenceOf(*error);
}

std::string_view HintOf(const std::exception& error) {
    const auto* const failure = dynamic_cast<const Failure*>(&error);
    return failure == nullptr ? std::string_view() : failure->Hint();
}

static void TellError(const std::exception& error) {
    Tell(SentenceOf(error));
    if (const std::string_view hint = HintOf(error); !hint.empty()) Tell(hint);
}

int ExitStatusOf(const std::function<void()>& run) {
    constexpr int kDone = 0;
    constexpr int kFailed = 1;
    constexpr int kWrongUsage = 2;
    try {
        run();
        return kDone;
    } catch (const WrongUsage& wrong) {
        TellError(wrong);
        return kWrongUsage;
    } catch (const std::exception& error) {
        TellError(error);
    } catch (...) {
        Tell("The conversion ended with an unknown error.");
    }
    return kFailed;
}

void Tell(std::string_view text) {
    std::fputs("xls2tki: ", stderr);
    Show(text, stderr);
    if (!text.ends_with('\n')) std::fputc('\n', stderr);
}

void Note(const std::string& sentence) {
    const std::string note = "Note: " + sentence;
    Tell(note);
    KeepMessage(note);
}

std::string SystemText(int error) { return std::generic_category().message(error); }

}  // namespace NCli
