// Detects how to read a CSV text.
#pragma once

#include <cstdio>
#include <filesystem>
#include <optional>

#include "cli/options.h"

namespace NCli {

// Chooses the encoding and the separator of a CSV text where the options leave that open, puts them there,
// and notes what is not the default. `text` is the input or its copy. Where it cannot be opened, all stays
// open. Throws Failure where it cannot be read, and for a byte order mark that the options contradict or
// whose encoding is not read.
void ChooseReading(Options& options, const std::filesystem::path& text);

// The first of semicolon, tab, comma and pipe, or for .tsv of tab, semicolon, comma and pipe, that divides
// the first row of the file as the library's parser reads it. None where there is none, or where the first
// row goes on behind its first MiB. Where the options leave the encoding open, it is the byte order mark's,
// or 8-bit.
std::optional<Separator> FindSeparator(const Options& options, std::FILE* text);

// Moves to the beginning of the text, after its byte order mark.
void GoToText(std::FILE* text);

}  // namespace NCli
