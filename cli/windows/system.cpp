#include "cli/system.h"

#include <windows.h>
// Behind it:
#include <fcntl.h>
#include <io.h>
#include <shellapi.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <iterator>
#include <system_error>

#include "cli/failure.h"
#include "cli/text.h"
#include "cli/windows/handle.h"
#include "cli/windows/names.h"

namespace NCli {

namespace fs = std::filesystem;

namespace {

std::error_code LastError() { return {static_cast<int>(GetLastError()), std::system_category()}; }

void SetErrno() {
    const std::error_condition reason = LastError().default_error_condition();
    errno = reason.category() == std::generic_category() ? reason.value() : EIO;
}

// Nobody can delete a file that the runtime has open, not even the handler of signals.
File OpenShared(const fs::path& path, DWORD creation, const char* mode) {
    Handle file =
        OwnFile(CreateFileW(ToSystemPath(path).c_str(), GENERIC_READ | GENERIC_WRITE, kShareWithEverybody,
                            nullptr, creation, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!file) {
        SetErrno();
        return nullptr;
    }
    const int descriptor = _open_osfhandle(reinterpret_cast<std::intptr_t>(file.get()), _O_BINARY);
    if (descriptor < 0) return nullptr;
    static_cast<void>(file.release());  // it is the descriptor's
    File stream(_fdopen(descriptor, mode));
    if (!stream) _close(descriptor);
    return stream;
}

// NOLINTNEXTLINE(performance-no-int-to-ptr): the runtime hands it out as a number
HANDLE HandleOf(std::FILE* file) { return reinterpret_cast<HANDLE>(_get_osfhandle(_fileno(file))); }

bool IsMissing(const std::error_code& error) {
    static constexpr int kErrors[] = {ERROR_FILE_NOT_FOUND, ERROR_PATH_NOT_FOUND, ERROR_INVALID_NAME,
                                      ERROR_BAD_NETPATH, ERROR_BAD_NET_NAME};
    return std::find(std::begin(kErrors), std::end(kErrors), error.value()) != std::end(kErrors);
}

}  // namespace

std::vector<std::string> ReadArguments(int, const char* const*) {
    struct FreeLocal {
        void operator()(LPWSTR* values) const { LocalFree(values); }
    };
    int count = 0;
    const std::unique_ptr<LPWSTR, FreeLocal> values(CommandLineToArgvW(GetCommandLineW(), &count));
    std::vector<std::string> arguments;
    for (int index = 1; index < count; ++index) {
        arguments.push_back(ToArgument(values.get()[index]));
    }
    return arguments;
}

fs::path ToPath(std::string_view bytes) { return DecodeUtf8(bytes).text; }

std::string ToBytes(const fs::path& path) { return EncodeUtf8(path.native()); }

File OpenFile(const fs::path& path, const char* mode) {
    const std::wstring wideMode(mode, mode + std::string_view(mode).size());
    return File(_wfopen(ToSystemPath(path).c_str(), wideMode.c_str()));
}

File OpenToReplace(const fs::path& path) { return OpenShared(path, OPEN_EXISTING, "r+b"); }

// Who may read it follows from its folder.
File CreateNewFile(const fs::path& path, Readers) { return OpenShared(path, CREATE_NEW, "w+b"); }

bool CopyRights(std::FILE* from, std::FILE* to) {
    constexpr DWORD kOwners =
        FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM | FILE_ATTRIBUTE_ARCHIVE;
    FILE_BASIC_INFO known{};
    FILE_BASIC_INFO wanted{};  // a time of 0 stays as it is
    bool isDone = GetFileInformationByHandleEx(HandleOf(from), FileBasicInfo, &known, sizeof known) != 0;
    const DWORD attributes = known.FileAttributes & kOwners;
    wanted.FileAttributes = attributes == 0 ? FILE_ATTRIBUTE_NORMAL : attributes;
    isDone = isDone && SetFileInformationByHandle(HandleOf(to), FileBasicInfo, &wanted, sizeof wanted) != 0;
    if (!isDone) SetErrno();
    return isDone;
}

fs::path PathToOpenFile(std::FILE*, const fs::path& path) { return path; }

std::error_code Rename(const fs::path& from, const fs::path& to, bool mayReplace) {
    const DWORD flags = mayReplace ? MOVEFILE_REPLACE_EXISTING : 0;
    const bool isDone = MoveFileExW(ToSystemPath(from).c_str(), ToSystemPath(to).c_str(), flags) != 0;
    return isDone ? std::error_code() : LastError();
}

// Who may replace a file follows from its folder.
bool HasName(std::FILE*, const fs::path&) { return true; }

bool FinishWriting(std::FILE* file) { return std::fflush(file) == 0; }

bool FlushToDisk(std::FILE* file) { return std::fflush(file) == 0 && _commit(_fileno(file)) == 0; }

// The runtime's own way knows no path of the long form.
fs::file_type TypeOf(const fs::path& path, std::error_code& error) {
    error.clear();
    const Handle file = OpenToAsk(path);
    if (file && GetFileType(file.get()) != FILE_TYPE_DISK) return fs::file_type::character;
    BY_HANDLE_FILE_INFORMATION known{};
    if (!file || GetFileInformationByHandle(file.get(), &known) == 0) {
        error = LastError();
        return IsMissing(error) ? fs::file_type::not_found : fs::file_type::none;
    }
    const bool isFolder = (known.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
    return isFolder ? fs::file_type::directory : fs::file_type::regular;
}

// A link is replaced itself.
fs::path PathOf(std::FILE*, const fs::path& path) { return path; }

bool MayFollow(const fs::path&) { return true; }

fs::path TemporaryFolder(std::error_code& error) { return fs::temp_directory_path(error); }

bool AreSameFile(const fs::path& one, const fs::path& other) {
    const Handle files[] = {OpenToAsk(one), OpenToAsk(other)};
    BY_HANDLE_FILE_INFORMATION known[2]{};
    for (int index = 0; index < 2; ++index) {
        if (!files[index] || GetFileInformationByHandle(files[index].get(), &known[index]) == 0) return false;
    }
    return known[0].dwVolumeSerialNumber == known[1].dwVolumeSerialNumber &&
           known[0].nFileIndexHigh == known[1].nFileIndexHigh &&
           known[0].nFileIndexLow == known[1].nFileIndexLow;
}

std::string_view DriverAdvice() { return "The Microsoft Access Database Engine, of 64 bits, has one."; }

bool IsTerminal(std::FILE* stream) { return _isatty(_fileno(stream)) != 0; }

void HandleEndingSignals(void (*handler)(int)) {
    for (const int number : {SIGINT, SIGTERM, SIGBREAK}) {  // the last also for a console that closes
        if (std::signal(number, handler) == SIG_IGN) std::signal(number, SIG_IGN);
    }
}

void RemoveFile(const wchar_t* path) { _wremove(ToSystemPath(path).c_str()); }

StandardStreams::StandardStreams() : consoleCodePage_(GetConsoleOutputCP()) {
    for (std::FILE* const stream : {stdin, stdout, stderr}) _setmode(_fileno(stream), _O_BINARY);
    SetConsoleOutputCP(CP_UTF8);
}

StandardStreams::~StandardStreams() { SetConsoleOutputCP(consoleCodePage_); }

}  // namespace NCli
