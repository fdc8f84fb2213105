// From the cell table to the import document.
#pragma once

#include <set>
#include <string>
#include <string_view>

#include "document/document_facts.h"
#include "log/log_object.h"
#include "platform/text_buffer.h"
#include "sources/table.h"

namespace VSimpleXMLCreation {

// Builds the whole document, XML declaration included, with single line feeds as line ends.
//
//   iterator            at the first row of a table that passed its consistency check
//   result              receives the document; unchanged when the call throws
//   log                 receives a message for the column that ends the table, and one for each column before
//                       it that is skipped because its header is empty
//   diagnosticInstance  "diaginstance" of the service mapping; empty: no such attribute
//   variant             "variant" of the service mapping; empty: no such attribute
//   vsgNames            header texts of columns whose items have the type "VSG"
//   secondNames, thirdNames  header texts of columns whose items have the type "A"; vsgNames go first
//   facts               unless null, receives how the table was read; unchanged when the call throws
//
// A double quote in the name of the diagnostic instance or of the variant is written as "&quot;", so that the
// attribute does not end there; everywhere else it is written as it is.
//
// table_scan.h and dtc_convert.h specify the layouts and the number notations. In the J1939 layout
// the number is the FMI, SPN bits 0 to 7 in its bits 16 to 23, SPN bits 8 to 15 in its bits 8 to 15 and SPN
// bits 16 to 18 in its bits 5 to 7 (SAE J1939); an FMI above 31 overlaps them. With a base DTC and a failure
// type byte it is the base shifted left by 8 bits, and the failure type (SAE J2012).
//
// Throws VSimpleXMLException on a malformed SAE code, and when the document becomes longer than one
// conversion to UTF-8 takes. Any other text that is not a number gives the number that its conversion makes
// of it.
void BuildImportDocument(VCSVReader::VHeapIterator& iterator, NPlatform::TextBuffer& result,
                         VCSVReader::VLogObject& log, std::u16string_view diagnosticInstance,
                         std::u16string_view variant, const std::set<std::u16string>& vsgNames,
                         const std::set<std::u16string>& secondNames,
                         const std::set<std::u16string>& thirdNames, DocumentFacts* facts = nullptr);

}  // namespace VSimpleXMLCreation
