#include "platform/windows/file_handle.h"

#include "platform/windows/wide.h"

namespace NPlatform {

std::wstring FullPath(std::u16string_view path) {
    const std::wstring given = ToWide(path);
    std::wstring full(MAX_PATH, L'\0');
    while (true) {
        const DWORD size =
            GetFullPathNameW(given.c_str(), static_cast<DWORD>(full.size()), full.data(), nullptr);
        const bool fits = size < full.size();  // else it is the size that is needed
        full.resize(size);
        if (fits) return full;
    }
}

std::wstring SystemPath(std::u16string_view path) {
    std::wstring full = FullPath(path);
    const bool isTaken =
        full.size() < MAX_PATH || full.starts_with(L"\\\\?\\") || full.starts_with(L"\\\\.\\");
    if (isTaken) return full;
    const bool isOnServer = full.starts_with(L"\\\\");
    return isOnServer ? L"\\\\?\\UNC" + full.substr(1) : L"\\\\?\\" + full;
}

FileHandle OpenFile(std::u16string_view path, DWORD access, DWORD creation) {
    constexpr DWORD kShareWithEverybody = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    return FileHandle(CreateFileW(SystemPath(path).c_str(), access, kShareWithEverybody, nullptr, creation,
                                  FILE_ATTRIBUTE_NORMAL, nullptr));
}

FileHandle OpenRegularFile(std::u16string_view path, std::uint64_t& size) {
    FileHandle file = OpenFile(path, GENERIC_READ, OPEN_EXISTING);  // which opens no folders
    LARGE_INTEGER bytes{};
    // The type alone is not enough: a device can look like a file on a disk.
    const bool isDevice = FullPath(path).starts_with(L"\\\\.\\");
    const bool isRegular = file.IsOpen() && !isDevice && GetFileType(file.Get()) == FILE_TYPE_DISK &&
                           GetFileSizeEx(file.Get(), &bytes) != 0;
    if (!isRegular) file.Close();
    size = static_cast<std::uint64_t>(bytes.QuadPart);
    return file;
}

}  // namespace NPlatform
