// KEY=value;KEY={value};...
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace NOdbcDriver {

// The attributes of a connect string, in its order.
//
// Blanks around a keyword do not count, and its case does not. A value is the text between the equals sign
// and the next semicolon, blanks included, so that a path arrives unchanged. In braces it may contain
// semicolons, and closing braces twice; blanks around the braces do not count. A value that only begins with
// a brace, or continues after the closing one, is an ordinary one and the braces are part of it.
class ConnectString {
  public:
    // Throws OdbcError (HY000) for a part that is not KEY=value, as a semicolon in a path without braces
    // makes one.
    explicit ConnectString(std::u16string_view text);

    // The value of the first attribute with this keyword, given in capital letters; nothing if there is none.
    [[nodiscard]] std::optional<std::u16string_view> Find(std::u16string_view keyword) const;

  private:
    struct Attribute {
        std::u16string keyword;
        std::u16string value;
    };

    std::vector<Attribute> attributes_;
};

// `value` as a connect string has it, in braces where it needs them.
std::u16string QuoteValue(std::u16string_view value);

}  // namespace NOdbcDriver
