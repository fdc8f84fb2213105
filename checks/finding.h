// Findings: what in a table is not what its author meant.
#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>
#include <vector>

namespace NChecks {

// In the order in which findings are handed out.
enum class Rule : std::uint8_t {
    NumberUnreadable,
    NumberEmpty,
    NumberRange,
    NumberExponent,
    NumberDuplicate,
    NotationMixed,
    LayoutNearMiss,
    ColumnLost,
    RowLost,
    TextNotXml,
    TextEncoding,
    ValueRounded,
    ItemHeader,
    DescriptionEmpty,
};
inline constexpr std::size_t kRules = 14;

// "number-unreadable" and so on: ASCII, the same for ever.
const char* NameOf(Rule rule);

// Error: the document says something else than the table, or no reader takes it. Warning: look at this.
enum class Severity : std::uint8_t { Error, Warning };

inline constexpr std::size_t kNowhere = std::numeric_limits<std::size_t>::max();

// A cell of the table, both counted from 0, row 0 being the header. Both are kNowhere for the table as a
// whole.
struct Place {
    std::size_t row = kNowhere;
    std::size_t column = kNowhere;
};

// One cause at one place.
struct Finding {
    Place place;
    std::size_t line = 0;  // of the file, from 1; 0 where the input has no lines
    std::size_t cause;     // index of the cause
    std::u16string text;   // two sentences or so: the cell, what becomes of it, what to do
};

// What several places may have in common.
struct FoundCause {
    Rule rule;
    Severity severity;
    std::size_t count;  // of places, those that are not kept among them
};

struct FindingList {
    std::vector<FoundCause> causes;  // by rule
    // By rule, then by place, those of the table as a whole first; at most kMostPlaces for each rule.
    std::vector<Finding> findings;
    bool isComplete = true;  // false: not all of the table was looked at
};

inline constexpr std::size_t kMostPlaces = 1000;

}  // namespace NChecks
