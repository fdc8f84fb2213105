// A host that listens to the progress messages of a conversion; prints how many there are.
#include <ZoLogging/logging.h>
#include <xls2tki.h>

#include <cstdio>

using NTamriskSharedUtil::Logging::VLogging;
using Severity = NTamriskSharedUtil::Logging::VLogLevel::VSeverityLevel;

static int messages = 0;

int main() {
    VLogging::GetInstance().SwitchOn(~0U, static_cast<Severity>(2),
                                     [](Severity, std::uint32_t, const VLogging::WideChar*) { ++messages; });
    NXls2Tki::Xls2TkiConvert(u"powertrain.csv", u"listener.xml", NXls2Tki::ImportTypeCSV, true, u';', false);
    std::printf("%d\n", messages);
}
