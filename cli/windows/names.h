// Names as the user gives them.
#pragma once

#include <string>

namespace NCli {

// The argument as UTF-8. Throws WrongUsage for half a character, without which the file would be another one.
std::string ToArgument(const std::wstring& given);

}  // namespace NCli
