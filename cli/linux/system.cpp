#include "cli/system.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <iterator>
#include <string>

namespace NCli {

namespace fs = std::filesystem;

std::vector<std::string> ReadArguments(int count, const char* const* values) {
    return {values + 1, values + count};
}

fs::path ToPath(std::string_view bytes) { return bytes; }

std::string ToBytes(const fs::path& path) { return path.native(); }

fs::path ToSystemPath(const fs::path& path) { return path; }

// What takes Excel's place is part of the process.
fs::path ToExcelPath(const fs::path& path) { return path; }

std::string FaultOfName(const fs::path&) { return {}; }

// The shell has put the files in its place.
std::vector<std::string> FilesOfPattern(const std::string& pattern) { return {pattern}; }

std::string ToUriPath(const fs::path& path) { return path.generic_string(); }

File OpenFile(const fs::path& path, const char* mode) { return File(std::fopen(path.c_str(), mode)); }

File OpenToReplace(const fs::path& path) { return OpenFile(path, "r+b"); }

File CreateNewFile(const fs::path& path, Readers readers) {
    constexpr int kFlags = O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC;
    const bool isForOwner = readers == Readers::Owner;
    const int descriptor = open(path.c_str(), kFlags, isForOwner ? 0600 : 0666);
    if (descriptor < 0) return nullptr;
    // The umask can keep it even from its owner. A file system without permissions refuses, and needs
    // nothing.
    if (isForOwner) static_cast<void>(fchmod(descriptor, 0600));
    File file(fdopen(descriptor, "w+b"));
    if (!file) {
        close(descriptor);
        RemoveFile(path.c_str());
        errno = ENOMEM;
    }
    return file;
}

fs::path PathToOpenFile(std::FILE* file, const fs::path& path) {
    const fs::path open = "/proc/self/fd/" + std::to_string(fileno(file));
    return access(open.c_str(), R_OK | W_OK) == 0 ? open : path;
}

std::error_code Rename(const fs::path& from, const fs::path& to, bool mayReplace) {
    const auto rename = [&](unsigned flags) -> std::error_code {
        if (renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), flags) == 0) return {};
        return {errno, std::generic_category()};
    };
    if (mayReplace) return rename(0);
    const std::error_code error = rename(RENAME_NOREPLACE);
    if (error != std::errc::invalid_argument && error != std::errc::function_not_supported) return error;
    struct stat there {};  // the file system or the kernel cannot do both at once
    return lstat(to.c_str(), &there) == 0 ? std::make_error_code(std::errc::file_exists) : rename(0);
}

bool HasName(std::FILE* file, const fs::path& path) {
    struct stat opened {};
    struct stat there {};
    if (fstat(fileno(file), &opened) != 0 || lstat(path.c_str(), &there) != 0) return false;
    errno = 0;
    return opened.st_dev == there.st_dev && opened.st_ino == there.st_ino;
}

// What the system reports at a close, it reports for each of a file's descriptors.
bool FinishWriting(std::FILE* file) {
    if (std::fflush(file) != 0) return false;
    const int copy = fcntl(fileno(file), F_DUPFD_CLOEXEC, 0);
    return copy >= 0 && close(copy) == 0;
}

bool FlushToDisk(std::FILE* file) { return std::fflush(file) == 0 && fsync(fileno(file)) == 0; }

fs::file_type TypeOf(const fs::path& path, std::error_code& error) { return fs::status(path, error).type(); }

fs::path PathOf(std::FILE* file, const fs::path& path) {
    std::error_code error;
    if (!fs::is_symlink(path, error)) return path;
    const fs::path found = fs::canonical(path, error);
    return !error && HasName(file, found) ? found : fs::path();
}

// The rule of Linux itself (fs.protected_symlinks).
bool MayFollow(const fs::path& link) {
    constexpr mode_t kShared = S_ISVTX | S_IWOTH;
    const fs::path parent = link.has_parent_path() ? link.parent_path() : ".";
    struct stat folder {};
    struct stat status {};
    if (stat(parent.c_str(), &folder) != 0 || lstat(link.c_str(), &status) != 0) return false;
    const bool isShared = (folder.st_mode & kShared) == kShared;
    return !isShared || status.st_uid == geteuid() || status.st_uid == folder.st_uid;
}

// An empty variable counts as none; the standard library takes it for a folder without a name.
fs::path TemporaryFolder(std::error_code& error) {
    for (const char* const name : {"TMPDIR", "TMP", "TEMP", "TEMPDIR"}) {
        const char* const value = std::getenv(name);
        if (value != nullptr && *value == '\0') unsetenv(name);
    }
    return fs::temp_directory_path(error);
}

bool AreSameFile(const fs::path& one, const fs::path& other) {
    std::error_code ignored;
    return fs::equivalent(one, other, ignored);
}

// Behind all links to it.
fs::path PlaceOf(const fs::path& file) {
    std::error_code error;
    const fs::path place = fs::weakly_canonical(fs::absolute(file, error), error);
    return error ? file : place;
}

std::string_view DriverAdvice() { return "On Linux, the package odbc-xls2tki has one."; }

bool IsTerminal(std::FILE* stream) { return isatty(fileno(stream)) != 0; }

// The faults are left to the system: after one, nothing that the command does can be relied upon.
static bool EndsFromOutside(int number) {
    static constexpr int kOthers[] = {SIGSEGV, SIGBUS,  SIGFPE,  SIGILL,  SIGTRAP, SIGSYS, SIGABRT, SIGSTOP,
                                      SIGTSTP, SIGTTIN, SIGTTOU, SIGCONT, SIGCHLD, SIGURG, SIGWINCH};
    return std::find(std::begin(kOthers), std::end(kOthers), number) == std::end(kOthers);
}

// While one is handled, no other is. SIGKILL and what the C library keeps for itself cannot be.
void HandleEndingSignals(void (*handler)(int)) {
    struct sigaction handled = {};
    handled.sa_handler = handler;
    sigfillset(&handled.sa_mask);
    for (int number = 1; number <= SIGRTMAX; ++number) {
        struct sigaction before = {};
        if (!EndsFromOutside(number) || sigaction(number, nullptr, &before) != 0) continue;
        if (before.sa_handler == SIG_DFL) sigaction(number, &handled, nullptr);
    }
}

void RemoveFile(const char* path) { std::remove(path); }

// Opened files take the lowest free numbers, and these stay open; writing to them fails. Those that were not
// needed do no harm.
StandardStreams::StandardStreams() {
    int streams = 3;
    while (streams > 0 && std::fopen("/dev/null", "r") != nullptr) --streams;
    std::signal(SIGXFSZ, SIG_IGN);  // a file at the size limit is a write that fails
}

StandardStreams::~StandardStreams() { static_cast<void>(consoleCodePage_); }

}  // namespace NCli
