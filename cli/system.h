// What differs from system to system: arguments, names of files, and the standard streams.
#pragma once

#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

namespace NCli {

// The arguments after the command's name, as UTF-8 if the system knows their characters. Throws
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

// Why the system has no file of this name, as the end of a sentence. Empty where it may have one.
std::string FaultOfName(const std::filesystem::path& file);

// The files that match the pattern, in their order, where the system leaves patterns to its programs. Throws
// WrongUsage where there is none, and as ReadArguments does.
std::vector<std::string> FilesOfPattern(const std::string& pattern);

// The path as a URI of the file has it, in UTF-8 and not yet encoded: with slashes, a relative one without
// one at its beginning, one on a server with two.
std::string ToUriPath(const std::filesystem::path& path);

struct CloseFile {
    void operator()(std::FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, CloseFile>;

// These are empty when they fail, and errno has the reason.

// As std::fopen.
File OpenFile(const std::filesystem::path& path, const char* mode);

// For reading and writing. Others can open, replace and delete the file at the same time.
File OpenToReplace(const std::filesystem::path& path);

// Who may read a new file from its first moment on.
enum class Readers { Owner, AsUsual };

// As above, but fails where anything has this name, be it a link.
File CreateNewFile(const std::filesystem::path& path, Readers readers);

// Gives the file `to` what the system lets the owner say of the file `from`: who may use it, or that it is
// hidden. Where the two belong to different groups, nobody may do more than before. False: it could not, and
// errno has the reason.
bool CopyRights(std::FILE* from, std::FILE* to);

// The path by which this process reaches the open file itself, even where others have given its name to
// another file. Where the system has no such path, `path`, by which the file was opened.
std::filesystem::path PathToOpenFile(std::FILE* file, const std::filesystem::path& path);

// Gives the file another name in the same folder. Where not `mayReplace`, fails with std::errc::file_exists
// if anything has that name.
std::error_code Rename(const std::filesystem::path& from, const std::filesystem::path& to, bool mayReplace);

// Whether the path still leads to the open file and is no link to it. False: errno has the reason, 0 where
// another file has the name.
bool HasName(std::FILE* file, const std::filesystem::path& path);

// Writes what is left in the stream, and learns of failures that some file systems report only when a file is
// closed; the stream stays open. False: errno has the reason.
bool FinishWriting(std::FILE* file);

// Waits until what anybody wrote into the file is on the disk. False: it is not, and errno has the reason.
bool FlushToDisk(std::FILE* file);

// What is at the path, links followed.
std::filesystem::file_type TypeOf(const std::filesystem::path& path, std::error_code& error);

// The path, without links, of the file that was opened by `path`; empty if `path` leads elsewhere by now.
std::filesystem::path PathOf(std::FILE* file, const std::filesystem::path& path);

// Whether a link leads where this user means to go: in a folder in which everybody may put links, others' do
// not.
bool MayFollow(const std::filesystem::path& link);

// Where temporary files go by the user's or the system's settings.
std::filesystem::path TemporaryFolder(std::error_code& error);

// False also where one of them is missing.
bool AreSameFile(const std::filesystem::path& one, const std::filesystem::path& other);

// The same for two paths if the system takes them for the same file, which need not be there yet.
std::filesystem::path PlaceOf(const std::filesystem::path& file);

// Where there is an ODBC driver for Excel, as a sentence for the user.
std::string_view DriverAdvice();

bool IsTerminal(std::FILE* stream);

// From now on `handler` is called for every signal that would end the command from outside. Those that are
// ignored stay so.
void HandleEndingSignals(void (*handler)(int));

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
