// The two operations: the conversion, in which one call reads a table, builds its document and writes it, and
// the list of a workbook's worksheets.
#pragma once

#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "api/outcome.h"
#include "log/log_object.h"

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
    bool findings;                              // look for what is wrong with the table
    VCSVReader::VLogObject::Listener listener;  // receives each progress message, if there is one
};

// Fills in the empty outcome: the facts, the findings if requested, and as its message text the last progress
// line with its time stamp, or the reason if it returns false. If Excel's version is unknown, the message is
// a warning meanwhile, which stays when an exception passes. The output file is opened only when the
// document is complete and the memory to write it is reserved. The outcome says whether it could be written;
// the return value does not depend on it.
//
// Throws what reading throws: NPlatform::DispatchException and NPlatform::OleException where Excel fails.
//
// If the conversion fails, the findings cover the rows that were read.
bool Convert(const ConversionRequest& request, Outcome& outcome);

// Appends the names of the workbook's worksheets; none if Excel could not open it. If it returns false, there
// are none, and `messageText` has the reason. If it returns true, `messageText` is unchanged, or has the
// warning that Excel's version is unknown.
//
// Throws as Convert does, and VCSVReader::VParserException.
bool ListWorksheets(std::u16string_view path, std::vector<std::u16string>& names,
                    std::u16string& messageText);

}  // namespace NXls2Tki
