#include "cli/input.h"

#include <cerrno>
#include <string_view>
#include <system_error>

#include "cli/failure.h"

namespace NCli {

namespace fs = std::filesystem;

namespace {

// The largest CSV text that the library reads.
constexpr std::uint64_t kLargestInput = std::uint64_t{1} << 31;

[[noreturn]] void RefuseToRead(const fs::path& origin, const std::string& reason) {
    throw Failure("Could not read " + NameOf(origin) + ": " + reason);
}

void Store(std::FILE* source, const fs::path& origin, TemporaryFile& copy) {
    CopyResult result = Copy(source, copy.Stream(), kLargestInput);
    if (result == CopyResult::Done && !copy.Close()) result = CopyResult::NotWritten;
    const std::string reason = SystemText(errno);
    switch (result) {
        case CopyResult::Done:
            return;
        case CopyResult::TooLarge:
            RefuseToRead(origin, "it has more than 2 GiB");
        case CopyResult::NotRead:
            RefuseToRead(origin, reason);
        case CopyResult::NotWritten:
            RefuseToRead(origin, "its copy in " + NameOf(copy.Path().parent_path()) + " failed: " + reason);
    }
}

void StorePipe(const fs::path& pipe, TemporaryFile& copy) {
    const File source = OpenFile(pipe, "rb");
    if (!source) RefuseToRead(pipe, SystemText(errno));
    Store(source.get(), pipe, copy);
}

bool IsPipe(const fs::path& path) {
    std::error_code ignored;
    return TypeOf(path, ignored) == fs::file_type::fifo;
}

}  // namespace

Input::Input(const fs::path& path, NXls2Tki::VImportType kind) : path_(path) {
    if (path == kStandardInput) {
        copy_.emplace("xls2tki-standard-input");
        Store(stdin, path, *copy_);
    } else if (kind == NXls2Tki::ImportTypeCSV && IsPipe(path)) {
        copy_.emplace("xls2tki-pipe");
        StorePipe(path, *copy_);
    }
}

void Input::RequireEncoding(bool utf8) const {
    char bytes[3] = {};
    const File file = IsRegularFile(Path()) ? OpenFile(Path(), "rb") : nullptr;
    const std::string_view mark(bytes, file ? std::fread(bytes, 1, sizeof bytes, file.get()) : 0);
    const std::string begin = NameOf(path_) + " begins with the byte order mark of ";
    if (mark.starts_with("\xFE\xFF")) throw Failure(begin + "big-endian UTF-16. Save it as UTF-8.");
    if (utf8) return;
    if (mark.starts_with("\xFF\xFE")) throw Failure(begin + "UTF-16. Give --utf8, which reads that, too.");
    if (mark == "\xEF\xBB\xBF") throw Failure(begin + "UTF-8. Give --utf8.");
}

}  // namespace NCli
