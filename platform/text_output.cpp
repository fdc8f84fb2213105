// Text-mode streams, over a file of the system.
#include <algorithm>
#include <cstring>

#include "platform/files.h"
#include "platform/output_file.h"

namespace NPlatform {

// Collects bytes, each line feed already as carriage return and line feed, and writes them in large pieces.
class TextOutputStream::Buffer : public std::streambuf {
  public:
    explicit Buffer(std::u16string_view path)
        : bytes_(std::make_unique_for_overwrite<char[]>(kSize)), file_(path) {}
    ~Buffer() override { Flush(); }
    Buffer(const Buffer&) = delete;
    Buffer& operator=(const Buffer&) = delete;

    [[nodiscard]] bool IsOpen() const { return file_.IsOpen(); }
    bool Close() {
        const bool isWritten = Flush();
        return file_.IsOpen() && file_.Close() && isWritten;
    }

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
        const bool isWritten = used_ == 0 || (file_.IsOpen() && file_.Write(bytes_.get(), used_));
        used_ = 0;
        return isWritten;
    }

    std::unique_ptr<char[]> bytes_;  // obtained while an older file is still whole
    OutputFile file_;
    std::size_t used_ = 0;
};

TextOutputStream::TextOutputStream(std::u16string_view path)
    : std::ostream(nullptr), buffer_(std::make_unique<Buffer>(path)) {
    rdbuf(buffer_.get());
    if (!buffer_->IsOpen()) setstate(badbit);
}

TextOutputStream::~TextOutputStream() = default;

bool TextOutputStream::Close() {
    if (!buffer_->Close()) setstate(badbit);
    return good();
}

}  // namespace NPlatform
