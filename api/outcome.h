// The outcome of the last operation, for the whole process.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "api/xls2tki.h"
#include "checks/finding.h"
#include "document/document_facts.h"

namespace NXls2Tki {

struct Outcome {
    std::u16string messageText;
    std::optional<VSimpleXMLCreation::DocumentFacts> facts;  // of the last conversion, unless it failed
    bool isWritten = false;                        // with facts only: the whole document is in the output
    std::optional<NChecks::FindingList> findings;  // of the last conversion, if requested
    // For the C interface: how its last operation failed, and why it ended with an exception, null if it did
    // not.
    std::int32_t failure = 0;
    const WideChar* thrownReason = nullptr;
};

Outcome& LastOutcome() noexcept;

// The first step of each operation that converts, before anything can fail.
inline void EmptyLastOutcome() noexcept { LastOutcome() = {}; }

// Keeps in the outcome why an operation ended with an exception, which is being handled.
void KeepFailure(Outcome& outcome) noexcept;

}  // namespace NXls2Tki
