// Messages: a small printf for UTF-16 with a size limit.
#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>

namespace NPlatform {

// One argument of Format. Texts are only referred to: they have to outlive the call.
class FormatArgument {
  public:
    FormatArgument(std::int32_t number) : kind_(Kind::Number), number_(number) {}
    FormatArgument(std::uint32_t code) : kind_(Kind::Code), code_(code) {}
    FormatArgument(char16_t character) : kind_(Kind::Character), character_(character) {}
    FormatArgument(std::u16string_view text) : kind_(Kind::Text), text_(text) {}
    FormatArgument(const std::u16string& text) : FormatArgument(std::u16string_view(text)) {}
    FormatArgument(const char16_t* text) : FormatArgument(std::u16string_view(text)) {}

    void AppendTo(std::u16string& result, std::size_t limit) const;

  private:
    enum class Kind { Number, Code, Character, Text };

    Kind kind_;
    std::int32_t number_ = 0;
    std::uint32_t code_ = 0;
    char16_t character_ = 0;
    std::u16string_view text_;
};

// Replaces each %d, %08lx, %s and %c of the pattern by the next argument, which has to be of that kind: a
// signed number, an unsigned one, a text, a character. The result holds no NUL, which would end it early for
// its readers (U+FFFD stands for it), and at most `capacity` - 1 units, as in a buffer of `capacity` units
// with a terminator: what is longer is cut, and never between the two halves of a surrogate pair.
std::u16string Format(std::size_t capacity, std::u16string_view pattern,
                      std::initializer_list<FormatArgument> arguments);

// The beginning of `text`: at most `limit` units and no half surrogate pair at the end.
std::u16string_view Cut(std::u16string_view text, std::size_t limit);

}  // namespace NPlatform
