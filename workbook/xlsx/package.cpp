#include "workbook/xlsx/package.h"

#include <zip.h>

#include <algorithm>
#include <optional>

#include "platform/format.h"
#include "workbook/xlsx/part_name.h"

namespace NWorkbook::NXlsx {

namespace {

std::u16string_view NameOf(Fault fault) { return fault == Fault::Damaged ? u"damaged" : u"too large"; }

}  // namespace

// The file as the zip library reads it.
struct Package::Archive {
    explicit Archive(const NPlatform::InputFile& bytes) : file(bytes) { zip_error_init(&error); }
    Archive(const Archive&) = delete;
    Archive& operator=(const Archive&) = delete;
    ~Archive() {
        if (zip != nullptr) zip_discard(zip);
        zip_error_fini(&error);
    }

    zip_int64_t Read(void* bytes, zip_uint64_t capacity) {
        const zip_uint64_t count = std::min(capacity, file.Size() - offset);
        std::error_code reason;
        if (!file.ReadAt(offset, static_cast<char*>(bytes), count, &reason)) {
            failure = reason;
            zip_error_set(&error, ZIP_ER_READ, 0);
            return -1;
        }
        offset += count;
        bytesRead += count;
        if (zip == nullptr && bytesRead > kMostBytesOfDirectory) {
            zip_error_set(&error, ZIP_ER_MEMORY, 0);
            return -1;
        }
        return static_cast<zip_int64_t>(count);
    }

    zip_int64_t Seek(void* where, zip_uint64_t size) {
        const zip_int64_t place = zip_source_seek_compute_offset(offset, file.Size(), where, size, &error);
        if (place < 0) return -1;
        offset = static_cast<zip_uint64_t>(place);
        return 0;
    }

    zip_int64_t State(void* where) const {
        auto* const stat = static_cast<zip_stat_t*>(where);
        zip_stat_init(stat);
        stat->valid = ZIP_STAT_SIZE;
        stat->size = file.Size();
        return sizeof *stat;
    }

    static zip_int64_t Serve(void* archive, void* data, zip_uint64_t size, zip_source_cmd_t command) {
        auto& self = *static_cast<Archive*>(archive);
        switch (command) {
            case ZIP_SOURCE_OPEN:
                self.offset = 0;
                return 0;
            case ZIP_SOURCE_READ:
                return self.Read(data, size);
            case ZIP_SOURCE_SEEK:
                return self.Seek(data, size);
            case ZIP_SOURCE_TELL:
                return static_cast<zip_int64_t>(self.offset);
            case ZIP_SOURCE_STAT:
                return self.State(data);
            case ZIP_SOURCE_ERROR:
                return zip_error_to_data(&self.error, data, size);
            case ZIP_SOURCE_SUPPORTS:
                return zip_source_make_command_bitmap(ZIP_SOURCE_OPEN, ZIP_SOURCE_READ, ZIP_SOURCE_CLOSE,
                                                      ZIP_SOURCE_STAT, ZIP_SOURCE_ERROR, ZIP_SOURCE_FREE,
                                                      ZIP_SOURCE_SEEK, ZIP_SOURCE_TELL, -1);
            default:
                return 0;
        }
    }

    const NPlatform::InputFile& file;
    std::optional<std::error_code> failure;
    zip_uint64_t offset = 0;
    zip_uint64_t bytesRead = 0;
    zip_error_t error{};
    zip_t* zip = nullptr;
};

Package::Package(std::unique_ptr<WorkbookFile> file)
    : file_(std::move(file)),
      archive_(std::make_unique<Archive>(file_->Bytes())),
      mostInflated_(
          std::min(std::max(kMostInflation * file_->Size(), kInflatedBytesForAll), kMostInflatedBytes)) {
    OpenArchive();
    ListParts();
    if (Has("xl/workbook.bin"))
        throw Error(u"is a binary workbook (.xlsb), which cannot be read. Save it as .xlsx.");
    if (Has("content.xml") && Has("META-INF/manifest.xml")) {
        throw Error(u"is an OpenDocument file, which cannot be read. Save it as .xlsx.");
    }
}

Package::~Package() = default;

void Package::OpenArchive() {
    zip_error_t& error = archive_->error;
    zip_source_t* const source = zip_source_function_create(Archive::Serve, archive_.get(), &error);
    if (source == nullptr) throw std::bad_alloc();
    archive_->zip = zip_open_from_source(source, ZIP_RDONLY, &error);
    if (archive_->zip != nullptr) return;
    zip_source_free(source);
    if (archive_->failure) throw file_->ReadError(*archive_->failure);
    if (archive_->bytesRead > kMostBytesOfDirectory) throw Error(u"is too large: it has too many parts.");
    throw Error(std::u16string(u"is damaged: ").append(Show(zip_error_strerror(&error))).append(u"."));
}

void Package::ListParts() {
    const zip_int64_t count = zip_get_num_entries(archive_->zip, 0);
    for (zip_int64_t index = 0; index < count; ++index) {
        const auto entry = static_cast<zip_uint64_t>(index);
        const char* const name = zip_get_name(archive_->zip, entry, 0);
        if (name == nullptr || IsFolder(name)) continue;
        // One program would read the first of two, another one the last.
        if (!parts_.emplace(PartKey(name), entry).second) {
            throw PartError(name, {Fault::Damaged, u"there are two of this name"});
        }
    }
}

bool Package::Has(std::string_view part) const { return parts_.contains(PartKey(part)); }

WorkbookError Package::ZipError(std::string_view part, const char* words) const {
    if (archive_->failure) return file_->ReadError(*archive_->failure);
    return PartError(part, {Fault::Damaged, Show(words)});
}

WorkbookError Package::PartError(std::string_view part, const PartFault& fault) const {
    return WorkbookError(NPlatform::Format(kMostUnitsOfMessage, u"'%s' is %s: part '%s': %s.",
                                           {file_->Path(), NameOf(fault.fault), Show(part), fault.what}));
}

WorkbookError Package::LineError(std::string_view part, std::int32_t line, const PartFault& fault) const {
    return WorkbookError(
        NPlatform::Format(kMostUnitsOfMessage, u"'%s' is %s: part '%s', line %d: %s.",
                          {file_->Path(), NameOf(fault.fault), Show(part), line, fault.what}));
}

PartReader::PartReader(Package& package, std::string_view part) : package_(package), part_(part) {
    const auto found = package.parts_.find(PartKey(part));
    if (found == package.parts_.end()) throw package.PartError(part, {Fault::Damaged, u"it is missing"});
    package.archive_->failure.reset();
    zip_t* const zip = package.archive_->zip;
    file_ = zip_fopen_index(zip, found->second, 0);
    if (file_ == nullptr) throw package.ZipError(part, zip_strerror(zip));
}

PartReader::~PartReader() {
    if (file_ != nullptr) zip_fclose(file_);
}

std::size_t PartReader::Read(char* bytes, std::size_t capacity) {
    const zip_int64_t count = zip_fread(file_, bytes, capacity);
    if (count < 0) throw package_.ZipError(part_, zip_file_strerror(file_));
    package_.inflated_ += static_cast<std::uint64_t>(count);
    if (package_.inflated_ > package_.mostInflated_) {
        const bool isMost = package_.mostInflated_ == kMostInflatedBytes;
        throw package_.PartError(
            part_, {Fault::TooLarge, isMost ? u"the parts have more than 2 GiB when they are unpacked"
                                            : u"the parts have more than 256 MiB when they are unpacked, and "
                                              u"more than 100 times as much as the file"});
    }
    return static_cast<std::size_t>(count);
}

}  // namespace NWorkbook::NXlsx
