// Many conversions by one command.
#pragma once

#include "cli/options.h"

namespace NCli {

// Carries out each task in a process of its own, so that none can harm another, and several at a time as the
// command line says. Standard output gets a line for each: its name and how it ended, or its report; they
// come in the order of the tasks, each as soon as it and all before it have ended. Standard error gets a
// summary and, on a terminal, the progress.
//
// Throws Failure with the summary when a task failed, after all have been tried.
void ConvertAll(const CommandLine& line);

}  // namespace NCli
