#include "document/xml_tree.h"

#include "document/xml_escape.h"

namespace VSimpleXMLCreation {

const VXmlTag::Shape* VXmlTag::Tree::ShapeOf(std::u16string_view name) {
    for (const Name& known : names) {
        if (known.Text() == name) return &known.shape;
    }
    const std::u16string copy(name);
    Name& added = names.emplace_front(Name{this, u"<" + copy + u">", u"</" + copy + u">\n", {}});
    added.shape = {&added, nullptr, added.start};
    return &added.shape;
}

// Writes the start of an element, attribute by attribute, into room that is large enough.
class VXmlTag::Tree::StartWriter {
  public:
    StartWriter(Tree& tree, const Name& name, std::size_t size)
        : tree_(tree), start_(tree.AllocateUnits(size)), out_(CopyUnits(name.start, start_)) {
        out_[-1] = u' ';
    }

    void Copy(const Attribute& attribute) {
        char16_t* const begin = out_;
        out_ = CopyUnits(attribute.text, out_);
        Link(begin, attribute.nameSize);
    }

    void Add(std::u16string_view name, std::u16string_view value, bool escape) {
        char16_t* const begin = out_;
        out_ = CopyUnits(u"=\"", CopyUnits(name, out_));
        out_ = CopyUnits(u"\" ", escape ? CopyEscaped(value, out_) : CopyUnits(value, out_));
        Link(begin, name.size());
    }

    const Shape* Finish(const Name& name) {
        *out_++ = u'>';
        return tree_.Make<Shape>(&name, first_, std::u16string_view(start_, out_));
    }

  private:
    void Link(const char16_t* begin, std::size_t nameSize) {
        auto* const added = tree_.Make<Attribute>(nullptr, std::u16string_view(begin, out_), nameSize);
        *link_ = added;
        link_ = &added->next;
    }

    Tree& tree_;
    char16_t* start_;
    char16_t* out_;
    const Attribute* first_ = nullptr;
    const Attribute** link_ = &first_;
};

// The shape with the attribute in its place among the others, which are copied.
const VXmlTag::Shape* VXmlTag::Tree::WithAttribute(const Shape& shape, std::u16string_view name,
                                                   std::u16string_view value, bool escape, bool& isNew) {
    const std::size_t valueSize = escape ? EscapedSize(value) : value.size();
    StartWriter writer(*this, *shape.name, shape.start.size() + name.size() + valueSize + 5);
    const Attribute* other = shape.attributes;
    for (; other != nullptr && other->NameText() < name; other = other->next) writer.Copy(*other);
    writer.Add(name, value, escape);
    isNew = other == nullptr || other->NameText() != name;
    if (!isNew) other = other->next;
    for (; other != nullptr; other = other->next) writer.Copy(*other);
    return writer.Finish(*shape.name);
}

std::u16string_view VXmlTag::Tree::Store(std::u16string_view text, bool escape) {
    const std::size_t size = escape ? EscapedSize(text) : text.size();
    char16_t* const stored = AllocateUnits(size);
    if (escape) {
        CopyEscaped(text, stored);
    } else {
        CopyUnits(text, stored);
    }
    return {stored, size};
}

}  // namespace VSimpleXMLCreation
