// UTF-16 to bytes, into the process's shared buffers.
//
// Not guarded: one conversion at a time in a process. The bytes of a result stay valid until the next
// conversion.
#pragma once

#include <cstddef>
#include <cstdint>

#include "xml/buffers.h"

namespace NTamriskUtil {

// What became of the last conversion.
enum class ConversionStatus : std::uint32_t {
    Done = 0,
    NoBuffer = 0x20000001,  // the memory for the result could not be had
    Failed = 0x20000014,    // nothing came out, an empty input included
};

// Puts `buffers` in the place of those that all conversions use, which are made when the library is loaded.
// Returns the former ones: a test that puts its own there has to put them back.
IBuffers* ReplaceSharedBuffers(IBuffers* buffers);

ConversionStatus LastConversionStatus();

// Converts `nWords` units to the code page, into a buffer of `nChars` bytes. Returns the number of bytes, no
// terminator among them, and where they start; 0 and null on failure. Counts above INT_MAX and a null text
// with units are the caller's mistakes: std::logic_error names the broken condition.
std::size_t WideToMultiByte(std::uint32_t codePage, const char16_t* pWideString, std::size_t nWords,
                            const char*& start, std::size_t nChars);

// Converts the units from `pWideString` up to `pWideStringEnd` to UTF-8. As WideToMultiByte, and tells the
// end of the bytes as well; on failure the end is unchanged.
std::size_t WideToUtf8(const char16_t* pWideString, const char16_t* pWideStringEnd, const char*& start,
                       const char*& end);

// Obtains now the buffer that WideToUtf8 will need for so many units. False: the units are too many for one
// write, or the memory cannot be had.
bool ReserveUtf8(std::size_t nWords);

// Copies the bytes and returns their number; 0 when there are none or no buffer.
std::size_t CopyNarrow(const char* text, const char* textEnd, const char*& start, const char*& end);

}  // namespace NTamriskUtil
