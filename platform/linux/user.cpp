#include "platform/user.h"

#include <pwd.h>
#include <unistd.h>

#include <vector>

#include "platform/linux/paths.h"

namespace NPlatform {

static bool ReadUserName(std::u16string& name, std::size_t capacity) {
    std::vector<char> buffer(16384);
    passwd entry{};
    passwd* found = nullptr;
    if (getpwuid_r(geteuid(), &entry, buffer.data(), buffer.size(), &found) != 0 || found == nullptr)
        return false;
    std::u16string read = PathFromBytes(entry.pw_name);
    if (read.size() >= capacity) return false;
    name = std::move(read);
    return true;
}

constinit Replaceable<bool(std::u16string&, std::size_t)> UserName{ReadUserName};

}  // namespace NPlatform
