#include <cctype>

#include "packaging/manual/manual.h"

namespace NManual {

namespace {

// When the text of this page last changed.
constexpr char kDate[] = "2026-11-23";

constexpr char kDescription[] = R"(.SH DESCRIPTION
INPUT is CSV text or an Excel workbook.
Its extension decides how it is read.
Files named .csv, .txt and .tsv are CSV text;
files named .xlsx, .xlsm and .xls are workbooks.
For other extensions, use
.B \-\-csv
or
.BR \-\-excel .
Standard input is always CSV.
.PP
The document is first written to a temporary file next to OUTPUT, which replaces
OUTPUT when it is complete.
If the conversion fails, an existing OUTPUT stays unchanged.
OUTPUT is replaced only if it is empty or an import document, unless you use
.BR \-\-force .
.PP
A table can convert without an error and still be wrong.
Such findings go to standard error.
.B \-\-check
shows them without writing anything, and
.B \-\-strict
writes no document if one is an error.
.SH TABLES
The first row is the header.
A table has at least two columns, and every row has as many cells as the header.
In a worksheet, the table begins in A1 and ends above the first empty row.
The first two headers decide which columns make the DTC number:
.TP
.B SPN, FMI
Columns 1 and 2 make the number, as in SAE J1939.
Column 3 is the description.
.TP
.B BASEDTC, FTB \fRor\fB DTC, FAILURE TYPE
Columns 1 and 2, a base DTC and a failure type byte, make the number.
Column 3 is the description.
.TP
.B anything else
Column 1 is the number and column 2 the description.
.PP
All further columns are record items.
A column without a header is skipped, and a completely empty column ends the
table.
.PP
Write a number as an SAE code (P0123), as a hexadecimal number with 0x (0x0123),
or as a decimal number (291).
Do not mix notations: one letter A to F in the number column makes all numbers
without 0x hexadecimal.
)";

constexpr char kBeforeOptions[] = R"(If you repeat an option, the last value counts.
You can repeat
.B \-\-vsg
and
.B \-\-type\-a
to give several names.
Options can come before or after the files.
After
.BR \-\- ,
a name can begin with a dash.
)";

constexpr char kAfterOptions[] = R"(.SH EXIT STATUS
.TP
.B 0
The document is complete.
If you convert many files, all documents are complete.
.TP
.B 1
A conversion failed, an output could not be written, or a finding is an error
with
.B \-\-strict
or
.BR \-\-check .
.TP
.B 2
The command line is wrong, or OUTPUT is a file that is not replaced.
.PP
The reason is on standard error.
.SH ENVIRONMENT
.TP
.B TMPDIR
The folder for temporary files, by default /tmp.
Standard input, standard output, pipes and devices require temporary files, as
large as the table or the document.
.TP
.B XLS2TKI_REGISTRY
A registry file that says which Excel is installed, in the format of the Windows
registry editor.
By default, Excel 2010 counts as installed.
You do not require Excel.
)";

constexpr char kSeeAlso[] = R"(.SH SEE ALSO
.BR odbcinst (1)
.PP
The manual is in the folder doc/xls2tki next to the folder of man pages.
Its page troubleshooting.md leads from a symptom to the fix.
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
    file << ".TH XLS2TKI 1 " << kDate << " \"xls2tki " XLS2TKI_VERSION "\" \"User Commands\"\n";
    file << ".SH NAME\nxls2tki \\- " << Roff(Phrase(commandLine.about)) << "\n.SH SYNOPSIS\n";
    WriteLines(commandLine.usage, file);
    file << kDescription << ".SH OPTIONS\n" << kBeforeOptions;
    for (const Option& option : commandLine.options) WriteOption(option, file);
    file << kAfterOptions << ".SH EXAMPLES\n";
    WriteLines(commandLine.examples, file);
    file << kSeeAlso;
}

}  // namespace NManual
