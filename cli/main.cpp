// xls2tki: converts tables from the command line.
#include <functional>

#include "cli/batch.h"
#include "cli/command.h"
#include "cli/failure.h"
#include "cli/files.h"
#include "cli/options.h"

using namespace NCli;

static void Run(const std::vector<std::string>& arguments, bool& isOneOfMany) {
    CleanUpOnSignals();
    const std::optional<CommandLine> line = ReadCommandLine(arguments);
    if (!line) return;
    isOneOfMany = !line->isBatch && line->tasks.front().isOneOfMany;
    if (line->isBatch) {
        ConvertAll(*line);
    } else if (line->tasks.front().listsWorksheets) {
        ListWorksheets(line->tasks.front());
    } else {
        Convert(line->tasks.front());
    }
}

int main(int count, char** arguments) {
    const StandardStreams streams;
    bool isOneOfMany = false;
    const auto run = [&] { Run(ReadArguments(count, arguments), isOneOfMany); };
    const int status = ExitStatusOf(std::ref(run));  // which takes no memory
    return isOneOfMany ? WithErrorsFound(status) : status;
}
