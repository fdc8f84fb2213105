#include "cli/findings.h"

#include "api/xls2tki_c.h"
#include "cli/text.h"

namespace NCli {

static_assert(kNowhere == XLS2TKI_NOWHERE);

void ForEachFinding(const std::function<void(const Finding&)>& use) {
    Xls2TkiFinding found{};
    found.size = sizeof found;
    for (std::size_t index = 0; xls2tki_finding(index, &found); ++index) {
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
