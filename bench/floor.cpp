// The least that a conversion through UTF-16 has to do, to measure others against: floor INPUT OUTPUT BYTES
//
// Reads a UTF-8 file, turns it into UTF-16 and back, the whole file in memory each time, and writes BYTES
// bytes.

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <memory>
#include <stdexcept>
#include <string>

namespace {

// Memory that is not filled with zeros first.
template <class Unit>
struct Block {
    explicit Block(std::size_t capacity) : units(std::make_unique_for_overwrite<Unit[]>(capacity)) {}
    std::unique_ptr<Unit[]> units;
    std::size_t size = 0;
};

std::size_t Require(ssize_t result, const char* what) {
    if (result < 0) throw std::runtime_error(std::string("cannot ") + what);
    return static_cast<std::size_t>(result);
}

Block<unsigned char> ReadFile(const char* path) {
    const int file = open(path, O_RDONLY);
    struct stat status = {};
    Require(fstat(file, &status), "open the input");
    const auto size = static_cast<std::size_t>(status.st_size);
    Block<unsigned char> bytes(size);
    while (bytes.size < size)
        bytes.size += Require(read(file, bytes.units.get() + bytes.size, size - bytes.size), "read");
    close(file);
    return bytes;
}

// Takes well-formed text for granted.
Block<char16_t> ToUtf16(const Block<unsigned char>& bytes) {
    Block<char16_t> text(bytes.size);
    const unsigned char* in = bytes.units.get();
    const unsigned char* const end = in + bytes.size;
    char16_t* out = text.units.get();
    while (in < end) {
        const unsigned lead = *in++;
        if (lead < 0x80) {
            *out++ = static_cast<char16_t>(lead);
        } else if (lead < 0xE0) {
            *out++ = static_cast<char16_t>((lead & 0x1F) << 6 | (*in++ & 0x3Fu));
        } else if (lead < 0xF0) {
            *out++ = static_cast<char16_t>((lead & 0x0F) << 12 | (in[0] & 0x3Fu) << 6 | (in[1] & 0x3Fu));
            in += 2;
        } else {
            const unsigned code =
                (lead & 0x07) << 18 | (in[0] & 0x3Fu) << 12 | (in[1] & 0x3Fu) << 6 | (in[2] & 0x3Fu);
            in += 3;
            *out++ = static_cast<char16_t>(0xD7C0 + (code >> 10));
            *out++ = static_cast<char16_t>(0xDC00 + (code & 0x3FF));
        }
    }
    text.size = static_cast<std::size_t>(out - text.units.get());
    return text;
}

unsigned char Continuation(unsigned code) { return static_cast<unsigned char>(0x80 | (code & 0x3F)); }

Block<unsigned char> ToUtf8(const Block<char16_t>& text) {
    Block<unsigned char> bytes(3 * text.size);
    const char16_t* in = text.units.get();
    const char16_t* const end = in + text.size;
    unsigned char* out = bytes.units.get();
    while (in < end) {
        unsigned code = *in++;
        if (code < 0x80) {
            *out++ = static_cast<unsigned char>(code);
        } else if (code < 0x800) {
            *out++ = static_cast<unsigned char>(0xC0 | code >> 6);
            *out++ = Continuation(code);
        } else if (code < 0xD800 || code > 0xDFFF) {
            *out++ = static_cast<unsigned char>(0xE0 | code >> 12);
            *out++ = Continuation(code >> 6);
            *out++ = Continuation(code);
        } else {
            code = ((code - 0xD7C0) << 10) + (*in++ - 0xDC00u);
            *out++ = static_cast<unsigned char>(0xF0 | code >> 18);
            *out++ = Continuation(code >> 12);
            *out++ = Continuation(code >> 6);
            *out++ = Continuation(code);
        }
    }
    bytes.size = static_cast<std::size_t>(out - bytes.units.get());
    return bytes;
}

// The bytes over and over, until as many as asked for are written.
void WriteFile(const char* path, const Block<unsigned char>& bytes, std::size_t left) {
    const int file = open(path, O_WRONLY | O_CREAT | O_TRUNC, 0666);
    while (left > 0)
        left -= Require(write(file, bytes.units.get(), std::min(left, bytes.size)), "write the output");
    Require(close(file), "write the output");
}

}  // namespace

int main(int argc, char* argv[]) try {
    if (argc != 4) throw std::runtime_error("usage: floor INPUT OUTPUT BYTES");
    WriteFile(argv[2], ToUtf8(ToUtf16(ReadFile(argv[1]))), std::strtoull(argv[3], nullptr, 10));
    return 0;
} catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
}
