#include <odbcinst.h>

#include <algorithm>
#include <limits>

#include "platform/database.h"
#include "platform/driver_list.h"
#include "platform/linux/paths.h"

namespace NPlatform {

namespace {

// A character of UTF-16 takes at most three bytes of UTF-8.
constexpr std::size_t kMostBytes = 3;

// By the narrow function: the wide one of unixODBC takes each byte of UTF-8 for a character.
std::vector<std::u16string> ListDrivers(std::size_t capacity) {
    const std::size_t size = std::min<std::size_t>(kMostBytes * capacity, std::numeric_limits<WORD>::max());
    std::string list(size, '\0');
    WORD ignored = 0;
    if (SQLGetInstalledDrivers(list.data(), static_cast<WORD>(size), &ignored) == 0) return {};
    std::vector<std::u16string> descriptions;
    for (const std::string& bytes : TextsIn(list)) {
        std::u16string description = PathFromBytes(bytes);
        if (description.size() >= capacity) break;
        capacity -= description.size() + 1;
        descriptions.push_back(std::move(description));
    }
    return descriptions;
}

}  // namespace

constinit Replaceable<std::vector<std::u16string>(std::size_t)> InstalledDrivers{ListDrivers};

}  // namespace NPlatform
