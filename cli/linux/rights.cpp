// Who may use a file: its permissions or, with finer distinctions, its access control list.
#include <endian.h>
#include <linux/posix_acl.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <vector>

#include "cli/system.h"

namespace NCli {

namespace {

constexpr char kListName[] = "system.posix_acl_access";

// As the system has it, in little endian: a header of two units, and four for each who may use the file, of
// which the first say who and what. Empty: there is no list, or none in this file system.
using AccessList = std::vector<std::uint16_t>;

bool HasNoList() { return errno == ENODATA || errno == EOPNOTSUPP; }

bool ReadList(int file, AccessList& list) {
    list.resize(std::size_t{1} << 15);  // as long as any
    const ssize_t size = fgetxattr(file, kListName, list.data(), list.size() * sizeof list[0]);
    list.resize(size < 0 ? 0 : static_cast<std::size_t>(size) / sizeof list[0]);
    return size >= 0 || HasNoList();
}

// Also one that the folder gives to new files.
bool RemoveList(int file) { return fremovexattr(file, kListName) == 0 || HasNoList(); }

bool WriteList(int file, const AccessList& list) {
    return fsetxattr(file, kListName, list.data(), list.size() * sizeof list[0], 0) == 0;
}

// A file of another group: its members were among the others before, and those of the old group are now.
// Anybody whom the list names becomes one of them, too, so they may do only what everybody could.
mode_t WithoutGroup(mode_t mode, const AccessList& list) {
    mode_t common = (mode >> 3) & mode & S_IRWXO;
    for (std::size_t at = 2; at + 4 <= list.size(); at += 4) {
        if (le16toh(list[at]) != ACL_USER_OBJ) common &= le16toh(list[at + 1]);
    }
    return (mode & S_IRWXU) | common << 3 | common;
}

// Some file systems have the same permissions for all files, and refuse to set any.
bool SetMode(int file, mode_t mode) {
    struct stat status {};
    if (fstat(file, &status) != 0) return false;
    return (status.st_mode & ALLPERMS) == mode || fchmod(file, mode) == 0;
}

}  // namespace

bool CopyRights(std::FILE* from, std::FILE* to) {
    constexpr mode_t kPermissions = S_IRWXU | S_IRWXG | S_IRWXO;  // no other user to run as
    const int source = fileno(from);
    const int target = fileno(to);
    struct stat before {};
    struct stat now {};
    AccessList list;
    if (fstat(source, &before) != 0 || fstat(target, &now) != 0) return false;
    if (!ReadList(source, list) || !RemoveList(target)) return false;
    const bool isSameGroup =
        now.st_gid == before.st_gid || fchown(target, static_cast<uid_t>(-1), before.st_gid) == 0;
    const mode_t mode = before.st_mode & kPermissions;
    if (!isSameGroup) return SetMode(target, WithoutGroup(mode, list));
    return list.empty() ? SetMode(target, mode) : WriteList(target, list);
}

}  // namespace NCli
