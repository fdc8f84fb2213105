#include <string_view>

#include "packaging/manual/manual.h"

namespace NManual {

namespace {

std::string Join(const std::vector<std::string>& texts, const char* between) {
    std::string joined;
    for (const std::string& text : texts) {
        if (!joined.empty()) joined += between;
        joined += text;
    }
    return joined;
}

// With a backslash before each of the characters.
std::string Escape(const std::string& text, std::string_view characters) {
    std::string escaped;
    for (const char character : text) {
        if (characters.find(character) != std::string_view::npos) escaped += '\\';
        escaped += character;
    }
    return escaped;
}

// The names of the options with values of the kind.
std::vector<std::string> NamesOf(const CommandLine& commandLine, ValueKind kind) {
    std::vector<std::string> names;
    for (const Option& option : commandLine.options) {
        if (option.kind == kind) names.insert(names.end(), option.names.begin(), option.names.end());
    }
    return names;
}

void WriteBashCase(const CommandLine& commandLine, ValueKind kind, const char* action, std::ostream& file) {
    const std::vector<std::string> names = NamesOf(commandLine, kind);
    if (!names.empty()) file << "        " << Join(names, "|") << ") " << action << "; return ;;\n";
}

void WriteBashChoices(const CommandLine& commandLine, std::ostream& file) {
    for (const Option& option : commandLine.options) {
        if (option.kind != ValueKind::Choice) continue;
        file << "        " << Join(option.names, "|") << ") mapfile -t COMPREPLY < <(compgen -W '"
             << Join(option.choices, " ") << "' -- \"${word#=}\"); return ;;\n";
    }
}

// Between single quotes, within which zsh knows no escapes, and with a backslash before what would end a
// part.
std::string ZshText(const std::string& text) {
    std::string quoted;
    for (const char character : Escape(text, "\\[]:")) {
        if (character == '\'') quoted += "'\\'";
        quoted += character;
    }
    return quoted;
}

void WriteZshValue(const Option& option, std::ostream& file) {
    if (option.kind == ValueKind::None) return;
    file << ':' << ZshText(option.value) << ':';
    if (option.kind == ValueKind::Text) file << ' ';
    if (option.kind == ValueKind::Choice) file << '(' << Join(option.choices, " ") << ')';
    if (option.kind == ValueKind::File) file << "_files";
    if (option.kind == ValueKind::Folder) file << "_files -/";
}

// In parentheses stand the names that are not offered any more, once this one is there.
void WriteZshOption(const Option& option, std::ostream& file) {
    for (const std::string& name : option.names) {
        file << " \\\n    '";
        if (option.isRepeatable) {
            file << '*';
        } else {
            file << '(' << Join(option.names, " ") << ')';
        }
        file << name;
        if (option.kind != ValueKind::None) file << (name[1] == '-' ? '=' : '+');
        file << '[' << ZshText(option.help) << ']';
        WriteZshValue(option, file);
        file << '\'';
    }
}

void WriteFishOption(const Option& option, std::ostream& file) {
    file << "complete -c xls2tki";
    for (const std::string& name : option.names) {
        if (name[1] == '-') {
            file << " -l " << name.substr(2);
        } else {
            file << " -s " << name.substr(1);
        }
    }
    if (option.kind == ValueKind::File) file << " -r -F";
    if (option.kind == ValueKind::Text) file << " -x";
    if (option.kind == ValueKind::Choice) file << " -x -a '" << Join(option.choices, " ") << '\'';
    if (option.kind == ValueKind::Folder) file << " -x -a '(__fish_complete_directories)'";
    file << " -d '" << Escape(option.help, "\\'") << "'\n";
}

constexpr char kBashBeginning[] = R"(# Completes the command line of xls2tki in bash.
_xls2tki() {
    local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]}
    COMPREPLY=()
    if [[ $before == = && $COMP_CWORD -gt 2 ]]; then before=${COMP_WORDS[COMP_CWORD - 2]}; fi
    case $before in
)";

}  // namespace

void WriteBashCompletion(const CommandLine& commandLine, std::ostream& file) {
    file << kBashBeginning;
    WriteBashCase(commandLine, ValueKind::Text, "compopt +o bashdefault +o default", file);
    WriteBashChoices(commandLine, file);
    WriteBashCase(commandLine, ValueKind::Folder, "compopt +o bashdefault +o default -o dirnames", file);
    WriteBashCase(commandLine, ValueKind::File, ":", file);
    file << "    esac\n    if [[ $word == -* ]]; then mapfile -t COMPREPLY < <(compgen -W '";
    for (const Option& option : commandLine.options) file << Join(option.names, " ") << ' ';
    file << "' -- \"$word\"); fi\n}\ncomplete -o bashdefault -o default -F _xls2tki xls2tki\n";
}

void WriteZshCompletion(const CommandLine& commandLine, std::ostream& file) {
    file << "#compdef xls2tki\n# Completes the command line of xls2tki in zsh.\n_arguments -s -S";
    for (const Option& option : commandLine.options) WriteZshOption(option, file);
    for (const Option& operand : commandLine.operands) {
        file << " \\\n    '" << (operand.isRepeatable ? "*" : "");
        WriteZshValue(operand, file);
        file << '\'';
    }
    file << '\n';
}

void WriteFishCompletion(const CommandLine& commandLine, std::ostream& file) {
    file << "# Completes the command line of xls2tki in fish.\n";
    for (const Option& option : commandLine.options) WriteFishOption(option, file);
}

}  // namespace NManual
