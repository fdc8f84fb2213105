// The outcome of one conversion for scripts: a JSON object in one line.
#pragma once

#include <string>
#include <string_view>

#include "cli/findings.h"
#include "cli/options.h"

namespace NCli {

// From now on messages are kept for the report.
void KeepMessages();

// Adds a message of UTF-8, unless it is empty, to those that are kept, if any are.
void KeepMessage(std::string_view message);

// The object and a line feed. `failure` is the sentence that says why there is no document, empty if there is
// one. The members, null where they are not known:
//   input, output     the paths; "-" for a standard stream; no output if nothing is written
//   kind              "csv", "excel" or "odbc"
//   encoding, separator    of a CSV text: "8-bit", "utf-8" or "utf-16", and the character
//   layout            "single-number", "spn-fmi" or "base-and-failure-type"
//   hexadecimal, sae_codes, rows, columns, item_columns, items    as in Xls2TkiFacts
//   skipped_columns   for each of the first 1000 its "index", from 0, and the "reason": "no header", "empty"
//   or
//                     "behind the end"
//   messages          progress messages, notes and a hint, in their order: the first 999 and the last one
//   findings          for each its "rule", "severity" ("error" or "warning"), "cell" ("A7"), "line" and
//                     "text"
//   finding_counts    for each rule that found something, the numbers of "errors" and "warnings"
//   skipped_column_count, message_count    how many there are of all
//   failure           the sentence
std::string MakeReport(const Options& options, const Findings& findings, std::string_view failure);

}  // namespace NCli
