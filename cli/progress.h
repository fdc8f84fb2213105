// The progress messages of the library.
#pragma once

#include <string>

namespace NCli {

// From now on the library's progress messages are listened to, and also shown on standard error.
void ListenToProgress(bool shows);

// Why Excel opened no workbook, from the latest message that says so; otherwise empty.
std::string OpeningFailure();

}  // namespace NCli
