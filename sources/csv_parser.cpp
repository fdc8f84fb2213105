#include "sources/csv_parser.h"

#include <algorithm>
#include <new>

#include "platform/format.h"
#include "sources/parser_exception.h"

namespace VCSVReader {

namespace {

constexpr char16_t kQuote = u'"';
constexpr char16_t kLineFeed = u'\n';

// A state is destroyed right after it made the next one, so two places are in use at most; they take turns.
// Should anybody keep more, those come from the free store.
struct Place {
    alignas(VParserStart) unsigned char bytes[sizeof(VParserStart)];
    bool isTaken;
};
Place places[2];

}  // namespace

void* VParserStateInterface::operator new(std::size_t size) {
    static_assert(sizeof(VParserNormal) == sizeof(VParserStart) &&
                  sizeof(VParserQuoted) == sizeof(VParserStart) &&
                  sizeof(VParserQuotedPending) == sizeof(VParserStart));
    for (Place& place : places) {
        if (place.isTaken) continue;
        place.isTaken = true;
        return place.bytes;
    }
    return ::operator new(size);
}

void VParserStateInterface::operator delete(void* state) noexcept {
    for (Place& place : places) {
        if (state != place.bytes) continue;
        place.isTaken = false;
        return;
    }
    ::operator delete(state);
}

bool VParserStateInterface::EndsCell(char16_t character) {
    if (character == separator_) {
        heap_->AddCell(u"");
        return true;
    }
    if (character == kLineFeed) {
        heap_->EndRow(true);
        return true;
    }
    return false;
}

VParserStateInterface* VParserStart::HandleChar(const char16_t* character) {
    if (*character == kQuote) return new VParserQuoted(heap_, separator_);
    if (EndsCell(*character)) return new VParserStart(heap_, separator_);
    heap_->AppendChar(*character);
    return new VParserNormal(heap_, separator_);
}

const char16_t* VParserStart::HandleRun(const char16_t* first, const char16_t* last) {
    // With a line feed at the end, every cell has an end.
    if (first == last || last[-1] != kLineFeed) return first;
    while (first != last && *first != kQuote) {
        const char16_t* end = first;
        while (*end != separator_ && *end != kLineFeed) ++end;
        heap_->AppendRun(first, end);
        EndsCell(*end);
        first = end + 1;
    }
    return first;
}

VParserStateInterface* VParserNormal::HandleChar(const char16_t* character) {
    if (EndsCell(*character)) return new VParserStart(heap_, separator_);
    heap_->AppendChar(*character);
    return new VParserNormal(heap_, separator_);
}

VParserStateInterface* VParserQuoted::HandleChar(const char16_t* character) {
    if (*character == kQuote) return new VParserQuotedPending(heap_, separator_);
    heap_->AppendChar(*character);
    return new VParserQuoted(heap_, separator_);
}

const char16_t* VParserQuoted::HandleRun(const char16_t* first, const char16_t* last) {
    const char16_t* const end = std::find(first, last, kQuote);
    heap_->AppendRun(first, end);
    return end;
}

// Not with EndsCell: should the separator be a line feed, here the row ends, elsewhere the cell does.
VParserStateInterface* VParserQuotedPending::HandleChar(const char16_t* character) {
    if (*character == kQuote) {
        heap_->AppendChar(kQuote);
        return new VParserQuoted(heap_, separator_);
    }
    if (*character == kLineFeed) {
        heap_->EndRow(true);
        return new VParserStart(heap_, separator_);
    }
    if (*character == separator_) {
        heap_->AddCell(u"");
        return new VParserStart(heap_, separator_);
    }
    std::int32_t line = 0;
    std::int32_t column = 0;
    std::int32_t position = 0;
    heap_->GetParsePosition(line, column, position);
    throw VParserException(NPlatform::Format(
        512, u"Error parsing csv file.\nUnknown character '%c' in line %d, column %d, position %d",
        {*character, line, column, position}));
}

}  // namespace VCSVReader
