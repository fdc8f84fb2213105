#include "cli/csv_walk.h"

#include "cli/detection.h"

namespace NCli {

CsvWalk::CsvWalk(const Options& options, std::FILE* text)
    : characters_((GoToText(text), text), options.encoding.value_or(Encoding::EightBit)),
      cells_(options.separator.value_or(';')) {}

// The end of the text ends its last line, as in the library.
CsvStep CsvWalk::TakeCharacter() {
    const int character = characters_.Next();
    hasEnded_ = character == kEndOfText;
    const CsvStep step = cells_.Take(hasEnded_ ? '\n' : character);
    if (character == '\n') ++lines_;
    if (step == CsvStep::Character && !hasEnded_ && text_.size() < kMostText)
        text_ += static_cast<char>(character);
    return step;
}

bool CsvWalk::Next() {
    if (hasEnded_ || end_ == End::Fault) return false;
    const bool isNewRow = end_ == End::OfRow;
    text_.clear();
    line_ = lines_;
    CsvStep step = TakeCharacter();
    if (hasEnded_ && isNewRow) return false;
    while (!hasEnded_ && (step == CsvStep::Character || step == CsvStep::Quote)) step = TakeCharacter();
    end_ = step == CsvStep::Character  ? End::Unfinished
           : step == CsvStep::Fault    ? End::Fault
           : step == CsvStep::EndOfRow ? End::OfRow
                                       : End::OfCell;
    row_ += isNewRow ? 1 : 0;
    column_ = isNewRow ? 0 : column_ + 1;
    return true;
}

std::string CsvWalk::CellName() const {
    std::string letters;
    for (std::size_t rest = column_ + 1; rest > 0; rest = (rest - 1) / 26) {
        letters.insert(letters.begin(), static_cast<char>('A' + (rest - 1) % 26));
    }
    return letters + std::to_string(row_);
}

}  // namespace NCli
