#include "packaging/manual/command_line.h"

#include <CLI/CLI.hpp>
#include <sstream>
#include <string_view>

#include "cli/options.h"

namespace NManual {

namespace {

// The words that stand for a value in the help tell what it is.
ValueKind KindOfValue(std::string_view word) {
    for (const char* file : {"FILE", "FILES", "WORKBOOK", "INPUT", "OUTPUT"}) {
        if (word == file) return ValueKind::File;
    }
    for (const char* folder : {"DIR", "FOLDER"}) {
        if (word == folder) return ValueKind::Folder;
    }
    if (word == "CHAR") return ValueKind::Choice;
    return word.find('|') == std::string_view::npos ? ValueKind::Text : ValueKind::Choice;
}

// "a|b" is a choice. Of characters, those are that have a name.
std::vector<std::string> ChoicesOf(const std::string& word) {
    if (word == "CHAR") {
        std::vector<std::string> names;
        for (const NCli::Separator& separator : NCli::kSeparators) names.emplace_back(separator.name);
        return names;
    }
    std::istringstream words(word);
    std::vector<std::string> choices;
    for (std::string choice; std::getline(words, choice, '|');) choices.push_back(choice);
    return choices;
}

Option DescribeOption(const CLI::Option& declared) {
    Option option;
    for (const std::string& name : declared.get_snames()) option.names.push_back("-" + name);
    for (const std::string& name : declared.get_lnames()) option.names.push_back("--" + name);
    if (option.names.empty()) {
        option.value = declared.get_name(true);
    } else if (declared.get_type_size() != 0) {
        option.value = declared.get_type_name();
    }
    if (!option.value.empty()) option.kind = KindOfValue(option.value);
    if (declared.check_lname("worksheet")) option.kind = ValueKind::Worksheet;
    if (option.kind == ValueKind::Choice) option.choices = ChoicesOf(option.value);
    option.isRepeatable = !option.value.empty() && declared.get_items_expected_max() > 1;
    option.help = declared.get_description();
    return option;
}

// The lines below a heading such as "Usage:", without the heading and what they are indented by.
std::vector<std::string> LinesBelowHeading(std::string text) {
    text.erase(0, text.find(':') + 1);
    std::istringstream lines(text);
    std::vector<std::string> found;
    for (std::string line; std::getline(lines, line);) {
        const std::size_t begin = line.find_first_not_of(' ');
        if (begin != std::string::npos) found.push_back(line.substr(begin));
    }
    return found;
}

}  // namespace

CommandLine DescribeCommandLine() {
    CommandLine description;
    NCli::ReadOptionTable([&description](const CLI::App& app) {
        description.about = app.get_description();
        const auto& formatter = dynamic_cast<const CLI::Formatter&>(*app.get_formatter());
        description.usage = LinesBelowHeading(formatter.make_usage(&app, ""));
        description.examples = LinesBelowHeading(app.get_footer());
        for (const CLI::Option* declared : app.get_options()) {
            if (declared->nonpositional() && declared->get_group().empty()) continue;  // hidden
            Option option = DescribeOption(*declared);
            (option.names.empty() ? description.operands : description.options).push_back(std::move(option));
        }
    });
    return description;
}

}  // namespace NManual
