// xls2tki: turns a table of Diagnostic Trouble Codes (DTCs) kept in a spreadsheet into an XML import
// document.
//
// This is the library's public header for C++; it needs nothing but the standard library. xls2tki_c.h is for
// everybody else.
//
// Strings are UTF-16 and zero-terminated. A null pointer counts as the empty string. Arguments are only read
// and need to stay valid no longer than the call. File names are ordinary paths of the system. That of a
// workbook goes to Excel 2010 and later as it is; as these run in a folder of their own, pass a full path.
//
// The functions return true when the work was done. When one returns false, GetLoggedMessages() has the
// sentence that tells the user why.
//
// The library keeps the outcome of the last operation for the whole process, without a lock: call it from one
// thread at a time, and convert Excel workbooks on the thread that called XlsInitOle. Every call returns only
// when its work is done; no threads are started.
//
// Between calls it keeps one buffer for the next conversion. The buffer is smaller than six bytes for each
// character of the largest document so far, of which a conversion uses at most three.
//
// Excel workbooks are read by driving the Excel that the system's registry names as the current one. A system
// without Excel has one inside the library, of which it says by default that it is Excel 2010; there, the
// environment variable XLS2TKI_REGISTRY may name a file in the format of registry exports that says
// otherwise.
//
// Exceptions: what is wrong with an input is reported through the result. A std::exception reaches the caller
// where Excel fails in the midst of its work, with Excel's own words as what(), in UTF-8, or where the memory
// is exhausted (std::bad_alloc). The outputs of the call are then as they were. GetExcelWorksheets throws one
// more.
#pragma once

#include <cstdint>
#include <set>
#include <string>
#include <vector>

#if defined(_WIN32)
#if defined(XLS2TKI_BUILDING)
#define XLS2TKI_EXPORT __declspec(dllexport)
#else
#define XLS2TKI_EXPORT __declspec(dllimport)
#endif
#else
#define XLS2TKI_EXPORT __attribute__((visibility("default")))
#endif

namespace NXls2Tki {

// One UTF-16 code unit, in the type that hosts of the system use for text.
#if defined(_WIN32)
using WideChar = wchar_t;
#else
using WideChar = char16_t;
#endif
using WideString = std::basic_string<WideChar>;
using WideStringSet = std::set<WideString>;

// What kind of input the input path names, and so what reads it.
enum VImportType : std::int32_t {
    ImportTypeODBC = 0,   // an Excel file, read through the installed Excel ODBC driver
    ImportTypeExcel = 1,  // an Excel workbook, read through the installed Excel's automation
    ImportTypeCSV = 2,    // a text file of cells between separators
};

// Prepares the process for automation. Call it once, on the thread that will convert; every later call
// returns true and does nothing. False: the preparation failed; unless `silent` is true the user was also
// shown a message box.
XLS2TKI_EXPORT bool XlsInitOle(bool silent);

// Converts one table. The input is read completely and the document is complete before the output is opened:
// a conversion that returns false leaves the output as it was. Whether the output could be created and
// written is not part of the result: `written` of xls2tki_facts() in xls2tki_c.h tells it, after this
// function, too.
//
//   inputPath           the workbook or CSV file; with ODBC a name without ';' that does not begin with '{':
//                       it becomes part of a connect string as it is, where such a name could stand for
//                       another file, and even for another driver to load
//   worksheetName       the worksheet of an Excel workbook, exactly as GetExcelWorksheets lists it; empty:
//                       the first. A name that the workbook does not have is no failure: the last worksheet
//                       is read. So list the names first and refuse any other. CSV, ODBC and Excel 2003
//                       ignore the name
//   outputPath          the import document: UTF-8, lines ended by CR LF; created, or emptied if it exists
//   importType          what reads the input; any other value is refused
//   forwardMessages     also pass each progress message to the host's logging library
//   separator           the cell separator of a CSV file
//   vsgNames            texts of header cells whose columns become items of type "VSG"
//   secondNames         texts of header cells whose columns become items of type "A"
//   thirdNames          as secondNames; a column in no set becomes an item of type "RI", vsgNames go first
//   variant             written as "variant" of the service mapping unless empty
//   diagnosticInstance  written as "diaginstance" of the service mapping unless empty
//   utf8                read a CSV file as UTF-8; else each byte is the character of the same value
XLS2TKI_EXPORT bool Xls2TkiConvert(const WideChar* inputPath, const WideChar* worksheetName,
                                   const WideChar* outputPath, VImportType importType, bool forwardMessages,
                                   WideChar separator, const WideStringSet& vsgNames,
                                   const WideStringSet& secondNames, const WideStringSet& thirdNames,
                                   const WideChar* variant, const WideChar* diagnosticInstance, bool utf8);

// The same with no worksheet name, no header texts, the variant "COMMON_DIAGNOSTICS" and the diagnostic
// instance "Emission_Related_Trouble_Codes".
XLS2TKI_EXPORT bool Xls2TkiConvert(const WideChar* inputPath, const WideChar* outputPath,
                                   VImportType importType, bool forwardMessages, WideChar separator,
                                   bool utf8);

// The same with header texts; secondNames also serve as the third set.
XLS2TKI_EXPORT bool Xls2TkiConvert(const WideChar* inputPath, const WideChar* outputPath,
                                   VImportType importType, bool forwardMessages, WideChar separator,
                                   const WideStringSet& vsgNames, const WideStringSet& secondNames,
                                   bool utf8);

// The full form without a worksheet name.
XLS2TKI_EXPORT bool Xls2TkiConvert(const WideChar* inputPath, const WideChar* outputPath,
                                   VImportType importType, bool forwardMessages, WideChar separator,
                                   const WideStringSet& vsgNames, const WideStringSet& secondNames,
                                   const WideStringSet& thirdNames, const WideChar* variant,
                                   const WideChar* diagnosticInstance, bool utf8);

// Replaces `names` by the names of the workbook's worksheets, in workbook order. None: Excel did not start or
// did not open the workbook; a conversion of the workbook forwards the reason among its progress messages.
//
// When it returns false, because there is no Excel that can list them, GetLoggedMessages() has the reason.
// When it returns true, GetLoggedMessages() is as it was, or has a warning that Excel's version is unknown.
//
// Throws an exception of the library's own, which a host catches as `...`, for a workbook without worksheets
// and, with Excel 2000 and 2007, for a file that cannot be opened. `names` and GetLoggedMessages() are then
// as they were, the warning apart; after a conversion of the workbook, GetLoggedMessages() has the reason.
XLS2TKI_EXPORT bool GetExcelWorksheets(const WideChar* path, std::vector<WideString>& names);

// The outcome of the last operation: after a conversion that returned true its last progress line, with a
// time stamp and a line feed; after one that returned false the reason. Empty before the first and after a
// conversion that ended with an exception, a warning about Excel's version apart. A NUL of a cell is shown in
// it as U+FFFD. The text belongs to the library and stays valid until the next call of Xls2TkiConvert or
// GetExcelWorksheets. Throws std::bad_alloc when there is no memory to show it.
XLS2TKI_EXPORT const WideChar* GetLoggedMessages();

}  // namespace NXls2Tki
