#include <odbcinst.h>

#include <algorithm>
#include <limits>

#include "platform/database.h"
#include "platform/driver_list.h"
#include "platform/linux/paths.h"

namespace NPlatform {

// By the narrow function: the wide one of unixODBC takes each byte of UTF-8 for a character.
static std::vector<std::u16string> ListDrivers(std::size_t capacity) {
    const std::size_t size = std::min<std::size_t>(capacity, std::numeric_limits<WORD>::max());
    std::string list(size, '\0');
    WORD ignored = 0;
    if (SQLGetInstalledDrivers(list.data(), static_cast<WORD>(size), &ignored) == 0) return {};
    std::vector<std::u16string> descriptions;
    for (const std::string& description : TextsIn(list)) descriptions.push_back(PathFromBytes(description));
    return descriptions;
}

constinit Replaceable<std::vector<std::u16string>(std::size_t)> InstalledDrivers{ListDrivers};

}  // namespace NPlatform
