#include "document/xml_tag.h"

#include <algorithm>
#include <charconv>
#include <forward_list>
#include <memory_resource>
#include <new>
#include <string>

namespace VSimpleXMLCreation {

using NPlatform::TextBuffer;

// Lists of attributes never change once they are made, so that elements may share them.
struct VXmlTag::Attribute {
    const Attribute* next;
    std::u16string_view text;  // as printed: name="value" and a blank
    std::size_t nameSize;

    [[nodiscard]] std::u16string_view NameText() const { return text.substr(0, nameSize); }
};

struct VXmlTag::Name {
    Tree* tree;
    std::u16string open;   // <NAME
    std::u16string close;  // </NAME> and a line feed
};

struct VXmlTag::Tree {
    explicit Tree(const VXmlTag* root) : owner(root) {}

    const VXmlTag* const owner;
    std::size_t printedSize = 0;
    std::forward_list<Name> names;
    std::pmr::monotonic_buffer_resource memory;

    template <typename T>
    T* Allocate(std::size_t count) {
        return static_cast<T*>(memory.allocate(count * sizeof(T), alignof(T)));
    }

    const Name* FindOrAddName(std::u16string_view text);
    std::u16string_view Store(std::u16string_view text, bool escape);
    Attribute MakeAttribute(std::u16string_view name, std::u16string_view value, bool escape);
    const Attribute* Insert(const Attribute* list, Attribute added, bool& isNew);
};

namespace {

constexpr std::u16string_view kEmptyEnd = u"/>\n";

std::size_t EscapedSize(std::u16string_view text) {
    std::size_t size = text.size();
    for (const char16_t unit : text) size += unit == u'&' ? 4U : (unit == u'<' || unit == u'>' ? 3U : 0U);
    return size;
}

char16_t* CopyUnits(std::u16string_view text, char16_t* out) {
    return std::copy_n(text.data(), text.size(), out);
}

char16_t* CopyEscaped(std::u16string_view text, char16_t* out) {
    for (const char16_t unit : text) {
        if (unit == u'&') {
            out = CopyUnits(u"&amp;", out);
        } else if (unit == u'<') {
            out = CopyUnits(u"&lt;", out);
        } else if (unit == u'>') {
            out = CopyUnits(u"&gt;", out);
        } else {
            *out++ = unit;
        }
    }
    return out;
}

}  // namespace

const VXmlTag::Name* VXmlTag::Tree::FindOrAddName(std::u16string_view text) {
    const auto found = std::find_if(names.begin(), names.end(), [text](const Name& name) {
        return std::u16string_view(name.open).substr(1) == text;
    });
    if (found != names.end()) return &*found;
    const std::u16string copy(text);
    return &names.emplace_front(Name{this, u"<" + copy, u"</" + copy + u">\n"});
}

std::u16string_view VXmlTag::Tree::Store(std::u16string_view text, bool escape) {
    const std::size_t size = escape ? EscapedSize(text) : text.size();
    auto* const units = Allocate<char16_t>(size);
    if (size == text.size()) {
        CopyUnits(text, units);
    } else {
        CopyEscaped(text, units);
    }
    return {units, size};
}

VXmlTag::Attribute VXmlTag::Tree::MakeAttribute(std::u16string_view name, std::u16string_view value,
                                                bool escape) {
    const std::size_t size = name.size() + 2 + (escape ? EscapedSize(value) : value.size()) + 2;
    auto* const units = Allocate<char16_t>(size);
    char16_t* out = CopyUnits(u"=\"", CopyUnits(name, units));
    out = escape ? CopyEscaped(value, out) : CopyUnits(value, out);
    CopyUnits(u"\" ", out);
    return {nullptr, {units, size}, name.size()};
}

// The list with the attribute in its place; what stands before that place is copied.
const VXmlTag::Attribute* VXmlTag::Tree::Insert(const Attribute* list, Attribute added, bool& isNew) {
    isNew = list == nullptr || added.NameText() < list->NameText();
    Attribute first = added;
    if (isNew) {
        first.next = list;
    } else if (added.NameText() == list->NameText()) {
        first.next = list->next;
    } else {
        first = *list;
        first.next = Insert(list->next, added, isNew);
    }
    return new (Allocate<Attribute>(1)) Attribute(first);
}

VXmlTag::VXmlTag(std::u16string_view name) {
    auto tree = std::make_unique<Tree>(this);
    name_ = tree->FindOrAddName(name);
    tree.release()->printedSize = OwnSize();
}

VXmlTag::~VXmlTag() {
    if (OwnTree().owner == this) delete &OwnTree();
}

VXmlTag::Tree& VXmlTag::OwnTree() const {
    return *name_->tree;
}

std::size_t VXmlTag::TreeSize() const {
    return OwnTree().owner == this ? OwnTree().printedSize : 0;
}

// What the element itself adds to the printed text.
std::size_t VXmlTag::OwnSize() const {
    std::size_t size = name_->open.size();
    if (attributes_ != nullptr) ++size;
    for (const Attribute* attribute = attributes_; attribute != nullptr; attribute = attribute->next) {
        size += attribute->text.size();
    }
    return size + (IsEmpty() ? kEmptyEnd.size() : 1 + text_.size() + name_->close.size());
}

// Makes the change and keeps the size of the printed tree true.
template <typename Change>
void VXmlTag::Account(Change change) {
    std::size_t& size = OwnTree().printedSize;
    size -= OwnSize();
    change();
    size += OwnSize();
}

VXmlTag* VXmlTag::Adopt(const Name* name, const Attribute* attributes) {
    auto* const child = new (OwnTree().Allocate<VXmlTag>(1)) VXmlTag(name, attributes);
    OwnTree().printedSize += child->OwnSize();
    Account([this, child] {
        child->next_ = lastChild_ == nullptr ? child : lastChild_->next_;
        if (lastChild_ != nullptr) lastChild_->next_ = child;
        lastChild_ = child;
    });
    return child;
}

VXmlTag* VXmlTag::AddChild(std::u16string_view name) {
    return Adopt(OwnTree().FindOrAddName(name), nullptr);
}

VXmlTag* VXmlTag::AddChildLike(const VXmlTag& model) {
    return Adopt(model.name_, model.attributes_);
}

bool VXmlTag::SetAttribute(std::u16string_view name, std::u16string_view value, bool escape) {
    bool isNew = false;
    const Attribute added = OwnTree().MakeAttribute(name, value, escape);
    Account([&] { attributes_ = OwnTree().Insert(attributes_, added, isNew); });
    return isNew;
}

bool VXmlTag::SetNumberAttribute(std::u16string_view name, std::int32_t value) {
    char digits[12];
    char16_t units[sizeof digits];
    const char* const end = std::to_chars(digits, digits + sizeof digits, value).ptr;
    const char16_t* const unitsEnd = std::copy(static_cast<const char*>(digits), end, units);
    return SetAttribute(name, {units, unitsEnd}, false);
}

void VXmlTag::SetText(std::u16string_view text, bool escape) {
    const std::u16string_view stored = OwnTree().Store(text, escape);
    Account([this, stored] { text_ = stored; });
}

void VXmlTag::ReferToText(std::u16string_view text) {
    const std::u16string_view stored = EscapedSize(text) == text.size() ? text : OwnTree().Store(text, true);
    Account([this, stored] { text_ = stored; });
}

TextBuffer VXmlTag::Print() const {
    TextBuffer text;
    text.Reserve(TreeSize());
    PrintTo(text);
    return text;
}

void VXmlTag::PrintTo(TextBuffer& out) const {
    out.Append(name_->open);
    if (attributes_ != nullptr) out.Append(u" ");
    for (const Attribute* attribute = attributes_; attribute != nullptr; attribute = attribute->next) {
        out.Append(attribute->text);
    }
    if (IsEmpty()) {
        out.Append(kEmptyEnd);
        return;
    }
    out.Append(u">");
    if (lastChild_ != nullptr) {
        const VXmlTag* child = lastChild_;
        do {
            child = child->next_;
            child->PrintTo(out);
        } while (child != lastChild_);
    }
    out.Append(text_);
    out.Append(name_->close);
}

TextBuffer VXmlTagRoot::Print() const {
    constexpr std::u16string_view kDeclaration = u"<?xml version=\"1.0\" encoding=\"utf-8\" ?>\n";
    TextBuffer text;
    text.Reserve(kDeclaration.size() + TreeSize());
    text.Append(kDeclaration);
    PrintTo(text);
    return text;
}

}  // namespace VSimpleXMLCreation
