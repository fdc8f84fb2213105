// Files as the command needs them: opened, copied, and temporary ones that never stay behind.
#pragma once

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <limits>
#include <memory>
#include <string>

namespace NCli {

// The paths that stand for the standard streams, also where the user wrote "-".
inline constexpr char kStandardInput[] = "/dev/stdin";
inline constexpr char kStandardOutput[] = "/dev/stdout";

// What a sentence calls the file: "standard input", "standard output", or its path between quotation marks.
std::string NameOf(const std::filesystem::path& path);

struct CloseFile {
    void operator()(std::FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, CloseFile>;

// As std::fopen: empty when it fails, and errno has the reason.
File OpenFile(const std::filesystem::path& path, const char* mode);

enum class CopyResult { Done, TooLarge, NotRead, NotWritten };

inline constexpr std::uint64_t kNoLimit = std::numeric_limits<std::uint64_t>::max();

// Copies to the end of `source`, but at most `limit` bytes, and flushes `destination`. Where it could not
// read or write, errno has the reason.
CopyResult Copy(std::FILE* source, std::FILE* destination, std::uint64_t limit);

// An empty file that nobody else has, removed at the end of its life, or when the user interrupts the
// command. There may be two at a time.
class TemporaryFile {
  public:
    // Creates it in the folder under a hidden name that begins with `name`. Throws Failure.
    TemporaryFile(const std::filesystem::path& folder, const std::string& name);
    // Creates it where the system keeps temporary files, for nobody but its owner. Throws Failure.
    explicit TemporaryFile(const std::string& name);
    ~TemporaryFile();
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    [[nodiscard]] const std::filesystem::path& Path() const { return path_; }
    void RestrictToOwner() const;

  private:
    std::filesystem::path path_;
    std::size_t slot_;  // where the handler of signals finds the path
};

// Where the command was started without one of the standard streams, a file of its own would take the
// stream's place and receive messages. Call it first of all.
void FillStandardStreams();

// From now on the signals that end the command remove its temporary files first.
void RemoveTemporaryFilesOnSignals();

}  // namespace NCli
