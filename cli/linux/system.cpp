#include "cli/system.h"

#include <unistd.h>

#include <csignal>

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

File OpenFile(const fs::path& path, const char* mode) { return File(std::fopen(path.c_str(), mode)); }

File CreateNewFile(const fs::path& path) { return OpenFile(path, "wbx"); }

FileState StateOf(const fs::path& path, std::error_code& error) {
    const fs::file_status status = fs::status(path, error);
    return {status.type(), static_cast<unsigned>(status.permissions())};
}

void SetAttributes(const fs::path& path, unsigned attributes, std::error_code& error) {
    fs::permissions(path, static_cast<fs::perms>(attributes), error);
}

bool AreSameFile(const fs::path& one, const fs::path& other) {
    std::error_code ignored;
    return fs::equivalent(one, other, ignored);
}

fs::path NameKey(const fs::path& name) { return name; }

std::string_view DriverAdvice() { return "On Linux, scripts/install-odbc-driver installs one."; }

bool IsTerminal(std::FILE* stream) { return isatty(fileno(stream)) != 0; }

std::span<const int> EndingSignals() {
    static constexpr int kSignals[] = {SIGINT, SIGTERM, SIGHUP, SIGPIPE, SIGQUIT, SIGXCPU};
    return kSignals;
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
