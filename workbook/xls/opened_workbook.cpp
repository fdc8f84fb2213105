#include "workbook/xls/opened_workbook.h"

#include <algorithm>

#include "platform/format.h"
#include "workbook/xls/compound_file.h"
#include "workbook/xls/xls.h"

namespace NWorkbook::NXls {

namespace {

using namespace std::string_view_literals;

constexpr std::string_view kCompound = "\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1"sv;

std::u16string_view NameOf(Fault fault) { return fault == Fault::Damaged ? u"damaged" : u"too large"; }

// With four digits, as documents of the format have it.
std::u16string Hexadecimal(RecordType type) {
    const std::u16string text = NPlatform::Format(20, u"%08lx", {static_cast<std::uint32_t>(type)});
    return text.substr(text.size() - 4);
}

Records FindInCompoundFile(const WorkbookFile& file) {
    CompoundFile compound(file);
    // A file with both has the same workbook for Excel 97 and for Excel 95.
    for (const std::u16string_view name : {u"Workbook", u"Book"}) {
        if (std::optional<Stream> stream = compound.Find(name)) {
            return {u"stream '" + std::u16string(name) + u"', ", *std::move(stream)};
        }
    }
    if (compound.Has(u"EncryptedPackage")) {
        throw file.Error(u"is encrypted: a password is needed to open it.");
    }
    throw file.Error(u"is not a workbook.");
}

// A stream of a compound file, or the whole file.
Records FindRecords(const WorkbookFile& file) {
    char first[kCompound.size()];
    file.Read(0, first, sizeof first);
    if (std::string_view(first, sizeof first) != kCompound) {
        Stream whole(file);
        whole.Append(0, file.Size());
        return {{}, std::move(whole)};
    }
    try {
        return FindInCompoundFile(file);
    } catch (const PartFault& fault) {
        throw file.Error(std::u16string(u"is ").append(NameOf(fault.fault)) + u": " + fault.what + u".");
    }
}

std::vector<TextPlace> ReadSharedStrings(RecordReader& reader, TextReader& texts, Budget& budget,
                                         std::uint64_t streamSize) {
    reader.Next();
    Fields fields(reader);
    fields.Skip(sizeof(std::uint32_t));  // how many cells refer to them
    // Some programs give a number that is too large.
    const auto most = fields.Take<std::uint32_t>();
    constexpr std::uint64_t kShortest = 3;
    std::vector<TextPlace> strings;
    strings.reserve(std::min<std::uint64_t>({most, streamSize / kShortest, budget.sharedStrings}));
    while (strings.size() < most && !fields.AreAtEnd()) {
        Spend(budget.sharedStrings, 1, u"there are too many shared strings");
        const auto length = fields.Take<std::uint16_t>();
        strings.push_back(texts.Read(fields, length));
    }
    return strings;
}

}  // namespace

bool CanBe(std::string_view firstBytes) {
    if (firstBytes.starts_with(kCompound)) return true;
    // A record that begins a workbook: its type, and its size.
    constexpr std::uint16_t kMostBytes = 16;
    if (firstBytes.size() < 2 * sizeof(std::uint16_t)) return false;
    const auto type = Load<RecordType>(firstBytes.data());
    return (type == RecordType::BeginningOfFile || IsOfExcel2To4(type)) &&
           Load<std::uint16_t>(firstBytes.data() + sizeof type) <= kMostBytes;
}

OpenedWorkbook::OpenedWorkbook(std::unique_ptr<WorkbookFile> opened, std::shared_ptr<TextStore> store)
    : file(std::move(opened)), texts(std::move(store)), records(FindRecords(*file)) {
    contents =
        ReadRecords(0, [this](RecordReader& reader) { return ReadContents(*file, reader, *texts, budget); });
    for (Contents::Sheet& sheet : contents.sheets) {
        if (sheet.isWorksheet) sheet.isWorksheet = !IsDialogueSheet(records.stream, sheet.offset);
    }
}

const std::vector<TextPlace>& OpenedWorkbook::SharedStrings() {
    if (!sharedStrings_ && !contents.sharedStrings) sharedStrings_.emplace();
    if (!sharedStrings_) {
        sharedStrings_ = ReadRecords(*contents.sharedStrings, [this](RecordReader& reader) {
            TextReader textReader = Texts();
            return ReadSharedStrings(reader, textReader, budget, records.stream.Size());
        });
    }
    return *sharedStrings_;
}

WorkbookError OpenedWorkbook::RecordError(const RecordReader& reader, const PartFault& fault) const {
    return file->Error(NPlatform::Format(kMostUnitsOfMessage, u"is %s: %srecord 0x%s at offset %d: %s.",
                                         {NameOf(fault.fault), records.place, Hexadecimal(reader.Type()),
                                          static_cast<std::int32_t>(reader.Offset()), fault.what}));
}

}  // namespace NWorkbook::NXls
