#include "odbc_driver/name_pattern.h"

#include "odbc_driver/ascii.h"
#include "odbc_driver/diagnostics.h"

namespace NOdbcDriver {

namespace {

// How many units of the pattern stand for one character other than by %.
std::size_t ElementSize(std::u16string_view pattern) {
    constexpr std::u16string_view kEscaped = u"%_\\";
    const bool isEscape =
        pattern.size() > 1 && pattern[0] == u'\\' && kEscaped.find(pattern[1]) != std::u16string_view::npos;
    return isEscape ? 2 : 1;
}

bool ElementFits(std::u16string_view element, char16_t unit) {
    return element == u"_" ||
           NWorkbook::WithoutAsciiCase(element.back()) == NWorkbook::WithoutAsciiCase(unit);
}

// Takes each comparison from `stepsLeft`: there are up to |pattern| x |name| of them.
bool PatternFits(std::u16string_view pattern, std::u16string_view name, std::size_t& stepsLeft) {
    std::u16string_view
        afterPercent;  // the pattern after its latest %, and the rest of the name after that %
    std::u16string_view leftByPercent;
    bool hasPercent = false;
    for (;;) {
        if (stepsLeft == 0) {
            throw OdbcError(u"HY000",
                            u"Comparing the pattern with all names takes too long. Use one with fewer "
                            u"characters after its %.");
        }
        --stepsLeft;
        if (pattern.starts_with(u'%')) {
            pattern.remove_prefix(1);
            hasPercent = true;
            afterPercent = pattern;
            leftByPercent = name;
            continue;
        }
        if (pattern.empty() && name.empty()) return true;
        const std::size_t size = ElementSize(pattern);
        if (!pattern.empty() && !name.empty() && ElementFits(pattern.substr(0, size), name[0])) {
            pattern.remove_prefix(size);
            name.remove_prefix(1);
        } else {
            if (!hasPercent || leftByPercent.empty()) return false;
            leftByPercent.remove_prefix(1);
            pattern = afterPercent;
            name = leftByPercent;
        }
    }
}

}  // namespace

NamePattern::NamePattern(OptionalText text, bool isName) : text_(std::move(text)), isName_(isName) {
    if (text_ && isName_) text_->resize(text_->find_last_not_of(kBlanks) + 1);
}

bool NamePattern::Fits(std::u16string_view name) {
    if (!text_) return true;
    return isName_ ? EqualsIgnoringCase(*text_, name) : PatternFits(*text_, name, stepsLeft_);
}

}  // namespace NOdbcDriver
