// Microsoft's standard library is not at hand: what xls2tki.h takes of it is laid out here as its public
// sources do in release builds, and declared so that the compiler decorates it.
#pragma once

using Size = unsigned long long;

namespace std {
using int32_t = int;
template <class Unit>
struct char_traits;
template <class Value>
class allocator;
template <class Value = void>
struct less;
template <class Unit, class Traits = char_traits<Unit>, class Allocator = allocator<Unit>>
class basic_string {
  public:
    union {
        Unit units[8];
        Unit* pointer;
    };
    Size size;
    Size capacity;
};
using wstring = basic_string<wchar_t>;
template <class Value, class Order = less<Value>, class Allocator = allocator<Value>>
class set {
  public:
    struct Node {
        Node *left, *parent, *right;
        char colour, isNil;
        Value value;
    };
    Node* head;
    Size size;
};
template <class Value, class Allocator = allocator<Value>>
class vector {
  public:
    Value *first, *last, *end;
};
}  // namespace std
