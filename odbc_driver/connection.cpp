#include "odbc_driver/connection.h"

#include "odbc_driver/connect_string.h"
#include "odbc_driver/data_source.h"
#include "odbc_driver/statement.h"
#include "platform/format.h"

namespace NOdbcDriver {

namespace {

constexpr std::size_t kMessageCapacity = 2000;

// The tables that there are, as many as one likes to read.
std::u16string ListTables(const std::vector<NWorkbook::TableName>& names) {
    constexpr std::size_t kMostListed = 10;
    std::u16string list;
    for (std::size_t index = 0; index < names.size() && index < kMostListed; ++index) {
        if (index > 0) list += u", ";
        list += names[index].name;
    }
    return names.size() > kMostListed ? list + u", ..." : list;
}

// The data source of the connect string; some programs write '' if there is none.
std::u16string_view DataSourceOf(const ConnectString& attributes) {
    const std::u16string_view name = attributes.Find(u"DSN").value_or(u"");
    return name == u"''" ? std::u16string_view() : name;
}

[[noreturn]] void RefuseNoWorkbook(std::u16string_view dataSource) {
    if (dataSource.empty()) {
        throw OdbcError(u"08001", u"The connect string names no workbook: it needs DBQ=path.");
    }
    throw OdbcError(
        u"08001",
        NPlatform::Format(kMessageCapacity,
                          u"The data source %s names no workbook: it needs a line DBQ=path.", {dataSource}));
}

}  // namespace

Connection::Connection() : Handle(kKind, ownMutex_) {}
Connection::~Connection() = default;

std::u16string Connection::Connect(std::u16string_view connectString) {
    if (IsConnected()) throw OdbcError(u"08002", u"The connection is open already.");
    const ConnectString attributes(connectString);
    std::u16string completed(connectString);
    dataSource_ = DataSourceOf(attributes);
    path_ = attributes.Find(u"DBQ").value_or(u"");
    if (path_.empty() && !dataSource_.empty()) {
        path_ = ReadDataSource(dataSource_, u"DBQ");
        completed += (completed.ends_with(u';') ? u"DBQ=" : u";DBQ=") + QuoteValue(path_);
    }
    if (path_.empty()) RefuseNoWorkbook(dataSource_);
    try {
        book_ = std::make_unique<NWorkbook::TableBook>(path_);
    } catch (const NWorkbook::WorkbookError& error) {
        throw OdbcError(u"08001", error.Message());
    }
    return completed;
}

void Connection::Disconnect() {
    statements_.clear();
    book_.reset();
}

NWorkbook::TableBook& Connection::Book() {
    if (book_ == nullptr) throw OdbcError(u"08003", u"There is no connection to a workbook.");
    return *book_;
}

std::shared_ptr<const NWorkbook::Table> Connection::FindTable(std::u16string_view name) {
    std::shared_ptr<const NWorkbook::Table> table = Book().Find(name);
    if (table == nullptr && Book().Names().empty()) {
        throw OdbcError(u"42S02", u"The workbook has no table: it has no worksheet.");
    }
    if (table == nullptr) {
        throw OdbcError(u"42S02",
                        NPlatform::Format(kMessageCapacity, u"The workbook has no table \"%s\"; it has: %s.",
                                          {NPlatform::Cut(name, 300), ListTables(Book().Names())}));
    }
    return table;
}

Statement& Connection::AddStatement() {
    Book();
    return *statements_.emplace_back(std::make_unique<Statement>(*this));
}

void Connection::RemoveStatement(const Statement& statement) {
    std::erase_if(statements_, [&statement](const auto& owned) { return owned.get() == &statement; });
}

}  // namespace NOdbcDriver
