#include "odbc_driver/value_transfer.h"

#include "odbc_driver/application_text.h"
#include "odbc_driver/number_value.h"
#include "platform/code_page.h"

namespace NOdbcDriver {

void ValueTransfer::Begin(std::optional<std::u16string_view> value) {
    value_ = value;
    narrowSize_.reset();
    done_ = 0;
    isFinished_ = false;
}

Transferred ValueTransfer::Continue(const Target& target) {
    if (isFinished_) return Transferred::NothingLeft;
    if (!value_) return PutNull(target);
    switch (target.type) {
        case SQL_C_WCHAR:
            return PutTextPiece(*value_, target);
        case SQL_C_CHAR:
            return PutTextPiece(Narrow(), target);
        case SQL_C_BINARY:
            return PutBytePiece(target);
        default: {
            const NumberTransfer number = PutNumberValue(*value_, target.type, target.data);
            PutNumber(number.size, target.length);
            isFinished_ = true;
            return number.lostFraction ? Transferred::WithoutFraction : Transferred::Whole;
        }
    }
}

Transferred ValueTransfer::PutNull(const Target& target) {
    if (target.indicator == nullptr) {
        throw OdbcError(u"22002", u"The value is NULL, and there is no indicator to tell it.");
    }
    PutNumber(SQLLEN{SQL_NULL_DATA}, target.indicator);
    isFinished_ = true;
    return Transferred::Whole;
}

void ValueTransfer::TellLeft(std::size_t bytes, const Target& target) {
    if (target.capacity < 0) throw OdbcError(u"HY090", u"The length of a buffer is below zero.");
    PutNumber(static_cast<SQLLEN>(bytes), target.length);
    if (target.indicator != target.length) PutNumber(SQLLEN{0}, target.indicator);
}

Transferred ValueTransfer::PutBytePiece(const Target& target) {
    const auto* const left = reinterpret_cast<const char*>(value_->data()) + done_;
    const std::size_t leftSize = value_->size() * sizeof(char16_t) - done_;
    TellLeft(leftSize, target);
    if (target.data == nullptr) return Transferred::Whole;
    const std::size_t size = std::min(leftSize, static_cast<std::size_t>(target.capacity));
    if (size > 0) std::memcpy(target.data, left, size);
    done_ += size;
    isFinished_ = size == leftSize;
    return isFinished_ ? Transferred::Whole : Transferred::Cut;
}

template <typename Unit>
Transferred ValueTransfer::PutTextPiece(std::basic_string_view<Unit> text, const Target& target) {
    const std::basic_string_view<Unit> left = text.substr(done_);
    TellLeft(left.size() * sizeof(Unit), target);
    const std::size_t capacity = static_cast<std::size_t>(target.capacity) / sizeof(Unit);
    if (target.data == nullptr) return Transferred::Whole;
    const std::size_t size = CopyPiece(left, target.data, capacity);
    done_ += size;
    isFinished_ = size == left.size() && capacity > 0;
    return isFinished_ ? Transferred::Whole : Transferred::Cut;
}

std::string_view ValueTransfer::Narrow() {
    constexpr std::size_t kMostBytesOfUnit = 3;
    if (!narrowSize_) {
        const std::size_t capacity = value_->size() * kMostBytesOfUnit;
        if (narrow_.Size() < capacity) narrow_.Grow(capacity);
        narrowSize_ = NPlatform::Utf16ToCodePage(NPlatform::kUtf8CodePage, value_->data(), value_->size(),
                                                 narrow_.Data(), narrow_.Size());
    }
    return {narrow_.Data(), *narrowSize_};
}

}  // namespace NOdbcDriver
