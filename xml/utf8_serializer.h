// Writing texts and numbers as UTF-8.
#pragma once

#include <ostream>

#include "xml/serializer.h"

namespace NTamriskUtil::NXml {

// How a narrow string reaches the stream.
enum class NarrowCopyMode : unsigned char {
    Formatted = 0,  // through the stream's formatted output of strings
    Copied = 1,     // copied to the shared buffer and written unformatted; an empty string writes nothing
};

// Writes to a stream that it neither owns nor opens, flushes or closes.
class VUTF8Serializer : public ISerializer {
  public:
    using ISerializer::Write;

    // `precision`: digits of a floating-point number; it is set on the stream. Nobody but a test chooses a
    // copy mode other than Formatted.
    VUTF8Serializer(std::ostream& stream, int precision, NarrowCopyMode mode = NarrowCopyMode::Formatted);

    // The text as UTF-8, in one unformatted write; U+0000 within it is a character like any other. Nothing
    // when it is empty or cannot be converted.
    void Write(std::u16string_view text) override;
    // The bytes unchanged.
    void Write(std::string_view text) override;
    // The unit as UTF-8; nothing for U+0000.
    void Write(char16_t unit) override;
    // The byte unchanged: 1 to 127 as a formatted character, any other, 0 included, as a string of one byte.
    void Write(char byte) override;
    void Write(std::uint32_t number) override;
    // A magnitude below the smallest normal number, zero included, is written as zero.
    void Write(double number) override;
    void Write(std::int32_t number) override;
    // 1 or 0.
    void Write(bool flag) override;

  private:
    NarrowCopyMode narrowCopyMode_;
    std::ostream& stream_;
};

}  // namespace NTamriskUtil::NXml
