#include <cstddef>
#include <cstring>
#include <new>
#include <string>

#include "api/outcome.h"
#include "api/structure_size.h"
#include "api/xls2tki.h"
#include "api/xls2tki_c.h"
#include "checks/finding.h"
#include "checks/sentence.h"

namespace {

using NChecks::Finding;
using NChecks::FindingList;
using NChecks::FoundCause;
using NChecks::kNowhere;
using NXls2Tki::HasKnownSize;
using NXls2Tki::WideString;

static_assert(kNowhere == XLS2TKI_NOWHERE);

// Of the first version.
constexpr std::size_t kFirstFindingSize =
    offsetof(Xls2TkiFinding, causeCount) + sizeof(Xls2TkiFinding::causeCount);
constexpr std::size_t kFirstCountSize =
    offsetof(Xls2TkiFindingCount, warnings) + sizeof(Xls2TkiFindingCount::warnings);

// What was handed out last, in the host's characters.
WideString shownCell;
WideString shownText;

void Show(const Finding& finding) {
    const bool isCell = finding.place.row != kNowhere;
    const std::u16string cell = isCell ? CellName(finding.place) : std::u16string();
    shownCell.assign(cell.begin(), cell.end());
    shownText.assign(finding.text.begin(), finding.text.end());
}

const FindingList* LastFindings() {
    const auto& findings = NXls2Tki::LastOutcome().findings;
    return findings ? &*findings : nullptr;
}

}  // namespace

bool xls2tki_finding(size_t index, Xls2TkiFinding* finding) {
    const FindingList* const list = LastFindings();
    if (list == nullptr || index >= list->findings.size() || !HasKnownSize(finding, kFirstFindingSize))
        return false;
    const Finding& found = list->findings[index];
    const FoundCause& cause = list->causes[found.cause];
    try {
        Show(found);
    } catch (const std::bad_alloc&) {
        return false;
    }
    const Xls2TkiFinding whole = {.size = finding->size,
                                  .rule = NameOf(cause.rule),
                                  .severity = static_cast<std::int32_t>(cause.severity),
                                  .row = found.place.row,
                                  .column = found.place.column,
                                  .cell = shownCell.empty() ? nullptr : shownCell.c_str(),
                                  .line = found.line,
                                  .text = shownText.c_str(),
                                  .cause = found.cause,
                                  .causeCount = cause.count};
    std::memcpy(finding, &whole, whole.size);
    return true;
}

bool xls2tki_finding_count(size_t index, Xls2TkiFindingCount* count) {
    const FindingList* const list = LastFindings();
    if (list == nullptr || index >= NChecks::kRules || !HasKnownSize(count, kFirstCountSize)) return false;
    const auto rule = static_cast<NChecks::Rule>(index);
    Xls2TkiFindingCount whole = {
        .size = count->size, .rule = NameOf(rule), .errors = 0, .warnings = 0, .listed = 0};
    for (const FoundCause& cause : list->causes) {
        if (cause.rule != rule) continue;
        (cause.severity == NChecks::Severity::Error ? whole.errors : whole.warnings) += cause.count;
    }
    for (const Finding& finding : list->findings) {
        if (list->causes[finding.cause].rule == rule) ++whole.listed;
    }
    std::memcpy(count, &whole, whole.size);
    return true;
}

bool xls2tki_findings_complete(void) {
    const FindingList* const list = LastFindings();
    return list != nullptr && list->isComplete;
}
