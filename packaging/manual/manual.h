// The command's manual, a file each.
#pragma once

#include <ostream>

#include "packaging/manual/command_line.h"

namespace NManual {

void WriteManPage(const CommandLine& commandLine, std::ostream& file);

// What a shell offers when the user presses the tab key.
void WriteBashCompletion(const CommandLine& commandLine, std::ostream& file);
void WriteZshCompletion(const CommandLine& commandLine, std::ostream& file);
void WriteFishCompletion(const CommandLine& commandLine, std::ostream& file);

}  // namespace NManual
