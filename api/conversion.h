// The two operations: the conversion, in which one call reads a table, builds its document and writes it, and
// the list of a workbook's worksheets.
#pragma once

#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "api/outcome.h"

namespace NXls2Tki {

// Where the caller has no say in them.
inline constexpr std::u16string_view kDefaultVariant = u"COMMON_DIAGNOSTICS";
inline constexpr std::u16string_view kDefaultDiagnosticInstance = u"Emission_Related_Trouble_Codes";

// What the caller of a conversion gives; see xls2tki.h for the meaning of each.
struct ConversionRequest {
    std::u16string_view inputPath;
    std::u16string_view worksheetName;
    std::u16string_view outputPath;
    std::int32_t importType;
    bool forwardMessages;
    char16_t separator;
    const std::set<std::u16string>& vsgNames;
    const std::set<std::u16string>& secondNames;
    const std::set<std::u16string>& thirdNames;
    std::u16string_view variant;
    std::u16string_view diagnosticInstance;
    bool utf8;
    bool findings;  // look for what is wrong with the table
};

// Puts the facts into the outcome, which is empty, the findings where they are wanted, and as its message
// text the last progress line with its stamp, or the reason when it returns false. Where Excel's version is
// not known, a warning stands there in between, and remains when an exception passes out. The output file is
// opened only when the document is complete and the memory to write it is there. Whether it could be written
// stands in the outcome; the return value does not depend on it.
//
// Throws what reading throws: NPlatform::DispatchException and NPlatform::OleException where Excel fails.
//
// The findings are those of the table as far as it was read, also where the conversion fails; none where it
// was not read at all.
bool Convert(const ConversionRequest& request, Outcome& outcome);

// Appends the names of the workbook's worksheets; none where Excel could not open it. When it returns false,
// there are none, and `messageText` has the reason. When it returns true, `messageText` is as it was, or has
// the warning where Excel's version is not known.
//
// Throws as Convert does, and VCSVReader::VParserException.
bool ListWorksheets(std::u16string_view path, std::vector<std::u16string>& names,
                    std::u16string& messageText);

}  // namespace NXls2Tki
