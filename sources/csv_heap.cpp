#include "sources/csv_heap.h"

#include "platform/files.h"
#include "platform/format.h"
#include "sources/csv_parser.h"
#include "sources/parser_exception.h"

namespace VCSVReader {

void VDefaultCSVHeap::OpenSource() {
    using NPlatform::TextFileResult;
    Log(u"Using VDefaultCSVHeap to receive data.");
    V2DVectorHeap::OpenSource();
    Log(u"Reading CSV File.");
    const auto encoding = utf8_ ? NPlatform::TextEncoding::Utf8 : NPlatform::TextEncoding::EightBit;
    const TextFileResult result = NPlatform::ReadTextFile(FileName(), encoding, fileContent_);
    if (result == TextFileResult::TooLarge) {
        throw VParserException(
            NPlatform::Format(512, u"Error reading inputfile, it is larger than 2 GB:\n'%s'", {FileName()}));
    }
    if (result == TextFileResult::Failed) {
        throw VParserException(NPlatform::Format(512, u"Error reading inputfile:\n'%s'", {FileName()}));
    }
    Log(u"Reading CSV File done.");
}

void VDefaultCSVHeap::ReadData() {
    std::unique_ptr<VParserStateInterface> state(new VParserStart(this, separator_));
    Log(u"Parsing CSV file ... ");
    const char16_t* character = fileContent_.View().data();
    const char16_t* const end = character + fileContent_.Size();
    BuildCellsIn(std::move(fileContent_));
    while ((character = state->HandleRun(character, end)) != end) state.reset(state->HandleChar(character++));
    state.reset();
    Log(u"Parsing CSV file ... done");
}

}  // namespace VCSVReader
