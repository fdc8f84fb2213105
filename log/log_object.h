// The log object of one operation.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <utility>

namespace VCSVReader {

// Stamps each message with the local time and keeps it as its one last line; when it was made to forward, it
// also hands the bare message to the host's logging library. Whoever reads a table or builds a document gets
// a pointer to the operation's log object and does not own it.
//
// When the library is loaded it asks the logging library for the id of its own group, "GroupSorbel". The
// groups of the host's other modules are left to those: this library never logs under them.
class VLogObject {
  public:
    // Receives each bare message.
    using Listener = std::function<void(std::u16string_view message)>;

    explicit VLogObject(bool forward, Listener listener = {})
        : forward_(forward), listener_(std::move(listener)) {}
    virtual ~VLogObject() = default;
    VLogObject(const VLogObject&) = delete;
    VLogObject& operator=(const VLogObject&) = delete;

    // Makes "[2026/11/16 17:52:32] ", the message and a line feed the last line. Where the local time is
    // unknown or no valid date-time (a year below 100 or above 9999, a leap second) the stamp is "Invalid
    // DateTime", without a blank. The message is forwarded, at severity 2, when the logging library is on,
    // for this group, and at level 2 at least.
    void LogMessage(std::u16string_view message);

    // The line of the latest message; empty before the first.
    [[nodiscard]] const std::u16string& LastLine() const { return lastLine_; }

  private:
    bool forward_;
    Listener listener_;
    std::u16string lastLine_;
};

}  // namespace VCSVReader
