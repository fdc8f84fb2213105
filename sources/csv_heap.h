// The table source for CSV files.
#pragma once

#include "platform/text_buffer.h"
#include "sources/vector_heap.h"

namespace VCSVReader {

// Reads a whole delimited text file and parses it (see csv_parser.h). An unfinished quoted cell at the end of
// the text is dropped with its row, without a message.
class VDefaultCSVHeap : public V2DVectorHeap {
  public:
    // `separator`: any UTF-16 unit; there is no default. `utf8`: the file is UTF-8; else each of its bytes is
    // the character of the same value.
    VDefaultCSVHeap(std::u16string_view fileName, VLogObject* log, char16_t separator, bool utf8)
        : V2DVectorHeap(fileName, log), separator_(separator), utf8_(utf8) {}

    // Reads the text. A file that cannot be opened again after the check gives an empty table; one that is
    // larger than 2 GB or cannot be read to its end is refused.
    void OpenSource() override;
    // Parses the text; the cells are built in its memory.
    void ReadData() override;

  private:
    NPlatform::TextBuffer fileContent_;
    char16_t separator_;
    bool utf8_;
};

}  // namespace VCSVReader
