// What the reading of a workbook's worksheets shares.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "workbook/workbook_file.h"
#include "workbook/xls/contents.h"

namespace NWorkbook::NXls {

struct Records {
    std::u16string place;  // for messages: their stream; empty if they are the whole file
    Stream stream;
};

class OpenedWorkbook {
  public:
    // Throws WorkbookError.
    OpenedWorkbook(std::unique_ptr<WorkbookFile> opened, std::shared_ptr<TextStore> store);

    // Calls `work` with a reader in front of the record at the offset. A PartFault becomes a WorkbookError
    // that names the record.
    template <typename Work>
    auto ReadRecords(std::uint64_t offset, Work work) {
        RecordReader reader(records.stream, offset);
        try {
            return work(reader);
        } catch (const PartFault& fault) {
            throw RecordError(reader, fault);
        }
    }

    // Reads them when they are first asked for. Throws WorkbookError.
    const std::vector<TextPlace>& SharedStrings();

    [[nodiscard]] TextReader Texts() { return {contents.version, contents.codePage, *texts, budget}; }

    std::unique_ptr<WorkbookFile> file;
    std::shared_ptr<TextStore> texts;
    Budget budget;
    Records records;
    Contents contents;

  private:
    [[nodiscard]] WorkbookError RecordError(const RecordReader& reader, const PartFault& fault) const;

    std::optional<std::vector<TextPlace>> sharedStrings_;
};

}  // namespace NWorkbook::NXls
