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

// The sentence with which the call is refused, or the status with which it does not reach the application.
template <typename Call>
std::u16string RefusalOf(Call call) {
    try {
        call();
    } catch (const DispatchException& exception) {
        return exception.Code() == 1004 && exception.Source() == u"xls2tki" ? exception.Description() : u"?";
    } catch (const NPlatform::OleException& exception) {
        return NPlatform::Format(16, u"%d", {exception.Status()});
    }
    return u"";
}

std::ptrdiff_t FilesIn(const TempFolder& folder) {
    return std::distance(std::filesystem::directory_iterator(folder.Path("")), {});
}

Variant Text(std::u16string_view text) { return Variant::String(text); }

// Values in the words of these tests: numbers are whole, a b stands before truth values, a text is quoted.
std::u16string Words(const Variant& value) {
    std::u16string words;
    switch (value.Type()) {
        case VariantType::Empty:
            return u"-";
        case VariantType::String:
            return words.append(u"'").append(value.AsString()).append(u"'");
        case VariantType::Bool:
            return value.AsBool() ? u"b1" : u"b0";
        case VariantType::Array:
            for (std::int32_t row = 1; row <= value.AsArray().UpperBound(1); ++row, words += u"| ") {
                for (std::int32_t column = 1; column <= value.AsArray().UpperBound(2); ++column) {
                    words.append(Words(Variant::Of(value.AsArray().At(row, column)))).append(u" ");
                }
            }
            return words;
        default:
            return NPlatform::Format(16, u"%d", {static_cast<int>(value.AsDouble())});
    }
}

class WorkbookApplication : public testing::Test {
  protected:
    Dispatch Sheet(std::int16_t index) const { return Sheet(Variant::Int16(index)); }
    Dispatch Sheet(const Variant& index) const { return sheets.Get(Ids::Sheets::kItem, {index}).AsObject(); }
    std::u16string Names() const {
        std::u16string names;
        for (std::int16_t index = 1; index <= sheets.Get(Ids::Sheets::kCount).AsInteger(); ++index) {
            names += Sheet(index).Get(Ids::Worksheet::kName).AsString() + u" ";
        }
        return names;
    }
    Dispatch Range(std::u16string_view one, std::u16string_view other, std::int16_t sheet = 1) const {
        return Sheet(sheet).Get(Ids::Worksheet::kRange, {Text(one), Text(other)}).AsObject();
    }
    std::u16string Value(std::u16string_view one, std::u16string_view other, std::int16_t sheet = 1) const {
        return Words(Range(one, other, sheet).Get(Ids::Range::kValue2));
    }
    std::u16string UsedRange() const {
        const Variant range = Sheet(1).Get(Ids::Worksheet::kUsedRange);
        return range.AsObject().Get(Ids::Range::kAddress).AsString();
    }
    void Put(std::u16string_view cell, const Variant& value) const {
        Range(cell, cell).Put(Ids::Range::kValue2, value);
    }
    void Name(std::int16_t sheet, std::u16string_view name) const {
        Sheet(sheet).Put(Ids::Worksheet::kName, Text(name));
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
    EXPECT_EQ(Words(before), u"'=1' - | ");
}

TEST_F(WorkbookApplication, RefusesWithASentence) {
    const auto name = [](std::u16string_view text, std::u16string_view reason) {
        return std::u16string(u"A worksheet cannot be named '").append(text).append(u"': ").append(reason);
    };
    const std::u16string_view rule = u"a name holds none of : \\ / ? * [ ] and no control character.";
    const std::u16string_view apostrophe = u"a name neither begins nor ends with an apostrophe.";
    const std::u16string tooLong(32, u'x');
    const Variant none = Variant::Missing();
    const std::u16string badCount = NPlatform::Format(16, u"%d", {static_cast<int>(0x8002000E)});
    const std::u16string badType = NPlatform::Format(16, u"%d", {NPlatform::kTypeMismatch});
    const std::u16string noMember = NPlatform::Format(16, u"%d", {NPlatform::kMemberNotFound});
    Name(1, u"Übersicht Й");
    Name(1, u"übersicht й");
    sheets.Call(Ids::Sheets::kAdd);
    const TempFolder folder;
    const std::u16string foreign = NTest::Zip(
        folder,
        NTest::Small({{"w.xml", "<workbook xmlns='" + std::string(NTest::kMain) + "'><sheets/></workbook>"},
                      {"s.xml", ""}}));
    const Dispatch empty = books.Call(Ids::Workbooks::kOpen13, {Text(foreign)}).AsObject();
    EXPECT_EQ(empty.Get(Ids::Workbook::kWorksheets).AsObject().Get(Ids::Sheets::kCount).AsInteger(), 0);
    const std::pair<std::u16string, std::function<void()>> rows[] = {
        {u"'A1048577' is not the address of a cell between A1 and XFD1048576.",
         [&] { Put(u"A1048577", Variant()); }},
        {name(u"", u"a name needs a character."), [&] { Name(1, u""); }},
        {name(tooLong, u"a name has at most 31 characters."), [&] { Name(1, tooLong); }},
        {name(u"'a", apostrophe), [&] { Name(1, u"'a"); }},
        {name(u"a'", apostrophe), [&] { Name(1, u"a'"); }},
        {name(u"[", rule), [&] { Name(1, u"["); }},
        {name(u"a\tb", rule), [&] { Name(1, u"a\tb"); }},
        {name(u"\xD800z", rule), [&] { Name(1, u"\xD800z"); }},
        {u"Another worksheet is named 'übersicht й'.", [&] { Name(1, u"ÜBERSICHT Й"); }},
        {u"There is no worksheet 0: the workbook has 2.", [&] { Sheet(0); }},
        {u"There is no worksheet 3: the workbook has 2.", [&] { Sheet(3); }},
        {u"The block from A1 to AV1048576 has more than 50 million cells.",
         [&] { Value(u"A1", u"AV1048576"); }},
        {u"The text in cell B7 has more than 32767 characters.",
         [&] { Put(u"B7", Text(std::u16string(32768, u'x'))); }},
        {u"The number in cell B7 is infinite or not a number.",
         [&] { Put(u"B7", Variant::Double(std::numeric_limits<double>::infinity())); }},
        {u"Worksheets can only be added one at a time, before the active one.",
         [&] {
             sheets.Call(Ids::Sheets::kAdd, {none, none, Variant::Double(2)});
         }},
        {u"A workbook must be saved before it is closed.",
         [&] { book.Call(Ids::Workbook::kClose, {Variant::Bool(true)}); }},
        {u"The workbook has no file name yet.", [&] { book.Call(Ids::Workbook::kSave); }},
        {u"A workbook can only be saved in the .xlsx format and without a password.",
         [&] {
             book.Call(Ids::Workbook::kSaveAs12, {Text(u"x.xlsx"), none, Text(u"secret")});
         }},
        {u"The workbook cannot be saved as '" + foreign +
             u"': another program wrote it, and it may hold more than plain cells. Save into a new workbook.",
         [&] { empty.Call(Ids::Workbook::kSave); }},
        {noMember, [&] { sheets.Call(Ids::Sheets::kItem, {Variant::Int16(1)}); }},
        {badCount, [&] { static_cast<void>(sheets.Get(Ids::Sheets::kItem)); }},
        {badType, [&] { Sheet(Variant()); }},
        {badType, [&] { Put(u"A1", none); }},
    };
    for (const auto& [sentence, call] : rows) EXPECT_EQ(RefusalOf(call), sentence);
    EXPECT_EQ(Value(u"B7", u"B7"), u"-");
}

TEST_F(WorkbookApplication, AddsAndDeletesWorksheets) {
    const Variant none = Variant::Missing();
    sheets.Call(Ids::Sheets::kAdd, {none, none, Variant::Double(1)});
    Name(1, u"sheet3");
    const Dispatch third = sheets.Call(Ids::Sheets::kAdd).AsObject();
    EXPECT_EQ(Names(), u"Sheet4 sheet3 Sheet1 ");
    third.Call(Ids::Worksheet::kDelete);
    sheets.Call(Ids::Sheets::kAdd);
    EXPECT_EQ(Names(), u"Sheet5 sheet3 Sheet1 ");
    Name(1, u"×");
    Name(2, u"÷");  // no letters
    EXPECT_EQ(RefusalOf([&] { third.Call(Ids::Worksheet::kDelete); }), u"The worksheet is deleted.");
    for (int count = 0; count < 2; ++count) Sheet(1).Call(Ids::Worksheet::kDelete);
    EXPECT_EQ(RefusalOf([&] { Sheet(1).Call(Ids::Worksheet::kDelete); }),
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
    sheets.Call(Ids::Sheets::kAdd);
    Name(1, u"<&\"_x0041_'ä");
    const auto row = [](std::size_t index) {
        return NPlatform::Format(16, u"ZZ%d", {static_cast<int>(index) + 1});
    };
    Range(u"XFD1048576", u"XFD1048576", 2).Put(Ids::Range::kValue2, Text(u"z"));
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
    EXPECT_EQ(Value(u"XFD1048576", u"XFD1048576", 2), u"'z'");
    book.Call(Ids::Workbook::kSave);

    // No user can give this name, but a file can have it.
    const std::u16string name = u"_x0041_\t\n\r\xFFFF\xD83D"s + u'\0';
    Workbook strange;
    strange.worksheets.push_back(std::make_shared<Worksheet>(name));
    SaveWorkbook(strange, path);
    EXPECT_EQ(OpenWorkbook(path)->worksheets[0]->Name(), name);
    EXPECT_EQ(FilesIn(folder), 1);
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
    try {
        SaveWorkbook(workbook, path);
        ADD_FAILURE() << "it was saved";
    } catch (const WorkbookError& error) {
        EXPECT_EQ(error.Message(), u"The error value in cell AB2 cannot be saved.");
    }
    EXPECT_EQ(RefusalOf([&] { readOnly.AsObject().Call(Ids::Workbook::kSave); }),
              u"The workbook was opened read-only: '" + path + u"'.");
    EXPECT_EQ(RefusalOf([&] { SaveAs(folder.Path("")); }),
              u"The workbook cannot be saved as '" + folder.Path("") + u"', which is not a file.");
    EXPECT_NE(RefusalOf([&] { SaveAs(folder.Path("none/a.xlsx")); }), u"");
    EXPECT_EQ(folder.Read("a.xlsx"), bytes);
    EXPECT_EQ(FilesIn(folder), 1);
}

}  // namespace
