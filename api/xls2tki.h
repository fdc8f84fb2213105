// xls2tki: turns a table of Diagnostic Trouble Codes (DTCs) in a spreadsheet into an XML import document.
//
// This is the library's public header for C++. It requires the standard library only. On Windows, it is for
// g++ of mingw-w64 with msvcrt.dll, and for Microsoft's compiler since Visual Studio 2015 in release builds
// with /MD; no exception reaches hosts that the latter built. For other compilers and languages, use
// xls2tki_c.h.
//
// Strings are UTF-16 and zero-terminated. A null pointer is the empty string. Arguments are only read during
// the call. File names are ordinary paths of the system. Excel 2010 and later get the path of a workbook as
// you pass it. Excel has a current folder of its own, so pass a full path.
//
// A function returns true if its work was done. If it returns false, GetLoggedMessages() has a sentence for
// the user that says why.
//
// The library keeps the outcome of the last operation for the whole process, without a lock. Call it from one
// thread at a time, and convert Excel workbooks on the thread that called XlsInitOle. A call returns when its
// work is done; no threads are started.
//
// Between calls the library keeps one buffer for the next conversion. It is smaller than six bytes for each
// character of the largest document so far. A conversion uses at most three of them.
//
// To read Excel workbooks, the library drives the current Excel in the system's registry. On a system without
// Excel, an engine inside the library replaces it, by default as Excel 2010. There, the environment variable
// XLS2TKI_REGISTRY can name a file in the format of registry exports that names another version.
//
// Exceptions: errors in an input are reported through the result. A std::exception reaches the caller if
// Excel fails during its work, with Excel's own message as what(), in UTF-8, or if there is no memory
// (std::bad_alloc). The outputs of the call are then unchanged. GetExcelWorksheets throws one more.
#pragma once

#include <cstdint>
#include <set>
#include <string>
#include <vector>

// On Windows, the types of the standard library cross only between the compilers that docs/windows.md names.
#if defined(_WIN32)
#if !defined(_WIN64)
#error "xls2tki is built for x86-64. Compile your host for it."
#elif defined(_LIBCPP_VERSION)
#error "xls2tki.h does not support libc++. Use xls2tki_c.h."
#elif defined(_MSC_VER) && (_MSC_VER < 1900 || !defined(_DLL) || _ITERATOR_DEBUG_LEVEL != 0)
#error "xls2tki.h requires Visual Studio 2015 or later, /MD and a release build. Use xls2tki_c.h."
#elif defined(_MSC_VER) && !defined(_NATIVE_WCHAR_T_DEFINED)
#error "xls2tki.h requires /Zc:wchar_t. Use xls2tki_c.h."
#elif !defined(_MSC_VER) && defined(_UCRT)
#error "xls2tki.h requires a g++ for msvcrt.dll, and this one is for UCRT. Use xls2tki_c.h."
#endif
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

// The kind of input, which decides what reads it.
enum VImportType : std::int32_t {
    ImportTypeODBC = 0,   // an Excel file, read through the installed Excel ODBC driver
    ImportTypeExcel = 1,  // an Excel workbook, read through the installed Excel's automation
    ImportTypeCSV = 2,    // a text file of cells between separators
};

// Prepares the process for automation. Call it once, on the thread that will convert. Later calls return true
// and do nothing. False: the preparation failed. Unless `silent` is true, the user also sees a message box.
XLS2TKI_EXPORT bool XlsInitOle(bool silent);

// Converts one table. The input is read completely and the document is complete before the output is opened:
// a conversion that returns false leaves the output unchanged. The result does not say whether the output
// could be created and written. For that, call xls2tki_facts() of xls2tki_c.h afterwards and look at
// `written`.
//
//   inputPath           the workbook or CSV file; with ODBC, a name without ';' that does not begin with '{':
//                       it becomes part of a connect string unchanged, where such a name could open another
//                       file, or even load another driver
//   worksheetName       the worksheet of an Excel workbook, exactly as GetExcelWorksheets lists it; empty:
//                       the first. A name that the workbook does not have is not an error: the last worksheet
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
//   utf8                read a CSV file as UTF-8; otherwise each byte is the character of the same value
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

// The same with header texts; secondNames is also the third set.
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

// Replaces `names` by the names of the workbook's worksheets, in workbook order. If there are none, Excel did
// not start or did not open the workbook: convert the workbook to get the reason in the progress messages.
//
// If it returns false, no Excel can list them, and GetLoggedMessages() has the reason. If it returns true,
// GetLoggedMessages() is unchanged or has a warning that Excel's version is unknown.
//
// Throws an exception of the library's own, which a host catches as `...`, for a workbook without worksheets
// and, with Excel 2000 and 2007, for a file that cannot be opened. `names` and GetLoggedMessages() are then
// unchanged, except for the warning. Convert the workbook to get the reason from GetLoggedMessages().
XLS2TKI_EXPORT bool GetExcelWorksheets(const WideChar* path, std::vector<WideString>& names);

// The outcome of the last operation: after a conversion that returned true, its last progress line, with a
// time stamp and a line feed; after one that returned false, the reason. Empty before the first conversion,
// and after one that ended with an exception, except for a warning about Excel's version. A NUL in a cell
// becomes U+FFFD. The text belongs to the library and is valid until the next call of Xls2TkiConvert or
// GetExcelWorksheets. Throws std::bad_alloc if there is no memory for the text.
XLS2TKI_EXPORT const WideChar* GetLoggedMessages();

}  // namespace NXls2Tki
