#include "platform/files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <system_error>

#include "platform/linux/file_descriptor.h"
#include "platform/linux/paths.h"

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

// Collects bytes, each line feed already as carriage return and line feed, and writes them in large pieces.
class TextOutputStream::Buffer : public std::streambuf {
  public:
    explicit Buffer(const std::string& path)
        : file_(OpenEmpty(path)), bytes_(std::make_unique_for_overwrite<char[]>(kSize)) {}
    ~Buffer() override { Flush(); }
    Buffer(const Buffer&) = delete;
    Buffer& operator=(const Buffer&) = delete;

    [[nodiscard]] bool IsOpen() const { return file_.IsOpen(); }

  protected:
    int_type overflow(int_type character) override {
        if (traits_type::eq_int_type(character, traits_type::eof())) return traits_type::not_eof(character);
        const char byte = traits_type::to_char_type(character);
        return xsputn(&byte, 1) == 1 ? character : traits_type::eof();
    }

    std::streamsize xsputn(const char* text, std::streamsize count) override {
        const char* const end = text + count;
        for (const char* next = text; next != end;) {
            const auto left = static_cast<std::size_t>(end - next);
            const void* const feed = std::memchr(next, '\n', left);
            const char* const lineEnd = feed == nullptr ? end : static_cast<const char*>(feed);
            if (!Put(next, static_cast<std::size_t>(lineEnd - next))) return next - text;
            if (feed == nullptr) break;
            if (!Put("\r\n", 2)) return lineEnd - text;
            next = lineEnd + 1;
        }
        return count;
    }

    int sync() override { return Flush() ? 0 : -1; }

  private:
    static constexpr std::size_t kSize = std::size_t{1} << 18;

    bool Put(const char* bytes, std::size_t count) {
        if (count > kSize - used_) return PutInParts(bytes, count);
        std::memcpy(bytes_.get() + used_, bytes, count);
        used_ += count;
        return true;
    }

    bool PutInParts(const char* bytes, std::size_t count) {
        while (count > 0) {
            if (used_ == kSize && !Flush()) return false;
            const std::size_t part = std::min(count, kSize - used_);
            std::memcpy(bytes_.get() + used_, bytes, part);
            used_ += part;
            bytes += part;
            count -= part;
        }
        return true;
    }

    bool Flush() {
        const char* next = bytes_.get();
        while (used_ > 0) {
            const ssize_t written = ::write(file_.Get(), next, used_);
            if (written < 0 && errno == EINTR) continue;
            if (written <= 0) break;
            next += written;
            used_ -= static_cast<std::size_t>(written);
        }
        const bool complete = used_ == 0;
        used_ = 0;
        return complete;
    }

    FileDescriptor file_;
    std::unique_ptr<char[]> bytes_;
    std::size_t used_ = 0;
};

TextOutputStream::TextOutputStream(std::u16string_view path)
    : std::ostream(nullptr), buffer_(std::make_unique<Buffer>(PathToBytes(path))) {
    rdbuf(buffer_.get());
    if (!buffer_->IsOpen()) setstate(badbit);
}

TextOutputStream::~TextOutputStream() = default;

}  // namespace NPlatform
