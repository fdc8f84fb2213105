// xls2tki: converts one table from the command line.
#include <exception>
#include <new>

#include "cli/command.h"
#include "cli/failure.h"
#include "cli/files.h"
#include "cli/options.h"

using namespace NCli;

static void Run(const std::vector<std::string>& arguments) {
    RemoveTemporaryFilesOnSignals();
    const std::optional<Options> options = ReadCommandLine(arguments);
    if (!options) return;
    if (options->listsWorksheets) {
        ListWorksheets(*options);
    } else {
        Convert(*options);
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
    } catch (const std::bad_alloc&) {
        Tell("Not enough memory to convert this table.");
    } catch (const std::exception& error) {
        Tell(error.what());
    } catch (...) {
        Tell("The conversion ended with an unknown error.");
    }
    return kFailed;
}
