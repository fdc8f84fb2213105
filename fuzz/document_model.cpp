#include "fuzz/document_model.h"

#include <algorithm>
#include <utility>

#include "fuzz/number_model.h"

namespace NFuzz {

namespace {

std::u16string Upper(std::u16string text) {
    for (char16_t& unit : text) {
        if (unit >= u'a' && unit <= u'z') unit = static_cast<char16_t>(unit - 32);
    }
    return text;
}

// As number columns are read: upper case, but for the x of a prefix.
std::u16string NumberText(const std::u16string& cell) {
    std::u16string text = Upper(cell);
    std::replace(text.begin(), text.end(), u'X', u'x');
    return text;
}

std::u16string Decimal(std::int64_t number) {
    const std::string digits = std::to_string(number);
    return {digits.begin(), digits.end()};
}

std::u16string Escape(std::u16string_view text) {
    std::u16string escaped;
    for (const char16_t unit : text) {
        if (unit == u'&') {
            escaped += u"&amp;";
        } else if (unit == u'<') {
            escaped += u"&lt;";
        } else if (unit == u'>') {
            escaped += u"&gt;";
        } else {
            escaped += unit;
        }
    }
    return escaped;
}

std::u16string Attribute(std::u16string_view name, std::u16string_view value) {
    std::u16string escaped;
    for (const char16_t unit : Escape(value)) escaped += unit == u'"' ? u"&quot;" : std::u16string(1, unit);
    return std::u16string(name) + u"=\"" + escaped + u"\" ";
}

// `attributes` as Attribute makes them, `content` as it is to be printed.
std::u16string Element(const std::u16string& name, const std::u16string& attributes,
                       const std::u16string& content) {
    const std::u16string start = u"<" + name + (attributes.empty() ? u"" : u" " + attributes);
    return start + (content.empty() ? u"/>\n" : u">" + content + u"</" + name + u">\n");
}

bool IsBlank(std::u16string_view cell) { return Strip(cell, kWhiteSpace).empty(); }

enum class Layout { Single, Spn, Base };

class Printer {
  public:
    Printer(const Table& table, const Names& names) : table_(table), names_(names) {
        FindLayout();
        FindNotation();
        FindColumns();
    }

    std::optional<std::u16string> Print() {
        std::u16string rows;
        for (std::size_t row = 1; row < table_.size(); ++row) {
            const std::optional<std::u16string> number = Number(table_[row]);
            if (!number) return std::nullopt;
            rows += Element(u"DTC", *number, Contents(table_[row]));
        }
        std::u16string names;
        if (!names_.diagnosticInstance.empty())
            names += Attribute(u"diaginstance", names_.diagnosticInstance);
        if (!names_.variant.empty()) names += Attribute(u"variant", names_.variant);
        const std::u16string parts = Element(u"SERVICEMAPPING", names, u"") +
                                     Element(u"RECORDTEMPLATEMAPPING", u"", Mappings()) +
                                     Element(u"DTCS", u"", rows);
        const std::u16string root = Attribute(u"dtdfilevers", u"1.5.2") +
                                    Attribute(u"xmlns:xsi", u"http://www.w3.org/2001/XMLSchema-instance");
        return u"<?xml version=\"1.0\" encoding=\"utf-8\" ?>\n" +
               Element(u"TAMRISKIMPORT", root,
                       Element(u"IMPORTDOC", u"", Element(u"DTCCOLLECTION", u"", parts)));
    }

  private:
    void FindLayout() {
        const std::u16string both = Upper(table_[0][0]) + u"|" + Upper(table_[0][1]);
        if (both == u"SPN|FMI") layout_ = Layout::Spn;
        if (both == u"BASEDTC|FTB" || both == u"DTC|FAILURE TYPE") layout_ = Layout::Base;
        firstItem_ = layout_ == Layout::Single ? 2 : 3;
    }

    void FindNotation() {
        for (std::size_t row = 1; row < table_.size(); ++row) {
            const std::u16string cell = Upper(table_[row][0]);
            if (cell.find_first_of(u"ABCDEF") != std::u16string::npos) hexDigits_ = true;
            if (cell.size() != 5 && cell.size() != 7) continue;
            if (cell.find_first_of(u"PCBU") == 0) saeCodes_ = true;
        }
    }

    // A wholly empty column ends the table; one without a header is left out.
    void FindColumns() {
        for (std::size_t column = 0; column < table_[0].size(); ++column) {
            const bool isEmpty = std::all_of(table_.begin(), table_.end(),
                                             [column](const Row& row) { return IsBlank(row[column]); });
            if (isEmpty) break;
            if (!IsBlank(table_[0][column])) columns_.insert(column);
        }
    }

    [[nodiscard]] std::u16string Id(std::size_t column) const {
        return u"_" + Decimal(static_cast<std::int64_t>(column - firstItem_ + 1));
    }

    [[nodiscard]] std::u16string Mappings() const {
        std::u16string mappings;
        for (auto column = columns_.lower_bound(firstItem_); column != columns_.end(); ++column) {
            const std::u16string header(Strip(table_[0][*column], kWhiteSpace));
            const std::u16string type =
                names_.vsg.contains(header) ? u"VSG" : (names_.a.contains(header) ? u"A" : u"RI");
            mappings += Element(u"ITEMMAPPING", Attribute(u"id", Id(*column)) + Attribute(u"type", type),
                                Escape(header));
        }
        return mappings;
    }

    [[nodiscard]] std::u16string Contents(const Row& row) const {
        const std::size_t description = firstItem_ - 1;
        std::u16string items;
        for (auto column = columns_.lower_bound(firstItem_); column != columns_.end(); ++column) {
            if (row[*column].empty()) continue;
            items += Element(u"RECORDITEM", Attribute(u"itemmappingref", Id(*column)), Escape(row[*column]));
        }
        const std::u16string text = columns_.contains(description) ? Escape(row[description]) : u"";
        return Element(u"ERRORTEXT", u"", text) + Element(u"RECORD", u"", items);
    }

    // The attribute, or nothing; none where a text is malformed.
    [[nodiscard]] std::optional<std::u16string> Number(const Row& row) const {
        std::optional<std::uint32_t> first = 0;
        if (columns_.contains(0)) first = FirstNumber(row[0]);
        if (!first) return std::nullopt;
        if (!columns_.contains(layout_ == Layout::Single ? 0 : 1)) return u"";
        std::uint32_t number = *first;
        if (layout_ == Layout::Spn) {
            number =
                DecimalNumber(row[1]) | (*first & 0xFF) << 16 | (*first & 0xFF00) | (*first >> 11 & 0xE0);
        } else if (layout_ == Layout::Base) {
            number = *first << 8 | *DtcNumber(NumberText(row[1]), false, false);
        }
        return Attribute(u"number", Decimal(static_cast<std::int32_t>(number)));
    }

    [[nodiscard]] std::optional<std::uint32_t> FirstNumber(const std::u16string& cell) const {
        if (layout_ == Layout::Spn) return DecimalNumber(cell);
        if (layout_ == Layout::Single) return DtcNumber(NumberText(cell), hexDigits_, saeCodes_);
        return saeCodes_ ? SaeNumber(NumberText(cell)) : DtcNumber(cell, false, false);
    }

    const Table& table_;
    const Names& names_;
    Layout layout_ = Layout::Single;
    std::size_t firstItem_ = 2;
    bool hexDigits_ = false;
    bool saeCodes_ = false;
    std::set<std::size_t> columns_;  // that are not skipped
};

}  // namespace

std::optional<Table> ParseCsv(std::u16string_view text, char16_t separator) {
    enum class Where { Start, Plain, Quoted, AfterQuote } where = Where::Start;
    Table table;
    Row row;
    std::u16string cell;
    for (const char16_t unit : text) {
        const bool isQuote = unit == u'"';
        if (where == Where::Quoted && !isQuote) {
            cell += unit;
        } else if (where == Where::Quoted) {
            where = Where::AfterQuote;
        } else if (isQuote && where != Where::Plain) {
            if (where == Where::AfterQuote) cell += unit;
            where = Where::Quoted;
        } else if (unit == separator || unit == u'\n') {
            // Should the separator be a line feed, it ends a row behind quotes, and a cell elsewhere.
            const bool endsRow = unit != separator || (unit == u'\n' && where == Where::AfterQuote);
            row.push_back(std::exchange(cell, {}));
            if (endsRow) table.push_back(std::exchange(row, {}));
            where = Where::Start;
        } else if (where == Where::AfterQuote) {
            return std::nullopt;
        } else {
            cell += unit;
            where = Where::Plain;
        }
    }
    return table;
}

bool IsConsistent(const Table& table) {
    return !table.empty() && table[0].size() >= 2 &&
           std::all_of(table.begin(), table.end(),
                       [&table](const Row& row) { return row.size() == table[0].size(); });
}

std::optional<std::u16string> PrintDocument(const Table& table, const Names& names) {
    return Printer(table, names).Print();
}

}  // namespace NFuzz
