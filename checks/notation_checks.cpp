#include "checks/notation_checks.h"

#include <algorithm>

#include "checks/causes.h"
#include "checks/header_meaning.h"
#include "checks/sentence.h"
#include "document/cell_text.h"

namespace NChecks {

using VSimpleXMLCreation::DtcNotation;
using VSimpleXMLCreation::HasHexLetter;
using VSimpleXMLCreation::LooksLikeSae;
using VSimpleXMLCreation::NumberReader;
using VSimpleXMLCreation::NumberRole;
using VSimpleXMLCreation::Trim;

namespace {

class NotationChecks {
  public:
    NotationChecks(const Table& table, std::size_t column, const NumberTallies& tallies, NumberReader& reader,
                   Collector& collector)
        : table_(table),
          column_(column),
          tallies_(tallies),
          reader_(reader),
          collector_(collector),
          role_(RoleOf(table.layout, column)) {}

    void Run() {
        if (role_ == NumberRole::DtcNumber) {
            if (CheckHeader()) return;
            CheckLetters();
            CheckCodes();
            if (!table_.notation.hexDigits && tallies_.codes.count == 0) CheckUnlikeHex();
        } else {
            CheckUnlikeHex();
            CheckRefusedNumbers();
        }
        CheckWidths();
        if (role_ != NumberRole::Spn && role_ != NumberRole::Fmi) CheckLeadingZeros();
    }

  private:
    [[nodiscard]] std::u16string_view Text(std::size_t row) const { return table_.Row(row)[column_]; }
    [[nodiscard]] std::u16string Name(std::size_t row) const { return NameCell({row, column_}, Text(row)); }

    [[nodiscard]] std::int32_t Number(std::size_t row) const {
        return static_cast<std::int32_t>(reader_.Read(role_, Text(row)));
    }

    // "214 numbers change: A2 "1234", for example, becomes 4660"
    [[nodiscard]] std::u16string Changed(const Tally& numbers) const {
        if (numbers.count == 1) return Say(u"%s becomes %d", {Name(numbers.first), Number(numbers.first)});
        return Say(u"%d numbers change: %s, for example, becomes %d",
                   {Count(numbers.count), Name(numbers.first), Number(numbers.first)});
    }

    // "A2 "1234" is", "214 numbers such as A2 "1234" are"
    [[nodiscard]] std::u16string Are(const Tally& numbers) const {
        if (numbers.count == 1) return Say(u"%s is", {Name(numbers.first)});
        return Say(u"%d numbers such as %s are", {Count(numbers.count), Name(numbers.first)});
    }

    [[nodiscard]] std::size_t FirstWithLetter() const {
        std::size_t row = 1;
        while (!HasHexLetter(Text(row))) ++row;
        return row;
    }

    bool CheckHeader();
    void CheckLetters();
    void CheckCodes();
    void CheckWidths();
    void CheckUnlikeHex();
    void CheckRefusedNumbers();
    void CheckLeadingZeros();
    template <typename IsWanted, typename Sentence>
    void AddCells(const Cause& cause, IsWanted isWanted, Sentence sentence);

    const Table& table_;
    std::size_t column_;
    const NumberTallies& tallies_;
    NumberReader& reader_;
    Collector& collector_;
    NumberRole role_;
};

// Letters from A to F make the column hexadecimal. Many hexadecimal numbers show that it is meant to be.
void NotationChecks::CheckLetters() {
    constexpr std::size_t kShareOfWords = 4;
    if (!table_.notation.hexDigits || tallies_.dependentDigits.count == 0) return;
    const std::size_t words = tallies_.hexWords.count;
    if (words > 1 && words * kShareOfWords >= words + tallies_.digits.count) return;
    if (words > 0 && SaysHexadecimal(table_.Header()[column_])) return;
    const std::u16string cell = Name(words == 0 ? FirstWithLetter() : tallies_.hexWords.first);
    const auto tell = [&](std::u16string_view advice) {
        return Say(u"Cell %s makes the whole column hexadecimal: %s. %s",
                   {cell, Changed(tallies_.dependentDigits), advice});
    };
    if (words == 0) {
        collector_.Add(kLetters, {}, [&] {
            return tell(u"Correct the cell, or write all numbers in one notation, hexadecimal ones with 0x.");
        });
    } else {
        collector_.Add(kHexWords, {}, [&] {
            return tell(u"If they are hexadecimal, write 0x before each number; if not, correct the cell.");
        });
    }
}

// Adds those of the exact cells that `isWanted` chooses by how they are read.
template <typename IsWanted, typename Sentence>
void NotationChecks::AddCells(const Cause& cause, IsWanted isWanted, Sentence sentence) {
    for (std::size_t row = 1; row < table_.RowCount(); ++row) {
        const NumberReader::Reading reading = reader_.ReadingOf(role_, Text(row));
        if (!isWanted(reading.notation, Trim(reading.text))) continue;
        if (Judge(role_, Text(row), reading) != Verdict::Exact) continue;
        collector_.Add(cause, {row, column_}, [&] { return sentence(row); });
    }
}

void NotationChecks::CheckCodes() {
    const Tally& codes = tallies_.codes;
    const std::size_t numbers = tallies_.digits.count + tallies_.hexWords.count;
    const auto isCode = [](DtcNotation notation, std::u16string_view) {
        return notation == DtcNotation::Sae;
    };
    const auto isNumber = [](DtcNotation notation, std::u16string_view) {
        return notation == DtcNotation::Hex || notation == DtcNotation::Decimal;
    };
    if (codes.count == 0) return;
    if (codes.count == tallies_.hexCodes.count && numbers + tallies_.prefixed.count > 0) {
        AddCells(kEitherCodeOrHex, isCode, [this](std::size_t row) {
            return Say(
                u"%s can be an SAE code or a hexadecimal number; it is read as a code, and the number "
                u"becomes "
                u"%d. Write a hexadecimal number with 0x.",
                {Quote(Text(row)), Number(row)});
        });
    } else if (numbers > 0 && numbers <= codes.count) {
        AddCells(kNumberAmongCodes, isNumber, [this](std::size_t row) {
            return Say(
                u"%s has no letter P, C, B or U, but there are SAE codes in the column; the number becomes "
                u"%d. If it is a code, add the letter; if not, write it in hexadecimal with 0x.",
                {Quote(Text(row)), Number(row)});
        });
    } else if (numbers > 0) {
        AddCells(kCodeAmongNumbers, isCode, [this](std::size_t row) {
            return Say(
                u"%s is read as an SAE code, unlike most cells of the column; the number becomes %d. Correct "
                u"it if it is not a code.",
                {Quote(Text(row)), Number(row)});
        });
    }
}

// Codes with a failure type among codes without, or the other way round: few unlike the many.
void NotationChecks::CheckWidths() {
    const auto* const many = std::ranges::max_element(tallies_.codesBySize, {}, &Tally::count);
    if (many->count * 4 < tallies_.codes.count * 3) return;
    const auto usual = static_cast<std::size_t>(many - tallies_.codesBySize) * 2 + 3;
    const auto isOther = [&](DtcNotation notation, std::u16string_view text) {
        return notation == DtcNotation::Sae && text.size() != usual;
    };
    if (many->count == tallies_.codes.count) return;
    AddCells(kCodeWidth, isOther, [&](std::size_t row) {
        const std::size_t size = Trim(Text(row)).size();
        return Say(
            u"%s has %d characters, but most codes of the column have %d: its number has %s, theirs have %d. "
            u"Correct it if it should be like them.",
            {Quote(Text(row)), Count(size), Count(usual), Counted((size - 1) / 2, u"byte", u"bytes"),
             Count((usual - 1) / 2)});
    });
}

// Whether decimal numbers are below a header that says something else.
bool NotationChecks::CheckHeader() {
    const Tally& digits = tallies_.dependentDigits;
    if (table_.notation.hexDigits || digits.count == 0) return false;
    const std::u16string_view header = table_.Header()[column_];
    if (!SaysHexadecimal(header)) return false;
    collector_.Add(kHexHeader, {0, column_}, [&] {
        return Say(
            u"%s says hexadecimal, but %s read as decimal, because no cell has a letter from A to F. Write "
            u"all numbers with 0x.",
            {Quote(header), Are(digits)});
    });
    return true;
}

// Decimal numbers among hexadecimal ones.
void NotationChecks::CheckUnlikeHex() {
    const Tally& refused = tallies_.refusedHexWords;
    const Tally& words = refused.count > 0 ? refused : tallies_.prefixed;
    const Tally& digits = tallies_.dependentDigits;
    if (words.count == 0 || digits.count == 0 || role_ == NumberRole::Spn || role_ == NumberRole::Fmi) return;
    collector_.Add(kPerhapsHex, {}, [&] {
        return Say(
            u"Cell %s is hexadecimal, so other cells may be hexadecimal, too, but %s read as decimal. Write "
            u"hexadecimal numbers with 0x.",
            {Name(words.first), Are(digits)});
    });
}

// One SAE code among base DTCs of another notation.
void NotationChecks::CheckRefusedNumbers() {
    const Tally& numbers = tallies_.refusedNumbers;
    if (numbers.count <= tallies_.codes.count) return;
    std::size_t row = 1;
    while (!LooksLikeSae(Text(row))) ++row;
    collector_.Add(kCodeRefusesNumbers, {}, [&] {
        return Say(
            u"Cell %s makes the whole column SAE codes, but %s not SAE codes. Write all base DTCs in one "
            u"notation.",
            {Name(row), Are(numbers)});
    });
}

void NotationChecks::CheckLeadingZeros() {
    if (tallies_.leadingZeros.count == 0 || tallies_.dependentDigits.count == 0) return;
    const auto hasLeadingZero = [](DtcNotation notation, std::u16string_view text) {
        return notation == DtcNotation::Decimal && text.size() > 1 && text[0] == u'0';
    };
    AddCells(kLeadingZeros, hasLeadingZero, [this](std::size_t row) {
        return Say(
            u"%s is read as the decimal number %d. If it is hexadecimal, write all numbers of the column "
            u"with 0x; if not, remove the leading zeros.",
            {Quote(Text(row)), Number(row)});
    });
}

}  // namespace

void CheckNotation(const Table& table, std::size_t column, const NumberTallies& tallies, NumberReader& reader,
                   Collector& collector) {
    NotationChecks(table, column, tallies, reader, collector).Run();
}

}  // namespace NChecks
