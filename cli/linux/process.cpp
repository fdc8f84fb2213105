#include "cli/process.h"

#include <fcntl.h>
#include <sched.h>
#include <spawn.h>
#include <sys/auxv.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <system_error>
#include <thread>
#include <utility>

#include "cli/failure.h"
#include "cli/process_slots.h"

namespace NCli {

namespace {

constexpr pid_t kStarting = -1;

// For the handler of signals: 0, a process that was not waited for yet, or one about to be started.
ProcessSlots<pid_t> processes;
std::atomic<bool> isEnding;

// Processes that end give back what there was too little of.
bool IsShortage(int error) {
    return error == EAGAIN || error == EMFILE || error == ENFILE || error == ENOMEM;
}

// The handler in another thread is about to end this process; nothing is to be told of what it ended.
void StopIfEnding() {
    while (isEnding) pause();
}

class Descriptor {
  public:
    explicit Descriptor(int number) : number_(number) {}
    ~Descriptor() { Close(); }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    [[nodiscard]] int Number() const { return number_; }
    void Close() {
        if (number_ >= 0) close(std::exchange(number_, -1));
    }

  private:
    int number_;
};

// What becomes of the standard streams.
class Redirection {
  public:
    Redirection(Stream stream, const Descriptor& destination) {
        const int number = stream == Stream::Output ? STDOUT_FILENO : STDERR_FILENO;
        const int other = stream == Stream::Output ? STDERR_FILENO : STDOUT_FILENO;
        posix_spawn_file_actions_init(&actions_);
        posix_spawn_file_actions_addopen(&actions_, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
        posix_spawn_file_actions_adddup2(&actions_, destination.Number(), number);
        posix_spawn_file_actions_addopen(&actions_, other, "/dev/null", O_WRONLY, 0);
    }
    ~Redirection() { posix_spawn_file_actions_destroy(&actions_); }
    Redirection(const Redirection&) = delete;
    Redirection& operator=(const Redirection&) = delete;

    [[nodiscard]] const posix_spawn_file_actions_t* Actions() const { return &actions_; }

  private:
    posix_spawn_file_actions_t actions_{};
};

class BlockedSignals {
  public:
    BlockedSignals() {
        sigset_t all;
        sigfillset(&all);
        pthread_sigmask(SIG_BLOCK, &all, &before_);
    }
    ~BlockedSignals() { pthread_sigmask(SIG_SETMASK, &before_, nullptr); }
    BlockedSignals(const BlockedSignals&) = delete;
    BlockedSignals& operator=(const BlockedSignals&) = delete;

    [[nodiscard]] const sigset_t& Before() const { return before_; }

  private:
    sigset_t before_{};
};

// What signals the process has blocked.
class Attributes {
  public:
    explicit Attributes(const sigset_t& blocked) {
        posix_spawnattr_init(&attributes_);
        posix_spawnattr_setsigmask(&attributes_, &blocked);
        posix_spawnattr_setflags(&attributes_, POSIX_SPAWN_SETSIGMASK);
    }
    ~Attributes() { posix_spawnattr_destroy(&attributes_); }
    Attributes(const Attributes&) = delete;
    Attributes& operator=(const Attributes&) = delete;

    [[nodiscard]] const posix_spawnattr_t* Get() const { return &attributes_; }

  private:
    posix_spawnattr_t attributes_{};
};

// Found once: when the command is replaced by a later one meanwhile, this is its place. Where there is no
// /proc, such as in a bare chroot, the path by which the command was started has to do.
const std::string& Program() {
    static const std::string program = [] {
        std::error_code error;
        const std::filesystem::path path = std::filesystem::read_symlink("/proc/self/exe", error);
        // NOLINTNEXTLINE(performance-no-int-to-ptr): the system hands it out as a number
        return error ? std::string(reinterpret_cast<const char*>(getauxval(AT_EXECFN))) : path.string();
    }();
    return program;
}

struct Started {
    std::atomic<pid_t>& slot;
    int error;  // 0, or why there is no process, as errno has it
};

// Signals are blocked until the process is known: the handler, which waits for that, must not interrupt this
// thread.
Started Start(std::vector<std::string> arguments, const Redirection& redirection) {
    const std::string& program = Program();
    std::string name = "xls2tki";
    std::vector<char*> values = {name.data()};
    for (std::string& argument : arguments) values.push_back(argument.data());
    values.push_back(nullptr);
    const BlockedSignals blocked;
    const Attributes attributes(blocked.Before());
    std::atomic<pid_t>& slot = processes.Take(kStarting);
    if (isEnding) {
        slot = 0;
        StopIfEnding();
    }
    pid_t process = 0;
    const int error = posix_spawn(&process, program.c_str(), redirection.Actions(), attributes.Get(),
                                  values.data(), environ);
    slot = error == 0 ? process : 0;
    return {slot, error};
}

std::string ReadAll(const Descriptor& source) {
    std::string text;
    char piece[4096];
    for (ssize_t count = 1; count != 0;) {
        count = read(source.Number(), piece, sizeof piece);
        if (count > 0) text.append(piece, static_cast<std::size_t>(count));
        if (count < 0 && errno != EINTR) break;
    }
    return text;
}

// As shells have it.
int StatusOf(const siginfo_t& end) { return end.si_code == CLD_EXITED ? end.si_status : 128 + end.si_status; }

// The handler knows the process until it has ended, and no other one has its number meanwhile.
int WaitFor(std::atomic<pid_t>& slot) {
    const pid_t process = slot;
    siginfo_t end{};
    while (waitid(P_PID, static_cast<id_t>(process), &end, WEXITED | WNOWAIT) != 0 && errno == EINTR) {
    }
    slot = 0;
    waitpid(process, nullptr, 0);
    StopIfEnding();
    return StatusOf(end);
}

bool IsAnyRunning() {
    return std::any_of(processes.begin(), processes.end(),
                       [](const std::atomic<pid_t>& process) { return process > 0; });
}

// Returns 0, or why there cannot be a process, as errno has it.
int RunOnce(const std::vector<std::string>& arguments, Stream stream, FinishedProcess& finished) {
    int ends[2] = {};
    if (pipe2(ends, O_CLOEXEC) != 0) return errno;
    const Descriptor source(ends[0]);
    Descriptor destination(ends[1]);
    const Started started = Start(arguments, Redirection(stream, destination));
    if (started.error != 0) return started.error;
    destination.Close();
    finished.text = ReadAll(source);
    finished.status = WaitFor(started.slot);
    return 0;
}

}  // namespace

FinishedProcess RunCommand(const std::vector<std::string>& arguments, Stream stream) {
    constexpr int kTriesAlone = 10;
    FinishedProcess finished{};
    for (int tries = 1;; ++tries) {
        const int error = RunOnce(arguments, stream, finished);
        if (error == 0) return finished;
        if (!IsShortage(error) || (tries >= kTriesAlone && !IsAnyRunning())) {
            throw Failure("Could not start a process: " + SystemText(error));
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
}

void EndProcesses() {
    isEnding = true;
    for (const auto& process : processes) {
        while (process == kStarting) sched_yield();
        if (const pid_t number = process; number != 0) kill(number, SIGTERM);
    }
    for (const auto& process : processes) {
        const pid_t number = process;
        while (number != 0 && waitpid(number, nullptr, 0) < 0 && errno == EINTR) {
        }
    }
}

}  // namespace NCli
