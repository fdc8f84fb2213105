// What the library tells on the way.
#pragma once

#include <string>

namespace NCli {

// From now on the library's progress messages are listened to, and also shown on standard error.
void ListenToProgress(bool shows);

// The reason why Excel opened no workbook, as the latest message had it that tells so; else empty.
std::string OpeningFailure();

}  // namespace NCli
