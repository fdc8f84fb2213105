#include <zip.h>

#include <deque>
#include <string>

#include "platform/library_files.h"
#include "workbook/xlsx/written_part.h"
#include "workbook/xlsx/xlsx.h"
#include "workbook/xlsx/xml_text.h"

namespace NWorkbook::NXlsx {

namespace {

constexpr std::string_view kContentTypes =
    R"(<Types xmlns="http://schemas.openxmlformats.org/package/2006/content-types">)"
    R"(<Default Extension="rels" ContentType="application/vnd.openxmlformats-package.relationships+xml"/>)"
    R"(<Override PartName="/xl/workbook.xml" ContentType=)"
    R"("application/vnd.openxmlformats-officedocument.spreadsheetml.sheet.main+xml"/>)"
    R"(<Override PartName="/xl/sharedStrings.xml" ContentType=)"
    R"("application/vnd.openxmlformats-officedocument.spreadsheetml.sharedStrings+xml"/>)";
constexpr std::string_view kSheetType =
    R"(.xml" ContentType="application/vnd.openxmlformats-officedocument.spreadsheetml.worksheet+xml"/>)";
constexpr std::string_view kRelationships =
    R"(<Relationships xmlns="http://schemas.openxmlformats.org/package/2006/relationships">)";
constexpr std::string_view kRelationshipType =
    R"(" Type="http://schemas.openxmlformats.org/officeDocument/2006/relationships/)";
constexpr std::string_view kWorkbook =
    R"(<workbook xmlns="http://schemas.openxmlformats.org/spreadsheetml/2006/main" )"
    R"(xmlns:r="http://schemas.openxmlformats.org/officeDocument/2006/relationships"><sheets>)";

// Above this, the zip library's compression takes many times as long for a few per cent.
constexpr zip_uint32_t kCompressionLevel = 3;

std::u16string Widen(std::string_view ascii) { return {ascii.begin(), ascii.end()}; }

// Answers the zip library's questions about a part.
zip_int64_t AnswerZip(void* state, void* data, zip_uint64_t length, zip_source_cmd_t command) noexcept {
    auto& part = *static_cast<WrittenPart*>(state);
    switch (command) {
        case ZIP_SOURCE_SUPPORTS:
            return ZIP_SOURCE_SUPPORTS_READABLE;
        case ZIP_SOURCE_OPEN:
            part.Rewind();
            return 0;
        case ZIP_SOURCE_READ:
            return static_cast<zip_int64_t>(part.Read(static_cast<char*>(data), length));
        case ZIP_SOURCE_STAT: {
            auto& stat = *static_cast<zip_stat_t*>(data);
            zip_stat_init(&stat);
            // Told beforehand, the size saves the extensions for archives beyond 4 GB, which not every
            // program reads.
            stat.size = part.Size();
            stat.valid = ZIP_STAT_SIZE;
            return sizeof stat;
        }
        case ZIP_SOURCE_CLOSE:
        case ZIP_SOURCE_FREE:
            return 0;
        default:
            return -1;
    }
}

// The archive on its way to the file, which is replaced at the end and only if all went well.
class Package {
  public:
    // `name` is the file's name for the user.
    Package(std::u16string_view name, std::u16string_view path) : name_(name) {
        int code = 0;
        archive_.reset(zip_open(NPlatform::PathForLibraries(path).c_str(), ZIP_CREATE | ZIP_TRUNCATE, &code));
        if (archive_ != nullptr) return;
        zip_error_t error;
        zip_error_init_with_code(&error, code);
        const std::u16string reason = Widen(zip_error_strerror(&error));
        zip_error_fini(&error);
        Fail(reason);
    }

    void Add(const std::string& part, std::string_view content) {
        contents_.push_back(std::string(kXmlDeclaration).append(content));
        const std::string& kept = contents_.back();
        Add(part, zip_source_buffer(archive_.get(), kept.data(), kept.size(), 0));
    }

    // The text has to outlive the package.
    void Add(const std::string& part, WrittenPart& text) {
        text.Measure();
        Add(part, zip_source_function(archive_.get(), AnswerZip, &text));
    }

    void Write() {
        if (zip_close(archive_.get()) != 0) Fail();
        static_cast<void>(archive_.release());
    }

  private:
    struct Discard {
        void operator()(zip_t* archive) const { zip_discard(archive); }
    };

    void Add(const std::string& part, zip_source_t* source) {
        if (source == nullptr) Fail();
        const zip_int64_t index = zip_file_add(archive_.get(), part.c_str(), source, ZIP_FL_ENC_UTF_8);
        if (index < 0) {
            zip_source_free(source);
            Fail();
        }
        const auto place = static_cast<zip_uint64_t>(index);
        if (zip_set_file_compression(archive_.get(), place, ZIP_CM_DEFLATE, kCompressionLevel) != 0) Fail();
    }

    [[noreturn]] void Fail() const { Fail(Widen(zip_strerror(archive_.get()))); }
    [[noreturn]] void Fail(std::u16string_view reason) const {
        throw WorkbookError(u"The workbook cannot be saved as '" + name_ + u"': " + std::u16string(reason) +
                            u".");
    }

    std::u16string name_;
    std::deque<std::string> contents_;
    std::unique_ptr<zip_t, Discard> archive_;
};

std::string SheetPart(std::size_t number) { return "worksheets/sheet" + std::to_string(number); }

std::string Relationship(std::size_t id, std::string_view type, std::string_view target) {
    std::string xml = R"(<Relationship Id="rId)" + std::to_string(id);
    return xml.append(kRelationshipType).append(type).append(R"(" Target=")").append(target).append(R"("/>)");
}

void AddFixedParts(Package& package, const Workbook& workbook) {
    std::string types(kContentTypes);
    std::string relationships(kRelationships);
    std::string sheets(kWorkbook);
    for (std::size_t number = 1; number <= workbook.worksheets.size(); ++number) {
        const std::string digits = std::to_string(number);
        types.append(R"(<Override PartName="/xl/)").append(SheetPart(number)).append(kSheetType);
        relationships += Relationship(number, "worksheet", SheetPart(number) + ".xml");
        sheets += R"(<sheet name=")";
        AppendXmlText(sheets, workbook.worksheets[number - 1]->Name());
        sheets.append(R"(" sheetId=")")
            .append(digits)
            .append(R"(" r:id="rId)")
            .append(digits)
            .append(R"("/>)");
    }
    package.Add("[Content_Types].xml", types + "</Types>");
    package.Add("_rels/.rels", std::string(kRelationships) +
                                   Relationship(1, "officeDocument", "xl/workbook.xml") + "</Relationships>");
    package.Add("xl/workbook.xml", sheets + "</sheets></workbook>");
    relationships += Relationship(workbook.worksheets.size() + 1, "sharedStrings", "sharedStrings.xml");
    package.Add("xl/_rels/workbook.xml.rels", relationships + "</Relationships>");
}

}  // namespace

void Save(const Workbook& workbook, std::u16string_view path, std::u16string_view fullPath) {
    std::deque<WrittenWorksheet> worksheets;
    WrittenStrings strings(workbook);
    Package package(path, fullPath);
    AddFixedParts(package, workbook);
    std::size_t stringCount = 0;
    for (const auto& worksheet : workbook.worksheets) {
        WrittenWorksheet& text = worksheets.emplace_back(*worksheet, stringCount);
        package.Add("xl/" + SheetPart(worksheets.size()) + ".xml", text);
    }
    package.Add("xl/sharedStrings.xml", strings);
    package.Write();
}

}  // namespace NWorkbook::NXlsx
