#include "odbc_driver/descriptor.h"

#include "odbc_driver/column_attributes.h"
#include "odbc_driver/number_value.h"

namespace NOdbcDriver {

namespace {

[[noreturn]] void RefuseField() { throw OdbcError(u"HY091", u"The descriptor has no field of this number."); }

template <typename T>
T* Move(T* address, SQLLEN bytes) {
    if (address == nullptr) return nullptr;
    return reinterpret_cast<T*>(reinterpret_cast<char*>(address) + bytes);
}

SQLPOINTER Move(SQLPOINTER address, SQLLEN bytes) { return Move(static_cast<char*>(address), bytes); }

// Numbers travel as pointers.
SQLLEN ToNumber(SQLPOINTER value) { return reinterpret_cast<SQLLEN>(value); }

// Each field of a descriptor has a size of its own.
FieldValue ToFieldValue(SQLSMALLINT field, SQLLEN number) {
    switch (field) {
        case SQL_DESC_LENGTH:
        case SQL_DESC_OCTET_LENGTH:
        case SQL_DESC_DISPLAY_SIZE:
            return number;
        case SQL_DESC_AUTO_UNIQUE_VALUE:
        case SQL_DESC_CASE_SENSITIVE:
        case SQL_DESC_DATETIME_INTERVAL_PRECISION:
        case SQL_DESC_NUM_PREC_RADIX:
            return static_cast<SQLINTEGER>(number);
        default:
            return static_cast<SQLSMALLINT>(number);
    }
}

}  // namespace

std::size_t Descriptor::Count() const {
    if (described_ == nullptr) return bindings_.size();
    return *described_ == nullptr ? 0 : (*described_)->ColumnCount();
}

void Descriptor::RequireBindings() const {
    if (described_ != nullptr) throw OdbcError(u"HY016", u"The columns of a result cannot be changed.");
}

bool Descriptor::SetHeaderField(SQLSMALLINT field, SQLPOINTER value) {
    switch (field) {
        case SQL_DESC_ARRAY_SIZE:
            if (ToNumber(value) <= 0) throw OdbcError(u"HY024", u"A row set has at least one row.");
            arraySize = static_cast<SQLULEN>(ToNumber(value));
            return true;
        case SQL_DESC_BIND_TYPE:
            bindType = static_cast<SQLULEN>(ToNumber(value));
            return true;
        case SQL_DESC_BIND_OFFSET_PTR:
            bindOffset = static_cast<SQLLEN*>(value);
            return true;
        case SQL_DESC_ARRAY_STATUS_PTR:
            arrayStatus = static_cast<SQLUSMALLINT*>(value);
            return true;
        case SQL_DESC_ROWS_PROCESSED_PTR:
            rowsProcessed = static_cast<SQLULEN*>(value);
            return true;
        case SQL_DESC_COUNT:
            RequireBindings();
            bindings_.resize(static_cast<SQLUSMALLINT>(ToNumber(value)));
            return true;
        default:
            return false;
    }
}

std::optional<FieldValue> Descriptor::HeaderField(SQLSMALLINT field) const {
    switch (field) {
        case SQL_DESC_ARRAY_SIZE:
            return static_cast<SQLLEN>(arraySize);
        case SQL_DESC_BIND_TYPE:
            return static_cast<SQLINTEGER>(bindType);
        case SQL_DESC_BIND_OFFSET_PTR:
            return static_cast<SQLPOINTER>(bindOffset);
        case SQL_DESC_ARRAY_STATUS_PTR:
            return static_cast<SQLPOINTER>(arrayStatus);
        case SQL_DESC_ROWS_PROCESSED_PTR:
            return static_cast<SQLPOINTER>(rowsProcessed);
        case SQL_DESC_COUNT:
            return static_cast<SQLSMALLINT>(Count());
        case SQL_DESC_ALLOC_TYPE:
            return SQLSMALLINT{SQL_DESC_ALLOC_AUTO};
        default:
            return std::nullopt;
    }
}

void Descriptor::SetField(SQLSMALLINT column, SQLSMALLINT field, SQLPOINTER value) {
    if (SetHeaderField(field, value)) return;
    RequireBindings();
    if (column <= 0) throw OdbcError(u"07009", u"Columns count from 1.");
    const auto number = static_cast<std::size_t>(column);
    if (bindings_.size() < number) bindings_.resize(number);
    Binding& binding = bindings_[number - 1];
    switch (field) {
        case SQL_DESC_TYPE:
        case SQL_DESC_CONCISE_TYPE:
            binding.type = static_cast<SQLSMALLINT>(ToNumber(value));
            break;
        case SQL_DESC_DATA_PTR:
            binding.data = value;
            break;
        case SQL_DESC_OCTET_LENGTH:
            binding.capacity = ToNumber(value);
            break;
        case SQL_DESC_OCTET_LENGTH_PTR:
            binding.length = static_cast<SQLLEN*>(value);
            break;
        case SQL_DESC_INDICATOR_PTR:
            binding.indicator = static_cast<SQLLEN*>(value);
            break;
        default:
            RefuseField();
    }
}

FieldValue Descriptor::GetField(SQLSMALLINT column, SQLSMALLINT field) const {
    if (const std::optional<FieldValue> value = HeaderField(field)) return *value;
    return described_ == nullptr ? BindingField(column, field) : ResultField(column, field);
}

FieldValue Descriptor::ResultField(SQLSMALLINT column, SQLSMALLINT field) const {
    Result* const result = described_->get();
    if (result == nullptr) throw OdbcError(u"HY007", u"No statement is prepared or executed.");
    if (column <= 0 || static_cast<std::size_t>(column) > result->ColumnCount()) {
        throw OdbcError(u"07009", u"The result has no column of this number.");
    }
    const auto found = GetColumnAttribute(*result, static_cast<std::size_t>(column) - 1, field);
    if (const auto* const text = std::get_if<std::u16string_view>(&found)) return *text;
    return ToFieldValue(field, std::get<SQLLEN>(found));
}

FieldValue Descriptor::BindingField(SQLSMALLINT column, SQLSMALLINT field) const {
    if (column <= 0 || static_cast<std::size_t>(column) > bindings_.size()) {
        throw OdbcError(u"07009", u"Nothing is bound to this column.");
    }
    const Binding& binding = bindings_[static_cast<std::size_t>(column) - 1];
    switch (field) {
        case SQL_DESC_TYPE:
        case SQL_DESC_CONCISE_TYPE:
            return binding.type;
        case SQL_DESC_DATA_PTR:
            return binding.data;
        case SQL_DESC_OCTET_LENGTH:
            return binding.capacity;
        case SQL_DESC_OCTET_LENGTH_PTR:
            return static_cast<SQLPOINTER>(binding.length);
        case SQL_DESC_INDICATOR_PTR:
            return static_cast<SQLPOINTER>(binding.indicator);
        default:
            RefuseField();
    }
}

void Descriptor::Bind(SQLUSMALLINT column, const Binding& binding) {
    if (column == 0) throw OdbcError(u"07009", u"Columns count from 1: there are no bookmarks.");
    if (bindings_.size() < column) bindings_.resize(column);
    bindings_[column - 1U] = binding;
}

Target Descriptor::TargetOf(const Binding& binding, SQLSMALLINT type, std::size_t row) const {
    const SQLLEN numberSize = NumberSize(type);
    const SQLLEN valueSize = numberSize != 0 ? numberSize : binding.capacity;
    const bool isByColumn = bindType == SQL_BIND_BY_COLUMN;
    const auto index = static_cast<SQLLEN>(row);
    const auto structure = static_cast<SQLLEN>(bindType);
    const SQLLEN offset = bindOffset == nullptr ? 0 : *bindOffset;
    const SQLLEN toValue = offset + index * (isByColumn ? valueSize : structure);
    const SQLLEN toLength = offset + index * (isByColumn ? static_cast<SQLLEN>(sizeof(SQLLEN)) : structure);
    return {type, Move(binding.data, toValue), binding.capacity, Move(binding.length, toLength),
            Move(binding.indicator, toLength)};
}

}  // namespace NOdbcDriver
