// The conversion driver: one call reads a table, builds its document and writes it.
#pragma once

#include <set>
#include <string>
#include <string_view>

namespace NXls2Tki {

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
};

struct ConversionOutcome {
    bool done;
    std::u16string message;  // the last progress line with its stamp, or the reason of the failure
};

// The output file is opened only when the document is complete and the memory to write it is there. Whether
// it can be written is not checked.
ConversionOutcome Convert(const ConversionRequest& request);

}  // namespace NXls2Tki
