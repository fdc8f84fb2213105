// What ends the command early, and the message for the user.
#pragma once

#include <exception>
#include <functional>
#include <stdexcept>
#include <string>
#include <string_view>

namespace NCli {

// Ends the command with a sentence for the user.
class Failure : public std::runtime_error {
  public:
    using runtime_error::runtime_error;
    Failure(const std::string& sentence, const std::string& hint) : runtime_error(sentence) { SetHint(hint); }

    // What may help, as a sentence; none where it is empty.
    void SetHint(const std::string& sentence) {
        if (!sentence.empty()) hint_ = "Hint: " + sentence;
    }
    // With the word in front.
    [[nodiscard]] const std::string& Hint() const { return hint_; }

  private:
    std::string hint_;
};

// The command line cannot be what the user meant; nothing was touched.
class WrongUsage : public Failure {
  public:
    using Failure::Failure;
};

// The message for any error that ends the command.
std::string_view SentenceOf(const std::exception& error);
// The same; empty for null.
std::string_view SentenceOf(const std::exception* error);

// The hint that goes with it, if there is one.
std::string_view HintOf(const std::exception& error);

// Calls `run`, prints how it failed, and returns the exit status for that.
int ExitStatusOf(const std::function<void()>& run);

// Shows "xls2tki: " and the UTF-8 text as a line on standard error. Allocates nothing.
void Tell(std::string_view text);

// Tells the user what changes nothing about the outcome, and keeps it for the report.
void Note(const std::string& sentence);

// The system's own text for a value of errno.
std::string SystemText(int error);

}  // namespace NCli
