#include "odbc_driver/connect_string.h"

#include "odbc_driver/ascii.h"
#include "odbc_driver/diagnostics.h"
#include "platform/format.h"

namespace NOdbcDriver {

namespace {

constexpr std::size_t kNone = std::u16string_view::npos;

struct Value {
    std::u16string text;
    std::size_t end;  // where it ends in the connect string: at a semicolon or at the end of the text
};

// A value in braces, if there is one at `begin`.
std::optional<Value> ReadBraced(std::u16string_view text, std::size_t begin) {
    const std::size_t open = text.find_first_not_of(kBlanks, begin);
    if (open == kNone || text[open] != u'{') return std::nullopt;
    std::u16string value;
    for (std::size_t at = open + 1;;) {
        const std::size_t close = text.find(u'}', at);
        if (close == kNone) return std::nullopt;
        value += text.substr(at, close - at);
        at = close + 1;
        if (at == text.size() || text[at] != u'}') {
            const std::size_t end = std::min(text.find_first_not_of(kBlanks, at), text.size());
            if (end < text.size() && text[end] != u';') return std::nullopt;
            return Value{value, end};
        }
        value += u'}';
        ++at;
    }
}

Value ReadValue(std::u16string_view text, std::size_t begin) {
    if (std::optional<Value> braced = ReadBraced(text, begin)) return *std::move(braced);
    const std::size_t end = std::min(text.find(u';', begin), text.size());
    return {std::u16string(text.substr(begin, end - begin)), end};
}

[[noreturn]] void RefusePart(std::u16string_view part) {
    constexpr std::u16string_view kMessage =
        u"\"%s\" in the connect string is not KEYWORD=value. A value that holds a semicolon has to stand in "
        u"braces: DBQ={a;b.xlsx}.";
    throw OdbcError(u"HY000", NPlatform::Format(400, kMessage, {NPlatform::Cut(part, 200)}));
}

}  // namespace

ConnectString::ConnectString(std::u16string_view text) {
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t partEnd = std::min(text.find(u';', at), text.size());
        const std::u16string_view part = text.substr(at, partEnd - at);
        const std::size_t equals = part.find(u'=');
        if (equals != kNone) {
            Value value = ReadValue(text, at + equals + 1);
            attributes_.push_back({std::u16string(Trim(part.substr(0, equals))), std::move(value.text)});
            at = value.end + 1;
        } else {
            if (!Trim(part).empty()) RefusePart(Trim(part));
            at = partEnd + 1;
        }
    }
}

std::optional<std::u16string_view> ConnectString::Find(std::u16string_view keyword) const {
    for (const Attribute& attribute : attributes_) {
        if (EqualsIgnoringCase(attribute.keyword, keyword)) return attribute.value;
    }
    return std::nullopt;
}

std::u16string QuoteValue(std::u16string_view value) {
    const bool isPlain = value.find_first_of(u";{}") == kNone && Trim(value) == value;
    if (isPlain) return std::u16string(value);
    std::u16string quoted(1, u'{');
    for (const char16_t unit : value) quoted.append(unit == u'}' ? 2 : 1, unit);
    return quoted += u'}';
}

}  // namespace NOdbcDriver
