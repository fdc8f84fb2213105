// The system registry, as far as the library reads it.
//
// On a system without one, the registry is a text file in the format in which the Windows registry editor
// exports keys. The environment variable XLS2TKI_REGISTRY names it; where that is unset or empty, the library
// brings one of its own, by which Excel 2010 is installed. The file is read each time a key is opened:
//
//   Windows Registry Editor Version 5.00
//
//   [HKEY_LOCAL_MACHINE\SOFTWARE\Classes\Excel.Application\CurVer]
//   @="Excel.Application.14"
//
// It is UTF-16 little-endian with byte order mark, or UTF-8, of 16 MB at most. The first line may also be
// REGEDIT4. The value is a text with \\ and \" for a backslash and a quote, or hex(n): with the
// bytes of a text, where a backslash at the end of a line continues them on the next. Names of keys are
// compared without regard to the case of ASCII letters. The format has no words for rights, so two comments
// do: under the line of the key,
//
//   ;deny key      the key may not be opened
//   ;deny value    its value may not be read
//
// Every other line is ignored, and so is the whole file if it is missing, too large or has another first
// line.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

namespace NPlatform {

enum class RegistryResult {
    Done,
    KeyDenied,    // the key may not be opened
    ValueDenied,  // the value may not be read
    Failed,       // everything else: not there, or longer than the buffer
};

// The system's own numbers; there are more.
inline constexpr std::uint32_t kRegistryText = 1;            // UTF-16, as a rule with its terminator
inline constexpr std::uint32_t kRegistryExpandableText = 2;  // as above, with names of variables in it

// Copies the default value of the key at this path under HKEY_LOCAL_MACHINE into the buffer, and gives its
// type and its size in bytes. Unless it is done, all three are unchanged.
RegistryResult ReadRegistry(std::u16string_view path, std::span<std::byte> buffer, std::uint32_t& type,
                            std::size_t& size);

}  // namespace NPlatform
