// Files that a library opens and writes itself. Paths are UTF-16.
#pragma once

#include <string>
#include <string_view>

#include "platform/replaceable.h"

namespace NPlatform {

// Whether a file can be written here: there is none, or it is a regular file. Fills in its full path, where
// links lead to; otherwise `fullPath` is unchanged.
extern Replaceable<bool(std::u16string_view path, std::u16string& fullPath)> FindPlaceForFile;

// The path in the form that such libraries take: UTF-8, but a name that is no UTF-8 as it is.
std::string PathForLibraries(std::u16string_view path);

}  // namespace NPlatform
