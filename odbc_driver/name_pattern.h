// Which names an application asks a catalogue call for.
#pragma once

#include <optional>
#include <string_view>

namespace NOdbcDriver {

// A text that an application may leave out.
using OptionalText = std::optional<std::u16string_view>;

// A pattern has % for any characters, _ for one, and \ before one of these three that stands for itself.
// Without a text it fits everything. Case of ASCII letters counts for nothing.
class NamePattern {
  public:
    // `isName`: the text is the name itself, and blanks behind it do not count.
    NamePattern(OptionalText text, bool isName) : text_(text), isName_(isName) {}

    [[nodiscard]] bool Fits(std::u16string_view name) const;

  private:
    OptionalText text_;
    bool isName_;
};

}  // namespace NOdbcDriver
