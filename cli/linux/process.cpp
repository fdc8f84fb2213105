#include "cli/process.h"

#include <fcntl.h>
#include <poll.h>
#include <stdio_ext.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <csignal>
#include <new>
#include <thread>
#include <utility>
#include <vector>

#include "cli/command.h"
#include "cli/failure.h"
#include "cli/files.h"

namespace NCli {

namespace {

class Descriptor {
  public:
    explicit Descriptor(int number) : number_(number) {}
    Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
    Descriptor& operator=(Descriptor&& other) noexcept {
        std::swap(number_, other.number_);
        return *this;
    }
    ~Descriptor() { Close(); }

    [[nodiscard]] int Number() const { return number_; }
    void Close() {
        if (number_ >= 0) close(std::exchange(number_, -1));
    }

  private:
    int number_;
};

class BlockedSignals {
  public:
    BlockedSignals() {
        sigset_t all;
        sigfillset(&all);
        sigprocmask(SIG_BLOCK, &all, &before_);
    }
    ~BlockedSignals() { Unblock(); }
    BlockedSignals(const BlockedSignals&) = delete;
    BlockedSignals& operator=(const BlockedSignals&) = delete;

    void Unblock() { sigprocmask(SIG_SETMASK, &before_, nullptr); }

  private:
    sigset_t before_{};
};

struct Child {
    std::size_t index;
    pid_t process;
    Descriptor source;  // what it writes
    std::string text;   // so far
};

// All that were not waited for yet. The handler of signals reads it, so it changes while they are blocked.
std::vector<Child> children;

// In the new process. What the parent has open for its other children, and has not written yet, is not to be
// kept or written here.
[[noreturn]] void CarryOut(const Options& task, pid_t parent, BlockedSignals& signals, Descriptor& nothing,
                           Descriptor& destination) {
    children.clear();
    LeaveTemporaryFiles();
    __fpurge(stdout);
    dup2(nothing.Number(), STDIN_FILENO);
    dup2(task.reports ? destination.Number() : nothing.Number(), STDOUT_FILENO);
    dup2(task.reports ? nothing.Number() : destination.Number(), STDERR_FILENO);
    nothing.Close();
    destination.Close();
    prctl(PR_SET_PDEATHSIG, SIGTERM);   // where the parent cannot end its children itself
    if (getppid() != parent) _exit(1);  // before the system was told so
    signals.Unblock();
    _exit(WithErrorsFound(ExitStatusOf([&task] { Convert(task); })));
}

// Returns 0, or why there is no new process, as errno has it.
int TryToStart(std::size_t index, const Options& task) {
    Descriptor nothing(open("/dev/null", O_RDWR | O_CLOEXEC));
    int ends[2] = {};
    if (nothing.Number() < 0 || pipe2(ends, O_CLOEXEC) != 0) return errno;
    Descriptor source(ends[0]);
    Descriptor destination(ends[1]);
    std::signal(SIGCHLD, SIG_DFL);  // ignored, as it may be since the start, no child could be waited for
    const pid_t parent = getpid();
    BlockedSignals signals;
    children.push_back({index, 0, std::move(source), {}});
    const pid_t process = fork();
    if (process == 0) CarryOut(task, parent, signals, nothing, destination);
    const int error = errno;
    if (process < 0) {
        children.pop_back();
        return error;
    }
    children.back().process = process;
    return 0;
}

// Processes that end give back what there was too little of.
bool IsShortage(int error) {
    return error == EAGAIN || error == EMFILE || error == ENFILE || error == ENOMEM;
}

// Returns false at the end. A child that writes more than there is memory for is not heard any longer; it
// ends by writing on.
bool ReadPiece(Child& child) {
    char piece[4096];
    const ssize_t count = read(child.source.Number(), piece, sizeof piece);
    if (count <= 0) return count < 0 && errno == EINTR;
    try {
        child.text.append(piece, static_cast<std::size_t>(count));
    } catch (const std::bad_alloc&) {
        child.text = {};
        child.source.Close();
    }
    return child.source.Number() >= 0;
}

// Its number is not given to another process until the handler of signals does not know it any more.
int WaitFor(pid_t process) {
    siginfo_t end{};
    while (waitid(P_PID, static_cast<id_t>(process), &end, WEXITED | WNOWAIT) != 0 && errno == EINTR) {
    }
    return end.si_code == CLD_EXITED ? end.si_status : 128 + end.si_status;  // as shells have it
}

FinishedProcess Finish(std::vector<Child>::iterator child) {
    const int status = WaitFor(child->process);
    FinishedProcess finished = {child->index, status, std::move(child->text)};
    const BlockedSignals signals;
    waitpid(child->process, nullptr, 0);
    children.erase(child);
    return finished;
}

}  // namespace

bool StartProcess(std::size_t index, const Options& task) {
    constexpr int kTriesAlone = 10;
    for (int tries = 1;; ++tries) {
        const int error = TryToStart(index, task);
        if (error == 0) return true;
        if (IsShortage(error) && !children.empty()) return false;
        if (!IsShortage(error) || tries == kTriesAlone) {
            throw Failure("Could not start a process: " + SystemText(error));
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
}

std::size_t RunningProcesses() { return children.size(); }

FinishedProcess WaitForProcess() {
    for (;;) {
        pollfd sources[kMostProcesses] = {};
        for (std::size_t index = 0; index < children.size(); ++index) {
            sources[index] = {children[index].source.Number(), POLLIN, 0};
        }
        poll(sources, children.size(), -1);
        for (std::size_t index = 0; index < children.size(); ++index) {
            if (sources[index].revents != 0 && !ReadPiece(children[index])) {
                return Finish(children.begin() + static_cast<std::ptrdiff_t>(index));
            }
        }
    }
}

// A child that is stopped has to go on to end.
void EndProcesses(int signal) {
    for (const Child& child : children) {
        kill(child.process, signal);
        kill(child.process, SIGCONT);
    }
    for (const Child& child : children) waitpid(child.process, nullptr, 0);
}

}  // namespace NCli
