#include "document/xml_tag.h"

#include <algorithm>
#include <charconv>
#include <forward_list>
#include <memory>
#include <new>
#include <string>

#include "document/xml_escape.h"
#include "platform/run_store.h"

namespace VSimpleXMLCreation {

using NPlatform::TextBuffer;

struct VXmlTag::Attribute {
    const Attribute* next;     // by name
    std::u16string_view text;  // name="value" and a blank, within the shape's start
    std::size_t nameSize;

    [[nodiscard]] std::u16string_view NameText() const { return text.substr(0, nameSize); }
};

// What an element prints around its content. Shapes never change once they are made, so that elements share
// them.
struct VXmlTag::Shape {
    const Name* name;
    const Attribute* attributes;
    std::u16string_view start;  // <NAME a="1" > or <NAME>
};

struct VXmlTag::Name {
    Tree* tree;
    std::u16string start;  // <NAME>
    std::u16string close;  // </NAME> and a line feed
    Shape shape;           // without attributes

    [[nodiscard]] std::u16string_view Text() const {
        return std::u16string_view(start).substr(1, start.size() - 2);
    }
};

struct VXmlTag::Tree {
    explicit Tree(const VXmlTag* root) : owner(root) {}

    const VXmlTag* const owner;
    std::size_t printedSize = 0;
    std::forward_list<Name> names;
    NPlatform::RunStore<char16_t> units;
    NPlatform::RunStore<std::uint64_t> nodes;

    char16_t* AllocateUnits(std::size_t count) {
        units.Extend(count);
        return units.Close();
    }

    // The node is never destroyed: it owns nothing outside the tree.
    template <typename Node, typename... Arguments>
    Node* Make(Arguments&&... arguments) {
        static_assert(sizeof(Node) % sizeof(std::uint64_t) == 0 && alignof(Node) <= alignof(std::uint64_t));
        nodes.Extend(sizeof(Node) / sizeof(std::uint64_t));
        return new (nodes.Close()) Node{std::forward<Arguments>(arguments)...};
    }

    const Shape* ShapeOf(std::u16string_view name);
    const Shape* WithAttribute(const Shape& shape, std::u16string_view name, std::u16string_view value,
                               bool escape, bool& isNew);
    std::u16string_view Store(std::u16string_view text, bool escape);
};

// A state of the tree that it can come back to.
struct VXmlTag::Mark {
    explicit Mark(const Tree& tree)
        : printedSize(tree.printedSize), units(tree.units.MarkHere()), nodes(tree.nodes.MarkHere()) {}

    std::size_t printedSize;
    NPlatform::RunStore<char16_t>::Mark units;
    NPlatform::RunStore<std::uint64_t>::Mark nodes;
};

namespace {

constexpr std::u16string_view kDeclaration = u"<?xml version=\"1.0\" encoding=\"utf-8\" ?>\n";
constexpr std::u16string_view kEmptyEnd = u"/>\n";

char16_t* CopyUnits(std::u16string_view text, char16_t* out) {
    return std::copy_n(text.data(), text.size(), out);
}

}  // namespace

const VXmlTag::Shape* VXmlTag::Tree::ShapeOf(std::u16string_view name) {
    for (const Name& known : names) {
        if (known.Text() == name) return &known.shape;
    }
    const std::u16string copy(name);
    Name& added = names.emplace_front(Name{this, u"<" + copy + u">", u"</" + copy + u">\n", {}});
    added.shape = {&added, nullptr, added.start};
    return &added.shape;
}

// The shape with the attribute in its place among the others, which are copied.
const VXmlTag::Shape* VXmlTag::Tree::WithAttribute(const Shape& shape, std::u16string_view name,
                                                   std::u16string_view value, bool escape, bool& isNew) {
    const std::size_t size =
        shape.start.size() + name.size() + (escape ? EscapedSize(value) : value.size()) + 5;
    char16_t* const start = AllocateUnits(size);
    char16_t* out = CopyUnits(shape.name->start, start);
    out[-1] = u' ';
    const Attribute* first = nullptr;
    const Attribute** link = &first;
    const auto add = [&](const char16_t* begin, std::size_t nameSize) {
        auto* const added = Make<Attribute>(nullptr, std::u16string_view(begin, out), nameSize);
        *link = added;
        link = &added->next;
    };
    const auto copy = [&](const Attribute& attribute) {
        const char16_t* const begin = out;
        out = CopyUnits(attribute.text, out);
        add(begin, attribute.nameSize);
    };
    const Attribute* other = shape.attributes;
    for (; other != nullptr && other->NameText() < name; other = other->next) copy(*other);
    const char16_t* const begin = out;
    out = CopyUnits(u"=\"", CopyUnits(name, out));
    out = CopyUnits(u"\" ", escape ? CopyEscaped(value, out) : CopyUnits(value, out));
    add(begin, name.size());
    isNew = other == nullptr || other->NameText() != name;
    if (!isNew) other = other->next;
    for (; other != nullptr; other = other->next) copy(*other);
    *out++ = u'>';
    return Make<Shape>(shape.name, first, std::u16string_view(start, out));
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

VXmlPrinter::VXmlPrinter(const VXmlTagRoot& root, VXmlTag& growing)
    : growing_(growing),
      mark_(std::make_unique<VXmlTag::Mark>(root.OwnTree())),
      skeleton_(root.Print()),
      offset_(kDeclaration.size()) {
    root.AddOffsetOf(growing, offset_);
    text_.Append(skeleton_.View().substr(0, offset_));
}

VXmlPrinter::~VXmlPrinter() = default;

void VXmlPrinter::PrintChildren() {
    if (growing_.lastChild_ == nullptr) return;
    if (!hasChildren_) text_.Append(growing_.shape_->start);
    hasChildren_ = true;
    VXmlTag::Tree& tree = growing_.OwnTree();
    growing_.PrintChildrenTo(text_.Extend(tree.printedSize - mark_->printedSize - growing_.ContentCost()));
    growing_.lastChild_ = nullptr;
    tree.printedSize = mark_->printedSize;
    tree.units.GoBack(mark_->units);
    tree.nodes.GoBack(mark_->nodes);
}

std::size_t VXmlPrinter::PrintedSize() const {
    const std::size_t pending = growing_.OwnTree().printedSize - mark_->printedSize;
    if (!hasChildren_) return skeleton_.Size() + pending;
    const std::size_t empty = growing_.shape_->start.size() - 1 + kEmptyEnd.size();
    const std::size_t content = pending == 0 ? 0 : pending - growing_.ContentCost();
    return text_.Size() + content + growing_.shape_->name->close.size() + skeleton_.Size() - offset_ - empty;
}

TextBuffer VXmlPrinter::Finish() {
    PrintChildren();
    std::u16string_view rest = skeleton_.View().substr(offset_);
    if (hasChildren_) {
        rest.remove_prefix(growing_.OwnSize());
        text_.Append(growing_.shape_->name->close);
    }
    text_.Append(rest);
    return std::move(text_);
}

}  // namespace VSimpleXMLCreation
