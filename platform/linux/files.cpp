#include "platform/files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <system_error>

#include "platform/linux/file_descriptor.h"
#include "platform/linux/paths.h"
#include "platform/output_file.h"

namespace NPlatform {

FileDescriptor OpenRegularFile(const std::string& path, off_t& size) {
    // Without O_NONBLOCK the opening of a pipe would wait for somebody who writes into it.
    FileDescriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    struct stat status {};
    if (file.IsOpen() && (fstat(file.Get(), &status) != 0 || !S_ISREG(status.st_mode))) file.Close();
    size = status.st_size;
    return file;
}

static bool FindFile(std::u16string_view path, std::u16string& fullPath) {
    const std::string bytes = PathToBytes(path);
    std::error_code error;
    const std::filesystem::path absolute = std::filesystem::absolute(bytes, error);
    off_t size = 0;
    if (error || !OpenRegularFile(bytes, size).IsOpen()) return false;
    fullPath = PathFromBytes(absolute.native());
    return true;
}

constinit Replaceable<bool(std::u16string_view, std::u16string&)> FindReadableFile{FindFile};

static void Unlink(std::u16string_view path) {
    const std::filesystem::path file = PathToBytes(path);
    std::error_code error;
    const std::filesystem::file_status status = std::filesystem::status(file, error);
    if (exists(status) && !is_directory(status)) std::filesystem::remove(file, error);
}

constinit Replaceable<void(std::u16string_view)> RemoveFile{Unlink};

// O_TRUNC would make some file systems write out a whole new file when it is closed, as if it replaced an
// older one.
static FileDescriptor OpenEmpty(const std::string& path) {
    FileDescriptor file(open(path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0666));
    struct stat status {};
    const bool isEmpty = !file.IsOpen() || (fstat(file.Get(), &status) == 0 && status.st_size == 0);
    if (!isEmpty && ftruncate(file.Get(), 0) != 0) file.Close();
    return file;
}

struct OutputFile::System {
    explicit System(const std::string& path) : file(OpenEmpty(path)) {}

    FileDescriptor file;
};

OutputFile::OutputFile(std::u16string_view path) : system_(std::make_unique<System>(PathToBytes(path))) {
    if (!system_->file.IsOpen()) system_.reset();
}

OutputFile::~OutputFile() = default;

bool OutputFile::Close() { return system_->file.Close(); }

bool OutputFile::Write(const char* bytes, std::size_t count) const {
    while (count > 0) {
        const ssize_t written = write(system_->file.Get(), bytes, count);
        if (written < 0 && errno == EINTR) continue;
        if (written <= 0) return false;
        bytes += written;
        count -= static_cast<std::size_t>(written);
    }
    return true;
}

}  // namespace NPlatform
