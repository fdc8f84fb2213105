// A conversion with all that a host may ask for, in the host's types.
#pragma once

#include "api/xls2tki.h"
#include "log/log_object.h"

namespace NXls2Tki {

// Xls2TkiConvert in its full form, with or without findings and a listener.
bool ConvertForHost(const WideChar* inputPath, const WideChar* worksheetName, const WideChar* outputPath,
                    VImportType importType, bool forwardMessages, WideChar separator,
                    const WideStringSet& vsgNames, const WideStringSet& secondNames,
                    const WideStringSet& thirdNames, const WideChar* variant,
                    const WideChar* diagnosticInstance, bool utf8, bool findings,
                    const VCSVReader::VLogObject::Listener& listener);

}  // namespace NXls2Tki
