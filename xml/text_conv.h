// UTF-16 to bytes, into the process's shared buffers.
//
// Not guarded: one conversion at a time in a process. The bytes of a result stay valid until the next
// conversion.
#pragma once

#include <cstddef>
#include <cstdint>

#include "xml/buffers.h"

namespace NTamriskUtil {

// The result of the last conversion.
enum class ConversionStatus : std::uint32_t {
    Done = 0,
    NoBuffer = 0x20000001,  // no memory for the result
    Failed = 0x20000014,    // no result, also for an empty input
};

// Replaces the buffers that all conversions use, which are made when the library is loaded.
// Returns the former ones: a test that replaces them has to restore them.
IBuffers* ReplaceSharedBuffers(IBuffers* buffers);

ConversionStatus LastConversionStatus();

// Converts `nWords` units to the code page, into a buffer of `nChars` bytes. Returns the number of bytes, no
// terminator among them, and where they start; 0 and null on failure. Counts above INT_MAX and a null text
// with units are the caller's mistakes: std::logic_error names the broken condition.
std::size_t WideToMultiByte(std::uint32_t codePage, const char16_t* pWideString, std::size_t nWords,
                            const char*& start, std::size_t nChars);

// Converts the units from `pWideString` up to `pWideStringEnd` to UTF-8. Like WideToMultiByte, but also
// returns the end of the bytes as well; on failure the end is unchanged.
std::size_t WideToUtf8(const char16_t* pWideString, const char16_t* pWideStringEnd, const char*& start,
                       const char*& end);

// Allocates the buffer that WideToUtf8 will use for this many units. False: there are too many units for one
// write, or there is no memory.
bool ReserveUtf8(std::size_t nWords);

// Copies the bytes and returns their number; 0 when there are none or no buffer.
std::size_t CopyNarrow(const char* text, const char* textEnd, const char*& start, const char*& end);

}  // namespace NTamriskUtil
