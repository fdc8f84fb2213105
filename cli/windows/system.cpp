#include "cli/system.h"

#include <windows.h>
// Behind it:
#include <fcntl.h>
#include <io.h>
#include <shellapi.h>
#include <sys/stat.h>

#include <csignal>
#include <system_error>

#include "cli/text.h"

namespace NCli {

namespace fs = std::filesystem;

std::vector<std::string> ReadArguments(int, const char* const*) {
    struct FreeLocal {
        void operator()(LPWSTR* values) const { LocalFree(values); }
    };
    int count = 0;
    const std::unique_ptr<LPWSTR, FreeLocal> values(CommandLineToArgvW(GetCommandLineW(), &count));
    std::vector<std::string> arguments;
    for (int index = 1; index < count; ++index) arguments.push_back(EncodeUtf8(values.get()[index]));
    return arguments;
}

fs::path ToPath(std::string_view bytes) { return DecodeUtf8(bytes).text; }

std::string ToBytes(const fs::path& path) { return EncodeUtf8(path.native()); }

fs::path ToExcelPath(const fs::path& path) {
    std::error_code failure;
    const fs::path full = fs::absolute(path, failure);
    return failure ? path : full;
}

File OpenFile(const fs::path& path, const char* mode) {
    const std::wstring wideMode(mode, mode + std::string_view(mode).size());
    return File(_wfopen(path.c_str(), wideMode.c_str()));
}

File CreateNewFile(const fs::path& path) {
    const int descriptor =
        _wopen(path.c_str(), _O_CREAT | _O_EXCL | _O_WRONLY | _O_BINARY, _S_IREAD | _S_IWRITE);
    return File(descriptor < 0 ? nullptr : _fdopen(descriptor, "wb"));
}

fs::path NameKey(const fs::path& name) {
    std::wstring key = name.native();
    CharUpperBuffW(key.data(), static_cast<DWORD>(key.size()));
    return key;
}

bool IsTerminal(std::FILE* stream) { return _isatty(_fileno(stream)) != 0; }

std::span<const int> EndingSignals() {
    static constexpr int kSignals[] = {SIGINT, SIGTERM, SIGBREAK};  // the last also for a console that closes
    return kSignals;
}

void RemoveFile(const wchar_t* path) { _wremove(path); }

StandardStreams::StandardStreams() : consoleCodePage_(GetConsoleOutputCP()) {
    for (std::FILE* const stream : {stdin, stdout, stderr}) _setmode(_fileno(stream), _O_BINARY);
    SetConsoleOutputCP(CP_UTF8);
}

StandardStreams::~StandardStreams() { SetConsoleOutputCP(consoleCodePage_); }

}  // namespace NCli
