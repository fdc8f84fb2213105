#include "workbook/xls/contents.h"

#include <map>

#include "platform/format.h"
#include "workbook/cell_rules.h"
#include "workbook/date_formats.h"
#include "workbook/workbook.h"

namespace NWorkbook::NXls {

namespace {

constexpr std::uint16_t kBiff5 = 0x0500;
constexpr std::uint16_t kBiff8 = 0x0600;
constexpr std::uint16_t kGlobals = 0x0005;
constexpr std::uint8_t kWorksheetKind = 0;
constexpr std::uint16_t kIsDialogue = 0x0010;

Version ReadVersion(const WorkbookFile& file, RecordReader& records) {
    records.Next();
    if (IsOfExcel2To4(records.Type())) {
        throw file.Error(u"is a workbook of Excel 2, 3 or 4, which cannot be read. Save it as .xlsx.");
    }
    if (records.Type() != RecordType::BeginningOfFile) {
        throw PartFault{Fault::Damaged, u"no workbook begins here"};
    }
    Fields fields(records);
    const auto version = fields.Take<std::uint16_t>();
    if (version != kBiff5 && version != kBiff8) {
        throw PartFault{Fault::Damaged,
                        NPlatform::Format(100, u"the version of the format, 0x%08lx, is unknown",
                                          {std::uint32_t{version}})};
    }
    if (fields.Take<std::uint16_t>() != kGlobals) {
        throw PartFault{Fault::Damaged, u"the list of worksheets is missing"};
    }
    return version == kBiff5 ? Version::Biff5 : Version::Biff8;
}

Contents::Sheet ReadSheetEntry(RecordReader& records, TextReader& texts) {
    Fields fields(records);
    const auto offset = fields.Take<std::uint32_t>();
    fields.Skip(1);  // whether it is hidden
    const auto kind = fields.Take<std::uint8_t>();
    const auto length = fields.Take<std::uint8_t>();
    std::u16string name = texts.ReadName(fields, length);
    RefuseLongWorksheetName(name);
    return {std::move(name), offset, kind == kWorksheetKind};
}

// Which formats of cells show dates. No value depends on them: what is damaged is none.
class DateFormats {
  public:
    void ReadNumberFormat(RecordReader& records, Version version, TextReader& texts) {
        try {
            Fields fields(records);
            const auto id = fields.Take<std::uint16_t>();
            const std::size_t length =
                version == Version::Biff8 ? fields.Take<std::uint16_t>() : fields.Take<std::uint8_t>();
            std::string code;
            for (const char16_t unit : texts.ReadName(fields, length)) {
                code += unit < 0x80 ? static_cast<char>(unit) : '?';
            }
            named_[id] = IsDateFormat(code);
        } catch (const PartFault&) {
        }
    }

    void ReadCellFormat(RecordReader& records) {
        constexpr std::size_t kPlace = sizeof(std::uint16_t);  // behind the font
        constexpr std::size_t kMost = 0x10000;
        const std::string_view data = records.Data();
        const bool isWhole = data.size() >= kPlace + sizeof(std::uint16_t);
        if (numberFormats_.size() == kMost) return;
        numberFormats_.push_back(isWhole ? Load<std::uint16_t>(data.data() + kPlace) : std::uint16_t{0});
    }

    [[nodiscard]] std::vector<bool> ShowDate() const {
        std::vector<bool> showDate;
        for (const std::uint16_t id : numberFormats_) {
            const auto named = named_.find(id);
            showDate.push_back(named == named_.end() ? IsUsualDateFormat(id) : named->second);
        }
        return showDate;
    }

  private:
    std::map<std::uint16_t, bool> named_;       // whether number formats that the file names show dates
    std::vector<std::uint16_t> numberFormats_;  // of cell formats
};

}  // namespace

bool IsOfExcel2To4(RecordType type) {
    const auto number = static_cast<std::uint16_t>(type);
    return number == 0x0009 || number == 0x0209 || number == 0x0409;
}

Contents ReadContents(const WorkbookFile& file, RecordReader& records, TextStore& store, Budget& budget) {
    Contents contents;
    contents.version = ReadVersion(file, records);
    DateFormats dateFormats;
    for (records.Next(); records.Type() != RecordType::EndOfFile; records.Next()) {
        switch (records.Type()) {
            case RecordType::FilePass:
                throw file.Error(u"is encrypted: a password is needed to open it.");
            case RecordType::CodePage:
                contents.codePage = Fields(records).Take<std::uint16_t>();
                break;
            case RecordType::BoundSheet: {
                TextReader texts(contents.version, contents.codePage, store, budget);
                contents.sheets.push_back(ReadSheetEntry(records, texts));
                if (contents.sheets.size() > kMostWorksheets) {
                    throw PartFault{Fault::TooLarge, u"there are too many worksheets"};
                }
                break;
            }
            case RecordType::Format: {
                TextReader texts(contents.version, contents.codePage, store, budget);
                dateFormats.ReadNumberFormat(records, contents.version, texts);
                break;
            }
            case RecordType::Xf:
                dateFormats.ReadCellFormat(records);
                break;
            case RecordType::Sst:
                contents.sharedStrings = records.Offset();
                break;
            default:
                break;
        }
    }
    contents.showsDate = dateFormats.ShowDate();
    return contents;
}

bool IsDialogueSheet(Stream& stream, std::uint64_t offset) {
    try {
        RecordReader records(stream, offset);
        for (records.Next(); records.Type() != RecordType::EndOfFile; records.Next()) {
            if (records.Type() == RecordType::Dimensions) return false;
            if (records.Type() == RecordType::WsBool) {
                return (Fields(records).Take<std::uint16_t>() & kIsDialogue) != 0;
            }
        }
    } catch (const PartFault&) {
        // Reading the worksheet says so.
    }
    return false;
}

}  // namespace NWorkbook::NXls
