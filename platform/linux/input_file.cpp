#include <unistd.h>

#include <cerrno>

#include "platform/files.h"
#include "platform/linux/file_descriptor.h"
#include "platform/linux/paths.h"

namespace NPlatform {

struct InputFile::System {
    explicit System(const std::string& path) : file(OpenRegularFile(path, size)) {}

    off_t size = 0;
    FileDescriptor file;
};

InputFile::InputFile(std::u16string_view path) : system_(std::make_unique<System>(PathToBytes(path))) {
    if (!system_->file.IsOpen()) {
        system_.reset();
    } else {
        size_ = static_cast<std::uint64_t>(system_->size);
    }
}

InputFile::~InputFile() = default;

bool InputFile::ReadAt(std::uint64_t offset, char* bytes, std::size_t count, std::error_code* reason) const {
    while (count > 0) {
        const ssize_t read = pread(system_->file.Get(), bytes, count, static_cast<off_t>(offset));
        if (read < 0 && errno == EINTR) continue;
        if (read <= 0) {
            if (reason != nullptr) reason->assign(read < 0 ? errno : 0, std::system_category());
            return false;
        }
        bytes += read;
        offset += static_cast<std::uint64_t>(read);
        count -= static_cast<std::size_t>(read);
    }
    return true;
}

}  // namespace NPlatform
