#include "cli/csv_text.h"

#include <utility>

namespace NCli {

int CsvCharacters::NextUnit() {
    const int low = std::fgetc(text_);
    if (!isUtf16_ || low == EOF) return low;
    const int high = std::fgetc(text_);
    return high == EOF ? low : high << 8 | low;
}

int CsvCharacters::Next() {
    const int unit = ahead_ == kEndOfText ? NextUnit() : std::exchange(ahead_, kEndOfText);
    if (unit != '\r') return unit;
    ahead_ = NextUnit();
    return ahead_ == '\n' ? std::exchange(ahead_, kEndOfText) : unit;
}

CsvStep CsvCells::Take(int character) {
    if (place_ == Place::Quoted) {
        if (character != '"') return CsvStep::Character;
        place_ = Place::BehindQuote;
        return CsvStep::Quote;
    }
    if (character == '"' && place_ != Place::Unquoted) {
        const bool isDoubled = place_ == Place::BehindQuote;
        place_ = Place::Quoted;
        return isDoubled ? CsvStep::Character : CsvStep::Quote;
    }
    if (character == separator_ || character == '\n') {
        place_ = Place::Start;
        return character == '\n' ? CsvStep::EndOfRow : CsvStep::EndOfCell;
    }
    if (place_ == Place::BehindQuote) return CsvStep::Fault;
    place_ = Place::Unquoted;
    return CsvStep::Character;
}

}  // namespace NCli
