#include "checks/collector.h"

#include <algorithm>

namespace NChecks {

const char* NameOf(Rule rule) {
    constexpr const char* kNames[kRules] = {
        "number-unreadable", "number-empty",     "number-range", "number-exponent",   "number-duplicate",
        "notation-mixed",    "layout-near-miss", "column-lost",  "row-lost",          "text-not-xml",
        "text-encoding",     "value-rounded",    "item-header",  "description-empty",
    };
    return kNames[static_cast<std::size_t>(rule)];
}

// What the causes of a rule have beyond its limit goes from those that have the most.
void Collector::KeepToLimit(std::size_t rule) {
    for (; kept_[rule] > kMostPlaces; --kept_[rule]) {
        const auto size = [](const Gathered& gathered) { return gathered.findings.size(); };
        std::ranges::max_element(gathered_[rule], {}, size)->findings.pop_back();
    }
}

FindingList Collector::Finish() {
    FindingList list;
    for (std::size_t rule = 0; rule < kRules; ++rule) {
        KeepToLimit(rule);
        const auto first = static_cast<std::ptrdiff_t>(list.findings.size());
        for (Gathered& gathered : gathered_[rule]) {
            if (gathered.count == 0) continue;
            for (Finding& finding : gathered.findings) {
                finding.cause = list.causes.size();
                list.findings.push_back(std::move(finding));
            }
            list.causes.push_back({static_cast<Rule>(rule), gathered.severity, gathered.count});
            gathered = {};
        }
        std::ranges::stable_sort(
            list.findings.begin() + first, list.findings.end(), {}, [](const Finding& finding) {
                return std::pair(finding.place.row + 1, finding.place.column + 1);  // kNowhere becomes 0
            });
        kept_[rule] = 0;
    }
    return list;
}

}  // namespace NChecks
