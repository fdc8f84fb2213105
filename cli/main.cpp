// xls2tki: converts tables from the command line.
#include <exception>

#include "cli/batch.h"
#include "cli/command.h"
#include "cli/failure.h"
#include "cli/files.h"
#include "cli/options.h"

using namespace NCli;

static void Run(const std::vector<std::string>& arguments) {
    CleanUpOnSignals();
    const std::optional<CommandLine> line = ReadCommandLine(arguments);
    if (!line) return;
    if (line->isBatch) {
        ConvertAll(*line);
    } else if (line->tasks.front().listsWorksheets) {
        ListWorksheets(line->tasks.front());
    } else {
        Convert(line->tasks.front());
    }
}

int main(int count, char** arguments) {
    constexpr int kDone = 0;
    constexpr int kFailed = 1;
    constexpr int kWrongUsage = 2;
    const StandardStreams streams;
    try {
        Run(ReadArguments(count, arguments));
        return kDone;
    } catch (const WrongUsage& wrong) {
        Tell(wrong.what());
        return kWrongUsage;
    } catch (const std::exception& error) {
        Tell(SentenceOf(error));
    } catch (...) {
        Tell("The conversion ended with an unknown error.");
    }
    return kFailed;
}
