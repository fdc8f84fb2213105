#include "cli/findings.h"

#include <algorithm>
#include <new>

#include "api/xls2tki_c.h"
#include "cli/text.h"

namespace NCli {

static_assert(kNowhere == XLS2TKI_NOWHERE);

// How many findings the library hands out.
static std::size_t CountKept() {
    static constexpr std::size_t kMostOfRule = 1000;
    std::size_t kept = 0;
    ForEachFindingCount(
        [&kept](const FindingCount& count) { kept += std::min(count.errors + count.warnings, kMostOfRule); });
    return kept;
}

void ForEachFinding(const std::function<void(const Finding&)>& use) {
    Xls2TkiFinding found{};
    found.size = sizeof found;
    const std::size_t count = CountKept();
    for (std::size_t index = 0; index < count; ++index) {
        if (!xls2tki_finding(index, &found)) {
            if (xls2tki_findings_complete()) throw std::bad_alloc();
            return;  // the last one that was counted found no room
        }
        const bool isCell = found.cell != nullptr;
        use({.rule = found.rule,
             .isError = found.severity == XLS2TKI_ERROR,
             .row = found.row,
             .column = found.column,
             .cell = isCell ? EncodeUtf8(found.cell) : std::string(),
             .line = found.line,
             .text = EncodeUtf8(found.text),
             .cause = found.cause,
             .causeCount = found.causeCount});
    }
}

void ForEachFindingCount(const std::function<void(const FindingCount&)>& use) {
    Xls2TkiFindingCount count{};
    count.size = sizeof count;
    for (std::size_t index = 0; xls2tki_finding_count(index, &count); ++index) {
        use({count.rule, count.errors, count.warnings});
    }
}

bool HaveBeenLookedFor() {
    Xls2TkiFindingCount count{};
    count.size = sizeof count;
    return xls2tki_finding_count(0, &count);
}

FindingTotals CountFindings() {
    FindingTotals totals;
    ForEachFindingCount([&totals](const FindingCount& count) {
        totals.errors += count.errors;
        totals.warnings += count.warnings;
    });
    return totals;
}

}  // namespace NCli
