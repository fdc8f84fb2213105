// What an output may replace.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace NCli {

// A kind of file, which is known by its beginning.
struct FileKind {
    const char* name;
    bool (*isBeginning)(std::string_view text);
};

// Documents that were edited or come from elsewhere count, too.
extern const FileKind kImportDocument;

// Of any tool. JSON of other kinds is something else.
extern const FileKind kSarifFile;

// Why what is at the path must not be replaced, as a sentence for the user: a file that holds something, but
// nothing of the kind. Empty where there is no reason.
std::string ReasonToKeep(const std::filesystem::path& output, const FileKind& kind);

}  // namespace NCli
