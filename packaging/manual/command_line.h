// The command line as plain data: what the man page and the completions are made of.
#pragma once

#include <string>
#include <vector>

namespace NManual {

enum class ValueKind { None, Text, Choice, File, Folder, Worksheet };

struct Option {
    std::vector<std::string> names;  // with their hyphens, short ones first; an operand has none
    std::string value;               // the word that stands for its value
    ValueKind kind = ValueKind::None;
    std::vector<std::string> choices;  // of which one is the value
    bool isRepeatable = false;
    std::string help;
};

struct CommandLine {
    std::string about;               // a sentence
    std::vector<std::string> usage;  // a way to call the command each
    std::vector<Option> options;
    std::vector<Option> operands;
    std::vector<std::string> examples;
};

// From the command's table of options.
CommandLine DescribeCommandLine();

}  // namespace NManual
