// What differs from system to system: arguments, names of files, and the standard streams.
#pragma once

#include <cstdio>
#include <filesystem>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

namespace NCli {

// The arguments behind the command's name, as UTF-8 where the system says what their characters are. Throws
// WrongUsage for one with a surrogate that has no partner.
std::vector<std::string> ReadArguments(int count, const char* const* values);

// Between paths and the command line's bytes; nothing is lost.
std::filesystem::path ToPath(std::string_view bytes);
std::string ToBytes(const std::filesystem::path& path);

// The path in the form in which the system takes it whatever its length. For calls alone: messages have the
// path itself. The functions below do so themselves.
std::filesystem::path ToSystemPath(const std::filesystem::path& path);

// The path as Excel finds the file by it, which may run in another folder than the command.
std::filesystem::path ToExcelPath(const std::filesystem::path& path);

struct CloseFile {
    void operator()(std::FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, CloseFile>;

// As std::fopen: empty when it fails, and errno has the reason. The second fails where there is such a file.
File OpenFile(const std::filesystem::path& path, const char* mode);
File CreateNewFile(const std::filesystem::path& path);

// What is at the path, links followed, and what the system lets its owner say of it: rights, or that it is
// hidden.
struct FileState {
    std::filesystem::file_type type = std::filesystem::file_type::none;
    unsigned attributes = 0;
};
FileState StateOf(const std::filesystem::path& path, std::error_code& error);
void SetAttributes(const std::filesystem::path& path, unsigned attributes, std::error_code& error);

// False also where one of them is missing.
bool AreSameFile(const std::filesystem::path& one, const std::filesystem::path& other);

// Two names of files in one folder have the same key if the system takes them for the same file.
std::filesystem::path NameKey(const std::filesystem::path& name);

// Where there is an ODBC driver for Excel, as a sentence for the user.
std::string_view DriverAdvice();

bool IsTerminal(std::FILE* stream);

// What ends the command from outside, unless it is handled.
std::span<const int> EndingSignals();

// May be called by a handler of signals.
void RemoveFile(const std::filesystem::path::value_type* path);

// Readies the standard streams for bytes, and a console for UTF-8. Where the command was started without one
// of them, a file of its own would take the stream's place and receive messages. Make it first of all.
class StandardStreams {
  public:
    StandardStreams();
    ~StandardStreams();
    StandardStreams(const StandardStreams&) = delete;
    StandardStreams& operator=(const StandardStreams&) = delete;

  private:
    unsigned consoleCodePage_ = 0;  // what the console had before
};

}  // namespace NCli
