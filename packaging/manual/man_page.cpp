#include <cctype>

#include "packaging/manual/manual.h"

namespace NManual {

namespace {

constexpr char kDescription[] = R"(.SH DESCRIPTION
INPUT is a CSV text or an Excel workbook; its extension tells which, if no option does. The document is written
beside its final place and renamed when it is complete. A run that fails leaves an output file that was there as it
was.
)";

constexpr char kAfterOptions[] = R"(.SH EXIT STATUS
.TP
.B 0
All was done, and what was written is complete and in its place.
.TP
.B 1
A conversion failed, or its output could not be written. The reason is on standard error.
.TP
.B 2
The command line is wrong. The reason is on standard error.
.SH ENVIRONMENT
.TP
.B XLS2TKI_REGISTRY
names a file in the format of registry exports that tells which Excel is installed; else it is the one inside the
library.
)";

constexpr char kSeeAlso[] = R"(.SH SEE ALSO
.BR odbcinst (1)
)";

std::string Roff(const std::string& text) {
    std::string escaped = text.empty() || (text[0] != '.' && text[0] != '\'') ? "" : "\\&";
    for (const char character : text) {
        if (character == '-' || character == '\\') escaped += '\\';
        escaped += character == '\\' ? 'e' : character;
    }
    return escaped;
}

// "A sentence." becomes "a sentence".
std::string Phrase(std::string sentence) {
    sentence[0] = static_cast<char>(std::tolower(static_cast<unsigned char>(sentence[0])));
    if (sentence.back() == '.') sentence.pop_back();
    return sentence;
}

void WriteLines(const std::vector<std::string>& lines, std::ostream& file) {
    file << ".nf\n";
    for (const std::string& line : lines) file << Roff(line) << '\n';
    file << ".fi\n";
}

void WriteOption(const Option& option, std::ostream& file) {
    file << ".TP\n";
    const char* between = "\\fB";
    for (const std::string& name : option.names) {
        file << between << Roff(name) << "\\fR";
        between = ", \\fB";
    }
    if (!option.value.empty()) file << " \\fI" << Roff(option.value) << "\\fR";
    file << '\n' << Roff(option.help) << '\n';
}

}  // namespace

void WriteManPage(const CommandLine& commandLine, std::ostream& file) {
    file << ".TH XLS2TKI 1 \"\" \"xls2tki " XLS2TKI_VERSION "\" \"User Commands\"\n";
    file << ".SH NAME\nxls2tki \\- " << Roff(Phrase(commandLine.about)) << "\n.SH SYNOPSIS\n";
    WriteLines(commandLine.usage, file);
    file << kDescription << ".SH OPTIONS\n";
    for (const Option& option : commandLine.options) WriteOption(option, file);
    file << kAfterOptions << ".SH EXAMPLES\n";
    WriteLines(commandLine.examples, file);
    file << kSeeAlso;
}

}  // namespace NManual
