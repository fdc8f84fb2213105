// The user that runs the process.
#pragma once

#include <cstddef>
#include <string>

#include "platform/replaceable.h"

namespace NPlatform {

// Fills in the name of the process's effective user, if it fits into `capacity` UTF-16 units with its
// terminator. False: the name is longer or the system failed; the text is then unchanged.
extern Replaceable<bool(std::u16string& name, std::size_t capacity)> UserName;

}  // namespace NPlatform
