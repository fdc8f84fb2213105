#include <zip.h>

#include "platform/library_files.h"
#include "workbook/xlsx/written_parts.h"
#include "workbook/xlsx/xlsx.h"

namespace NWorkbook::NXlsx {

namespace {

// Above this, the zip library's compression takes many times as long for a few per cent.
constexpr zip_uint32_t kCompressionLevel = 3;

// The archive on its way to the file, which is replaced at the end and only if all went well.
class ZipWriter {
  public:
    // `name` is the file's name for the user.
    ZipWriter(std::u16string_view name, std::u16string_view path) : name_(name) {
        int code = 0;
        archive_.reset(zip_open(NPlatform::PathForLibraries(path).c_str(), ZIP_CREATE | ZIP_TRUNCATE, &code));
        if (archive_ != nullptr) return;
        zip_error_t error;
        zip_error_init_with_code(&error, code);
        const std::string reason = zip_error_strerror(&error);
        zip_error_fini(&error);
        Fail(reason);
    }

    // The part has to outlive the writer.
    void Add(const WrittenPart& part) {
        zip_t* const archive = archive_.get();
        zip_source_t* const source = zip_source_buffer(archive, part.content.data(), part.content.size(), 0);
        if (source == nullptr) Fail();
        const zip_int64_t index = zip_file_add(archive, part.name.c_str(), source, ZIP_FL_ENC_UTF_8);
        if (index < 0) {
            zip_source_free(source);
            Fail();
        }
        const auto place = static_cast<zip_uint64_t>(index);
        if (zip_set_file_compression(archive, place, ZIP_CM_DEFLATE, kCompressionLevel) != 0) Fail();
    }

    void Close() {
        if (zip_close(archive_.get()) != 0) Fail();
        static_cast<void>(archive_.release());
    }

  private:
    struct Discard {
        void operator()(zip_t* archive) const { zip_discard(archive); }
    };

    [[noreturn]] void Fail() const { Fail(zip_strerror(archive_.get())); }
    [[noreturn]] void Fail(std::string_view reason) const {
        throw WorkbookError(u"The workbook cannot be saved as '" + name_ + u"': " + Show(reason) + u".");
    }

    std::u16string name_;
    std::unique_ptr<zip_t, Discard> archive_;
};

}  // namespace

void Save(const Workbook& workbook, std::u16string_view path, std::u16string_view fullPath) {
    const std::vector<WrittenPart> parts = WriteParts(workbook);
    ZipWriter writer(path, fullPath);
    for (const WrittenPart& part : parts) writer.Add(part);
    writer.Close();
}

}  // namespace NWorkbook::NXlsx
