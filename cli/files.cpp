#include "cli/files.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <random>
#include <system_error>
#include <vector>

#include "cli/failure.h"
#include "cli/process.h"
#include "cli/text.h"

namespace NCli {

namespace fs = std::filesystem;

std::string NameOf(const fs::path& path) {
    if (path == kStandardInput) return "standard input";
    if (path == kStandardOutput) return "standard output";
    const std::string name = ShownName(DecodeUtf8(ToBytes(path)).text, kWholeName);
    return std::string("\"").append(name).append("\"");
}

bool IsRegularFile(const fs::path& path) {
    std::error_code ignored;
    return TypeOf(path, ignored) == fs::file_type::regular;
}

CopyResult Copy(std::FILE* source, std::FILE* destination, std::uint64_t limit) {
    std::vector<char> piece(std::size_t{1} << 18);
    std::uint64_t size = 0;
    while (const std::size_t count = std::fread(piece.data(), 1, piece.size(), source)) {
        size += count;
        if (size > limit) return CopyResult::TooLarge;
        if (std::fwrite(piece.data(), 1, count, destination) != count) return CopyResult::NotWritten;
    }
    if (std::ferror(source) != 0) return CopyResult::NotRead;
    return std::fflush(destination) == 0 ? CopyResult::Done : CopyResult::NotWritten;
}

namespace {

// The paths for the handler of signals, which may neither allocate nor lock.
struct Slot {
    volatile std::sig_atomic_t isUsed;
    fs::path::value_type path[32768];  // no system takes a longer one
};
constinit Slot slots[4]{};

void RemoveFilesAndDie(int number) {
    EndProcesses(number);
    for (const Slot& slot : slots) {
        if (slot.isUsed != 0) RemoveFile(slot.path);
    }
    std::signal(number, SIG_DFL);
    std::raise(number);
}

std::size_t TakeSlot(const fs::path::string_type& path) {
    std::size_t index = 0;
    while (slots[index].isUsed != 0) ++index;
    Slot& slot = slots[index];
    slot.path[path.copy(slot.path, std::size(slot.path) - 1)] = 0;
    std::atomic_signal_fence(std::memory_order_release);
    slot.isUsed = 1;
    return index;
}

// A hidden name that no other file has, begun with as much of `name` as every file system takes.
std::string UniqueName(const std::string& name) {
    constexpr std::size_t kLongestBeginning = 100;
    std::size_t size = std::min(name.size(), kLongestBeginning);
    const auto isInsideCharacter = [&] { return size < name.size() && (name[size] & 0xC0) == 0x80; };
    while (size > 0 && isInsideCharacter()) --size;
    std::random_device random;
    char unique[20];
    std::snprintf(unique, sizeof unique, ".%08x%08x", random(), random());
    return std::string(".").append(name, 0, size).append(unique);
}

fs::path SystemFolder() {
    std::error_code error;
    fs::path folder = TemporaryFolder(error);
    if (!error) return folder;
    throw Failure("The folder for temporary files cannot be used: " + error.message());
}

}  // namespace

TemporaryFile::TemporaryFile(const fs::path& folder, const std::string& name, Readers readers)
    : path_(folder / ToPath(UniqueName(name))),
      slot_(TakeSlot(path_.native())),
      file_(CreateNewFile(path_, readers)) {
    if (file_) {
        pathToOpen_ = PathToOpenFile(file_.get(), path_);
        return;
    }
    const int error = errno;
    slots[slot_].isUsed = 0;
    throw Failure("Could not create a file in the folder " + NameOf(folder) + ": " + SystemText(error));
}

TemporaryFile::TemporaryFile(const std::string& name) : TemporaryFile(SystemFolder(), name) {}

TemporaryFile::~TemporaryFile() {
    file_.reset();  // so that there it is removed at once
    RemoveFile(path_.c_str());
    slots[slot_].isUsed = 0;
}

bool CloseStandardOutput() { return std::fclose(stdout) == 0; }

void CleanUpOnSignals() { HandleEndingSignals(RemoveFilesAndDie); }

void LeaveTemporaryFiles() {
    for (Slot& slot : slots) slot.isUsed = 0;
}

}  // namespace NCli
