// Files as the command needs them: opened, copied, and temporary ones that are always removed.
#pragma once

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <limits>
#include <string>

#include "cli/system.h"

namespace NCli {

// The paths of the standard streams, which "-" becomes.
inline constexpr char kStandardInput[] = "/dev/stdin";
inline constexpr char kStandardOutput[] = "/dev/stdout";

// What a sentence calls the file: "standard input", "standard output", or its path between quotation marks,
// in one line.
std::string NameOf(const std::filesystem::path& path);

bool IsRegularFile(const std::filesystem::path& path);

enum class CopyResult { Done, TooLarge, NotRead, NotWritten };

inline constexpr std::uint64_t kNoLimit = std::numeric_limits<std::uint64_t>::max();

// Copies to the end of `source`, but at most `limit` bytes, and flushes `destination`. Where it could not
// read or write, errno has the reason.
CopyResult Copy(std::FILE* source, std::FILE* destination, std::uint64_t limit);

// An empty file that nobody else has, removed at the end of its life, or when the user interrupts the
// command. There may be four at a time.
class TemporaryFile {
  public:
    // Creates it in the folder under a hidden name that begins with `name`. Throws Failure.
    TemporaryFile(const std::filesystem::path& folder, const std::string& name,
                  Readers readers = Readers::Owner);
    // Creates it where the system keeps temporary files. Throws Failure.
    explicit TemporaryFile(const std::string& name);
    ~TemporaryFile();
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    [[nodiscard]] const std::filesystem::path& Path() const { return path_; }
    // For those in this process who open the file by a path.
    [[nodiscard]] const std::filesystem::path& PathToOpen() const { return pathToOpen_; }
    // To write and to read, open since the file was created: so the system reports to it every failure to
    // write the file, whoever wrote.
    [[nodiscard]] std::FILE* Stream() const { return file_.get(); }
    // Ends the use of the stream. False: not all of it could be written, and errno has the reason.
    [[nodiscard]] bool Close() { return std::fclose(file_.release()) == 0; }

  private:
    std::filesystem::path path_;
    std::size_t slot_;  // where the handler of signals finds the path
    File file_;
    std::filesystem::path pathToOpen_;
};

// What the command printed is complete. False: it could not be written, and errno has the reason. Nothing can
// be printed any more.
[[nodiscard]] bool CloseStandardOutput();

// From now on the signals that end the command first end its processes and remove its temporary files.
void CleanUpOnSignals();

// For a new process that is a copy of this one: the temporary files so far are the other's to remove.
void LeaveTemporaryFiles();

}  // namespace NCli
