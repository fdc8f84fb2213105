// Scratch buffers for text conversions.
#pragma once

#include <cstddef>

namespace NTamriskUtil {

// A buffer's content is valid until the next request for the same buffer. The destructor comes last, as in
// the host's own interface of this name.
class IBuffers {
  public:
    // At least `size` bytes; null if there is no memory (the old buffer then stays).
    virtual char* GetCharBuffer(std::size_t size) = 0;
    // At least `size` UTF-16 units; null as above.
    virtual char16_t* GetWideBuffer(std::size_t size) = 0;
    virtual ~IBuffers() = default;

  protected:
    IBuffers() = default;
    IBuffers(const IBuffers&) = default;
    IBuffers& operator=(const IBuffers&) = default;
};

namespace NBuffers {

// Grows a buffer that is too small to the size asked for, or to twice its size if that is more; the content
// moves along. Never shrinks. Releases both buffers with itself.
class VCommonBuffers : public IBuffers {
  public:
    VCommonBuffers() = default;
    VCommonBuffers(const VCommonBuffers&) = delete;
    VCommonBuffers& operator=(const VCommonBuffers&) = delete;
    char* GetCharBuffer(std::size_t size) override;
    char16_t* GetWideBuffer(std::size_t size) override;
    ~VCommonBuffers() override;

    [[nodiscard]] std::size_t CharCapacity() const {
        return static_cast<std::size_t>(mpCharBufferEnd - mpCharBufferStart);
    }
    [[nodiscard]] std::size_t WideCapacity() const {
        return static_cast<std::size_t>(mpWideBufferEnd - mpWideBufferStart);
    }

  private:
    char* mpCharBufferStart = nullptr;
    char* mpCharBufferEnd = nullptr;
    char16_t* mpWideBufferStart = nullptr;
    char16_t* mpWideBufferEnd = nullptr;
};

}  // namespace NBuffers
}  // namespace NTamriskUtil
