// The owner of what the system closes by CloseHandle.
#pragma once

#include <windows.h>

#include <filesystem>
#include <memory>

namespace NCli {

struct CloseObject {
    void operator()(void* object) const { CloseHandle(object); }
};
using Handle = std::unique_ptr<void, CloseObject>;

// Of what CreateFile returns; empty where it failed.
inline Handle OwnFile(HANDLE file) { return Handle(file == INVALID_HANDLE_VALUE ? nullptr : file); }

inline constexpr DWORD kShareWithEverybody = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

// Opens any kind of file, to query its properties.
Handle OpenToAsk(const std::filesystem::path& path);

}  // namespace NCli
