#include "cli/input.h"

#include <cerrno>
#include <system_error>

#include "cli/failure.h"

namespace NCli {

namespace fs = std::filesystem;

namespace {

[[noreturn]] void RefuseToRead(const fs::path& origin, const std::string& reason) {
    throw Failure("Could not read " + NameOf(origin) + ": " + reason);
}

void Store(std::FILE* source, const fs::path& origin, TemporaryFile& copy) {
    CopyResult result = Copy(source, copy.Stream(), kLargestInput);
    if (result == CopyResult::Done && !FinishWriting(copy.Stream())) result = CopyResult::NotWritten;
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

}  // namespace NCli
