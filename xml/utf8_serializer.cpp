#include "xml/utf8_serializer.h"

#include <cmath>
#include <limits>

#include "xml/text_conv.h"

namespace NTamriskUtil::NXml {

VUTF8Serializer::VUTF8Serializer(std::ostream& stream, int precision, NarrowCopyMode mode)
    : narrowCopyMode_(mode), stream_(stream) {
    stream_.precision(precision);
}

void VUTF8Serializer::Write(std::u16string_view text) {
    const char* bytes = nullptr;
    const char* bytesEnd = nullptr;
    if (WideToUtf8(text.data(), text.data() + text.size(), bytes, bytesEnd) == 0) return;
    stream_.write(bytes, bytesEnd - bytes);
}

void VUTF8Serializer::Write(std::string_view text) {
    if (narrowCopyMode_ == NarrowCopyMode::Formatted) {
        stream_ << text;
        return;
    }
    const char* bytes = nullptr;
    const char* bytesEnd = nullptr;
    if (CopyNarrow(text.data(), text.data() + text.size(), bytes, bytesEnd) == 0) return;
    stream_.write(bytes, bytesEnd - bytes);
}

void VUTF8Serializer::Write(char16_t unit) {
    if (unit != 0) Write(std::u16string_view(&unit, 1));
}

void VUTF8Serializer::Write(char byte) {
    const auto value = static_cast<unsigned char>(byte);
    if (value >= 1 && value <= 127) {
        stream_ << byte;
    } else {
        Write(std::string_view(&byte, 1));
    }
}

void VUTF8Serializer::Write(std::uint32_t number) { stream_ << number; }

void VUTF8Serializer::Write(double number) {
    const bool isTiny = std::abs(number) < std::numeric_limits<double>::min();
    stream_ << (isTiny ? 0.0 : number);
}

void VUTF8Serializer::Write(std::int32_t number) { stream_ << number; }

void VUTF8Serializer::Write(bool flag) { stream_ << (flag ? 1 : 0); }

}  // namespace NTamriskUtil::NXml
