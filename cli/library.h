// The library's functions, with their failures as sentences for the user.
#pragma once

#include <filesystem>
#include <optional>
#include <vector>

#include "api/xls2tki.h"
#include "api/xls2tki_c.h"
#include "cli/options.h"

namespace NCli {

// Call it before the others. All of them throw Failure, and std::bad_alloc when the memory is exhausted.
void PrepareLibrary();

// The library writes nothing to a path without a name.
inline const std::filesystem::path kNoOutput;

// Converts the input, which may be a copy of what the options name. Whether the document could be written is
// among the facts.
void RunConversion(const Options& options, const std::filesystem::path& input,
                   const std::filesystem::path& output);

// Of the last conversion, unless it failed. The last members, from the item headers on, are zero; for the
// others no memory is needed.
std::optional<Xls2TkiFacts> FindFacts();

// Of the last conversion, which has not failed. Throws std::bad_alloc.
Xls2TkiFacts FindAllFacts();

// The names of the workbook's worksheets in their order, at least one. None where the installed Excel cannot
// list them; the library's message has the reason.
std::vector<NXls2Tki::WideString> FindWorksheets(const Options& options);

[[noreturn]] void FailWithLibraryMessage();

}  // namespace NCli
