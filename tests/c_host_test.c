/* A host in C: it sees xls2tki_c.h alone. Arguments: the folder of the tests' data, a folder for the output
 * and whether there is an Excel (1 or 0). */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "xls2tki_c.h"

#if defined(_WIN32)
#define TEXT16(text) L##text
#else
#define TEXT16(text) u##text
#endif

static int failures = 0;

#define EXPECT(condition)                                                    \
    do {                                                                     \
        if (!(condition)) {                                                  \
            printf("%s:%d: not true: %s\n", __FILE__, __LINE__, #condition); \
            ++failures;                                                      \
        }                                                                    \
    } while (0)

/* Our paths and the messages are ASCII. */
static const Xls2TkiChar* Wide(const char* folder, const char* name, Xls2TkiChar* buffer) {
    Xls2TkiChar* end = buffer;
    for (; *folder != 0; ++folder) *end++ = (Xls2TkiChar)*folder;
    *end++ = '/';
    do *end++ = (Xls2TkiChar)*name;
    while (*name++ != 0);
    return buffer;
}

static bool IsText(const Xls2TkiChar* text, const char* expected) {
    while (*expected != 0 && *text == (Xls2TkiChar)*expected) ++text, ++expected;
    return *text == (Xls2TkiChar)*expected;
}

static bool MessageIs(const char* expected) { return IsText(xls2tki_message(), expected); }

static bool FileHas(const char* folder, const char* name, const char* fragment) {
    static char content[65536];
    char path[4096];
    snprintf(path, sizeof path, "%s/%s", folder, name);
    FILE* file = fopen(path, "rb");
    content[file == NULL ? 0 : fread(content, 1, sizeof content - 1, file)] = 0;
    if (file != NULL) fclose(file);
    return strstr(content, fragment) != NULL;
}

static bool parsed = false;

static void TakeMessage(void* context, const Xls2TkiChar* message) {
    ++*(int*)context;
    parsed = parsed || IsText(message, "Parsing CSV file ... done");
}

static void Convert(const char* data, const char* folder) {
    const Xls2TkiChar* const vsg[] = {TEXT16("Occurrence"), NULL};
    Xls2TkiChar input[4096];
    Xls2TkiChar output[4096];
    int messages = 0;
    Xls2TkiConversion conversion = {.size = sizeof conversion,
                                    .inputPath = Wide(data, "example.csv", input),
                                    .outputPath = Wide(folder, "c_host.xml", output),
                                    .importType = XLS2TKI_CSV,
                                    .separator = ';',
                                    .vsgNames = {vsg, 2},
                                    .onMessage = TakeMessage,
                                    .messageContext = &messages};
    EXPECT(xls2tki_convert(&conversion));
    EXPECT(messages > 5 && parsed);
    conversion.size = offsetof(Xls2TkiConversion, onMessage);
    messages = 0;
    EXPECT(xls2tki_convert(&conversion) && messages == 0);
    conversion.size = sizeof conversion;
    EXPECT(FileHas(folder, "c_host.xml", "diaginstance=\"Emission_Related_Trouble_Codes\""));
    EXPECT(FileHas(folder, "c_host.xml", "variant=\"COMMON_DIAGNOSTICS\""));
    EXPECT(FileHas(folder, "c_host.xml", "type=\"VSG\" >Occurrence<"));

    conversion.secondNames = conversion.vsgNames;
    conversion.vsgNames.count = 0;
    conversion.variant = TEXT16("V");
    conversion.diagnosticInstance = TEXT16("");
    EXPECT(xls2tki_convert(&conversion));
    EXPECT(FileHas(folder, "c_host.xml", "<SERVICEMAPPING variant=\"V\" />"));
    EXPECT(FileHas(folder, "c_host.xml", "type=\"A\" >Occurrence<"));

    conversion.importType = 3;
    EXPECT(xls2tki_failure() == XLS2TKI_NO_FAILURE && !xls2tki_convert(&conversion));
    EXPECT(MessageIs("Import type not supported") && xls2tki_failure() == XLS2TKI_REFUSED);
    const size_t unknown[] = {offsetof(Xls2TkiConversion, diagnosticInstance), sizeof conversion + 1};
    for (int index = 0; index < 2; ++index) {
        conversion.size = unknown[index];
        EXPECT(!xls2tki_convert(&conversion));
        EXPECT(MessageIs("The conversion was made for another version of the library."));
    }
    Xls2TkiFacts none = {.size = sizeof none};
    conversion.size = sizeof conversion;
    conversion.importType = XLS2TKI_CSV;
    EXPECT(xls2tki_convert(&conversion) && xls2tki_facts(&none));
    EXPECT(!xls2tki_convert(NULL) && !xls2tki_facts(&none));
}

/* Converts the table, which is put into the folder; nothing is written. */
static bool ConvertTable(const char* folder, const char* table, bool findings, size_t size) {
    char path[4096];
    Xls2TkiChar input[4096];
    const Xls2TkiConversion conversion = {.size = size,
                                          .inputPath = Wide(folder, "facts.csv", input),
                                          .importType = XLS2TKI_CSV,
                                          .separator = ';',
                                          .findings = findings};
    snprintf(path, sizeof path, "%s/facts.csv", folder);
    FILE* const file = fopen(path, "wb");
    if (file == NULL) return false;
    fputs(table, file);
    fclose(file);
    return xls2tki_convert(&conversion);
}

/* What became of the table. */
static bool FindFacts(const char* folder, const char* table, Xls2TkiFacts* facts) {
    *facts = (Xls2TkiFacts){.size = sizeof *facts};
    const bool done = ConvertTable(folder, table, false, sizeof(Xls2TkiConversion));
    return xls2tki_facts(facts) && done;
}

static void TellFacts(const char* folder) {
    Xls2TkiFacts facts;
    EXPECT(FindFacts(folder, "dtc;Failure Type;T;;I;J; ;K\n18;0x34;t;;;j;;k\n1A;5;t;lost;i;j;;k\n", &facts));
    EXPECT(facts.layout == XLS2TKI_BASE_AND_FAILURE_TYPE && facts.hexDigits && !facts.saeCodes);
    EXPECT(facts.endColumn == 6 && facts.items == 3 && !facts.written && facts.smallestNumber == 0x105);
    EXPECT(facts.itemHeaders.count == 2 && facts.itemHeaders.texts[1][0] == 'J' &&
           facts.itemHeaders.texts[1][1] == 0);

    EXPECT(FindFacts(folder, "SPN;FMI;T\n", &facts) && facts.rows == 0 && facts.itemHeaders.count == 0);
    EXPECT(facts.smallestNumber == 0 && facts.largestNumber == 0 && facts.endColumn == 3);

    EXPECT(FindFacts(folder, "DTC;T\nP0123;t\n", &facts) && facts.saeCodes);
    facts = (Xls2TkiFacts){
        .size = offsetof(Xls2TkiFacts, written), .written = true, .largestNumber = 7}; /* as first released */
    EXPECT(xls2tki_facts(&facts) && facts.rows == 1 && facts.items == 0 && facts.written &&
           facts.largestNumber == 7);
    facts.size = sizeof facts + 1;
    EXPECT(!xls2tki_facts(&facts));
    facts.size = 1;
    EXPECT(!xls2tki_facts(&facts) && !xls2tki_facts(NULL));
    EXPECT(!FindFacts(folder, "DTC;T\nP4123;t\n", &facts) && facts.columns == 0);
}

/* Whether the finding has this rule, stands in this cell, null for none, and this line, and says this. */
static bool FindingIs(size_t index, const char* rule, const char* cell, size_t line, const char* text) {
    Xls2TkiFinding found = {.size = sizeof found};
    if (!xls2tki_finding(index, &found) || strcmp(found.rule, rule) != 0 || found.line != line) return false;
    return (cell == NULL ? found.cell == NULL : IsText(found.cell, cell)) && IsText(found.text, text);
}

static void Find(const char* folder) {
    const size_t size = sizeof(Xls2TkiConversion);
    Xls2TkiFinding finding = {.size = sizeof finding};
    Xls2TkiFindingCount count = {.size = sizeof count};
    EXPECT(ConvertTable(folder, "DTC;T\n1234;\"a\nb\"\nTBD;x\n;y\n;z\n5;\"t\nu\n", true, size));
    EXPECT(xls2tki_findings_complete());
    EXPECT(FindingIs(2, "number-empty", "A5", 6,
                     "The cell is empty; the number becomes 0. Fill it in, or delete the row."));
    EXPECT(xls2tki_finding(2, &finding) && finding.row == 4 && finding.column == 0);
    EXPECT(finding.severity == XLS2TKI_ERROR && finding.cause == 1 && finding.causeCount == 2);
    EXPECT(xls2tki_finding(3, &finding) && strcmp(finding.rule, "notation-mixed") == 0 &&
           finding.cell == NULL);
    EXPECT(!xls2tki_finding(5, &finding) && finding.cell == NULL);
    EXPECT(xls2tki_finding_count(1, &count) && strcmp(count.rule, "number-empty") == 0);
    EXPECT(count.errors == 2 && count.warnings == 0 && count.listed == 2);
    EXPECT(xls2tki_finding_count(13, &count) && strcmp(count.rule, "description-empty") == 0 &&
           count.errors == 0);
    EXPECT(!xls2tki_finding_count(14, &count));
    finding.size = count.size = 1;
    EXPECT(!xls2tki_finding(0, &finding) && !xls2tki_finding(0, NULL) && !xls2tki_finding_count(0, &count));
    count.size = sizeof count;

    /* Those of conversions that fail. */
    EXPECT(!ConvertTable(folder, "DTC;T\nP0123;x\nP4123;y\n", true, size) && xls2tki_findings_complete());
    EXPECT(!ConvertTable(folder, "DTC;T\nP0123\nP0124;\"y\n", true, size) && !xls2tki_findings_complete());
    EXPECT(xls2tki_finding_count(8, &count) && count.errors == 1);

    /* Where they are not wanted. */
    EXPECT(ConvertTable(folder, "DTC;T\n;x\n", false, size));
    EXPECT(!xls2tki_findings_complete() && !xls2tki_finding_count(0, &count));
    EXPECT(ConvertTable(folder, "DTC;T\n;x\n", true, offsetof(Xls2TkiConversion, findings)));
    EXPECT(!xls2tki_findings_complete());
    EXPECT(ConvertTable(folder, "DTC;T\nP0123;\"x\nP0124;y\nP0125;z\"\n", true, size));
    EXPECT(FindingIs(
        0, "row-lost", "B2", 2,
        "\"x<U+000A>P0124;y<U+000A>P0125;z\" holds 2 lines that look like rows. Close the double quote "
        "with which it begins."));
    EXPECT(ConvertTable(folder, "DTC;T\rP0123;x\r", true, size) && xls2tki_finding_count(8, &count));
    EXPECT(count.errors == 1);
}

static void ListWorksheets(const char* data, bool hasExcel) {
    Xls2TkiChar path[4096];
    Xls2TkiNames names = {NULL, 7};
    const bool done = xls2tki_list_worksheets(Wide(data, "workbooks/xlsxwriter.xlsx", path), &names);
    EXPECT(done == hasExcel);
    if (!hasExcel) {
        EXPECT(names.count == 7 && *xls2tki_message() != 0);
        return;
    }
    EXPECT(names.count == 2 && IsText(names.texts[1], "O'Neil <&>"));
    EXPECT(xls2tki_list_worksheets(path, NULL) && xls2tki_list_worksheets(NULL, &names) && names.count == 0);
}

int main(int count, char** arguments) {
    if (count != 4) return 2;
    EXPECT(MessageIs(""));
    Xls2TkiFacts none = {.size = sizeof none};
    EXPECT(!xls2tki_facts(&none));
    EXPECT(xls2tki_init_ole(true));
    Convert(arguments[1], arguments[2]);
    TellFacts(arguments[2]);
    Find(arguments[2]);
    ListWorksheets(arguments[1], strcmp(arguments[3], "1") == 0);
    return failures == 0 ? 0 : 1;
}
