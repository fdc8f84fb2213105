#include "cli/table_line.h"

#include <algorithm>
#include <cinttypes>
#include <cstdio>

#include "cli/finding_lines.h"
#include "cli/library.h"
#include "cli/text.h"

namespace NCli {

namespace {

const char* NotationOf(const Xls2TkiFacts& facts) {
    if (facts.layout == XLS2TKI_SPN_FMI) return "SPN and FMI";
    if (facts.layout == XLS2TKI_BASE_AND_FAILURE_TYPE) {
        return facts.saeCodes ? "SAE codes and failure types" : "base DTCs and failure types";
    }
    if (facts.saeCodes) return "SAE codes";
    return facts.hexDigits ? "hexadecimal numbers" : "decimal numbers";
}

std::string Hexadecimal(std::uint32_t number) {
    char text[11];
    std::snprintf(text, sizeof text, "0x%04" PRIX32, number);
    return text;
}

// Shows no more than a user reads, however many and long the headers of a hostile table are.
std::string ListItems(const Xls2TkiNames& headers) {
    constexpr std::size_t kMostHeaders = 20;
    constexpr std::size_t kLongestHeader = 64;
    std::string list = Counted(headers.count, "item");
    const std::size_t shown = std::min(headers.count, kMostHeaders);
    for (std::size_t index = 0; index < shown; ++index) {
        list += (index == 0 ? ": " : ", ") + ShownName(headers.texts[index], kLongestHeader);
    }
    if (shown < headers.count) list += " and " + std::to_string(headers.count - shown) + " more";
    return list;
}

}  // namespace

std::string DescribeTable(const Options& options) {
    const Xls2TkiFacts facts = FactsOfDocument();
    std::string line = ShownInput(options) + ": " + Counted(facts.rows, "DTC");
    if (facts.rows > 0) {
        line.append(", ").append(NotationOf(facts)).append(", ").append(Hexadecimal(facts.smallestNumber));
        line.append(" to ").append(Hexadecimal(facts.largestNumber));
    }
    return line.append(", ").append(ListItems(facts.itemHeaders)).append("\n");
}

}  // namespace NCli
