// An Excel that writes down what it is asked for, answers from a few cells and fails when it is told to.
#pragma once

#include <cstdio>

#include "platform/automation_servers.h"
#include "platform/format.h"
#include "sources/cell_name.h"
#include "tests/host.h"
#include "tests/rooms.h"

namespace NTest {

using NPlatform::Dispatch;
using NPlatform::InvokeKind;
using NPlatform::Variant;
using NPlatform::VariantElement;
using NPlatform::VariantType;

// Starts an application of the tests, also where the system has its own, and reaches it through what the
// system has between applications.
Dispatch StartThroughSystem(std::u16string_view progId);

inline const Replacement<Dispatch(std::u16string_view)> kStartsServers{NPlatform::StartApplication,
                                                                       StartThroughSystem};

using Cells = std::vector<std::vector<Variant>>;

// What is behind a cell: "#1.5" a number, "!" a logical value, "?" the error #N/A, "" nothing, "''" the empty
// text.
inline Variant MakeCell(const std::u16string& text) {
    if (text.starts_with(u'#')) return Variant::Double(std::stod(Utf8(text.substr(1))));
    if (text == u"!") return Variant::Bool(true);
    if (text == u"?") return Variant::Error(static_cast<std::int32_t>(0x800A07FA));
    if (text == u"''") return Variant::String(u"");
    return text.empty() ? Variant() : Variant::String(text);
}

template <typename Make>
Cells MakeCells(const Table& table, Make make) {
    Cells cells;
    for (const Row& row : table) {
        std::vector<Variant>& made = cells.emplace_back();
        for (const std::u16string& cell : row) made.push_back(make(cell));
    }
    return cells;
}

struct Sheet {
    std::u16string name;
    Cells cells;

    [[nodiscard]] const Variant& At(std::size_t row, std::size_t column) const {
        static const Variant nothing;
        return row < cells.size() && column < cells[row].size() ? cells[row][column] : nothing;
    }
};

// While it lives, it is the application that "Excel.Application" starts.
class RecordingExcel {
  public:
    explicit RecordingExcel(std::vector<Sheet> all)
        : sheets(std::move(all)), server_(u"Excel.Application", [this] { return Start(); }) {}

    // Forgets what was written down, and fails at the call of this number, counted from 1, or at the first
    // that begins with this text.
    void Begin(int failAt, const char* failOn = "none") {
        trace_.clear();
        messages_ = Progress::Messages().size();
        calls_ = 0;
        failAt_ = failAt;
        failOn_ = failOn;
    }
    // One line for each call and for each object that went; messages, if somebody listens, begin with '>'.
    const std::string& Trace() {
        const auto& messages = Progress::Messages();
        while (messages_ < messages.size()) trace_ += "> " + Utf8(messages[messages_++]) + "\n";
        return trace_;
    }

    std::vector<Sheet> sheets;
    std::u16string description = u"Broken";
    bool tellsOfCells = false;  // whether releases of worksheets and ranges are written down, too
    int liveObjects = 0;

  private:
    class Object;
    class Block;

    Dispatch Start();
    Dispatch Make(const std::string& name, std::vector<std::size_t> place = {});
    void Write(const std::string& line) {
        Trace();
        trace_ += line + "\n";
    }
    // Writes the call down; true: it has to fail.
    bool Fails(const std::string& call) {
        Write(call);
        if (++calls_ != failAt_ && !call.starts_with(failOn_)) return false;
        failOn_ = "none";
        return true;
    }

    std::string trace_;
    std::size_t messages_ = 0;
    int calls_ = 0;
    int failAt_ = 0;
    std::string failOn_ = "none";
    NPlatform::AutomationServer server_;
};

inline std::string ToText(const Variant& value) {
    const VariantType type = value.Type();
    if (value.IsMissing()) return "-";
    if (type == VariantType::Bool) return value.AsBool() ? "true" : "false";
    if (type == VariantType::String) return std::string(1, '\'').append(Utf8(value.AsString())).append("'");
    std::string text = type == VariantType::Int16 ? "i2:" : type == VariantType::Int32 ? "i4:" : "r8:";
    if (type == VariantType::Double) return text.append(std::to_string(value.AsDouble()));
    return text.append(std::to_string(value.AsInteger()));
}

class RecordingExcel::Block : public NPlatform::VariantArray {
  public:
    // `place`: first row, first column, last row, last column, counted from 0.
    Block(const Sheet& sheet, const std::vector<std::size_t>& place) : sheet_(sheet), place_(place) {}
    [[nodiscard]] std::int32_t UpperBound(int dimension) const override {
        return static_cast<std::int32_t>(1 +
                                         (dimension == 1 ? place_[2] - place_[0] : place_[3] - place_[1]));
    }
    [[nodiscard]] VariantElement At(std::int32_t row, std::int32_t column) const override {
        const Variant& value = sheet_.At(place_[0] + static_cast<std::size_t>(row) - 1,
                                         place_[1] + static_cast<std::size_t>(column) - 1);
        VariantElement element;
        element.type = value.Type();
        if (element.type == VariantType::Double) element.number = value.AsDouble();
        if (element.type == VariantType::String) element.text = value.AsString();
        if (element.type == VariantType::Bool) element.integer = value.AsBool() ? 1 : 0;
        if (element.type == VariantType::Error) element.integer = value.AsErrorCode();
        return element;
    }

  private:
    const Sheet& sheet_;
    std::vector<std::size_t> place_;
};

class RecordingExcel::Object : public NPlatform::DispatchObject {
  public:
    // `place`: the index of the worksheet, then, for a range, its block.
    Object(RecordingExcel& excel, std::string name, std::vector<std::size_t> place)
        : excel_(excel), name_(std::move(name)), place_(std::move(place)) {
        ++excel_.liveObjects;
    }

    Variant Invoke(NPlatform::DispatchId member, InvokeKind kind, std::span<const Variant> args) override {
        const char* const kinds[] = {"", "call", "get", "", "put"};
        char id[16];
        std::snprintf(id, sizeof id, "%X", static_cast<unsigned>(member));
        std::string line = name_ + ' ' + kinds[static_cast<int>(kind)] + ' ' + id;
        for (const Variant& argument : args) line += ' ' + ToText(argument);
        if (excel_.Fails(line)) {
            throw NPlatform::DispatchException(0xABCD, excel_.description, u"Src", u"x.chm");
        }
        return Answer(member, kind, args);
    }

  protected:
    ~Object() override {
        --excel_.liveObjects;
        if (excel_.tellsOfCells || (name_ != "Worksheet" && name_ != "Range")) excel_.Write("~" + name_);
    }

  private:
    Variant Answer(NPlatform::DispatchId member, InvokeKind kind, std::span<const Variant> args) {
        std::vector<Sheet>& all = excel_.sheets;
        const auto object = [this](const char* name, std::vector<std::size_t> place = {}) {
            return Variant::Object(excel_.Make(name, std::move(place)));
        };
        switch (member) {
            case 0x23C:
                return object("Workbooks");
            case 0x2AA:
            case 0x783:
                return object("Workbook");
            case 0x1EE:
                return object("Worksheets");
            case 0x76:
                return Variant::Int32(static_cast<std::int32_t>(all.size()));
            case 0xAA:
                return object("Worksheet", {static_cast<std::size_t>(args[0].AsInteger()) - 1});
            case 0xB5:
                if (name_ == "Workbooks") return object("Workbook");
                all.push_back({u"New", {}});
                return object("Worksheet", {all.size() - 1});
            case 0x6E:
                if (kind == InvokeKind::PropertyGet) return Variant::String(all.at(place_[0]).name);
                all.at(place_[0]).name = args[0].AsString();
                break;
            case 0xC5:
                return object("Range", Place(Utf8(args[0].AsString()), Utf8(args[1].AsString())));
            case 0x19C:
                return object("Range", UsedBlock());
            case 0xEC:
                return Variant::String(Name(place_[1], place_[2]) + u":" + Name(place_[3], place_[4]));
            case 0x6:
            case 0x56C:
                return kind == InvokeKind::PropertyGet ? Value() : Variant();
            case 0x75:
                all.erase(all.begin() + static_cast<std::ptrdiff_t>(place_[0]));
                break;
            default:
                break;
        }
        return {};
    }

    [[nodiscard]] std::vector<std::size_t> Place(const std::string& first, const std::string& last) const {
        std::vector<std::size_t> place{place_[0]};
        for (const std::string& cell : {first, last}) {
            std::size_t column = 0;
            std::size_t row = 0;
            for (const char c : cell) {
                if (c >= 'A') column = column * 26 + static_cast<std::size_t>(c - 'A' + 1);
                if (c < 'A') row = row * 10 + static_cast<std::size_t>(c - '0');
            }
            place.insert(place.end(), {row - 1, column - 1});
        }
        return place;
    }

    [[nodiscard]] std::vector<std::size_t> UsedBlock() const {
        std::size_t columns = 1;
        const Cells& cells = excel_.sheets.at(place_[0]).cells;
        for (const auto& row : cells) columns = std::max(columns, row.size());
        return {place_[0], 0, 0, std::max<std::size_t>(cells.size(), 1) - 1, columns - 1};
    }

    static std::u16string Name(std::size_t row, std::size_t column) {
        return NPlatform::Format(32, u"$%s$%d",
                                 {VCSVReader::ColumnName(column), static_cast<std::int32_t>(row + 1)});
    }

    [[nodiscard]] Variant Value() const {
        const Sheet& sheet = excel_.sheets.at(place_[0]);
        const std::vector<std::size_t> block(place_.begin() + 1, place_.end());
        if (block[0] == block[2] && block[1] == block[3]) return sheet.At(block[0], block[1]);
        return Variant::Array(std::make_shared<Block>(sheet, block));
    }

    RecordingExcel& excel_;
    std::string name_;
    std::vector<std::size_t> place_;
};

inline Dispatch RecordingExcel::Make(const std::string& name, std::vector<std::size_t> place) {
    return Dispatch(new Object(*this, name, std::move(place)));
}

inline Dispatch RecordingExcel::Start() {
    if (Fails("start")) throw NPlatform::OleException(static_cast<std::int32_t>(0x80080005), description);
    return Make("Application");
}

}  // namespace NTest
