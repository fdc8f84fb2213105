#include "workbook/xlsx/number_formats.h"

#include <set>

#include "workbook/date_formats.h"
#include "workbook/error.h"
#include "workbook/xlsx/cell_value.h"
#include "workbook/xlsx/xml_part.h"

namespace NWorkbook::NXlsx {

namespace {

constexpr std::uint64_t kMostBytes = std::uint64_t{64} << 20;
constexpr std::size_t kMostStyles = 1 << 20;

}  // namespace

class NumberFormats::Reader : public XmlReader {
  public:
    explicit Reader(std::vector<bool>& showsDate) : showsDate_(showsDate) {}

    bool Start(const XmlElement& element) override {
        if (element.depth == 1) {
            CheckRoot(element, "styleSheet");
            return true;
        }
        if (element.depth == 2) return element.name == "numFmts" || element.name == "cellXfs";
        const char* const number = element.Find("numFmtId");
        const std::size_t id = number == nullptr ? 0 : ParseIndex(number).value_or(0);  // 0 is no date
        if (element.name == "numFmt") {
            const char* const code = element.Find("formatCode");
            if (code != nullptr && IsDateFormat(code)) dateFormats_.insert(id);
        } else if (element.name == "xf" && showsDate_.size() < kMostStyles) {
            showsDate_.push_back(IsUsualDateFormat(id) || dateFormats_.contains(id));
        }
        return false;
    }

  private:
    std::vector<bool>& showsDate_;
    std::set<std::size_t> dateFormats_;
};

NumberFormats::NumberFormats(Package& package, std::string_view part) {
    if (part.empty() || !package.Has(part)) return;
    try {
        Reader reader(showsDate_);
        ReadXmlPart(package, part, XmlNamespace::Spreadsheet, reader, kMostBytes);
    } catch (const WorkbookError&) {
        showsDate_.clear();
    }
}

}  // namespace NWorkbook::NXlsx
