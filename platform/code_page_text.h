// Texts of code pages to UTF-16.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace NPlatform {

// The code page of Windows for Western Europe.
inline constexpr std::uint16_t kWesternCodePage = 1252;

class CodePageText {
  public:
    // By the number that Windows gives the code page, those of the Macintosh too.
    explicit CodePageText(std::uint16_t codePage);
    CodePageText(const CodePageText&) = delete;
    CodePageText& operator=(const CodePageText&) = delete;
    ~CodePageText();

    // False: the system does not know the code page, or the bytes are no text of it; the text is then
    // undefined. ASCII is the same in all code pages but UTF-16, which is none of bytes.
    bool ToUtf16(std::string_view bytes, std::u16string& text);

  private:
    struct System;

    std::uint16_t codePage_;
    std::unique_ptr<System> system_;  // NULL until it is needed
};

}  // namespace NPlatform
