// The records of a stream, and the numbers in them.
#pragma once

#include <string_view>
#include <vector>

#include "workbook/part_fault.h"
#include "workbook/xls/bytes.h"
#include "workbook/xls/stream.h"

namespace NWorkbook::NXls {

// The records that count here, by the numbers that the format gives them.
enum class RecordType : std::uint16_t {
    Formula = 0x0006,
    StringOfExcel2 = 0x0007,
    EndOfFile = 0x000A,
    ExternSheet = 0x0017,
    Name = 0x0018,
    FilePass = 0x002F,
    Continue = 0x003C,
    CodePage = 0x0042,
    WsBool = 0x0081,
    BoundSheet = 0x0085,
    MulRk = 0x00BD,
    RString = 0x00D6,
    Xf = 0x00E0,
    Sst = 0x00FC,
    LabelSst = 0x00FD,
    SupBook = 0x01AE,
    Dimensions = 0x0200,
    Number = 0x0203,
    Label = 0x0204,
    BoolErr = 0x0205,
    FormulaOfExcel3 = 0x0206,
    String = 0x0207,
    Rk = 0x027E,
    FormulaOfExcel4 = 0x0406,
    Format = 0x041E,
    BeginningOfFile = 0x0809,
};

class RecordReader {
  public:
    // In front of the record at the offset. The stream has to outlive it.
    RecordReader(Stream& stream, std::uint64_t offset) : stream_(stream), next_(offset) {}

    // Goes to the next record. Throws PartFault where the stream ends, also within the record.
    void Next();
    // Goes to the next record if it continues this one.
    bool Continue();

    [[nodiscard]] RecordType Type() const { return static_cast<RecordType>(type_); }
    // Valid until Next or Continue is called.
    [[nodiscard]] std::string_view Data() const { return data_; }
    // Of the record's first byte in the stream.
    [[nodiscard]] std::uint64_t Offset() const { return offset_; }

  private:
    // False: the stream has not as many from next_ on.
    bool Buffer(std::size_t count);
    [[nodiscard]] const char* AtNext() const { return bytes_.data() + (next_ - begin_); }

    Stream& stream_;
    std::uint64_t offset_ = 0;
    std::uint64_t next_;
    std::uint16_t type_ = 0;
    std::string_view data_;
    std::vector<char> bytes_;  // of the stream, from begin_ on
    std::uint64_t begin_ = 0;
};

// The numbers of a record, one after the other, and of those that continue it. Each operation throws
// PartFault where there are no more bytes.
class Fields {
  public:
    explicit Fields(RecordReader& records) : records_(records), left_(records.Data()) {}

    template <typename T>
    T Take() {
        if (left_.size() >= sizeof(T)) return Load<T>(TakePiece(sizeof(T)).data());
        char bytes[sizeof(T)];
        for (char& byte : bytes) byte = TakePiece(1).front();
        return Load<T>(bytes);
    }

    // At least one byte and at most so many, as many as lie together.
    std::string_view TakePiece(std::size_t most) {
        while (left_.empty()) GoOn();
        const std::string_view piece = left_.substr(0, most);
        left_.remove_prefix(piece.size());
        return piece;
    }

    void Skip(std::size_t count) {
        while (count > 0) count -= TakePiece(count).size();
    }

    // Of this record; there may be others that continue it.
    [[nodiscard]] std::size_t Left() const { return left_.size(); }

    // Whether there is nothing more, in other records either.
    [[nodiscard]] bool AreAtEnd() {
        while (left_.empty()) {
            if (!records_.Continue()) return true;
            left_ = records_.Data();
        }
        return false;
    }

  private:
    void GoOn() {
        if (AreAtEnd()) throw PartFault{Fault::Damaged, u"it is too short"};
    }

    RecordReader& records_;
    std::string_view left_;
};

}  // namespace NWorkbook::NXls
