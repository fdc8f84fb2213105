#include "workbook/xlsx/number_formats.h"

#include <set>

#include "workbook/error.h"
#include "workbook/xlsx/cell_value.h"
#include "workbook/xlsx/xml_part.h"

namespace NWorkbook::NXlsx {

namespace {

constexpr std::uint64_t kMostBytes = std::uint64_t{64} << 20;
constexpr std::size_t kMostStyles = 1 << 20;

// Those that every workbook has without naming them, the East Asian ones included.
bool IsUsualDateFormat(std::size_t id) {
    return (id >= 14 && id <= 22) || (id >= 27 && id <= 36) || (id >= 45 && id <= 47) ||
           (id >= 50 && id <= 58);
}

bool IsElapsedTime(std::string_view bracketed) {
    return !bracketed.empty() && bracketed.find_first_not_of("hHmMsS") == std::string_view::npos;
}

}  // namespace

bool IsDateFormat(std::string_view code) {
    for (std::size_t index = 0; index < code.size() && code[index] != ';'; ++index) {
        switch (code[index]) {
            case '"':
                index = code.find('"', index + 1);
                break;
            case '[': {
                const std::size_t begin = index + 1;
                index = code.find(']', begin);
                if (index != std::string_view::npos && IsElapsedTime(code.substr(begin, index - begin)))
                    return true;
                break;
            }
            case '\\':
            case '_':
            case '*':
                ++index;
                break;
            default:
                if (std::string_view("dDmMyYhHsS").find(code[index]) != std::string_view::npos) return true;
        }
        if (index == std::string_view::npos) return false;
    }
    return false;
}

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
