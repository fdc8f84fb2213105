#include "cli/process.h"

#include <windows.h>

#include <atomic>
#include <mutex>
#include <string_view>
#include <system_error>
#include <utility>

#include "cli/failure.h"
#include "cli/process_slots.h"
#include "cli/text.h"
#include "cli/windows/handle.h"

namespace NCli {

namespace {

// For the handler of signals: null, or a process that was not waited for yet.
ProcessSlots<HANDLE> processes;
std::atomic<bool> isEnding;

[[noreturn]] void RefuseToRun() {
    const int error = static_cast<int>(GetLastError());
    throw Failure("Could not start a process: " + std::system_category().message(error));
}

// The handler in another thread is about to end this process; nothing is to be told of what it ended.
void StopIfEnding() {
    while (isEnding) Sleep(INFINITE);
}

// Between quotation marks as programs read it: a quotation mark has a backslash in front, and all backslashes
// in front of one are doubled.
void AppendQuoted(std::wstring& line, std::string_view argument) {
    line += L" \"";
    std::size_t backslashes = 0;
    for (const wchar_t unit : DecodeUtf8(argument).text) {
        if (unit == L'"') line.append(backslashes + 1, L'\\');
        backslashes = unit == L'\\' ? backslashes + 1 : 0;
        line += unit;
    }
    line.append(backslashes, L'\\') += L'"';
}

std::wstring CommandLineOf(const std::vector<std::string>& arguments) {
    std::wstring line = L"xls2tki";
    for (const std::string& argument : arguments) AppendQuoted(line, argument);
    return line;
}

std::wstring OwnProgram() {
    std::wstring path(32768, L'\0');  // the longest
    path.resize(GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size())));
    return path;
}

Handle OpenNothing(DWORD access, SECURITY_ATTRIBUTES& inherited) {
    return OwnFile(CreateFileW(L"NUL", access, FILE_SHARE_READ | FILE_SHARE_WRITE, &inherited, OPEN_EXISTING,
                               0, nullptr));
}

struct Started {
    Handle process;
    Handle source;  // what it writes
};

Started Start(const std::vector<std::string>& arguments, Stream stream) {
    constexpr DWORD kPipeSize = 1 << 20;
    // Another process is not to inherit what this one writes to.
    static std::mutex oneAtATime;
    const std::scoped_lock lock(oneAtATime);
    SECURITY_ATTRIBUTES inherited = {sizeof inherited, nullptr, TRUE};
    HANDLE ends[2] = {};
    if (CreatePipe(&ends[0], &ends[1], &inherited, kPipeSize) == 0) RefuseToRun();
    Handle source(ends[0]);
    const Handle destination(ends[1]);
    SetHandleInformation(source.get(), HANDLE_FLAG_INHERIT, 0);
    const Handle noInput = OpenNothing(GENERIC_READ, inherited);
    const Handle noOutput = OpenNothing(GENERIC_WRITE, inherited);
    STARTUPINFOW streams{};
    streams.cb = sizeof streams;
    streams.dwFlags = STARTF_USESTDHANDLES;
    streams.hStdInput = noInput.get();
    streams.hStdOutput = stream == Stream::Output ? destination.get() : noOutput.get();
    streams.hStdError = stream == Stream::Errors ? destination.get() : noOutput.get();
    PROCESS_INFORMATION started{};
    std::wstring line = CommandLineOf(arguments);
    if (CreateProcessW(OwnProgram().c_str(), line.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr,
                       &streams, &started) == 0) {
        RefuseToRun();
    }
    CloseHandle(started.hThread);
    return {Handle(started.hProcess), std::move(source)};
}

void ReadAvailable(HANDLE source, std::string& text) {
    char piece[4096];
    DWORD count = 0;
    while (PeekNamedPipe(source, piece, sizeof piece, &count, nullptr, nullptr) != 0 && count > 0) {
        if (ReadFile(source, piece, count, &count, nullptr) == 0) return;
        text.append(piece, count);
    }
}

// The stream's end would not do: what the process started, such as parts of the system, may keep it open.
std::string ReadUntilEnd(HANDLE process, HANDLE source) {
    constexpr DWORD kMilliseconds = 10;
    std::string text;
    for (bool isRunning = true; isRunning;) {
        isRunning = WaitForSingleObject(process, kMilliseconds) == WAIT_TIMEOUT;
        ReadAvailable(source, text);
    }
    return text;
}

}  // namespace

FinishedProcess RunCommand(const std::vector<std::string>& arguments, Stream stream) {
    StopIfEnding();
    const Started started = Start(arguments, stream);
    std::atomic<HANDLE>& slot = processes.Take(started.process.get());
    std::string text = ReadUntilEnd(started.process.get(), started.source.get());
    slot = nullptr;
    StopIfEnding();
    DWORD status = 0;
    GetExitCodeProcess(started.process.get(), &status);
    return {static_cast<int>(status), std::move(text)};
}

// What interrupts this process interrupts those of the same console, too. They get time to remove their
// files.
void EndProcesses() {
    constexpr DWORD kMilliseconds = 10'000;
    isEnding = true;
    for (const auto& process : processes) {
        void* const running = process;
        if (running == nullptr) continue;
        if (WaitForSingleObject(running, kMilliseconds) == WAIT_TIMEOUT) TerminateProcess(running, 1);
    }
}

}  // namespace NCli
