// Writing texts and numbers to a byte stream.
#pragma once

#include <cstdint>
#include <string_view>

namespace NTamriskUtil::NXml {

// The implementation specifies what each Write does. Errors show in the state of the stream only.
class ISerializer {
  public:
    virtual ~ISerializer() = default;
    virtual void Write(std::u16string_view text) = 0;
    virtual void Write(std::string_view text) = 0;
    virtual void Write(char16_t unit) = 0;
    virtual void Write(char byte) = 0;
    virtual void Write(std::uint32_t number) = 0;
    virtual void Write(double number) = 0;
    virtual void Write(std::int32_t number) = 0;
    virtual void Write(bool flag) = 0;

    // Otherwise a pointer to characters would convert to a flag.
    void Write(const char16_t* text) { Write(std::u16string_view(text)); }
    void Write(const char* text) { Write(std::string_view(text)); }

  protected:
    ISerializer() = default;
    ISerializer(const ISerializer&) = default;
    ISerializer& operator=(const ISerializer&) = default;
};

}  // namespace NTamriskUtil::NXml
