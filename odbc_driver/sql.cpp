#include "odbc_driver/sql.h"

#include <cstddef>
#include <cstdint>
#include <limits>

#include "odbc_driver/ascii.h"
#include "odbc_driver/diagnostics.h"
#include "odbc_driver/odbc.h"
#include "platform/format.h"

namespace NOdbcDriver {

namespace {

bool IsNameUnit(char16_t unit) {
    const char16_t small = NWorkbook::WithoutAsciiCase(unit);
    return (unit >= u'0' && unit <= u'9') || (small >= u'a' && small <= u'z') || unit == u'_' ||
           unit == u'$' || unit >= 0x80;
}

// What closes a name that `unit` opens; 0 if it opens none.
char16_t ClosingOf(char16_t unit) {
    if (unit == u'[') return u']';
    return unit == u'"' || unit == u'`' ? unit : u'\0';
}

constexpr std::size_t kMostColumns = std::numeric_limits<SQLSMALLINT>::max();
constexpr std::u16string_view kStatements = u"SELECT * FROM table or SELECT column, ... FROM table";

class Parser {
  public:
    explicit Parser(std::u16string_view sql) : sql_(sql) { SkipBlanks(); }

    void ExpectWord(std::u16string_view word) {
        const std::size_t end = BareEnd();
        if (!EqualsIgnoringCase(sql_.substr(at_, end - at_), word)) Refuse();
        Advance(end);
    }

    // Whether the sign is here; then it is passed.
    bool Pass(char16_t sign) {
        const bool isHere = at_ < sql_.size() && sql_[at_] == sign;
        if (isHere) Advance(at_ + 1);
        return isHere;
    }

    std::u16string ExpectName() {
        if (at_ < sql_.size() && ClosingOf(sql_[at_]) != 0) return QuotedName(ClosingOf(sql_[at_]));
        const std::size_t end = BareEnd();
        if (end == at_) Refuse();
        std::u16string name(sql_.substr(at_, end - at_));
        Advance(end);
        return name;
    }

    void ExpectEnd() {
        Pass(u';');
        if (at_ < sql_.size()) Refuse();
    }

  private:
    void SkipBlanks() {
        while (at_ < sql_.size() && IsBlank(sql_[at_])) ++at_;
    }

    void Advance(std::size_t end) {
        at_ = end;
        SkipBlanks();
    }

    [[nodiscard]] std::size_t BareEnd() const {
        std::size_t end = at_;
        while (end < sql_.size() && IsNameUnit(sql_[end])) ++end;
        return end;
    }

    std::u16string QuotedName(char16_t closing) {
        std::u16string name;
        for (std::size_t at = at_ + 1; at < sql_.size(); ++at) {
            const bool closes = sql_[at] == closing;
            const bool isDoubled = closes && at + 1 < sql_.size() && sql_[at + 1] == closing;
            if (closes && !isDoubled) {
                if (name.empty()) RefuseName(u"is empty");
                Advance(at + 1);
                return name;
            }
            name += sql_[at];
            if (isDoubled) ++at;
        }
        RefuseName(std::u16string(u"has no closing ") + closing);
    }

    [[noreturn]] void RefuseName(std::u16string_view reason) const {
        throw OdbcError(u"42000", NPlatform::Format(128, u"The name at character %d %s.",
                                                    {static_cast<std::int32_t>(at_ + 1), reason}));
    }

    // The text up to the next blank is not what the statement requires here.
    [[noreturn]] void Refuse() const {
        if (at_ == sql_.size()) {
            throw OdbcError(u"42000", NPlatform::Format(128, u"The SQL statement ends too early: use %s.",
                                                        {kStatements}));
        }
        constexpr std::u16string_view kMessage = u"\"%s\" at character %d is not supported: use %s.";
        constexpr std::size_t kMostShown = 60;
        const std::u16string_view word = sql_.substr(at_, sql_.find_first_of(kBlanks, at_) - at_);
        throw OdbcError(u"42000", NPlatform::Format(256, kMessage,
                                                    {NPlatform::Cut(word, kMostShown),
                                                     static_cast<std::int32_t>(at_ + 1), kStatements}));
    }

    std::u16string_view sql_;
    std::size_t at_ = 0;
};

}  // namespace

Select ParseSelect(std::u16string_view sql) {
    Select select;
    Parser parser(sql);
    parser.ExpectWord(u"SELECT");
    if (!parser.Pass(u'*')) {
        do {
            if (select.columns.size() == kMostColumns) {
                throw OdbcError(u"42000", u"The statement selects more than 32767 columns.");
            }
            select.columns.push_back(parser.ExpectName());
        } while (parser.Pass(u','));
    }
    parser.ExpectWord(u"FROM");
    select.table = parser.ExpectName();
    parser.ExpectEnd();
    return select;
}

}  // namespace NOdbcDriver
