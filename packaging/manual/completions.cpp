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
    if (option.kind == ValueKind::Worksheet) file << "_xls2tki_worksheets";
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
    if (option.kind == ValueKind::Worksheet) file << " -x -a '(__xls2tki_worksheets)'";
    if (option.kind == ValueKind::File) file << " -r -F";
    if (option.kind == ValueKind::Text) file << " -x";
    if (option.kind == ValueKind::Choice) file << " -x -a '" << Join(option.choices, " ") << '\'';
    if (option.kind == ValueKind::Folder) file << " -x -a '(__fish_complete_directories)'";
    file << " -d '" << Escape(option.help, "\\'") << "'\n";
}

// The worksheets are those of the first workbook on the line, as the command itself lists them.
//
// The names are quoted here: where bash does it, it takes them for names of files, and looks whether there is
// such a file, for which it carries out what a name such as ${x[$(command)]} contains. Within quotes that the
// user has opened, only names without special characters are offered.
constexpr char kBashBeginning[] = R"(# Completes the command line of xls2tki in bash.
_xls2tki_worksheets() {
    local file name quoted
    for file in "${COMP_WORDS[@]:1}"; do
        file=${file//[\\\"\']/}
        file=${file/#\~\//$HOME/}
        if [[ $file == *.xls* && -f $file ]]; then
            while IFS= read -r name; do
                printf -v quoted %q "$name"
                if [[ $1 == [\"\']* ]]; then
                    if [[ $name == *[\"\'\\\`\$!]* ]]; then continue; fi
                    quoted=${1:0:1}$name
                fi
                if [[ $quoted == "$1"* ]]; then COMPREPLY+=("${quoted#[\"\']}"); fi
            done < <("${COMP_WORDS[0]}" --list-worksheets "$file" 2>/dev/null)
            return
        fi
    done
}
_xls2tki() {
    local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]}
    COMPREPLY=()
    if [[ $before == = && $COMP_CWORD -gt 2 ]]; then before=${COMP_WORDS[COMP_CWORD - 2]}; fi
    case $before in
)";

constexpr char kZshBeginning[] = R"(#compdef xls2tki
# Completes the command line of xls2tki in zsh.
_xls2tki_worksheets() {
    local file names
    for file in ${(Q)words[2,-1]}; do
        file=${file/#\~\//$HOME/}
        if [[ $file == *.xls* && -f $file ]]; then
            names=$(${(Q)words[1]} --list-worksheets $file 2>/dev/null)
            compadd -- ${(f)names}
            return
        fi
    done
}
_arguments -s -S)";

constexpr char kFishBeginning[] = R"(# Completes the command line of xls2tki in fish.
function __xls2tki_worksheets
    for file in (commandline -op | string replace -r '^~/' "$HOME/" | string unescape)
        if string match -q '*.xls*' -- $file; and test -f $file
            xls2tki --list-worksheets $file 2>/dev/null
            return
        end
    end
end
)";

}  // namespace

void WriteBashCompletion(const CommandLine& commandLine, std::ostream& file) {
    file << kBashBeginning;
    WriteBashCase(commandLine, ValueKind::Text, "compopt +o bashdefault +o default", file);
    WriteBashChoices(commandLine, file);
    WriteBashCase(commandLine, ValueKind::Worksheet, "_xls2tki_worksheets \"${word#=}\"", file);
    WriteBashCase(commandLine, ValueKind::Folder, "compopt +o bashdefault +o default -o dirnames", file);
    WriteBashCase(commandLine, ValueKind::File, ":", file);
    file << "    esac\n    if [[ $word == -* ]]; then mapfile -t COMPREPLY < <(compgen -W '";
    for (const Option& option : commandLine.options) file << Join(option.names, " ") << ' ';
    file << "' -- \"$word\"); fi\n}\ncomplete -o bashdefault -o default -F _xls2tki xls2tki\n";
}

void WriteZshCompletion(const CommandLine& commandLine, std::ostream& file) {
    file << kZshBeginning;
    for (const Option& option : commandLine.options) WriteZshOption(option, file);
    for (const Option& operand : commandLine.operands) {
        file << " \\\n    '" << (operand.isRepeatable ? "*" : "");
        WriteZshValue(operand, file);
        file << '\'';
    }
    file << '\n';
}

void WriteFishCompletion(const CommandLine& commandLine, std::ostream& file) {
    file << kFishBeginning;
    for (const Option& option : commandLine.options) WriteFishOption(option, file);
}

}  // namespace NManual
