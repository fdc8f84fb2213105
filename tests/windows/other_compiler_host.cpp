// A host as Microsoft's compiler builds it, with its standard library in other_compiler_library.h.
//
// Converts set.csv with sets of several sizes and shapes into SHAPE_SIZE.xml, and in.csv by the other
// overloads; lists the worksheets of the workbooks that it is given, and frees the names. Ends with the line
// of what failed.
#include "api/xls2tki.h"
#include "api/xls2tki_c.h"

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

using Set = std::set<std::wstring>;
using Node = Set::Node;
static_assert(__builtin_offsetof(Node, value) == 32);

using namespace NXls2Tki;

#define EXPECT(condition) \
    if (!(condition)) ExitProcess(__LINE__)

namespace {

// The name of a column: its number in four digits and up to 96 more units. The first four have 0 to 3 units.
std::wstring NameOf(int number) {
    std::wstring name{};
    name.size = static_cast<Size>(number <= 3 ? number : 4 + number % 97);
    name.capacity = name.size <= 7 ? 7 : name.size | 7;
    if (name.capacity > 7) name.pointer = static_cast<wchar_t*>(malloc((name.capacity + 1) * 2));
    wchar_t* const units = name.capacity > 7 ? name.pointer : name.units;
    for (Size index = 0; index < name.size; ++index) units[index] = index < 4 ? L'0' : L'x';
    for (Size index = 4; number > 0 && name.size >= 4; number /= 10) units[--index] += number % 10;
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

// The name of a workbook's file is the number of its worksheets; there is none for 0.
void List(Text workbook, std::vector<std::wstring>& names) {
    EXPECT(GetExcelWorksheets(workbook, names));
    long long count = 0;
    for (Text unit = workbook; *unit != 0; ++unit) {
        if (*unit == L'\\') count = 0;
        if (*unit >= L'0' && *unit <= L'9') count = 10 * count + *unit - L'0';
    }
    EXPECT(names.last - names.first == count);
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

// In a thread without OLE, Excel does not start.
void FailWithoutOle(Text workbook) {
    bool hasReason = false;
    Xls2TkiConversion conversion{};
    conversion.size = sizeof conversion;
    conversion.inputPath = workbook;
    conversion.importType = XLS2TKI_EXCEL;
    conversion.messageContext = &hasReason;
    conversion.onMessage = [](void* context, Text message) {
        Text reason = L"Couldn't start Excel. (Code: ' 0x800401f0')\n";
        while (*reason != 0 && *reason == *message) ++reason, ++message;
        if (*reason == 0) *static_cast<bool*>(context) = true;
    };
    EXPECT(!xls2tki_convert(&conversion) && hasReason);
}

void Convert() {
    const Set none = MakeSet(0, 0);
    const Set two = MakeSet(3, 2);
    EXPECT(Xls2TkiConvert(L"set.csv", L"short.xml", ImportTypeCSV, true, L';', false));
    EXPECT(Xls2TkiConvert(L"set.csv", L"two.xml", ImportTypeCSV, false, L';', two, none, false));
    EXPECT(Xls2TkiConvert(L"set.csv", L"three.xml", ImportTypeCSV, false, L';', two, none, none, L"V", L"D",
                          false));
    EXPECT(GetLoggedMessages()[0] == L'[');
    EXPECT(!Xls2TkiConvert(L"missing.csv", L"short.xml", ImportTypeCSV, false, L';', false) &&
           GetLoggedMessages()[0] == L'E');
    const int sizes[] = {0, 1, 7, 8, 1000};
    for (int shape = 0; shape < 3; ++shape) {
        for (int index = 0; index < 5; ++index) {
            wchar_t output[] = L"0_0.xml";
            output[0] += static_cast<wchar_t>(shape);
            output[2] += static_cast<wchar_t>(index);
            EXPECT(Xls2TkiConvert(L"set.csv", nullptr, output, ImportTypeCSV, false, L';',
                                  MakeSet(sizes[index], shape), none, none, L"", L"", true));
        }
    }
}

}  // namespace

extern "C" void mainCRTStartup() {
    int count = 0;
    Text* const arguments = CommandLineToArgvW(GetCommandLineW(), &count);
    EXPECT(count > 1);
    FailWithoutOle(arguments[1]);
    EXPECT(XlsInitOle(true));
    Convert();
    std::vector<std::wstring> names{};
    for (int index = 1; index < count; ++index)
        List(arguments[index], names);  // each list replaces the one before
    if (names.first != nullptr) Clear(names);
    ExitProcess(0);
}
