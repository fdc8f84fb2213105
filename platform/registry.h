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
// REGEDIT4. Values are texts (with \\ and \" for a backslash and a quote, and no line feed), dword:, hex: and
// hex(n):, where a backslash at the end of a line continues the bytes on the next; "-" in the place of the
// data deletes a value, and [-KEY] a key with all below it. Names are compared without regard to the case of
// ASCII letters. The format has no words for rights, so two comments express them: under the line of a key,
//
//   ;deny key      the key may not be opened
//   ;deny value    the value in the next line may not be read
//
// Malformed parts count as missing: a line, or the whole file where it is missing, too large or has
// another first line.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

namespace NPlatform {

enum class RegistryResult {
    Done,
    AccessDenied,
    Failed,  // everything else: not there, or longer than the buffer
};

// The system's own numbers; there are more.
inline constexpr std::uint32_t kRegistryText = 1;            // UTF-16, as a rule with its terminator
inline constexpr std::uint32_t kRegistryExpandableText = 2;  // as above, with names of variables in it
inline constexpr std::uint32_t kRegistryBinary = 3;
inline constexpr std::uint32_t kRegistryNumber = 4;  // 32 bits

// A key of the registry, as the system has it.
struct OpenRegistryKey;

// Holds one open key, or none, and closes it when it is destroyed.
class RegistryKey {
  public:
    RegistryKey() = default;
    RegistryKey(const RegistryKey&) = delete;
    RegistryKey& operator=(const RegistryKey&) = delete;
    ~RegistryKey() { Close(); }

    // Opens the key at this path under HKEY_LOCAL_MACHINE for reading, in place of one that is open.
    RegistryResult Open(std::u16string_view path);

    // Copies the data of a value of the open key into the buffer; the name "" stands for the key's default
    // value. Tells its type and its size in bytes; unless it is done, all three are unchanged.
    RegistryResult Read(std::u16string_view name, std::span<std::byte> buffer, std::uint32_t& type,
                        std::size_t& size) const;

  private:
    void Close() noexcept;

    OpenRegistryKey* key_ = nullptr;
};

}  // namespace NPlatform
