/* A host in C: lists the worksheets of an Excel workbook and converts the last. Usage: host INPUT OUTPUT */
#include <limits.h>
#include <locale.h>
#include <stdio.h>
#include <uchar.h>
#include <xls2tki_c.h>

enum { CAPACITY = 4096 };

/* From the locale's bytes; the text is empty when it is too long or not valid. */
static const Xls2TkiChar* from_bytes(const char* bytes, Xls2TkiChar* text) {
    mbstate_t state = {0};
    size_t length = 0;
    while (length < CAPACITY) {
        char16_t unit;
        const size_t taken = mbrtoc16(&unit, bytes, MB_LEN_MAX, &state);
        if (taken == (size_t)-1 || taken == (size_t)-2) break;
        text[length++] = unit;
        if (taken == 0) return text;
        if (taken != (size_t)-3) bytes += taken; /* -3: the second half of a pair */
    }
    text[0] = 0;
    return text;
}

static void show(FILE* stream, const Xls2TkiChar* text) {
    char bytes[MB_LEN_MAX];
    mbstate_t state = {0};
    for (; *text != 0; ++text) {
        const size_t length = c16rtomb(bytes, *text, &state);
        if (length != (size_t)-1) fwrite(bytes, 1, length, stream);
    }
    fputc('\n', stream);
}

int main(int count, char** arguments) {
    static Xls2TkiChar input[CAPACITY], output[CAPACITY];
    if (count != 3) return 2;
    setlocale(LC_ALL, "");
    Xls2TkiConversion conversion = {.size = sizeof conversion,
                                    .inputPath = from_bytes(arguments[1], input),
                                    .outputPath = from_bytes(arguments[2], output),
                                    .importType = XLS2TKI_EXCEL};
    Xls2TkiNames worksheets = {0};
    Xls2TkiFacts facts = {.size = sizeof facts};
    if (!xls2tki_init_ole(true)) return 1;
    if (xls2tki_list_worksheets(conversion.inputPath, &worksheets) && worksheets.count > 0) {
        for (size_t index = 0; index < worksheets.count; ++index) show(stdout, worksheets.texts[index]);
        conversion.worksheetName = worksheets.texts[worksheets.count - 1];
    }
    if (!xls2tki_convert(&conversion)) {
        show(stderr, xls2tki_message());
        return 1;
    }
    if (!xls2tki_facts(&facts) || !facts.written) {
        fprintf(stderr, "%s could not be written.\n", arguments[2]);
        return 1;
    }
    return 0;
}
