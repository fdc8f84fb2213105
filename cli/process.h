// Tasks that are carried out in processes of their own.
#pragma once

#include <cstddef>
#include <string>

#include "cli/options.h"

namespace NCli {

inline constexpr std::size_t kMostProcesses = 64;

struct FinishedProcess {
    std::size_t index;  // the one that it was started with
    int status;         // what it ended with; where the system ended it, none of the command's own
    std::string text;   // what it wrote: to standard output where the task reports, else to standard error
};

// Starts a process that converts as the command does for one file. It reads nothing from standard input, and
// what it writes to the other stream is lost. There may be kMostProcesses at a time. Returns false where the
// system has too little for one more beside those that run: try again when one has ended. Throws Failure when
// there cannot be a process at all.
bool StartProcess(std::size_t index, const Options& task);

std::size_t RunningProcesses();

// Waits until one of them has ended; at least one has to run.
FinishedProcess WaitForProcess();

// For a handler of signals, which ends this process by the same signal afterwards: ends all such processes,
// which remove their temporary files, and waits for them.
void EndProcesses(int signal);

}  // namespace NCli
