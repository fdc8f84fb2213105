#include "document/xml_tag.h"

#include <algorithm>
#include <charconv>
#include <memory>

#include "document/xml_escape.h"
#include "document/xml_tree.h"

namespace VSimpleXMLCreation {

using NPlatform::TextBuffer;

VXmlTag::VXmlTag(std::u16string_view name) {
    auto tree = std::make_unique<Tree>(this);
    shape_ = tree->ShapeOf(name);
    static_cast<void>(tree.release());  // the element's own now
}

VXmlTag::~VXmlTag() {
    if (OwnTree().owner == this) delete &OwnTree();
}

VXmlTag::Tree& VXmlTag::OwnTree() const { return *shape_->name->tree; }

void VXmlTag::DropChildren() { lastChild_ = nullptr; }

VXmlTag* VXmlTag::Adopt(const Shape* shape) {
    Tree& tree = OwnTree();
    tree.nodes.Extend(sizeof(VXmlTag) / sizeof(std::uint64_t));
    auto* const child = new (tree.nodes.Close()) VXmlTag(shape);
    child->next_ = lastChild_ == nullptr ? child : lastChild_->next_;
    if (lastChild_ != nullptr) lastChild_->next_ = child;
    lastChild_ = child;
    return child;
}

VXmlTag* VXmlTag::AddChild(std::u16string_view name) { return Adopt(OwnTree().ShapeOf(name)); }

VXmlTag* VXmlTag::AddChildLike(const VXmlTag& model) { return Adopt(model.shape_); }

bool VXmlTag::SetAttribute(std::u16string_view name, std::u16string_view value, bool escape) {
    bool isNew = false;
    shape_ = OwnTree().WithAttribute(*shape_, name, value, escape, isNew);
    return isNew;
}

bool VXmlTag::SetNumberAttribute(std::u16string_view name, std::int32_t value) {
    char digits[12];
    char16_t units[sizeof digits];
    const char* const end = std::to_chars(digits, digits + sizeof digits, value).ptr;
    const char16_t* const unitsEnd = std::copy(static_cast<const char*>(digits), end, units);
    return SetAttribute(name, {units, unitsEnd}, false);
}

void VXmlTag::SetText(std::u16string_view text, bool escape) { text_ = OwnTree().Store(text, escape); }

void VXmlTag::ReferToText(std::u16string_view text) {
    text_ = HasEscaped(text) ? OwnTree().Store(text, true) : text;
}

TextBuffer VXmlTag::Print() const {
    TextBuffer text;
    PrintTo(text);
    return text;
}

void VXmlTag::PrintTo(TextBuffer& text, Place* place) const {
    if (place != nullptr && place->element == this) place->offset = text.Size();
    text.Append(shape_->start);
    if (lastChild_ == nullptr && text_.empty()) {
        text.Truncate(text.Size() - 1);
        text.Append(kEmptyEnd);
        return;
    }
    PrintChildrenTo(text, place);
    text.Append(text_);
    text.Append(shape_->name->close);
}

void VXmlTag::PrintChildrenTo(TextBuffer& text, Place* place) const {
    if (lastChild_ == nullptr) return;
    const VXmlTag* child = lastChild_;
    do {
        child = child->next_;
        child->PrintTo(text, place);
    } while (child != lastChild_);
}

TextBuffer VXmlTagRoot::Print() const {
    TextBuffer text;
    PrintTo(text);
    return text;
}

void VXmlTagRoot::PrintTo(TextBuffer& text, Place* place) const {
    text.Append(kDeclaration);
    VXmlTag::PrintTo(text, place);
}

}  // namespace VSimpleXMLCreation
