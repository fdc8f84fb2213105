// What the last operation left behind, for the whole process.
#pragma once

#include <optional>
#include <string>

#include "checks/finding.h"
#include "document/document_facts.h"

namespace NXls2Tki {

struct Outcome {
    std::u16string messageText;
    std::optional<VSimpleXMLCreation::DocumentFacts> facts;  // of the last conversion, unless it failed
    bool isWritten = false;                        // with facts only: the whole document is in the output
    std::optional<NChecks::FindingList> findings;  // of the last conversion, where they were wanted
};

Outcome& LastOutcome() noexcept;

// The first step of each operation that converts, before anything can fail.
inline void EmptyLastOutcome() noexcept { LastOutcome() = {}; }

}  // namespace NXls2Tki
