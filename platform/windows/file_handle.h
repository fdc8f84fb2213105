// The owner of an open file, and paths as the system takes them.
#pragma once

#include <windows.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

namespace NPlatform {

class FileHandle {
  public:
    explicit FileHandle(HANDLE handle) : handle_(handle) {}
    FileHandle(FileHandle&& other) noexcept : handle_(std::exchange(other.handle_, INVALID_HANDLE_VALUE)) {}
    FileHandle& operator=(FileHandle&&) = delete;
    ~FileHandle() { Close(); }

    [[nodiscard]] bool IsOpen() const { return handle_ != INVALID_HANDLE_VALUE; }
    [[nodiscard]] HANDLE Get() const { return handle_; }
    // False: the system reported a failure, or nothing is open. It is closed in any case.
    bool Close() { return IsOpen() && CloseHandle(std::exchange(handle_, INVALID_HANDLE_VALUE)) != 0; }

  private:
    HANDLE handle_;
};

// Absolute, with links as they are; empty where it is no path.
std::wstring FullPath(std::u16string_view path);

// The full path in the form in which it may be longer than the 260 characters that the system takes
// otherwise.
std::wstring SystemPath(std::u16string_view path);

// Opens a file, shared with everybody. `access` and `creation` are those of CreateFile.
FileHandle OpenFile(std::u16string_view path, DWORD access, DWORD creation);

// Opens a regular file for reading. Anything else (a folder, a pipe, a device) counts as a file that cannot
// be opened: its text may have no end. Fills in the file's size.
FileHandle OpenRegularFile(std::u16string_view path, std::uint64_t& size);

}  // namespace NPlatform
