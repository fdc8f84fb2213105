/* xls2tki for C, and for every language that can call C: what xls2tki.h offers, without the types and
 * exceptions of C++. Those belong to one compiler and its standard library; a host built with another one
 * uses these functions.
 *
 * What xls2tki.h says of threads, Excel, the registry and memory holds here, too. Texts are UTF-16 and end
 * with a zero; a null pointer is the empty text. What is passed in is only read, and needs to stay valid no
 * longer than the call. What is handed out belongs to the library.
 *
 * Some structures begin with their size, which the caller sets. Later versions add members at their end, so
 * that a host that was built with an older header keeps working: members that its structure lacks count as
 * zero, or are not filled in. A structure that is larger than the library's own is refused.
 *
 * A function that returns false has not done its work, and xls2tki_message() tells the user why; that
 * includes failures in the midst of Excel's work and exhausted memory. Nothing is thrown. */
#ifndef XLS2TKI_C_H
#define XLS2TKI_C_H

/* NOLINTBEGIN(modernize-*,readability-identifier-naming): this is C. */
#include <stdbool.h>
#include <stddef.h>
#include <stdint.h>
#include <uchar.h>

#if !defined(XLS2TKI_EXPORT)
#if !defined(_WIN32)
#define XLS2TKI_EXPORT __attribute__((visibility("default")))
#elif defined(XLS2TKI_BUILDING)
#define XLS2TKI_EXPORT __declspec(dllexport)
#else
#define XLS2TKI_EXPORT __declspec(dllimport)
#endif
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* One UTF-16 code unit, in the type that the system's programs use for text. */
#if defined(_WIN32)
typedef wchar_t Xls2TkiChar;
#else
typedef char16_t Xls2TkiChar;
#endif

/* Texts of header cells, in any order. `texts` may be null where `count` is 0. */
typedef struct {
    const Xls2TkiChar* const* texts;
    size_t count;
} Xls2TkiNames;

/* What reads the input. */
enum {
    XLS2TKI_ODBC = 0,  /* the installed Excel ODBC driver */
    XLS2TKI_EXCEL = 1, /* the installed Excel */
    XLS2TKI_CSV = 2    /* the library itself */
};

/* One conversion; members that are not set are to be zero. Each is the parameter of the same name in
 * xls2tki.h, but a null variant or diagnosticInstance is the one that the short forms there have. */
typedef struct {
    size_t size; /* sizeof(Xls2TkiConversion) */
    const Xls2TkiChar* inputPath;
    const Xls2TkiChar* worksheetName;
    const Xls2TkiChar* outputPath;
    int32_t importType;
    Xls2TkiChar separator;
    bool forwardMessages;
    bool utf8;
    Xls2TkiNames vsgNames;
    Xls2TkiNames secondNames;
    Xls2TkiNames thirdNames;
    const Xls2TkiChar* variant;            /* null: "COMMON_DIAGNOSTICS"; empty: none is written */
    const Xls2TkiChar* diagnosticInstance; /* null: "Emission_Related_Trouble_Codes"; empty: none */
    bool findings; /* look for what is wrong with the table, see xls2tki_finding; the document is the same */
} Xls2TkiConversion;

/* Which numbers the first columns of a table hold, as its first two header cells tell. */
enum {
    XLS2TKI_SINGLE_NUMBER = 0,         /* a DTC number */
    XLS2TKI_SPN_FMI = 1,               /* SPN and FMI, of SAE J1939 */
    XLS2TKI_BASE_AND_FAILURE_TYPE = 2, /* a base DTC and a failure type */
};

/* What a document was made of, to be compared with what was expected. Columns count from 0. */
typedef struct {
    size_t size; /* sizeof(Xls2TkiFacts), set by the caller */
    int32_t layout;
    /* A letter A to F in the first column made numbers without 0x hexadecimal; with XLS2TKI_SINGLE_NUMBER
     * only. */
    bool hexDigits;
    bool saeCodes;  /* texts that begin with P, C, B or U were taken for SAE codes */
    size_t rows;    /* without the header: the DTCs of the document */
    size_t columns; /* with those that were skipped */
    /* The column without header and data with which the table ends. It and all behind it were skipped, those
     * with headers, too. The number of columns where there is none. */
    size_t endColumn;
    /* The columns before the end that were skipped because they have data, but no header; in their order. */
    const size_t* columnsWithoutHeader;
    size_t columnsWithoutHeaderCount;
    size_t itemColumns; /* columns that became record items */
    size_t items;       /* record items of all DTCs; an empty cell is none */
    /* The output was opened, the whole document was written to it, and the system reported no failure at
     * closing either. False where the output path is empty. What a later failure of the disk may take is not
     * known here: a host that needs to be sure flushes the file (fsync, FlushFileBuffers) before it relies on
     * it. */
    bool written;
    Xls2TkiNames itemHeaders; /* of the item columns, in their order, without white space at their ends */
    /* Of the DTCs of the document, as unsigned numbers: what it writes as -1 is 0xFFFFFFFF. Both are 0 where
     * no DTC has a number. */
    uint32_t smallestNumber;
    uint32_t largestNumber;
} Xls2TkiFacts;

/* What a finding means. */
enum {
    XLS2TKI_ERROR = 0,  /* the document says something else than the table, or no reader takes it */
    XLS2TKI_WARNING = 1 /* look at this */
};

/* In the place of row and column. */
#define XLS2TKI_NOWHERE SIZE_MAX

/* One thing that is wrong with a table, at one place. Several places may have it for one cause: 214 empty
 * cells, for example. */
typedef struct {
    size_t size;      /* sizeof(Xls2TkiFinding), set by the caller */
    const char* rule; /* in ASCII, such as "number-unreadable": docs/findings.md has them all */
    int32_t severity;
    /* The cell, from 0; row 0 is the header. Both are XLS2TKI_NOWHERE for the table as a whole. */
    size_t row;
    size_t column;
    const Xls2TkiChar* cell; /* as a worksheet names it, such as A7; null for the table as a whole */
    /* Where the row begins in a text file, from 1; 0 for other inputs and for the table as a whole. */
    size_t line;
    /* One to three sentences in English, on one line: they quote the cell, say what becomes of it, and
     * what to do. Nothing in them does harm to a terminal. */
    const Xls2TkiChar* text;
    size_t cause;      /* from 0: findings with one number have one cause */
    size_t causeCount; /* how many places have the cause, those that are not handed out among them */
} Xls2TkiFinding;

/* How many places a rule found. */
typedef struct {
    size_t size; /* sizeof(Xls2TkiFindingCount), set by the caller */
    const char* rule;
    size_t errors;
    size_t warnings;
    size_t listed; /* how many of them xls2tki_finding hands out */
} Xls2TkiFindingCount;

/* How the last call of xls2tki_init_ole, xls2tki_convert or xls2tki_list_worksheets failed. */
enum {
    XLS2TKI_NO_FAILURE = 0,   /* it returned true, or there was none */
    XLS2TKI_REFUSED = 1,      /* the library cannot do it: the message is about the table or the system */
    XLS2TKI_EXCEL_FAILED = 2, /* Excel failed during its work: the message is Excel's own */
    XLS2TKI_OUT_OF_MEMORY = 3 /* a smaller table may work */
};

/* As XlsInitOle. It leaves no message. */
XLS2TKI_EXPORT bool xls2tki_init_ole(bool silent);

/* As Xls2TkiConvert: false leaves the output as it was; true does not say whether it could be written, which
 * xls2tki_facts() does. A worksheetName that the workbook does not have is no failure: the last worksheet is
 * read. Pass only names that xls2tki_list_worksheets gives. With an empty output path all is done but nothing
 * is written. */
XLS2TKI_EXPORT bool xls2tki_convert(const Xls2TkiConversion* conversion);

/* Tells what the document of the last conversion was made of. `columnsWithoutHeader` is valid until the next
 * conversion, `itemHeaders` until this function is called again. False, with `facts` as they were: the
 * conversion failed, there was none, `facts->size` is refused, or there is no memory for the headers. The
 * message of the conversion stays. */
XLS2TKI_EXPORT bool xls2tki_facts(Xls2TkiFacts* facts);

/* The findings of the last conversion, if it wanted them, one by one, and the counts of each rule. Those of a
 * conversion that failed are there as far as the table was read. They stay until the next conversion; the
 * texts of a finding are valid until this function is called again.
 *
 * Findings are in the order of the rules. Those of a rule are in the order of rows and columns, the table as
 * a whole first. For each rule at most 1000 are handed out; the counts have all.
 *
 * False, with `finding` or `count` as they were: `index`, which counts from 0, is behind the last one, or the
 * size is refused, or there is no memory to show it. The message of the conversion stays. */
XLS2TKI_EXPORT bool xls2tki_finding(size_t index, Xls2TkiFinding* finding);

/* One for each rule, also where it found nothing; none where the last conversion did not want findings. */
XLS2TKI_EXPORT bool xls2tki_finding_count(size_t index, Xls2TkiFindingCount* count);

/* Whether the last conversion looked at all of the table for findings: false where it did not want them, the
 * table was not read or has not the same number of cells in each row, or there was no memory for more. */
XLS2TKI_EXPORT bool xls2tki_findings_complete(void);

/* As GetExcelWorksheets, but nothing is thrown. `names` gets the worksheets' names in workbook order; they
 * are valid until the next call of this function. When it returns false, `names` is as it was. A null pointer
 * for it asks only whether they can be listed. */
XLS2TKI_EXPORT bool xls2tki_list_worksheets(const Xls2TkiChar* path, Xls2TkiNames* names);

/* How the last operation failed: XLS2TKI_NO_FAILURE and so on. What was called through xls2tki.h does not
 * count. */
XLS2TKI_EXPORT int32_t xls2tki_failure(void);

/* The outcome of the last operation, as GetLoggedMessages has it, or, where that would have thrown, the
 * reason. Valid until the next call of a function of the library. */
XLS2TKI_EXPORT const Xls2TkiChar* xls2tki_message(void);

#ifdef __cplusplus
}
#endif
/* NOLINTEND(modernize-*,readability-identifier-naming) */

#endif
