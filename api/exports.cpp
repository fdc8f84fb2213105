#include <string_view>

#include "api/conversion.h"
#include "api/host_conversion.h"
#include "api/outcome.h"
#include "api/xls2tki.h"
#include "platform/ole.h"

namespace NXls2Tki {

namespace {

Outcome lastOutcome;
WideString shownMessageText;  // as the host reads it
bool oleInitialised = false;

// The library's rooms use char16_t; a host's character is the same 16 bits under the system's name for them.
std::u16string Inside(const WideChar* text) {
    const WideString given = text == nullptr ? WideString() : WideString(text);
    return {given.begin(), given.end()};
}

WideString Outside(std::u16string_view text) { return {text.begin(), text.end()}; }

// The set as the rooms have it: itself where the types are the same, else a copy that `converted` holds.
template <typename Set>
const std::set<std::u16string>& Inside(const Set& names, std::set<std::u16string>& converted) {
    if constexpr (std::is_same_v<Set, std::set<std::u16string>>) {
        return names;
    } else {
        for (const auto& name : names) converted.emplace(name.begin(), name.end());
        return converted;
    }
}

}  // namespace

Outcome& LastOutcome() noexcept { return lastOutcome; }

bool XlsInitOle(bool silent) {
    const NPlatform::ModuleState moduleState;
    if (oleInitialised) return true;
    oleInitialised = true;
    if (!NPlatform::InitAutomation()) {
        if (!silent) NPlatform::ShowMessageBox(u"Could not initialize COM dll");
        return false;
    }
    NPlatform::EnableControls();
    return true;
}

bool ConvertForHost(const WideChar* inputPath, const WideChar* worksheetName, const WideChar* outputPath,
                    VImportType importType, bool forwardMessages, WideChar separator,
                    const WideStringSet& vsgNames, const WideStringSet& secondNames,
                    const WideStringSet& thirdNames, const WideChar* variant,
                    const WideChar* diagnosticInstance, bool utf8, bool findings,
                    const VCSVReader::VLogObject::Listener& listener) {
    EmptyLastOutcome();
    const NPlatform::ModuleState moduleState;
    const std::u16string input = Inside(inputPath);
    const std::u16string worksheet = Inside(worksheetName);
    const std::u16string output = Inside(outputPath);
    const std::u16string variantName = Inside(variant);
    const std::u16string instanceName = Inside(diagnosticInstance);
    std::set<std::u16string> vsg;
    std::set<std::u16string> second;
    std::set<std::u16string> third;
    return Convert({input, worksheet, output, importType, forwardMessages, static_cast<char16_t>(separator),
                    Inside(vsgNames, vsg), Inside(secondNames, second), Inside(thirdNames, third),
                    variantName, instanceName, utf8, findings, listener},
                   lastOutcome);
}

bool Xls2TkiConvert(const WideChar* inputPath, const WideChar* worksheetName, const WideChar* outputPath,
                    VImportType importType, bool forwardMessages, WideChar separator,
                    const WideStringSet& vsgNames, const WideStringSet& secondNames,
                    const WideStringSet& thirdNames, const WideChar* variant,
                    const WideChar* diagnosticInstance, bool utf8) {
    return ConvertForHost(inputPath, worksheetName, outputPath, importType, forwardMessages, separator,
                          vsgNames, secondNames, thirdNames, variant, diagnosticInstance, utf8, false, {});
}

bool Xls2TkiConvert(const WideChar* inputPath, const WideChar* outputPath, VImportType importType,
                    bool forwardMessages, WideChar separator, bool utf8) {
    const WideStringSet none;
    return Xls2TkiConvert(inputPath, outputPath, importType, forwardMessages, separator, none, none, utf8);
}

bool Xls2TkiConvert(const WideChar* inputPath, const WideChar* outputPath, VImportType importType,
                    bool forwardMessages, WideChar separator, const WideStringSet& vsgNames,
                    const WideStringSet& secondNames, bool utf8) {
    EmptyLastOutcome();
    const WideString variant = Outside(kDefaultVariant);
    const WideString instance = Outside(kDefaultDiagnosticInstance);
    return Xls2TkiConvert(inputPath, outputPath, importType, forwardMessages, separator, vsgNames,
                          secondNames, secondNames, variant.c_str(), instance.c_str(), utf8);
}

bool Xls2TkiConvert(const WideChar* inputPath, const WideChar* outputPath, VImportType importType,
                    bool forwardMessages, WideChar separator, const WideStringSet& vsgNames,
                    const WideStringSet& secondNames, const WideStringSet& thirdNames,
                    const WideChar* variant, const WideChar* diagnosticInstance, bool utf8) {
    return Xls2TkiConvert(inputPath, nullptr, outputPath, importType, forwardMessages, separator, vsgNames,
                          secondNames, thirdNames, variant, diagnosticInstance, utf8);
}

bool GetExcelWorksheets(const WideChar* path, std::vector<WideString>& names) {
    lastOutcome.thrownReason = nullptr;
    const NPlatform::ModuleState moduleState;
    std::vector<std::u16string> found;
    if (!ListWorksheets(Inside(path), found, lastOutcome.messageText)) return false;
    std::vector<WideString> converted;
    converted.reserve(found.size());
    for (const std::u16string& name : found) converted.push_back(Outside(name));
    names = std::move(converted);
    return true;
}

const WideChar* GetLoggedMessages() {
    const NPlatform::ModuleState moduleState;
    // The same text stays in the same place: a host may keep the pointer.
    const std::u16string& text = lastOutcome.messageText;
    shownMessageText.assign(text.begin(), text.end());
    return shownMessageText.c_str();
}

}  // namespace NXls2Tki
