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
    tree.release()->printedSize = OwnSize();
}

VXmlTag::~VXmlTag() {
    if (OwnTree().owner == this) delete &OwnTree();
}

VXmlTag::Tree& VXmlTag::OwnTree() const { return *shape_->name->tree; }

// What the element itself adds to the printed text.
std::size_t VXmlTag::OwnSize() const {
    return shape_->start.size() - 1 + kEmptyEnd.size() + (IsEmpty() ? 0 : ContentCost() + text_.size());
}

// What an element that is not empty prints more than an empty one, besides its content.
std::size_t VXmlTag::ContentCost() const { return 1 + shape_->name->close.size() - kEmptyEnd.size(); }

std::size_t VXmlTag::PrintedSize() const {
    if (OwnTree().owner == this) return OwnTree().printedSize;
    return OwnSize() + ChildrenSize();
}

std::size_t VXmlTag::ChildrenSize() const {
    std::size_t size = 0;
    if (lastChild_ == nullptr) return size;
    const VXmlTag* child = lastChild_;
    do {
        child = child->next_;
        size += child->PrintedSize();
    } while (child != lastChild_);
    return size;
}

void VXmlTag::DropChildren() {
    std::size_t& size = OwnTree().printedSize;
    size -= OwnSize() + ChildrenSize();
    lastChild_ = nullptr;
    size += OwnSize();
}

VXmlTag* VXmlTag::Adopt(const Shape* shape) {
    Tree& tree = OwnTree();
    tree.nodes.Extend(sizeof(VXmlTag) / sizeof(std::uint64_t));
    auto* const child = new (tree.nodes.Close()) VXmlTag(shape);
    tree.printedSize += child->OwnSize() + (IsEmpty() ? ContentCost() : 0);
    child->next_ = lastChild_ == nullptr ? child : lastChild_->next_;
    if (lastChild_ != nullptr) lastChild_->next_ = child;
    lastChild_ = child;
    return child;
}

void VXmlTag::ReplaceText(std::u16string_view text) {
    std::size_t& size = OwnTree().printedSize;
    if (!IsEmpty()) size -= ContentCost() + text_.size();
    text_ = text;
    if (!IsEmpty()) size += ContentCost() + text_.size();
}

VXmlTag* VXmlTag::AddChild(std::u16string_view name) { return Adopt(OwnTree().ShapeOf(name)); }

VXmlTag* VXmlTag::AddChildLike(const VXmlTag& model) { return Adopt(model.shape_); }

bool VXmlTag::SetAttribute(std::u16string_view name, std::u16string_view value, bool escape) {
    bool isNew = false;
    OwnTree().printedSize -= OwnSize();
    shape_ = OwnTree().WithAttribute(*shape_, name, value, escape, isNew);
    OwnTree().printedSize += OwnSize();
    return isNew;
}

bool VXmlTag::SetNumberAttribute(std::u16string_view name, std::int32_t value) {
    char digits[12];
    char16_t units[sizeof digits];
    const char* const end = std::to_chars(digits, digits + sizeof digits, value).ptr;
    const char16_t* const unitsEnd = std::copy(static_cast<const char*>(digits), end, units);
    return SetAttribute(name, {units, unitsEnd}, false);
}

void VXmlTag::SetText(std::u16string_view text, bool escape) { ReplaceText(OwnTree().Store(text, escape)); }

void VXmlTag::ReferToText(std::u16string_view text) {
    ReplaceText(HasEscaped(text) ? OwnTree().Store(text, true) : text);
}

TextBuffer VXmlTag::Print() const {
    TextBuffer text;
    PrintTo(text.Extend(PrintedSize()));
    return text;
}

char16_t* VXmlTag::PrintTo(char16_t* out) const {
    if (IsEmpty()) {
        out = CopyUnits(shape_->start, out) - 1;
        return CopyUnits(kEmptyEnd, out);
    }
    out = PrintChildrenTo(CopyUnits(shape_->start, out));
    out = CopyUnits(text_, out);
    return CopyUnits(shape_->name->close, out);
}

char16_t* VXmlTag::PrintChildrenTo(char16_t* out) const {
    if (lastChild_ == nullptr) return out;
    const VXmlTag* child = lastChild_;
    do {
        child = child->next_;
        out = child->PrintTo(out);
    } while (child != lastChild_);
    return out;
}

// Adds what this element prints before `element`, or all that it prints if that is not in it. Tells whether
// it is.
bool VXmlTag::AddOffsetOf(const VXmlTag& element, std::size_t& offset) const {
    if (this == &element) return true;
    const std::size_t begin = offset;
    offset += shape_->start.size();
    const VXmlTag* child = lastChild_;
    while (child != nullptr) {
        child = child->next_;
        if (child->AddOffsetOf(element, offset)) return true;
        if (child == lastChild_) break;
    }
    offset = begin + OwnSize() + ChildrenSize();
    return false;
}

TextBuffer VXmlTagRoot::Print() const {
    TextBuffer text;
    PrintTo(CopyUnits(kDeclaration, text.Extend(PrintedSize())));
    return text;
}

std::size_t VXmlTagRoot::PrintedSize() const { return kDeclaration.size() + VXmlTag::PrintedSize(); }

}  // namespace VSimpleXMLCreation
