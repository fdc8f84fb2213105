#include "platform/code_page_text.h"

#include <iconv.h>

#include <algorithm>
#include <cerrno>
#include <iterator>

namespace NPlatform {

namespace {

// Those that iconv does not know as "CP" and the number.
struct CodePageName {
    std::uint16_t codePage;
    const char* name;
};

constexpr CodePageName kNames[] = {
    {10000, "MACINTOSH"},    {10001, "SHIFT_JIS"}, {10002, "BIG5"},   {10003, "EUC-KR"},
    {10007, "MAC-CYRILLIC"}, {10008, "GB2312"},    {10017, "MAC-UK"}, {10029, "MAC-CENTRALEUROPE"},
    {10079, "MAC-IS"},       {32768, "MACINTOSH"}, {32769, "CP1252"},
};

constexpr std::uint16_t kUtf16 = 1200;

std::string NameOf(std::uint16_t codePage) {
    for (const CodePageName& known : kNames) {
        if (known.codePage == codePage) return known.name;
    }
    return "CP" + std::to_string(codePage);
}

constexpr unsigned char kFirstOfCodePage = 0x80;

bool IsAscii(char byte) { return static_cast<unsigned char>(byte) < kFirstOfCodePage; }

}  // namespace

struct CodePageText::System {
    explicit System(std::uint16_t codePage) : converter(iconv_open("UTF-16LE", NameOf(codePage).c_str())) {
        std::u16string text;
        for (std::size_t index = 0; IsKnown() && index < std::size(units); ++index) {
            const char byte = static_cast<char>(kFirstOfCodePage + index);
            if (Convert({&byte, 1}, text)) {
                units[index] = text.front();
            } else if (errno == EINVAL) {
                hasLongCharacters = true;
            }
        }
    }
    System(const System&) = delete;
    System& operator=(const System&) = delete;
    ~System() {
        if (IsKnown()) iconv_close(converter);
    }

    // iconv's sign for a failure is the highest address.
    [[nodiscard]] bool IsKnown() const { return reinterpret_cast<std::intptr_t>(converter) != -1; }

    bool Convert(std::string_view bytes, std::u16string& text) const {
        const auto failed = static_cast<std::size_t>(-1);
        // Two units for a byte are more than any code page needs.
        text.resize(2 * bytes.size());
        std::string copy(bytes);  // iconv does not write to it, but wants it so
        char* in = copy.data();
        std::size_t inLeft = copy.size();
        auto* out = reinterpret_cast<char*>(text.data());
        std::size_t outLeft = text.size() * sizeof(char16_t);
        iconv(converter, nullptr, nullptr, nullptr, nullptr);
        if (iconv(converter, &in, &inLeft, &out, &outLeft) == failed) return false;
        // A letter that a mark could follow is kept back until the end.
        if (iconv(converter, nullptr, nullptr, &out, &outLeft) == failed) return false;
        text.resize(text.size() - outLeft / sizeof(char16_t));
        return true;
    }

    iconv_t converter;
    char16_t units[0x100 - kFirstOfCodePage] = {};  // of each byte that is not ASCII; 0 if it is no character
    bool hasLongCharacters = false;                 // of several bytes
};

CodePageText::CodePageText(std::uint16_t codePage) : codePage_(codePage) {}

CodePageText::~CodePageText() = default;

bool CodePageText::ToUtf16(std::string_view bytes, std::u16string& text) {
    if (codePage_ != kUtf16 && std::all_of(bytes.begin(), bytes.end(), IsAscii)) {
        text.assign(bytes.begin(), bytes.end());
        return true;
    }
    if (system_ == nullptr) system_ = std::make_unique<System>(codePage_);
    if (!system_->IsKnown()) return false;
    if (system_->hasLongCharacters) return system_->Convert(bytes, text);
    // Byte by byte: iconv would join a letter with the marks behind it.
    text.clear();
    for (const char byte : bytes) {
        const auto index = static_cast<unsigned char>(byte);
        text += IsAscii(byte) ? char16_t{index} : system_->units[index - kFirstOfCodePage];
        if (text.back() == 0 && byte != 0) return false;
    }
    return true;
}

}  // namespace NPlatform
