#include "xml/text_conv.h"

#include <algorithm>
#include <climits>
#include <stdexcept>
#include <utility>

#include "platform/code_page.h"

namespace NTamriskUtil {

namespace {

constexpr std::size_t kMostBytesOfUnit = 3;

NBuffers::VCommonBuffers commonBuffers;
IBuffers* sharedBuffers = &commonBuffers;
ConversionStatus status = ConversionStatus::Done;

void Require(bool condition, const char* text) {
    if (!condition) throw std::logic_error(text);
}

std::size_t Fail(ConversionStatus reason) {
    status = reason;
    return 0;
}

}  // namespace

IBuffers* ReplaceSharedBuffers(IBuffers* buffers) { return std::exchange(sharedBuffers, buffers); }

ConversionStatus LastConversionStatus() { return status; }

std::size_t WideToMultiByte(std::uint32_t codePage, const char16_t* pWideString, std::size_t nWords,
                            const char*& start, std::size_t nChars) {
    Require(pWideString != nullptr || nWords == 0, "pWideString");
    Require(nWords <= INT_MAX, "nWords <= INT_MAX");
    Require(nChars <= INT_MAX, "nChars <= INT_MAX");
    char* const buffer = sharedBuffers->GetCharBuffer(nChars);
    start = buffer;
    if (buffer == nullptr && nChars > 0) return Fail(ConversionStatus::NoBuffer);
    const std::size_t count = NPlatform::Utf16ToCodePage(codePage, pWideString, nWords, buffer, nChars);
    if (count == 0) {
        start = nullptr;
        return Fail(ConversionStatus::Failed);
    }
    status = ConversionStatus::Done;
    return count;
}

std::size_t WideToUtf8(const char16_t* pWideString, const char16_t* pWideStringEnd, const char*& start,
                       const char*& end) {
    Require(pWideString <= pWideStringEnd, "pWideString <= pWideStringEnd");
    const auto nWords = static_cast<std::size_t>(pWideStringEnd - pWideString);
    const std::size_t count =
        WideToMultiByte(NPlatform::kUtf8CodePage, pWideString, nWords, start, kMostBytesOfUnit * nWords);
    if (count > 0) end = start + count;
    return count;
}

bool ReserveUtf8(std::size_t nWords) {
    return nWords <= NPlatform::kMostUnitsToUtf8 &&
           sharedBuffers->GetCharBuffer(kMostBytesOfUnit * nWords) != nullptr;
}

std::size_t CopyNarrow(const char* text, const char* textEnd, const char*& start, const char*& end) {
    const auto length = static_cast<std::size_t>(textEnd - text);
    char* const buffer = sharedBuffers->GetCharBuffer(length + 1);
    if (buffer == nullptr) return Fail(ConversionStatus::NoBuffer);
    start = std::copy_n(text, length, buffer) - length;
    end = start + length;
    return length;
}

}  // namespace NTamriskUtil
