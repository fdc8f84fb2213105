// Which names an application asks a catalogue call for.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace NOdbcDriver {

// A text that an application may leave out.
using OptionalText = std::optional<std::u16string>;

// A pattern has % for any characters, _ for one, and \ before one of these three that stands for itself.
// Without a text it fits everything. Case of ASCII letters counts for nothing.
class NamePattern {
  public:
    // `isName`: the text is the name itself, and blanks after it do not count.
    NamePattern(OptionalText text, bool isName);

    // Throws OdbcError when comparing with all names so far has taken too long, a second or two.
    [[nodiscard]] bool Fits(std::u16string_view name);

  private:
    OptionalText text_;
    bool isName_;
    std::size_t stepsLeft_ = 200'000'000;
};

}  // namespace NOdbcDriver
