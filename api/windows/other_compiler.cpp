// The functions of xls2tki.h for hosts that Microsoft's compiler built, under the names that it gives them.
// Its calling convention is g++'s; its library's types are not, so this file reads and makes them as they lie
// in memory in release builds since 2015:
//
//   std::set      two words: the head node, the number of values. The head's left is the node of the smallest
//                 value; a node whose is-nil byte is set, such as the head, has no value.
//   node          left, parent, right; a byte for the colour, the is-nil byte; the value at offset 32
//   std::wstring  16 bytes with the units or with their pointer, the size, the capacity: at most 7 units are
//                 inside. A zero follows them.
//   std::vector   the first value, the end of the values, the end of the block
//   blocks        of malloc in ucrtbase.dll, which all such hosts share. From 4096 bytes on the values begin
//   at
//                 a multiple of 32, and the word before them has the block's address.
//
// other_compiler.def has the names. No exception can cross: where the function throws, its twin here returns
// false, and the message text has the reason.
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <new>
#include <vector>

#include "api/outcome.h"
#include "api/xls2tki.h"
#include "api/xls2tki_c.h"
#include "platform/host_heap.h"

using namespace NXls2Tki;

namespace {

struct HostString {
    union {
        wchar_t units[8];
        wchar_t* pointer;
    };
    std::size_t size;
    std::size_t capacity;

    [[nodiscard]] bool IsInside() const { return capacity <= 7; }
};

struct HostNode {
    const HostNode* left;
    const HostNode* parent;
    const HostNode* right;
    char colour;
    bool isNil;
    alignas(8) HostString value;
};
static_assert(offsetof(HostNode, value) == 32 && sizeof(HostString) == 32);

struct HostSet {
    const HostNode* head;
    std::size_t size;
};

struct HostVector {
    HostString* first;
    HostString* last;
    HostString* end;
};

const HostNode* NextOf(const HostNode* node) {
    if (!node->right->isNil) {
        node = node->right;
        while (!node->left->isNil) node = node->left;
        return node;
    }
    const HostNode* above = node->parent;
    for (; !above->isNil && node == above->right; above = above->parent) node = above;
    return above;
}

WideStringSet NamesOf(const HostSet& set) {
    WideStringSet names;
    for (const HostNode* node = set.head->left; !node->isNil; node = NextOf(node)) {
        const HostString& value = node->value;
        names.emplace(value.IsInside() ? value.units : value.pointer, value.size);
    }
    return names;
}

constexpr std::size_t kLarge = 4096;
constexpr std::uintptr_t kAlignment = 32;
constexpr std::uintptr_t kExtra = sizeof(void*) + kAlignment - 1;

void* Allocate(std::size_t bytes) {
    if (bytes < kLarge) return NPlatform::AllocateForHost(bytes);
    void* const block = NPlatform::AllocateForHost(bytes + kExtra);
    char* const begin = static_cast<char*>(block) + kExtra;
    char* const values = begin - reinterpret_cast<std::uintptr_t>(begin) % kAlignment;
    std::memcpy(values - sizeof block, &block, sizeof block);
    return values;
}

void Free(void* values, std::size_t bytes) {
    void* block = values;
    if (bytes >= kLarge) std::memcpy(&block, static_cast<char*>(values) - sizeof block, sizeof block);
    NPlatform::FreeOfHost(block);
}

std::size_t BytesOf(const HostString& text) { return (text.capacity + 1) * sizeof(wchar_t); }

void Clear(HostVector& vector) {
    for (HostString* text = vector.first; text != vector.last; ++text) {
        if (!text->IsInside()) Free(text->pointer, BytesOf(*text));
    }
    const auto bytes =
        static_cast<std::size_t>(reinterpret_cast<char*>(vector.end) - reinterpret_cast<char*>(vector.first));
    if (vector.first != nullptr) Free(vector.first, bytes);
    vector = {};
}

void Append(HostVector& vector, const WideString& name) {
    HostString text{};
    text.size = name.size();
    text.capacity = name.size() <= 7 ? 7 : name.size();
    if (!text.IsInside()) text.pointer = static_cast<wchar_t*>(Allocate(BytesOf(text)));
    std::memcpy(text.IsInside() ? text.units : text.pointer, name.c_str(),
                (name.size() + 1) * sizeof(wchar_t));
    *vector.last++ = text;
}

void Replace(HostVector& vector, const std::vector<WideString>& names) {
    if (names.empty()) return Clear(vector);
    HostVector made{};
    made.first = static_cast<HostString*>(Allocate(names.size() * sizeof(HostString)));
    made.last = made.first;
    made.end = made.first + names.size();
    try {
        for (const WideString& name : names) Append(made, name);
    } catch (const std::bad_alloc&) {
        Clear(made);
        throw;
    }
    Clear(vector);
    vector = made;
}

template <typename Operation>
bool Run(Operation operation) noexcept {
    LastOutcome().thrownReason = nullptr;
    try {
        return operation();
    } catch (...) {
        KeepFailure(LastOutcome());
        return false;
    }
}

}  // namespace

extern "C" {

using Text = const WideChar*;

bool HostXlsInitOle(bool silent) { return xls2tki_init_ole(silent); }

bool HostConvert(Text input, Text worksheet, Text output, VImportType type, bool forward, WideChar separator,
                 const HostSet& vsg, const HostSet& second, const HostSet& third, Text variant, Text instance,
                 bool utf8) {
    return Run([&] {
        return Xls2TkiConvert(input, worksheet, output, type, forward, separator, NamesOf(vsg),
                              NamesOf(second), NamesOf(third), variant, instance, utf8);
    });
}

bool HostConvertShort(Text input, Text output, VImportType type, bool forward, WideChar separator,
                      bool utf8) {
    return Run([&] { return Xls2TkiConvert(input, output, type, forward, separator, utf8); });
}

bool HostConvertTwo(Text input, Text output, VImportType type, bool forward, WideChar separator,
                    const HostSet& vsg, const HostSet& second, bool utf8) {
    return Run([&] {
        return Xls2TkiConvert(input, output, type, forward, separator, NamesOf(vsg), NamesOf(second), utf8);
    });
}

bool HostConvertFirst(Text input, Text output, VImportType type, bool forward, WideChar separator,
                      const HostSet& vsg, const HostSet& second, const HostSet& third, Text variant,
                      Text instance, bool utf8) {
    return HostConvert(input, nullptr, output, type, forward, separator, vsg, second, third, variant,
                       instance, utf8);
}

bool HostGetExcelWorksheets(Text path, HostVector& names) {
    return Run([&] {
        std::vector<WideString> found;
        if (!GetExcelWorksheets(path, found)) return false;
        Replace(names, found);
        return true;
    });
}

Text HostGetLoggedMessages() { return xls2tki_message(); }

}  // extern "C"
