// What may help where a conversion failed. A hint is a sentence, and true, or empty.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "cli/options.h"

namespace NCli {

// For a conversion that the library ended with the message. `input` is what the options name, or its copy.
std::string FindHint(const Options& options, const std::filesystem::path& input, std::string_view message);

// For a file with an unknown extension.
std::string FindKindHint(const std::filesystem::path& input);

}  // namespace NCli
