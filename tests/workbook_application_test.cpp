#include <gtest/gtest.h>

#include <limits>

#include "platform/format.h"
#include "tests/made_workbook.h"
#include "workbook/application.h"
#include "workbook/dispatch_ids.h"
#include "workbook/file_formats.h"

namespace {

using namespace std::string_literals;
using namespace NWorkbook;
using NPlatform::Dispatch;
using NPlatform::DispatchException;
using NPlatform::Variant;
using NPlatform::VariantType;
using NTest::TempFolder;
namespace Ids = DispatchIds;

// The sentence with which the call is refused, if any.
template <typename Call>
std::u16string RefusalOf(Call call) {
    try {
        call();
    } catch (const DispatchException& exception) {
        EXPECT_EQ(exception.Code(), 1004);
        EXPECT_EQ(exception.Source(), u"xls2tki");
        return exception.Description();
    }
    return u"";
}

// The status with which the call does not reach the application, if any.
template <typename Call>
std::int32_t StatusOf(Call call) {
    try {
        call();
    } catch (const NPlatform::OleException& exception) {
        return exception.Status();
    }
    return 0;
}

std::vector<std::string> NamesIn(const TempFolder& folder) {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder.Path(""))) {
        names.push_back(entry.path().filename().string());
    }
    return names;
}

Variant Text(std::u16string_view text) { return Variant::String(text); }

// Values in the words of these tests: numbers are whole, a b stands before truth values, a text is quoted.
std::u16string Words(const Variant& value) {
    std::u16string words = value.Type() == VariantType::Bool ? u"b" : u"";
    if (value.IsEmpty()) return u"-";
    if (value.Type() == VariantType::String) return words.append(u"'").append(value.AsString()).append(u"'");
    const int number =
        value.Type() == VariantType::Bool ? value.AsBool() : static_cast<int>(value.AsDouble());
    return words.append(NPlatform::Format(16, u"%d", {number}));
}

std::u16string Words(const NPlatform::VariantElement& element) {
    switch (element.type) {
        case VariantType::Empty:
            return Words(Variant());
        case VariantType::String:
            return Words(Variant::String(element.text));
        case VariantType::Bool:
            return Words(Variant::Bool(element.integer != 0));
        default:
            return Words(Variant::Double(element.number));
    }
}

std::u16string Words(const NPlatform::VariantArray& array) {
    std::u16string words;
    for (std::int32_t row = 1; row <= array.UpperBound(1); ++row) {
        for (std::int32_t column = 1; column <= array.UpperBound(2); ++column) {
            words.append(Words(array.At(row, column))).append(u" ");
        }
        words.append(u"| ");
    }
    return words;
}

class WorkbookApplication : public testing::Test {
  protected:
    Dispatch Sheet(const Variant& index) const { return sheets.Get(Ids::Sheets::kItem, {index}).AsObject(); }
    std::u16string Names() const {
        std::u16string names;
        for (std::int32_t index = 1; index <= sheets.Get(Ids::Sheets::kCount).AsInteger(); ++index) {
            names += Sheet(Variant::Int32(index)).Get(Ids::Worksheet::kName).AsString() + u" ";
        }
        return names;
    }
    Dispatch Range(std::u16string_view one, std::u16string_view other) const {
        return Sheet(Variant::Int16(1)).Get(Ids::Worksheet::kRange, {Text(one), Text(other)}).AsObject();
    }
    std::u16string Value(std::u16string_view one, std::u16string_view other) const {
        const Variant value = Range(one, other).Get(Ids::Range::kValue2);
        return value.Type() == VariantType::Array ? Words(value.AsArray()) : Words(value);
    }
    std::u16string UsedRange() const {
        const Variant range = Sheet(Variant::Int16(1)).Get(Ids::Worksheet::kUsedRange);
        return range.AsObject().Get(Ids::Range::kAddress).AsString();
    }
    void Put(std::u16string_view cell, const Variant& value) const {
        Range(cell, cell).Put(Ids::Range::kValue2, value);
    }
    void SaveAs(const std::u16string& path) const { book.Call(Ids::Workbook::kSaveAs11, {Text(path)}); }

    Dispatch application = StartApplication();
    Dispatch books = application.Get(Ids::Application::kWorkbooks).AsObject();
    Dispatch book = books.Call(Ids::Workbooks::kAdd).AsObject();
    Dispatch sheets = book.Get(Ids::Workbook::kWorksheets).AsObject();
};

TEST_F(WorkbookApplication, TakesAndGivesValues) {
    EXPECT_EQ(UsedRange(), u"$A$1");
    Put(u"B2", Text(u"=1"));
    Put(u"D2", Variant::Double(-7));
    Put(u"b4", Variant::Bool(true));
    Put(u"XFD1048576", Variant::Int16(3));
    Put(u"C9", Text(u""));
    Put(u"C3", Variant::Int32(5));
    Put(u"C3", Variant());
    const std::tuple<std::u16string_view, std::u16string_view, std::u16string_view> rows[] = {
        {u"A1", u"A1", u"-"},
        {u"B2", u"B2", u"'=1'"},
        {u"C9", u"C9", u"''"},
        {u"C3", u"C3", u"-"},
        {u"XFD1048576", u"XFD1048576", u"3"},
        {u"XFC1048576", u"XFD1048575", u"- - | - 3 | "},
        {u"A1", u"C1", u"- - - | "},
        {u"D4", u"B2", u"'=1' - -7 | - - - | b1 - - | "},
        {u"B4", u"D2", u"'=1' - -7 | - - - | b1 - - | "},
        {u"C1", u"D4", u"- - | - -7 | - - | - - | "},
        {u"A2", u"E2", u"- '=1' - -7 - | "},
    };
    for (const auto& [one, other, expected] : rows) EXPECT_EQ(Value(one, other), expected);
    EXPECT_EQ(UsedRange(), u"$B$2:$XFD$1048576");

    const Variant before = Range(u"B2", u"C2").Get(Ids::Range::kValue2);
    Range(u"B2", u"C3").Put(Ids::Range::kValue2, Text(u"x"));
    EXPECT_EQ(Value(u"A2", u"C4"), u"- 'x' 'x' | - 'x' 'x' | - b1 - | ");
    book.Call(Ids::Workbook::kClose, {Variant::Int16(0), Variant::Missing(), Variant::Missing()});
    EXPECT_EQ(Words(before.AsArray()), u"'=1' - | ");
}

TEST_F(WorkbookApplication, RefusesWithASentence) {
    for (const char16_t* address : {u"", u"A", u"1", u"A0", u"XFE1", u"A1048577", u"A1 ", u"$$A1", u"A-1",
                                    u"A1:B2", u"$A$1", u"A99999999999999", u"AAAAAAAAAAAA1"}) {
        EXPECT_EQ(RefusalOf([&] { Put(address, Variant()); }),
                  std::u16string(u"'").append(address) +
                      u"' is not the address of a cell between A1 and XFD1048576.");
    }
    const std::u16string nameRule = u"': a name holds none of : \\ / ? * [ ] and no control character.";
    const std::pair<std::u16string, std::u16string> names[] = {
        {u"", u"': a name needs a character."},
        {std::u16string(32, u'x'), u"': a name has at most 31 characters."},
        {u"'a", u"': a name neither begins nor ends with an apostrophe."},
        {u"a'", u"': a name neither begins nor ends with an apostrophe."},
        {u"a/b", nameRule},
        {u"[", nameRule},
        {u"a\tb", nameRule},
        {u"\xD800z", nameRule},
    };
    for (const auto& row : names) {
        EXPECT_EQ(RefusalOf([&] { Sheet(Variant::Int16(1)).Put(Ids::Worksheet::kName, Text(row.first)); }),
                  u"A worksheet cannot be named '" + row.first + row.second);
    }
    const Dispatch sheet = Sheet(Variant::Int16(1));
    sheet.Put(Ids::Worksheet::kName, Text(u"Übersicht Й"));
    sheet.Put(Ids::Worksheet::kName, Text(u"übersicht й"));
    sheets.Call(Ids::Sheets::kAdd);
    const std::pair<std::u16string, std::function<void()>> rows[] = {
        {u"Another worksheet is named 'übersicht й'.",
         [&] { Sheet(Variant::Int32(1)).Put(Ids::Worksheet::kName, Text(u"ÜBERSICHT Й")); }},
        {u"There is no worksheet 0: the workbook has 2.", [&] { Sheet(Variant::Int16(0)); }},
        {u"There is no worksheet 3: the workbook has 2.", [&] { Sheet(Variant::Int16(3)); }},
        {u"The block from A1 to AV1048576 has more than 50 million cells.",
         [&] { Value(u"A1", u"AV1048576"); }},
        {u"The text in cell B7 has more than 32767 characters.",
         [&] { Put(u"B7", Text(std::u16string(32768, u'x'))); }},
        {u"The number in cell B7 is infinite or not a number.",
         [&] { Put(u"B7", Variant::Double(std::numeric_limits<double>::infinity())); }},
        {u"Worksheets can only be added one at a time, before the active one.",
         [&] {
             sheets.Call(Ids::Sheets::kAdd, {Variant::Missing(), Variant::Missing(), Variant::Double(2)});
         }},
        {u"A workbook must be saved before it is closed.",
         [&] { book.Call(Ids::Workbook::kClose, {Variant::Bool(true)}); }},
        {u"The workbook has no file name yet.", [&] { book.Call(Ids::Workbook::kSave); }},
        {u"A workbook can only be saved in the .xlsx format and without a password.",
         [&] {
             book.Call(Ids::Workbook::kSaveAs12, {Text(u"x.xlsx"), Variant::Missing(), Text(u"secret")});
         }},
    };
    for (const auto& [sentence, call] : rows) EXPECT_EQ(RefusalOf(call), sentence);
    EXPECT_EQ(Value(u"B7", u"B7"), u"-");

    const TempFolder folder;
    const std::u16string path = NTest::Zip(
        folder,
        NTest::Small({{"w.xml", "<workbook xmlns='" + std::string(NTest::kMain) + "'><sheets/></workbook>"},
                      {"s.xml", ""}}));
    const Dispatch empty = books.Call(Ids::Workbooks::kOpen13, {Text(path)}).AsObject();
    EXPECT_EQ(empty.Get(Ids::Workbook::kWorksheets).AsObject().Get(Ids::Sheets::kCount).AsInteger(), 0);
    EXPECT_EQ(
        RefusalOf([&] { empty.Call(Ids::Workbook::kSave); }),
        u"The workbook cannot be saved as '" + path +
            u"': another program wrote it, and it may hold more than plain cells. Save into a new workbook.");

    constexpr auto kBadCount = static_cast<std::int32_t>(0x8002000E);
    EXPECT_EQ(StatusOf([&] { sheets.Call(Ids::Sheets::kItem, {Variant::Int16(1)}); }),
              NPlatform::kMemberNotFound);
    EXPECT_EQ(StatusOf([&] { static_cast<void>(sheets.Get(Ids::Sheets::kItem)); }), kBadCount);
    EXPECT_EQ(StatusOf([&] { Sheet(Variant()); }), NPlatform::kTypeMismatch);
    EXPECT_EQ(StatusOf([&] { Put(u"A1", Variant::Missing()); }), NPlatform::kTypeMismatch);
}

TEST_F(WorkbookApplication, AddsAndDeletesWorksheets) {
    EXPECT_EQ(Names(), u"Sheet1 ");
    const auto add = [&](const Variant& count) {
        return sheets.Call(Ids::Sheets::kAdd, {Variant::Missing(), Variant::Missing(), count}).AsObject();
    };
    add(Variant::Double(1)).Put(Ids::Worksheet::kName, Text(u"sheet3"));
    EXPECT_EQ(Names(), u"sheet3 Sheet1 ");
    const Dispatch third = add(Variant::Missing());
    EXPECT_EQ(Names(), u"Sheet4 sheet3 Sheet1 ");
    third.Call(Ids::Worksheet::kDelete);
    add(Variant::Missing());
    EXPECT_EQ(Names(), u"Sheet5 sheet3 Sheet1 ");
    EXPECT_EQ(RefusalOf([&] { third.Call(Ids::Worksheet::kDelete); }), u"The worksheet is deleted.");
    for (int count = 0; count < 2; ++count) Sheet(Variant::Int16(1)).Call(Ids::Worksheet::kDelete);
    EXPECT_EQ(RefusalOf([&] { Sheet(Variant::Int16(1)).Call(Ids::Worksheet::kDelete); }),
              u"The last worksheet cannot be deleted.");
    EXPECT_EQ(Names(), u"Sheet1 ");
}

TEST_F(WorkbookApplication, OutlivesWhatItCameFrom) {
    Put(u"A1", Variant::Int16(1));
    const Dispatch range = Range(u"A1", u"A1");
    const Dispatch other = books.Call(Ids::Workbooks::kAdd, {Variant::Missing()}).AsObject();
    application.Release();
    sheets.Release();
    EXPECT_EQ(Words(range.Get(Ids::Range::kValue2)), u"1");
    book.Call(Ids::Workbook::kClose);
    EXPECT_EQ(RefusalOf([&] { static_cast<void>(range.Get(Ids::Range::kValue2)); }),
              u"The workbook is closed.");
    EXPECT_EQ(RefusalOf([&] { book.Call(Ids::Workbook::kClose); }), u"The workbook is closed.");
    EXPECT_TRUE(other.Get(Ids::Workbook::kWorksheets).AsObject().HasObject());
    books.Call(Ids::Workbooks::kClose);
    EXPECT_EQ(RefusalOf([&] { static_cast<void>(other.Get(Ids::Workbook::kWorksheets)); }),
              u"The workbook is closed.");

    application.Create(u"Excel.Application");
    for (const NPlatform::DispatchId flag :
         {Ids::Application::kVisible, Ids::Application::kDisplayAlerts, Ids::Application::kEnableEvents}) {
        application.Put(flag, Variant::Bool(false));
    }
    application.Put(Ids::Application::kAutomationSecurity, Variant::Int32(3));
    books = application.Get(Ids::Application::kWorkbooks).AsObject();
    application.Call(Ids::Application::kQuit);
    application.Call(Ids::Application::kQuit);
    EXPECT_EQ(RefusalOf([&] { books.Call(Ids::Workbooks::kAdd); }), u"The application has quit.");
}

TEST_F(WorkbookApplication, ReadsWhatItWrote) {
    const TempFolder folder;
    const std::u16string path = folder.Put("an ä.xlsx", "older");
    const Variant values[] = {
        Variant::Double(0.1 + 0.2),
        Variant::Double(1e23),
        Variant::Double(5e-324),
        Variant::Double(-1.0 / 3),
        Variant::Double(std::numeric_limits<double>::max()),
        Variant::Double(9007199254740991),
        Variant::Bool(true),
        Variant::Bool(false),
        Variant(),
        Text(u""),
        Text(u" a "),
        Text(u"\r\n\ta\r"),
        Text(u"=1+1"),
        Text(u"007"),
        Text(u"_x0041__x005F_x0041__x00zz_"),
        Text(u"_x005F__X0041_"s + u'\0' + u"\x1\x1F\x7F\x85\xFFFE\xFFFF"),
        Text(u"\xD83D lone \xDE00"),
        Text(u"<a b=\"😀\">&amp;</a>]]>"),
        Text(std::u16string(32767, u'\x1')),
    };
    sheets.Call(Ids::Sheets::kAdd).AsObject().Put(Ids::Worksheet::kName, Text(u"<&\"_x0041_'ä"));
    const auto row = [](std::size_t index) {
        return NPlatform::Format(16, u"ZZ%d", {static_cast<int>(index) + 1});
    };
    Sheet(Variant::Int16(2))
        .Get(Ids::Worksheet::kRange, {Text(u"XFD1048576"), Text(u"XFD1048576")})
        .AsObject()
        .Put(Ids::Range::kValue2, Text(u"z"));
    for (std::size_t index = 0; index < std::size(values); ++index) Put(row(index), values[index]);
    SaveAs(path);
    Put(u"A1", Text(u"y"));
    book.Call(Ids::Workbook::kSave);

    book = books.Call(Ids::Workbooks::kOpen13, {Text(path)}).AsObject();
    sheets = book.Get(Ids::Workbook::kWorksheets).AsObject();
    EXPECT_EQ(Names(), u"<&\"_x0041_'ä Sheet1 ");
    EXPECT_EQ(Value(u"A1", u"B1"), u"'y' - | ");
    for (std::size_t index = 0; index < std::size(values); ++index) {
        const Variant read = Range(row(index), row(index)).Get(Ids::Range::kValue2);
        ASSERT_EQ(read.Type(), values[index].Type()) << index;
        const bool isNumber = read.Type() == VariantType::Double;
        EXPECT_TRUE(isNumber ? read.AsDouble() == values[index].AsDouble()
                             : Words(read) == Words(values[index]))
            << index;
    }
    EXPECT_EQ(Words(Sheet(Variant::Int16(2))
                        .Get(Ids::Worksheet::kRange, {Text(u"XFD1048576"), Text(u"XFD1048576")})
                        .AsObject()
                        .Get(Ids::Range::kValue2)),
              u"'z'");
    book.Call(Ids::Workbook::kSave);

    // No user can give this name, but a file can have it.
    const std::u16string name = u"_x0041_\t\n\r\xFFFF\xD83D"s + u'\0';
    Workbook strange;
    strange.worksheets.push_back(std::make_shared<Worksheet>(name));
    SaveWorkbook(strange, path);
    EXPECT_EQ(OpenWorkbook(path)->worksheets[0]->Name(), name);
    EXPECT_EQ(NamesIn(folder), std::vector<std::string>{"an ä.xlsx"});
}

TEST_F(WorkbookApplication, KeepsTheFileThatItCannotReplace) {
    const TempFolder folder;
    const std::u16string path = folder.Path("a.xlsx");
    SaveAs(path);
    const std::string bytes = folder.Read("a.xlsx");
    const Variant readOnly =
        books.Call(Ids::Workbooks::kOpen15, {Text(path), Variant::Missing(), Variant::Int16(1)});
    Workbook workbook;
    workbook.worksheets.push_back(std::make_shared<Worksheet>(u"x", [](CellTable& cells) {
        cells.Add({.row = 2, .column = 28, .type = CellType::Error, .error = CellError::Name});
    }));
    const auto save = [&](std::u16string_view place) {
        try {
            SaveWorkbook(workbook, place);
        } catch (const WorkbookError& error) {
            return error.Message();
        }
        return std::u16string();
    };
    EXPECT_EQ(save(path), u"The error value in cell AB2 cannot be saved.");
    EXPECT_EQ(RefusalOf([&] { readOnly.AsObject().Call(Ids::Workbook::kSave); }),
              u"The workbook was opened read-only: '" + path + u"'.");
    EXPECT_EQ(RefusalOf([&] { SaveAs(folder.Path("")); }),
              u"The workbook cannot be saved as '" + folder.Path("") + u"', which is not a file.");
    EXPECT_NE(RefusalOf([&] { SaveAs(folder.Path("none/a.xlsx")); }), u"");
    EXPECT_EQ(folder.Read("a.xlsx"), bytes);
    EXPECT_EQ(NamesIn(folder), std::vector<std::string>{"a.xlsx"});
}

}  // namespace
