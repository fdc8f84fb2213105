// The large parts of a workbook's file, made piece by piece.
#pragma once

#include <string>
#include <string_view>

#include "workbook/workbook.h"

namespace NWorkbook::NXlsx {

inline constexpr std::string_view kXmlDeclaration =
    R"(<?xml version="1.0" encoding="UTF-8" standalone="yes"?>)"
    "\n";

// The XML text of one part. The cells that it is made of stay as they are while the object lives.
class WrittenPart {
  public:
    WrittenPart(const WrittenPart&) = delete;
    WrittenPart& operator=(const WrittenPart&) = delete;
    virtual ~WrittenPart() = default;

    // Makes the whole text once to know its size in bytes. To be called before the other operations.
    void Measure();
    [[nodiscard]] std::size_t Size() const { return size_; }
    // Begins again.
    void Rewind();
    // Writes the next bytes, at most `capacity`, and returns how many; 0 at the end. Allocates nothing, as
    // measuring has already.
    std::size_t Read(char* bytes, std::size_t capacity);

  protected:
    // What the root element begins and ends with.
    WrittenPart(std::string_view head, std::string_view tail) : head_(head), tail_(tail) {}

    virtual void Restart() = 0;
    // Appends what comes next; false when there is no more.
    virtual bool Continue(std::string& xml) = 0;

  private:
    void MakePiece();

    std::string_view head_;
    std::string_view tail_;
    enum class Stage { Head, Content, Done } stage_ = Stage::Head;
    std::string piece_;
    std::size_t taken_ = 0;
    std::size_t size_ = 0;
};

// A worksheet. Numbers have as many digits as it takes to read the same number again, texts are the strings
// of WrittenStrings.
class WrittenWorksheet : public WrittenPart {
  public:
    // `firstString` is the index of its first text among those of all worksheets, and becomes that of the
    // next worksheet's. Throws WorkbookError for a cell that cannot be written.
    WrittenWorksheet(Worksheet& worksheet, std::size_t& firstString);

  private:
    void Restart() override;
    bool Continue(std::string& xml) override;
    void AppendValue(std::string& xml, const Cell& cell);

    const Cell* begin_;
    const Cell* end_;
    std::size_t firstString_;
    const Cell* next_ = nullptr;
    std::uint32_t row_ = 0;  // the open one, if any
    std::size_t string_ = 0;
};

// The texts of all worksheets, in the order of the cells, each as often as it occurs.
class WrittenStrings : public WrittenPart {
  public:
    // The workbook has to outlive it.
    explicit WrittenStrings(const Workbook& workbook);

  private:
    void Restart() override;
    bool Continue(std::string& xml) override;

    const Workbook& workbook_;
    std::size_t worksheet_ = 0;
    const Cell* next_ = nullptr;
};

}  // namespace NWorkbook::NXlsx
