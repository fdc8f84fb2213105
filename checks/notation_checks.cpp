#include "checks/notation_checks.h"

#include "checks/causes.h"
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
            if (!CheckLetters()) CheckCodes();
        } else {
            CheckRefusedHex();
            CheckRefusedNumbers();
        }
        if (role_ != NumberRole::Spn && role_ != NumberRole::Fmi) CheckLeadingZeros();
    }

  private:
    [[nodiscard]] std::u16string_view Text(std::size_t row) const { return table_.Row(row)[column_]; }
    [[nodiscard]] std::u16string Name(std::size_t row) const { return NameCell({row, column_}, Text(row)); }

    // "214 numbers such as A2 "1234" are written as 4660"
    [[nodiscard]] std::u16string Written(const Tally& numbers) const {
        const auto number = static_cast<std::int32_t>(reader_.Read(role_, Text(numbers.first)));
        if (numbers.count == 1) return Say(u"1 number, %s, is written as %d", {Name(numbers.first), number});
        return Say(u"%d numbers such as %s are written as %d",
                   {Count(numbers.count), Name(numbers.first), number});
    }

    [[nodiscard]] std::size_t FirstWithLetter() const {
        std::size_t row = 1;
        while (!HasHexLetter(Text(row))) ++row;
        return row;
    }

    bool CheckLetters();
    void CheckCodes();
    void CheckRefusedHex();
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
bool NotationChecks::CheckLetters() {
    constexpr std::size_t kShareOfWords = 4;
    if (!table_.notation.hexDigits || tallies_.dependentDigits.count == 0) return false;
    const std::size_t words = tallies_.hexWords.count;
    if (words > 1 && words * kShareOfWords >= words + tallies_.digits.count) return false;
    const std::u16string cell = Name(words == 0 ? FirstWithLetter() : tallies_.hexWords.first);
    const auto tell = [&](std::u16string_view cure) {
        return Say(u"Cell %s makes the whole column hexadecimal: %s. %s",
                   {cell, Written(tallies_.dependentDigits), cure});
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
    return true;
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
                u"%s can be an SAE code or a hexadecimal number; it is read as a code, and the document has "
                u"%d. "
                u"Write a hexadecimal number with 0x.",
                {Quote(Text(row)), static_cast<std::int32_t>(reader_.Read(role_, Text(row)))});
        });
    } else if (numbers > 0 && numbers <= codes.count) {
        AddCells(kNumberAmongCodes, isNumber, [this](std::size_t row) {
            return Say(
                u"%s stands among SAE codes, but has no letter P, C, B or U; the document has %d. "
                u"If it is a code, write its letter; if not, write the number with 0x.",
                {Quote(Text(row)), static_cast<std::int32_t>(reader_.Read(role_, Text(row)))});
        });
    } else if (numbers > 0) {
        AddCells(kCodeAmongNumbers, isCode, [this](std::size_t row) {
            return Say(
                u"%s stands among numbers and is read as an SAE code; the document has %d. "
                u"Correct it if it is none.",
                {Quote(Text(row)), static_cast<std::int32_t>(reader_.Read(role_, Text(row)))});
        });
    }
}

void NotationChecks::CheckRefusedHex() {
    const Tally& words = tallies_.refusedHexWords;
    const Tally& digits = tallies_.dependentDigits;
    if (words.count == 0 || digits.count == 0 || role_ == NumberRole::Spn || role_ == NumberRole::Fmi) return;
    collector_.Add(kPerhapsHex, {}, [&] {
        return Say(
            u"Cell %s is hexadecimal, so others of the column may be, too; %s as a decimal number: %s. Write "
            u"hexadecimal numbers with 0x.",
            {Name(words.first), digits.count == 1 ? u"one is read" : u"each is read",
             digits.count == 1 ? Name(digits.first)
                               : Say(u"%d such as %s", {Count(digits.count), Name(digits.first)})});
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
            u"Cell %s makes the whole column SAE codes: %s such as %s cannot be read. Write all base DTCs in "
            u"one "
            u"notation.",
            {Name(row), Counted(numbers.count, u"number", u"numbers"), Name(numbers.first)});
    });
}

void NotationChecks::CheckLeadingZeros() {
    if (tallies_.leadingZeros.count == 0 || tallies_.dependentDigits.count == 0) return;
    const auto hasLeadingZero = [](DtcNotation notation, std::u16string_view text) {
        return notation == DtcNotation::Decimal && text.size() > 1 && text[0] == u'0';
    };
    AddCells(kLeadingZeros, hasLeadingZero, [this](std::size_t row) {
        return Say(
            u"%s is read as the decimal number %d. If it is hexadecimal, write it with 0x, and the others, "
            u"too; if not, leave out the zeros in front.",
            {Quote(Text(row)), static_cast<std::int32_t>(reader_.Read(role_, Text(row)))});
    });
}

}  // namespace

void CheckNotation(const Table& table, std::size_t column, const NumberTallies& tallies, NumberReader& reader,
                   Collector& collector) {
    NotationChecks(table, column, tallies, reader, collector).Run();
}

}  // namespace NChecks
