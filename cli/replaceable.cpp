#include "cli/replaceable.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>

#include "cli/failure.h"
#include "cli/files.h"

namespace NCli {

namespace {

bool Skip(std::string_view& text, std::string_view beginning) {
    if (!text.starts_with(beginning)) return false;
    text.remove_prefix(beginning.size());
    return true;
}

bool SkipBehind(std::string_view& text, std::string_view end) {
    const std::size_t found = text.find(end);
    if (found == std::string_view::npos) return false;
    text.remove_prefix(found + end.size());
    return true;
}

void SkipBlanks(std::string_view& text) {
    text.remove_prefix(std::min(text.find_first_not_of(" \t\r\n"), text.size()));
}

bool IsBeginningOfDocument(std::string_view text) {
    Skip(text, "\xEF\xBB\xBF");
    if (!Skip(text, "<?xml") || !SkipBehind(text, "?>")) return false;
    SkipBlanks(text);
    while (Skip(text, "<!--") && SkipBehind(text, "-->")) SkipBlanks(text);
    return Skip(text, "<TAMRISKIMPORT") && text.find_first_of(" \t\r\n/>") == 0;
}

bool IsBeginningOfSarif(std::string_view text) {
    Skip(text, "\xEF\xBB\xBF");
    SkipBlanks(text);
    const auto has = [text](std::string_view member) { return text.find(member) != std::string_view::npos; };
    return text.starts_with('{') && has("\"2.1.0\"") && has("\"runs\"");
}

}  // namespace

const FileKind kImportDocument = {"an import document", IsBeginningOfDocument};
const FileKind kSarifFile = {"a SARIF file", IsBeginningOfSarif};

std::string ReasonToKeep(const std::filesystem::path& output, const FileKind& kind) {
    if (output == kStandardOutput || !IsRegularFile(output)) return {};
    const std::string begin = "The output " + NameOf(output) + " exists and ";
    char bytes[4096];
    const File file = OpenFile(output, "rb");
    const std::size_t size = file ? std::fread(bytes, 1, sizeof bytes, file.get()) : 0;
    if (!file || std::ferror(file.get()) != 0) {
        return begin + "cannot be read to see whether it is " + kind.name + ": " + SystemText(errno) + ".";
    }
    if (size == 0 || kind.isBeginning({bytes, size})) return {};
    return begin + "is not " + kind.name + "; use --force to replace it.";
}

}  // namespace NCli
