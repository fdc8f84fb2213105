#include "platform/library_files.h"

#include <filesystem>
#include <system_error>

#include "platform/linux/paths.h"

namespace NPlatform {

static bool FindPlace(std::u16string_view path, std::u16string& fullPath) {
    namespace fs = std::filesystem;
    std::error_code error;
    const fs::path place = fs::weakly_canonical(fs::absolute(PathToBytes(path), error), error);
    if (error || path.empty()) return false;
    const fs::file_status status = fs::status(place, error);
    if (fs::exists(status) && !fs::is_regular_file(status)) return false;
    fullPath = PathFromBytes(place.native());
    return true;
}

constinit Replaceable<bool(std::u16string_view, std::u16string&)> FindPlaceForFile{FindPlace};

std::string PathForLibraries(std::u16string_view path) { return PathToBytes(path); }

}  // namespace NPlatform
