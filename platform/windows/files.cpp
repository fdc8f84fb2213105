#include "platform/files.h"

#include <algorithm>

#include "platform/output_file.h"
#include "platform/windows/file_handle.h"
#include "platform/windows/wide.h"

namespace NPlatform {

namespace {

// The most that one call of the system is asked to transfer.
constexpr std::size_t kLargestPiece = std::size_t{1} << 30;

DWORD PieceOf(std::size_t count) { return static_cast<DWORD>(std::min(count, kLargestPiece)); }

bool FindFile(std::u16string_view path, std::u16string& fullPath) {
    std::uint64_t size = 0;
    if (!OpenRegularFile(path, size).IsOpen()) return false;
    fullPath = FromWide(FullPath(path));
    return true;
}

void Delete(std::u16string_view path) { DeleteFileW(SystemPath(path).c_str()); }

// To create it anew would fail where the one that is there is hidden.
FileHandle OpenEmpty(std::u16string_view path) {
    FileHandle file = OpenFile(path, GENERIC_WRITE, OPEN_ALWAYS);
    // A device has no end that could be set.
    const bool isDisk = file.IsOpen() && GetFileType(file.Get()) == FILE_TYPE_DISK;
    if (isDisk && SetEndOfFile(file.Get()) == 0) file.Close();
    return file;
}

}  // namespace

constinit Replaceable<bool(std::u16string_view, std::u16string&)> FindReadableFile{FindFile};
constinit Replaceable<void(std::u16string_view)> RemoveFile{Delete};

struct InputFile::System {
    explicit System(std::u16string_view path) : file(OpenRegularFile(path, size)) {}

    std::uint64_t size = 0;
    FileHandle file;
};

InputFile::InputFile(std::u16string_view path) : system_(std::make_unique<System>(path)) {
    if (!system_->file.IsOpen()) {
        system_.reset();
    } else {
        size_ = system_->size;
    }
}

InputFile::~InputFile() = default;

bool InputFile::ReadAt(std::uint64_t offset, char* bytes, std::size_t count, std::error_code* reason) const {
    while (count > 0) {
        OVERLAPPED place{};
        place.Offset = static_cast<DWORD>(offset);
        place.OffsetHigh = static_cast<DWORD>(offset >> 32);
        DWORD read = 0;
        const bool hasRead = ReadFile(system_->file.Get(), bytes, PieceOf(count), &read, &place) != 0;
        if (!hasRead || read == 0) {
            const DWORD error = hasRead ? ERROR_HANDLE_EOF : GetLastError();
            if (reason != nullptr)
                reason->assign(error == ERROR_HANDLE_EOF ? 0 : static_cast<int>(error),
                               std::system_category());
            return false;
        }
        bytes += read;
        offset += read;
        count -= read;
    }
    return true;
}

struct OutputFile::System {
    explicit System(std::u16string_view path) : file(OpenEmpty(path)) {}

    FileHandle file;
};

OutputFile::OutputFile(std::u16string_view path) : system_(std::make_unique<System>(path)) {
    if (!system_->file.IsOpen()) system_.reset();
}

OutputFile::~OutputFile() = default;

bool OutputFile::Close() { return system_->file.Close(); }

bool OutputFile::Write(const char* bytes, std::size_t count) const {
    while (count > 0) {
        DWORD written = 0;
        if (WriteFile(system_->file.Get(), bytes, PieceOf(count), &written, nullptr) == 0 || written == 0) {
            return false;
        }
        bytes += written;
        count -= written;
    }
    return true;
}

}  // namespace NPlatform
