// The element tree of an XML document: built from the root down, printed as one text.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "platform/text_buffer.h"

namespace VSimpleXMLCreation {

// An element: a name, attributes in the order of their names (compared by UTF-16 unit), children in the order
// added, and one text after them. Names are written as they are given. Values and texts are escaped when
// they are set, if the caller asks for it: "&", "<" and ">" become "&amp;", "&lt;" and "&gt;", nothing else
// changes.
//
// An element that is made by its constructor owns the whole tree below it: the elements, names, values and
// texts lie in memory of the tree and go with it. Arguments are copied unless an operation says otherwise.
class VXmlTag {
  public:
    explicit VXmlTag(std::u16string_view name);
    VXmlTag(const VXmlTag&) = delete;
    VXmlTag& operator=(const VXmlTag&) = delete;
    virtual ~VXmlTag();

    // The element and all below it. An element without children and text prints as <NAME/>, with attributes
    // as <NAME a="1" />. A line feed follows each element's end and nothing else.
    [[nodiscard]] virtual NPlatform::TextBuffer Print() const;

    // Adds a last child and returns it; it belongs to the tree.
    VXmlTag* AddChild(std::u16string_view name);
    // Adds a child with the name and the attributes that `model`, an element of the same tree, has now. The
    // two share them, which costs neither time nor memory.
    VXmlTag* AddChildLike(const VXmlTag& model);

    // Removes the children. Their memory stays with the tree, and they can still be used as models.
    void DropChildren();

    // True when the name was new; false when it had a value, which is replaced.
    bool SetAttribute(std::u16string_view name, std::u16string_view value, bool escape);
    bool SetNumberAttribute(std::u16string_view name, std::int32_t value);

    // Replaces the element's text.
    void SetText(std::u16string_view text, bool escape);
    // The same, escaped. Where nothing has to be escaped the text is not copied: it has to outlive the tree.
    void ReferToText(std::u16string_view text);

  protected:
    // Where in the text an element begins.
    struct Place {
        const VXmlTag* element = nullptr;
        std::size_t offset = 0;
    };

    // Appends the element and all below it. Fills in the place of an element among them, unless it is null.
    void PrintTo(NPlatform::TextBuffer& text, Place* place = nullptr) const;

  private:
    friend class VXmlPrinter;

    struct Attribute;
    struct Mark;
    struct Name;
    struct Shape;
    struct Tree;

    explicit VXmlTag(const Shape* shape) : shape_(shape) {}

    VXmlTag* Adopt(const Shape* shape);
    [[nodiscard]] Tree& OwnTree() const;
    void PrintChildrenTo(NPlatform::TextBuffer& text, Place* place = nullptr) const;

    const Shape* shape_;  // the name and the attributes
    VXmlTag* lastChild_ = nullptr;
    VXmlTag* next_ = nullptr;  // the next child of the same parent; after the last one, the first
    std::u16string_view text_;
};

// The root of a document: prints the XML declaration before itself.
class VXmlTagRoot : public VXmlTag {
  public:
    using VXmlTag::VXmlTag;
    ~VXmlTagRoot() override = default;
    [[nodiscard]] NPlatform::TextBuffer Print() const override;

  private:
    friend class VXmlPrinter;

    void PrintTo(NPlatform::TextBuffer& text, Place* place = nullptr) const;
};

}  // namespace VSimpleXMLCreation
