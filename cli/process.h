// This command once more, in processes of their own.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace NCli {

inline constexpr std::size_t kMostProcesses = 64;

enum class Stream { Output, Errors };

struct FinishedProcess {
    int status;        // what it ended with; where the system ended it, none of the command's own
    std::string text;  // what it wrote to the stream, all of it
};

// Runs the command with these arguments until it ends. It reads nothing from standard input, and what it
// writes to the other stream is lost. May be called by several threads at a time, at most kMostProcesses.
// Throws Failure when there cannot be another process.
FinishedProcess RunCommand(const std::vector<std::string>& arguments, Stream stream);

// For a handler of signals that goes on to end this process: ends all such processes, which remove their
// temporary files. No call of RunCommand returns any more.
void EndProcesses();

}  // namespace NCli
