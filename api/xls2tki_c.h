/* xls2tki for C, and for every language that can call C: the functions of xls2tki.h without the types and
 * exceptions of C++, which depend on the compiler and its standard library.
 *
 * The rules of xls2tki.h about threads, Excel, the registry and memory apply here as well. Texts are UTF-16
 * and end with a zero. A null pointer is the empty text. Arguments are only read during the call. Results
 * belong to the library.
 *
 * Some structures begin with their size, which the caller sets. Later versions add members at the end. A host
 * that was built with an older header keeps working: members that its structure lacks count as zero, or are
 * not filled in. A structure that is larger than the library's own is refused.
 *
 * If a function returns false, it has not done its work, and xls2tki_message() says why. This includes
 * failures of Excel during its work and a lack of memory. No function throws. */
#ifndef XLS2TKI_C_H
#define XLS2TKI_C_H

/* NOLINTBEGIN(modernize-*,readability-identifier-naming): this is C. */
#include <stdbool.h>
#include <stddef.h>
#include <stdint.h>
#if !defined(_WIN32)
#include <uchar.h>
#endif

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

/* Texts of header cells, in any order. `texts` may be null if `count` is 0. */
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

/* Receives one progress message, which is valid during the call; `context` is messageContext. It must not
 * call the library, nor end the conversion by an exception or a jump. */
typedef void (*Xls2TkiMessageFunction)(void* context, const Xls2TkiChar* message);

/* One conversion. Set unused members to zero. Each is the parameter of the same name in xls2tki.h, but a null
 * variant or diagnosticInstance has the default of the short forms there. */
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
    /* Called for each progress message, whether or not it is forwarded to the logging library. Among them is
     * what Excel said where it failed. Null: none. */
    Xls2TkiMessageFunction onMessage;
    void* messageContext;
} Xls2TkiConversion;

/* The numbers in the first columns of a table, from its first two headers. */
enum {
    XLS2TKI_SINGLE_NUMBER = 0,         /* a DTC number */
    XLS2TKI_SPN_FMI = 1,               /* SPN and FMI, of SAE J1939 */
    XLS2TKI_BASE_AND_FAILURE_TYPE = 2, /* a base DTC and a failure type */
};

/* How a table was read and what its document contains. Columns count from 0. */
typedef struct {
    size_t size; /* sizeof(Xls2TkiFacts), set by the caller */
    int32_t layout;
    /* A letter A to F in the first column made numbers without 0x hexadecimal; with XLS2TKI_SINGLE_NUMBER
     * only. */
    bool hexDigits;
    bool saeCodes;  /* texts that begin with P, C, B or U are SAE codes */
    size_t rows;    /* without the header: the DTCs of the document */
    size_t columns; /* including skipped ones */
    /* The column without header and data that ends the table. It and all columns after it were skipped, even
     * if they have headers. The number of columns if there is none. */
    size_t endColumn;
    /* The columns before the end that were skipped because they have data but no header, in their order. */
    const size_t* columnsWithoutHeader;
    size_t columnsWithoutHeaderCount;
    size_t itemColumns; /* columns that became record items */
    size_t items;       /* record items of all DTCs; empty cells do not count */
    /* The output was opened, the whole document was written to it, and it was closed without an error. False
     * if the output path is empty. A later failure of the disk is not known here: to be sure, flush the file
     * (fsync, FlushFileBuffers). */
    bool written;
    Xls2TkiNames itemHeaders; /* of the item columns, in their order, without white space at their ends */
    /* Of the DTCs of the document, as unsigned numbers: -1 in the document is 0xFFFFFFFF. Both are 0 if no
     * DTC has a number. */
    uint32_t smallestNumber;
    uint32_t largestNumber;
} Xls2TkiFacts;

/* The severity of a finding. */
enum {
    XLS2TKI_ERROR = 0,  /* the document differs from what the table says, or XML readers refuse it */
    XLS2TKI_WARNING = 1 /* probably a mistake */
};

/* Instead of a row and a column. */
#define XLS2TKI_NOWHERE SIZE_MAX

/* One probable mistake at one place. Several places can have one cause, such as 214 empty cells. */
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

/* The number of findings of a rule. */
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
    XLS2TKI_REFUSED = 1,      /* the message is about the table or the system */
    XLS2TKI_EXCEL_FAILED = 2, /* Excel failed during its work: the message is Excel's own */
    XLS2TKI_OUT_OF_MEMORY = 3 /* a smaller table may work */
};

/* Like XlsInitOle. It leaves no message. */
XLS2TKI_EXPORT bool xls2tki_init_ole(bool silent);

/* Like Xls2TkiConvert: false leaves the output unchanged; true does not say whether it could be written, but
 * xls2tki_facts() does. A worksheetName that the workbook does not have is not an error: the last worksheet
 * is read. Pass only names from xls2tki_list_worksheets. With an empty output path, everything is done except
 * writing. */
XLS2TKI_EXPORT bool xls2tki_convert(const Xls2TkiConversion* conversion);

/* Fills in the facts of the last conversion. `columnsWithoutHeader` is valid until the next conversion,
 * `itemHeaders` until the next call of this function. False, with `facts` unchanged: the conversion failed,
 * there was none, `facts->size` is refused, or there is no memory for the headers. The message of the
 * conversion stays. */
XLS2TKI_EXPORT bool xls2tki_facts(Xls2TkiFacts* facts);

/* The findings of the last conversion, if it asked for them, one by one, and the counts of each rule. After a
 * conversion that failed, they cover the rows that were read. They stay until the next conversion; the texts
 * of a finding are valid until the next call of this function.
 *
 * Findings are in the order of the rules. Those of a rule are in the order of rows and columns, with the
 * whole table first. You get at most 1000 for each rule; the counts include all.
 *
 * False, with `finding` or `count` unchanged: `index`, from 0, is after the last one, the size is refused, or
 * there is no memory. The message of the conversion stays. */
XLS2TKI_EXPORT bool xls2tki_finding(size_t index, Xls2TkiFinding* finding);

/* One for each rule, even if it found nothing; none if the last conversion did not ask for findings. */
XLS2TKI_EXPORT bool xls2tki_finding_count(size_t index, Xls2TkiFindingCount* count);

/* Whether the last conversion checked the whole table for findings: false if it did not ask for them, if the
 * table was not read or its rows differ in length, or if there was no memory for more. */
XLS2TKI_EXPORT bool xls2tki_findings_complete(void);

/* Like GetExcelWorksheets, but does not throw. `names` gets the names of the worksheets in workbook order;
 * they are valid until the next call of this function. If it returns false, `names` is unchanged. With a null
 * pointer for `names`, it only says whether they can be listed. */
XLS2TKI_EXPORT bool xls2tki_list_worksheets(const Xls2TkiChar* path, Xls2TkiNames* names);

/* How the last operation failed: XLS2TKI_NO_FAILURE and so on. Calls through xls2tki.h do not count. */
XLS2TKI_EXPORT int32_t xls2tki_failure(void);

/* The outcome of the last operation, as GetLoggedMessages has it, or the reason if that would have thrown.
 * Valid until the next call of a function of the library. */
XLS2TKI_EXPORT const Xls2TkiChar* xls2tki_message(void);

#ifdef __cplusplus
}
#endif
/* NOLINTEND(modernize-*,readability-identifier-naming) */

#endif
