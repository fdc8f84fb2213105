// A host as Microsoft's compiler builds it. Its standard library is not at hand: what the exports take of it
// is laid out here as its public sources do in release builds, and declared so that the compiler decorates
// it.
//
// Converts set.csv with sets of several sizes and shapes into SHAPE_SIZE.xml, and in.csv by the other
// overloads; lists the worksheets of the workbooks that it is given, and frees the names. Ends with the line
// of what failed.
using Size = unsigned long long;
using Word = Size;
using Text = const wchar_t*;

extern "C" {
__declspec(dllimport) void* malloc(Size);
__declspec(dllimport) void free(void*);
__declspec(dllimport) void ExitProcess(unsigned);
__declspec(dllimport) Text GetCommandLineW();
__declspec(dllimport) Text* CommandLineToArgvW(Text, int*);
int _fltused = 0;
void* memset(void* begin, int value, Size count) {
    for (volatile char* byte = static_cast<char*>(begin); count > 0; --count)
        *byte++ = static_cast<char>(value);
    return begin;
}
void* memcpy(void* to, const void* from, Size count) {
    for (Size index = 0; index < count; ++index)
        static_cast<volatile char*>(to)[index] = static_cast<const char*>(from)[index];
    return to;
}
}

namespace std {
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

using Set = std::set<std::wstring>;
using Node = Set::Node;
static_assert(__builtin_offsetof(Node, value) == 32);

namespace NXls2Tki {
enum VImportType : int { Odbc, Excel, Csv };
#define IMPORT __declspec(dllimport)
IMPORT bool XlsInitOle(bool);
IMPORT bool Xls2TkiConvert(Text, Text, Text, VImportType, bool, wchar_t, const Set&, const Set&, const Set&,
                           Text, Text, bool);
IMPORT bool Xls2TkiConvert(Text, Text, VImportType, bool, wchar_t, bool);
IMPORT bool Xls2TkiConvert(Text, Text, VImportType, bool, wchar_t, const Set&, const Set&, bool);
IMPORT bool Xls2TkiConvert(Text, Text, VImportType, bool, wchar_t, const Set&, const Set&, const Set&, Text,
                           Text, bool);
IMPORT bool GetExcelWorksheets(Text, std::vector<std::wstring>&);
IMPORT Text GetLoggedMessages();
}  // namespace NXls2Tki
using namespace NXls2Tki;

#define EXPECT(condition) \
    if (!(condition)) ExitProcess(__LINE__)

namespace {

// The name of a column: its number, and 0 to 100 more units. The first is empty.
std::wstring NameOf(int number) {
    std::wstring name{};
    name.size = number == 0 ? 0 : 4 + static_cast<Size>(number) % 97;
    name.capacity = name.size <= 7 ? 7 : name.size | 7;
    if (name.capacity > 7) name.pointer = static_cast<wchar_t*>(malloc((name.capacity + 1) * 2));
    wchar_t* const units = name.capacity > 7 ? name.pointer : name.units;
    for (Size index = 0; index < name.size; ++index) units[index] = L'x';
    for (Size index = 0; index < 4 && name.size > 0; ++index, number /= 10)
        units[3 - index] = L'0' + number % 10;
    units[name.size] = 0;
    return name;
}

// Of the numbers from `begin` to `end`; the root is the first one, the last one or the one in the middle.
Node* MakeTree(Node* head, Node* parent, int begin, int end, int shape) {
    if (begin == end) return head;
    const int number = shape == 0 ? begin : shape == 1 ? end - 1 : (begin + end) / 2;
    auto* const node = static_cast<Node*>(malloc(sizeof(Node)));
    node->parent = parent;
    node->isNil = 0;
    node->value = NameOf(number);
    node->left = MakeTree(head, node, begin, number, shape);
    node->right = MakeTree(head, node, number + 1, end, shape);
    return node;
}

Set MakeSet(int size, int shape) {
    auto* const head = static_cast<Node*>(malloc(sizeof(Node)));
    head->isNil = 1;
    head->parent = MakeTree(head, head, 0, size, shape);
    head->left = head->right = head->parent;
    while (!head->left->left->isNil) head->left = head->left->left;
    while (!head->right->right->isNil) head->right = head->right->right;
    return {head, static_cast<Size>(size)};
}

void Free(void* values, Size bytes) {
    if (bytes < 4096) return free(values);
    const Word block = static_cast<Word*>(values)[-1];
    const Word distance = reinterpret_cast<Word>(values) - block;
    EXPECT(reinterpret_cast<Word>(values) % 32 == 0 && distance >= 8 && distance <= 39);
    free(reinterpret_cast<void*>(block));
}

void List(Text workbook, std::vector<std::wstring>& names) {
    EXPECT(GetExcelWorksheets(workbook, names));
    for (std::wstring* name = names.first; name != names.last; ++name) {
        const wchar_t* const units = name->capacity > 7 ? name->pointer : name->units;
        EXPECT(name->size > 0 && name->size <= name->capacity && units[0] == L'S' && units[name->size] == 0);
    }
}

void Clear(std::vector<std::wstring>& names) {
    for (std::wstring* name = names.first; name != names.last; ++name) {
        if (name->capacity > 7) Free(name->pointer, (name->capacity + 1) * 2);
    }
    Free(names.first,
         static_cast<Size>(reinterpret_cast<char*>(names.end) - reinterpret_cast<char*>(names.first)));
}

void Convert() {
    const Set none = MakeSet(0, 0);
    const Set two = MakeSet(3, 2);
    EXPECT(Xls2TkiConvert(L"set.csv", L"short.xml", Csv, true, L';', false));
    EXPECT(Xls2TkiConvert(L"set.csv", L"two.xml", Csv, false, L';', two, none, false));
    EXPECT(Xls2TkiConvert(L"set.csv", L"three.xml", Csv, false, L';', two, none, none, L"V", L"D", false));
    EXPECT(GetLoggedMessages()[0] == L'[');
    EXPECT(!Xls2TkiConvert(L"missing.csv", L"short.xml", Csv, false, L';', false) &&
           GetLoggedMessages()[0] == L'E');
    const int sizes[] = {0, 1, 7, 8, 1000};
    for (int shape = 0; shape < 3; ++shape) {
        for (int index = 0; index < 5; ++index) {
            wchar_t output[] = L"0_0.xml";
            output[0] += static_cast<wchar_t>(shape);
            output[2] += static_cast<wchar_t>(index);
            EXPECT(Xls2TkiConvert(L"set.csv", nullptr, output, Csv, false, L';', MakeSet(sizes[index], shape),
                                  none, none, L"", L"", true));
        }
    }
}

}  // namespace

extern "C" void mainCRTStartup() {
    int count = 0;
    Text* const arguments = CommandLineToArgvW(GetCommandLineW(), &count);
    EXPECT(XlsInitOle(true));
    Convert();
    std::vector<std::wstring> names{};
    for (int index = 1; index < count; ++index)
        List(arguments[index], names);  // each list replaces the one before
    if (names.first != nullptr) Clear(names);
    ExitProcess(0);
}
