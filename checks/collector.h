// Gathers findings while a table is looked at.
#pragma once

#include <algorithm>
#include <array>
#include <utility>

#include "checks/finding.h"

namespace NChecks {

// Why something is found: a rule and, among its causes, a number below Collector::kKinds.
struct Cause {
    Rule rule = {};
    std::size_t kind = 0;
    Severity severity = Severity::Error;
};

// Counts every place. Of each rule it keeps the first kMostPlaces, and of each cause the first few, whatever
// the other causes of its rule have taken.
class Collector {
  public:
    static constexpr std::size_t kKinds = 12;

    // `sentence` makes the text, and is called only for a place that is kept.
    template <typename Sentence>
    void Add(const Cause& cause, Place place, Sentence sentence) {
        Gathered& gathered = At(cause);
        ++gathered.count;
        gathered.severity = cause.severity;
        if (gathered.findings.size() >= kSurePlaces && kept_[Index(cause.rule)] >= kMostPlaces) return;
        gathered.findings.push_back({place, 0, 0, sentence()});
        ++kept_[Index(cause.rule)];
    }

    // Whether anything of the rule was found.
    [[nodiscard]] bool Has(Rule rule) const {
        return std::ranges::any_of(gathered_[Index(rule)], [](const Gathered& one) { return one.count > 0; });
    }

    // For a cause whose severity is known only at the end.
    void SetSeverity(const Cause& cause, Severity severity) { At(cause).severity = severity; }

    // All that was gathered. The collector is empty then.
    FindingList Finish();

  private:
    static constexpr std::size_t kSurePlaces = 20;

    struct Gathered {
        Severity severity = Severity::Error;
        std::size_t count = 0;
        std::vector<Finding> findings;
    };

    static std::size_t Index(Rule rule) { return static_cast<std::size_t>(rule); }
    Gathered& At(const Cause& cause) { return gathered_[Index(cause.rule)][cause.kind]; }
    void KeepToLimit(std::size_t rule);

    std::array<std::array<Gathered, kKinds>, kRules> gathered_;
    std::array<std::size_t, kRules> kept_{};
};

}  // namespace NChecks
