// Writes the command's man page and its completions for shells into the folder that the argument names.
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>

#include "packaging/manual/manual.h"

using namespace NManual;

int main(int count, char** arguments) {
    constexpr struct {
        const char* name;
        void (*write)(const CommandLine&, std::ostream&);
    } kFiles[] = {{"xls2tki.1", WriteManPage},
                  {"xls2tki.bash", WriteBashCompletion},
                  {"_xls2tki", WriteZshCompletion},
                  {"xls2tki.fish", WriteFishCompletion}};
    if (count != 2) {
        std::fputs("Usage: xls2tki-manual FOLDER\n", stderr);
        return EXIT_FAILURE;
    }
    const CommandLine commandLine = DescribeCommandLine();
    for (const auto& [name, write] : kFiles) {
        const std::string path = std::string(arguments[1]) + "/" + name;
        std::ofstream file(path, std::ios::binary);
        write(commandLine, file);
        if (!file.flush()) {
            std::perror(path.c_str());
            return EXIT_FAILURE;
        }
    }
    return EXIT_SUCCESS;
}
