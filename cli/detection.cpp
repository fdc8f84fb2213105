#include "cli/detection.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include "cli/csv_text.h"
#include "cli/failure.h"
#include "cli/files.h"
#include "cli/input.h"
#include "cli/text.h"

namespace NCli {

namespace fs = std::filesystem;

using NXls2Tki::WideChar;

namespace {

std::string ShownEncoding(Encoding encoding) { return encoding == Encoding::Utf8 ? "UTF-8" : "UTF-16"; }

struct Mark {
    std::string_view bytes;
    Encoding encoding;
};
constexpr Mark kNoMark = {"", Encoding::EightBit};
constexpr Mark kBigEndianMark = {"\xFE\xFF", Encoding::Utf16};
constexpr Mark kMarks[] = {{"\xEF\xBB\xBF", Encoding::Utf8}, {"\xFF\xFE", Encoding::Utf16}, kBigEndianMark};

// Moves to the place after it.
Mark ReadMark(std::FILE* text) {
    char bytes[3] = {};
    std::fseek(text, 0, SEEK_SET);
    const std::string_view begin(bytes, std::fread(bytes, 1, sizeof bytes, text));
    const auto* const found = std::find_if(std::begin(kMarks), std::end(kMarks),
                                           [&](const Mark& mark) { return begin.starts_with(mark.bytes); });
    const Mark mark = found == std::end(kMarks) ? kNoMark : *found;
    std::fseek(text, static_cast<long>(mark.bytes.size()), SEEK_SET);
    return mark;
}

// All of the text has to be valid, and some of it beyond ASCII.
bool IsUtf8BeyondAscii(std::FILE* text) {
    constexpr std::size_t kLongestCharacter = 4;
    std::vector<char> piece(std::size_t{1} << 16);
    std::uint64_t size = 0;
    std::size_t kept = 0;  // the beginning of a character, from the piece before
    bool isAscii = true;
    while (const std::size_t count = std::fread(piece.data() + kept, 1, piece.size() - kept, text)) {
        size += count;
        if (size > kLargestInput) return false;  // the library will not read it
        const Utf8Run run = MeasureUtf8({piece.data(), kept + count});
        isAscii = isAscii && run.isAscii;
        kept += count - run.size;
        if (kept >= kLongestCharacter) return false;
        std::memmove(piece.data(), piece.data() + run.size, kept);
    }
    return kept == 0 && !isAscii;
}

Encoding FindEncoding(std::FILE* text, const Mark& mark) {
    if (!mark.bytes.empty()) return mark.encoding;
    return IsUtf8BeyondAscii(text) ? Encoding::Utf8 : Encoding::EightBit;
}

void CheckMark(const Options& options, const Mark& mark) {
    const std::string begin = NameOf(options.input) + " begins with the byte order mark of ";
    if (mark.bytes == kBigEndianMark.bytes) throw Failure(begin + "big-endian UTF-16. Save it as UTF-8.");
    if (options.encoding != Encoding::EightBit || mark.bytes.empty()) return;
    throw Failure(begin + ShownEncoding(mark.encoding) + ". Leave out --encoding 8-bit.");
}

// The sentence of the note, with the parts that are not empty.
void NoteChoices(const std::string& name, const std::string& encoding, const std::string& separators) {
    if (encoding.empty() && separators.empty()) return;
    std::string sentence = name + " is read";
    if (!encoding.empty()) sentence += " as " + encoding;
    if (!encoding.empty() && !separators.empty()) sentence += ',';
    if (!separators.empty()) sentence += " with " + separators + " between the cells";
    Note(sentence + '.');
}

enum class Division { Divided, Whole, Unknown };

Division DivideHeader(std::FILE* text, std::optional<Encoding> encoding, WideChar separator) {
    constexpr int kLongestHeader = 1 << 20;
    const Mark mark = ReadMark(text);
    CsvCharacters characters(text, encoding.value_or(mark.encoding));
    CsvCells cells(separator);
    for (int count = 0; count < kLongestHeader; ++count) {
        const int character = characters.Next();
        if (character == 0) break;  // this is no text
        const CsvStep step = character == kEndOfText ? CsvStep::EndOfRow : cells.Take(character);
        if (step == CsvStep::EndOfCell) return Division::Divided;
        if (step == CsvStep::EndOfRow || step == CsvStep::Fault) return Division::Whole;
    }
    return Division::Unknown;
}

bool IsTabSeparated(const fs::path& input) { return LowerCase(ToBytes(input.extension())) == ".tsv"; }

}  // namespace

std::optional<Separator> FindSeparator(const Options& options, std::FILE* text) {
    auto candidates = std::to_array(kSeparators);
    if (IsTabSeparated(options.input)) std::swap(candidates[0], candidates[1]);
    for (const Separator& candidate : candidates) {
        const Division division = DivideHeader(text, options.encoding, candidate.character);
        if (division == Division::Divided) return candidate;
        if (division == Division::Unknown) break;
    }
    return std::nullopt;
}

void GoToText(std::FILE* text) { ReadMark(text); }

void ChooseReading(Options& options, const fs::path& text) {
    const File file = IsRegularFile(text) ? OpenFile(text, "rb") : nullptr;
    if (!file) return;
    const Mark mark = ReadMark(file.get());
    CheckMark(options, mark);
    std::string encoding;
    if (!options.encoding) {
        options.encoding = FindEncoding(file.get(), mark);
        if (options.encoding != Encoding::EightBit) encoding = ShownEncoding(*options.encoding);
    } else if (!mark.bytes.empty()) {
        options.encoding = mark.encoding;
    }
    std::string separators;
    if (!options.separator) {
        const Separator separator = FindSeparator(options, file.get()).value_or(kSeparators[0]);
        options.separator = separator.character;
        if (separator.character != kSeparators[0].character) separators = separator.plural;
    }
    if (std::ferror(file.get()) != 0) {
        throw Failure("Could not read " + NameOf(options.input) + ": the system reported an error");
    }
    NoteChoices(NameOf(options.input), encoding, separators);
}

}  // namespace NCli
