// Findings for review tools and editors: a log in SARIF 2.1.0.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "cli/failure.h"
#include "cli/findings.h"
#include "cli/options.h"
#include "cli/output.h"

namespace NCli {

// What a log has of one conversion, as JSON.
struct SarifPart {
    std::string results;     // an element for each finding, with commas in between
    std::string invocation;  // an element
};

// Of the last conversion, also where that failed. `failure` is the sentence that says why it did, empty if it
// did not.
SarifPart MakeSarifPart(const Options& options, const Findings& findings, std::string_view failure);

// The part as the process of one of many files hands it to the command that started it, amid other text.
std::string Wrap(const SarifPart& part);
// Takes it out of the text again; none where it is not whole.
std::optional<SarifPart> Unwrap(std::string& text);

// The file that the options name. As with the document, an older file stays until the new one is whole.
class SarifLog {
  public:
    // Makes sure that the file can be written. Throws Failure.
    explicit SarifLog(const Options& options);

    // Appends a conversion.
    void Add(const SarifPart& part);

    // Moves the file to its place. Throws Failure.
    void Publish();

  private:
    void Write(const std::string& text);

    Output output_;
    File file_;
    bool isWritten_;
    bool hasResults_ = false;
    std::string invocations_;
};

}  // namespace NCli
