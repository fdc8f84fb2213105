// Reading a part: the one place where XML is parsed.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "workbook/text_store.h"
#include "workbook/xlsx/package.h"

namespace NWorkbook::NXlsx {

// Limits on what a part may ask of the parser.
inline constexpr int kMostDepth = 256;                                      // elements in one another
inline constexpr std::uint64_t kMostBytesOfToken = std::uint64_t{1} << 20;  // a tag, a comment
inline constexpr std::size_t kMostBytesOfText = 3 * kMostUnitsOfText;       // between two tags
inline constexpr std::size_t kMostParserMemory = std::size_t{64} << 20;     // it keeps all names that differ

// The namespaces that count, each in its transitional and its strict form.
enum class XmlNamespace : std::uint8_t {
    Other,
    Spreadsheet,
    References,  // of attributes that name a relationship
    Package,     // of the parts that list relationships
};

// The namespaces of the prefixes that are in force.
class XmlPrefixes {
  public:
    // Takes in a declaration, if the attribute is one. False: there are too many.
    bool Declare(int depth, std::string_view attribute, std::string_view value);
    // Forgets those of the element that ends.
    void Forget(int depth) {
        if (!bindings_.empty() && bindings_.back().depth == depth) Unbind(depth);
    }
    // Of most names, which have no prefix, it is known already.
    [[nodiscard]] XmlNamespace Of(std::string_view prefix) const {
        return prefix.empty() ? withoutPrefix_ : Find(prefix);
    }

  private:
    struct Binding {
        std::string prefix;
        XmlNamespace meaning;
        int depth;
    };

    bool Bind(std::string_view prefix, XmlNamespace meaning, int depth);
    void Unbind(int depth);
    [[nodiscard]] XmlNamespace Find(std::string_view prefix) const;

    // No more than those of the namespaces that count, and those that hide one of them.
    std::vector<Binding> bindings_;
    XmlNamespace withoutPrefix_ = XmlNamespace::Other;
};

// An element that begins. Valid during the call.
struct XmlElement {
    int depth;  // 1 for the root
    std::string_view name;
    // Name, value, name, value, NULL; UTF-8.
    const char* const* attributes;
    const XmlPrefixes* prefixes;
    // Whether white space at the ends of its text counts: xml:space says so, its own or the nearest around
    // it.
    bool keepsBlanks;

    // The value of an attribute without a prefix; NULL if there is none.
    [[nodiscard]] const char* Find(std::string_view attribute) const;
    // Whether the attribute is there and says so.
    [[nodiscard]] bool IsTrue(std::string_view attribute) const;
    // The relationship that the element names; NULL if there is none.
    [[nodiscard]] const char* FindReference() const;
};

// What becomes of a part's elements. Each operation may throw PartFault and other exceptions.
class XmlReader {
  public:
    XmlReader() = default;
    XmlReader(const XmlReader&) = delete;
    XmlReader& operator=(const XmlReader&) = delete;
    virtual ~XmlReader() = default;

    // False leaves the element out with everything in it, without further calls.
    virtual bool Start(const XmlElement& element) = 0;
    virtual void End(int /*depth*/) {}
    // An element of another namespace is left out.
    virtual void LeaveOutForeign() {}
    // A piece of text, UTF-8; a text may come in any number of them.
    virtual void Text(std::string_view /*text*/) {}
};

// Reads a part of at most `mostBytes` from its beginning to its end. Elements of another namespace than
// `wanted` are left out with all that is in them, among them alternatives that other programs chose from.
// Throws WorkbookError, also for a document type declaration, with which a few bytes can become any number.
void ReadXmlPart(Package& package, std::string_view part, XmlNamespace wanted, XmlReader& reader,
                 std::uint64_t mostBytes = kMostInflatedBytes);

// Throws PartFault unless the element, a root, has this name.
void CheckRoot(const XmlElement& element, std::string_view name);

}  // namespace NWorkbook::NXlsx
