#include "cli/process.h"

#include <windows.h>

#include <mutex>
#include <new>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include "cli/failure.h"
#include "cli/text.h"
#include "cli/windows/handle.h"

namespace NCli {

namespace {

struct Child {
    std::size_t index;
    Handle process;
    Handle source;     // what it writes
    std::string text;  // so far
};

// The handler of signals, in a thread of its own, keeps the lock while it ends this process; nothing is to be
// told of what it ended.
std::mutex changing;
std::vector<Child> children;

[[noreturn]] void RefuseToRun() {
    const int error = static_cast<int>(GetLastError());
    throw Failure("Could not start a process: " + std::system_category().message(error));
}

// Between quotation marks as programs read it: a quotation mark has a backslash in front, and all backslashes
// in front of one are doubled.
void AppendQuoted(std::wstring& line, std::wstring_view argument) {
    line += L" \"";
    std::size_t backslashes = 0;
    for (const wchar_t unit : argument) {
        if (unit == L'"') line.append(backslashes + 1, L'\\');
        backslashes = unit == L'\\' ? backslashes + 1 : 0;
        line += unit;
    }
    line.append(backslashes, L'\\') += L'"';
}

std::wstring CommandLineOf(const Options& task) {
    std::wstring line = L"xls2tki";
    const auto add = [&line](const wchar_t* name, const std::wstring& value) {
        AppendQuoted(line, name + value);
    };
    add(L"--", DecodeUtf8(NameOfKind(task.kind)).text);
    if (task.separator) add(L"--separator=", {*task.separator});
    if (task.encoding) add(L"--encoding=", DecodeUtf8(NameOfEncoding(*task.encoding)).text);
    if (task.checks) line += L" --check";
    if (task.force) line += L" --force";
    if (task.reports) line += L" --json";
    if (task.strict) line += L" --strict";
    if (!task.findings) line += L" --no-findings";
    if (!task.sarif.empty()) line += L" --sarif=-";
    line += L" --one-of-many";
    add(L"--worksheet=", task.worksheet);
    for (const std::wstring& name : task.vsgNames) add(L"--vsg=", name);
    for (const std::wstring& name : task.typeANames) add(L"--type-a=", name);
    add(L"--variant=", task.variant);
    add(L"--diag-instance=", task.diagnosticInstance);
    line += L" --";
    AppendQuoted(line, task.input.native());
    if (!task.checks) AppendQuoted(line, task.output.native());
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

Child Start(std::size_t index, const Options& task) {
    constexpr DWORD kPipeSize = 1 << 20;
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
    streams.hStdOutput = task.reports ? destination.get() : noOutput.get();
    streams.hStdError = task.reports ? noOutput.get() : destination.get();
    PROCESS_INFORMATION started{};
    std::wstring line = CommandLineOf(task);
    if (CreateProcessW(OwnProgram().c_str(), line.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr,
                       &streams, &started) == 0) {
        RefuseToRun();
    }
    CloseHandle(started.hThread);
    return {index, Handle(started.hProcess), std::move(source), {}};
}

// If a child writes more than fits in memory, the command stops reading; the child ends when it writes more.
void ReadAvailable(Child& child) {
    char piece[4096];
    DWORD count = 0;
    while (child.source &&
           PeekNamedPipe(child.source.get(), piece, sizeof piece, &count, nullptr, nullptr) != 0 &&
           count > 0) {
        if (ReadFile(child.source.get(), piece, count, &count, nullptr) == 0) return;
        try {
            child.text.append(piece, count);
        } catch (const std::bad_alloc&) {
            child.text = {};
            child.source.reset();
        }
    }
}

FinishedProcess Finish(std::vector<Child>::iterator child) {
    DWORD status = 0;
    GetExitCodeProcess(child->process.get(), &status);
    FinishedProcess finished = {child->index, static_cast<int>(status), std::move(child->text)};
    const std::scoped_lock lock(changing);
    children.erase(child);
    return finished;
}

}  // namespace

bool StartProcess(std::size_t index, const Options& task) {
    const std::scoped_lock lock(changing);
    children.push_back(Start(index, task));
    return true;
}

std::size_t RunningProcesses() { return children.size(); }

// The end of what it writes would not do: what a process started, such as parts of the system, may keep that
// open.
FinishedProcess WaitForProcess() {
    constexpr DWORD kMilliseconds = 10;
    static_assert(kMostProcesses <= MAXIMUM_WAIT_OBJECTS);
    for (;;) {
        std::vector<HANDLE> processes;
        processes.reserve(children.size());
        for (const Child& child : children) processes.push_back(child.process.get());
        const auto count = static_cast<DWORD>(processes.size());
        const DWORD ended = WaitForMultipleObjects(count, processes.data(), FALSE, kMilliseconds);
        for (Child& child : children) ReadAvailable(child);
        if (ended < count) return Finish(children.begin() + static_cast<std::ptrdiff_t>(ended));
    }
}

// What interrupts this process interrupts those of the same console, too. They get time to remove their
// files.
void EndProcesses(int) {
    constexpr DWORD kMilliseconds = 10'000;
    changing.lock();
    for (const Child& child : children) {
        if (WaitForSingleObject(child.process.get(), kMilliseconds) == WAIT_TIMEOUT) {
            TerminateProcess(child.process.get(), 1);
        }
    }
}

}  // namespace NCli
