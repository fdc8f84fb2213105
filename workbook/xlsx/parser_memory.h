// An XML parser that can have only so much memory.
#pragma once

#include <expat.h>

#include <memory>

namespace NWorkbook::NXlsx {

struct FreeParser {
    void operator()(XML_Parser parser) const { XML_ParserFree(parser); }
};
using LimitedParser = std::unique_ptr<XML_ParserStruct, FreeParser>;

// All parsers of one thread share kMostParserMemory; one that asks for more reports a lack of memory. Throws
// std::bad_alloc.
LimitedParser MakeLimitedParser();

}  // namespace NWorkbook::NXlsx
