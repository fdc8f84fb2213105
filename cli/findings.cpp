#include "cli/findings.h"

#include <new>

#include "api/xls2tki_c.h"
#include "cli/text.h"

namespace NCli {

namespace {

// Lends the counts of all rules, those that found nothing included.
template <typename Use>
void ForEachCount(Use use) {
    Xls2TkiFindingCount count{};
    count.size = sizeof count;
    for (std::size_t index = 0; xls2tki_finding_count(index, &count); ++index) use(count);
}

Finding TakeFinding(std::size_t index) {
    Xls2TkiFinding found{};
    found.size = sizeof found;
    if (!xls2tki_finding(index, &found)) throw std::bad_alloc();
    return {.rule = found.rule,
            .isError = found.severity == XLS2TKI_ERROR,
            .cell = found.cell == nullptr ? std::string() : EncodeUtf8(found.cell),
            .line = found.line,
            .text = EncodeUtf8(found.text),
            .cause = found.cause,
            .causeCount = found.causeCount};
}

}  // namespace

Findings TakeFindings() {
    Findings findings;
    std::size_t listed = 0;
    ForEachCount([&](const Xls2TkiFindingCount& count) {
        findings.areKnown = true;
        listed += count.listed;
        if (count.errors + count.warnings == 0) return;
        findings.counts.push_back({count.rule, count.errors, count.warnings, count.listed});
    });
    findings.isComplete = xls2tki_findings_complete();
    findings.list.reserve(listed);
    for (std::size_t index = 0; index < listed; ++index) findings.list.push_back(TakeFinding(index));
    return findings;
}

FindingTotals CountFindings() {
    FindingTotals totals;
    ForEachCount([&totals](const Xls2TkiFindingCount& count) {
        totals.errors += count.errors;
        totals.warnings += count.warnings;
    });
    return totals;
}

}  // namespace NCli
