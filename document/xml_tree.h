// What an element tree is made of. For the files of the tree alone.
#pragma once

#include <algorithm>
#include <cstdint>
#include <forward_list>
#include <new>
#include <string>
#include <string_view>
#include <utility>

#include "document/xml_tag.h"
#include "platform/run_store.h"

namespace VSimpleXMLCreation {

inline constexpr std::u16string_view kDeclaration = u"<?xml version=\"1.0\" encoding=\"utf-8\" ?>\n";
inline constexpr std::u16string_view kEmptyEnd = u"/>\n";

// Returns the place after the copy.
inline char16_t* CopyUnits(std::u16string_view text, char16_t* out) {
    return std::copy_n(text.data(), text.size(), out);
}

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

    class StartWriter;

    const Shape* ShapeOf(std::u16string_view name);
    const Shape* WithAttribute(const Shape& shape, std::u16string_view name, std::u16string_view value,
                               bool escape, bool& isNew);
    std::u16string_view Store(std::u16string_view text, bool escape);
};

// A state of the tree that it can come back to.
struct VXmlTag::Mark {
    explicit Mark(const Tree& tree) : units(tree.units.MarkHere()), nodes(tree.nodes.MarkHere()) {}

    NPlatform::RunStore<char16_t>::Mark units;
    NPlatform::RunStore<std::uint64_t>::Mark nodes;
};

}  // namespace VSimpleXMLCreation
