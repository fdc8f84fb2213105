#include <cstddef>
#include <cstring>
#include <exception>
#include <new>
#include <string>
#include <string_view>
#include <vector>

#include "api/conversion.h"
#include "api/host_conversion.h"
#include "api/outcome.h"
#include "api/structure_size.h"
#include "api/xls2tki.h"
#include "api/xls2tki_c.h"
#include "platform/automation.h"
#include "sources/parser_exception.h"

namespace {

using NXls2Tki::HasKnownSize;
using NXls2Tki::WideString;
using NXls2Tki::WideStringSet;

// Of the first version. New members go to the end and begin after any padding, which an older host leaves as
// it is.
constexpr std::size_t kFirstConversionSize =
    offsetof(Xls2TkiConversion, diagnosticInstance) + sizeof(Xls2TkiConversion::diagnosticInstance);
constexpr std::size_t kFirstFactsSize = offsetof(Xls2TkiFacts, items) + sizeof(Xls2TkiFacts::items);

WideString Wide(std::u16string_view text) { return {text.begin(), text.end()}; }

// Made when the library is loaded: later there may be no memory for it.
const WideString noMemory = Wide(u"There is not enough memory.");

WideString thrownText;

std::vector<WideString> listedNames;
std::vector<const Xls2TkiChar*> listedTexts;  // of the names

std::vector<WideString> shownHeaders;
std::vector<const Xls2TkiChar*> shownHeaderTexts;  // of the headers

// Keeps the text of the exception that is being handled, unless that is a lack of memory.
void KeepThrownText() {
    try {
        throw;
    } catch (const VCSVReader::VParserException& error) {
        thrownText = Wide(error.GetMessage());
    } catch (const NPlatform::DispatchException& error) {
        thrownText = Wide(error.Description());
    } catch (const NPlatform::OleException& error) {
        thrownText = Wide(error.Message());
    } catch (const std::bad_alloc&) {
        throw;
    } catch (const std::exception& error) {
        const std::string_view what = error.what();  // ASCII: it is the standard library's
        thrownText.assign(what.begin(), what.end());
    }
}

// Runs an operation. False also where it throws.
template <typename Operation>
bool Run(Operation operation) noexcept {
    NXls2Tki::Outcome& outcome = NXls2Tki::LastOutcome();
    outcome.failure = XLS2TKI_NO_FAILURE;
    outcome.thrownReason = nullptr;
    try {
        if (operation()) return true;
        outcome.failure = XLS2TKI_REFUSED;
    } catch (...) {
        KeepFailure(outcome);
    }
    return false;
}

WideStringSet SetOf(const Xls2TkiNames& names) {
    WideStringSet set;
    for (std::size_t index = 0; index < names.count; ++index) {
        const Xls2TkiChar* const text = names.texts[index];
        set.emplace(text == nullptr ? WideString() : text);
    }
    return set;
}

Xls2TkiConversion WithAllMembers(const Xls2TkiConversion* conversion) {
    if (!HasKnownSize(conversion, kFirstConversionSize)) {
        throw VCSVReader::VParserException(u"The conversion was made for another version of the library.");
    }
    Xls2TkiConversion whole{};
    std::memcpy(&whole, conversion, conversion->size);
    return whole;
}

VCSVReader::VLogObject::Listener ListenerOf(const Xls2TkiConversion& conversion) {
    if (conversion.onMessage == nullptr) return {};
    return [onMessage = conversion.onMessage, context = conversion.messageContext](
               std::u16string_view message) { onMessage(context, Wide(message).c_str()); };
}

bool Convert(const Xls2TkiConversion& conversion) {
    const WideString variant = Wide(NXls2Tki::kDefaultVariant);
    const WideString instance = Wide(NXls2Tki::kDefaultDiagnosticInstance);
    const auto importType = static_cast<NXls2Tki::VImportType>(conversion.importType);
    return NXls2Tki::ConvertForHost(
        conversion.inputPath, conversion.worksheetName, conversion.outputPath, importType,
        conversion.forwardMessages, conversion.separator, SetOf(conversion.vsgNames),
        SetOf(conversion.secondNames), SetOf(conversion.thirdNames),
        conversion.variant == nullptr ? variant.c_str() : conversion.variant,
        conversion.diagnosticInstance == nullptr ? instance.c_str() : conversion.diagnosticInstance,
        conversion.utf8, conversion.findings, ListenerOf(conversion));
}

void KeepHeaders(const std::vector<std::u16string>& headers) {
    shownHeaderTexts.clear();
    shownHeaders.clear();
    for (const std::u16string& header : headers) shownHeaders.push_back(Wide(header));
    for (const WideString& header : shownHeaders) shownHeaderTexts.push_back(header.c_str());
}

}  // namespace

void NXls2Tki::KeepFailure(Outcome& outcome) noexcept {
    try {
        KeepThrownText();
        outcome.failure = XLS2TKI_EXCEL_FAILED;
        outcome.thrownReason = thrownText.c_str();
    } catch (...) {
        outcome.failure = XLS2TKI_OUT_OF_MEMORY;
        outcome.thrownReason = noMemory.c_str();
    }
}

bool xls2tki_init_ole(bool silent) {
    return Run([silent] { return NXls2Tki::XlsInitOle(silent); });
}

bool xls2tki_convert(const Xls2TkiConversion* conversion) {
    NXls2Tki::EmptyLastOutcome();
    return Run([conversion] { return Convert(WithAllMembers(conversion)); });
}

bool xls2tki_list_worksheets(const Xls2TkiChar* path, Xls2TkiNames* names) {
    return Run([path, names] {
        std::vector<WideString> found;
        if (!NXls2Tki::GetExcelWorksheets(path, found)) return false;
        std::vector<const Xls2TkiChar*> texts;
        texts.reserve(found.size());
        for (const WideString& name : found) texts.push_back(name.c_str());
        listedNames.swap(found);  // moves no name
        listedTexts.swap(texts);
        if (names != nullptr) *names = {listedTexts.data(), listedTexts.size()};
        return true;
    });
}

bool xls2tki_facts(Xls2TkiFacts* facts) {
    const auto& found = NXls2Tki::LastOutcome().facts;
    if (!found || !HasKnownSize(facts, kFirstFactsSize)) return false;
    try {
        if (facts->size > offsetof(Xls2TkiFacts, itemHeaders)) KeepHeaders(found->itemHeaders);
    } catch (const std::bad_alloc&) {
        return false;
    }
    const Xls2TkiFacts whole = {.size = facts->size,
                                .layout = static_cast<std::int32_t>(found->layout),
                                .hexDigits = found->notation.hexDigits,
                                .saeCodes = found->notation.saeCodes,
                                .rows = found->rows,
                                .columns = found->columns,
                                .endColumn = found->endColumn,
                                .columnsWithoutHeader = found->columnsWithoutHeader.data(),
                                .columnsWithoutHeaderCount = found->columnsWithoutHeader.size(),
                                .itemColumns = found->itemColumns,
                                .items = found->items,
                                .written = NXls2Tki::LastOutcome().isWritten,
                                .itemHeaders = {shownHeaderTexts.data(), shownHeaderTexts.size()},
                                .smallestNumber = found->smallestNumber,
                                .largestNumber = found->largestNumber};
    std::memcpy(facts, &whole, whole.size);
    return true;
}

int32_t xls2tki_failure() { return NXls2Tki::LastOutcome().failure; }

const Xls2TkiChar* xls2tki_message() {
    try {
        const Xls2TkiChar* const thrown = NXls2Tki::LastOutcome().thrownReason;
        return thrown != nullptr ? thrown : NXls2Tki::GetLoggedMessages();
    } catch (const std::bad_alloc&) {
        return noMemory.c_str();
    }
}
