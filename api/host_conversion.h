// A conversion with all that a host may ask for, in the host's types.
#pragma once

#include "api/xls2tki.h"

namespace NXls2Tki {

// Xls2TkiConvert in its full form, with or without findings.
bool ConvertForHost(const WideChar* inputPath, const WideChar* worksheetName, const WideChar* outputPath,
                    VImportType importType, bool forwardMessages, WideChar separator,
                    const WideStringSet& vsgNames, const WideStringSet& secondNames,
                    const WideStringSet& thirdNames, const WideChar* variant,
                    const WideChar* diagnosticInstance, bool utf8, bool findings);

}  // namespace NXls2Tki
