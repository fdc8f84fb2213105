// Files: the open check, whole text files in, text-mode streams out. Paths are UTF-16.
#pragma once

#include <cstdint>
#include <memory>
#include <ostream>
#include <string>
#include <string_view>
#include <system_error>

#include "platform/replaceable.h"
#include "platform/text_buffer.h"

namespace NPlatform {

// Opens the file for reading, sharing it with everybody, and closes it again. Fills in its full path, with
// links as they are. False: it cannot be opened, or it is no regular file; `fullPath` is then unchanged.
extern Replaceable<bool(std::u16string_view path, std::u16string& fullPath)> FindReadableFile;

// Deletes the file of this name, unless it is a directory. What cannot be deleted stays as it is.
extern Replaceable<void(std::u16string_view path)> RemoveFile;

enum class TextEncoding {
    // Each byte is the character of the same value.
    EightBit,
    // A byte-order mark at the start is left out; a malformed sequence becomes one U+FFFD, divided as the
    // Unicode standard recommends. A file that begins with the UTF-16 little-endian mark is read as that, as
    // the Windows runtime does; no other mark is special.
    Utf8,
};

enum class TextFileResult {
    Read,
    NotOpened,  // no text
    TooLarge,   // no text: the file has more than kLargestTextFile bytes
    Failed,     // the system reported an error on the way, or the file changed; the text is a part of it
};

// Every table whose document can be written fits many times; what is larger would only exhaust the memory.
inline constexpr std::uint64_t kLargestTextFile = std::uint64_t{1} << 31;

// Reads a whole text file: a carriage return before a line feed is dropped, and the last line is ended by a
// line feed even where the file's is not. NUL and every other character stay as they are.
//
// The reader is our own on every system. It gives the text that the Windows runtime gives in text mode, and
// with "ccs=UTF-8", but loses nothing: the runtime ends a text at the character U+001A, and leaves out a
// last byte that is only the first of a character.
extern Replaceable<TextFileResult(std::u16string_view path, TextEncoding encoding, TextBuffer& text)>
    ReadTextFile;

// A regular file, open for reading at any place and shared with everybody.
class InputFile {
  public:
    explicit InputFile(std::u16string_view path);
    InputFile(const InputFile&) = delete;
    InputFile& operator=(const InputFile&) = delete;
    ~InputFile();

    // False: it could not be opened, or it is no regular file.
    [[nodiscard]] bool IsOpen() const { return system_ != nullptr; }
    // In bytes, as it was when the file was opened.
    [[nodiscard]] std::uint64_t Size() const { return size_; }
    // Reads `count` bytes from `offset` on, all of them. False: the system reported an error, which `reason`
    // then has, or the file has become shorter, for which it has none.
    bool ReadAt(std::uint64_t offset, char* bytes, std::size_t count,
                std::error_code* reason = nullptr) const;

  private:
    struct System;
    std::unique_ptr<System> system_;
    std::uint64_t size_ = 0;
};

// Writes bytes to a file in text mode: each line feed goes out as carriage return and line feed. The file is
// created, or emptied if it exists. Nothing is thrown; as with any stream, a failure shows in its state.
class TextOutputStream : public std::ostream {
  public:
    explicit TextOutputStream(std::u16string_view path);
    ~TextOutputStream() override;

    // Writes what is left and closes the file. Call it last, at most once. True: the file was opened, all
    // that went into the stream was written, and the system reported no failure at closing either.
    bool Close();

  private:
    class Buffer;
    std::unique_ptr<Buffer> buffer_;
};

}  // namespace NPlatform
