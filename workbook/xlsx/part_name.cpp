#include "workbook/xlsx/part_name.h"

#include <algorithm>
#include <charconv>

namespace NWorkbook::NXlsx {

namespace {

constexpr std::string_view kSlashes = "/\\";

// Up to and with the last slash.
std::string_view FolderOf(std::string_view part) { return part.substr(0, part.rfind('/') + 1); }

// Decodes "%20"; false if the text is not such an escape.
bool ReadPercent(std::string_view text, char& character) {
    unsigned char byte = 0;
    if (text.size() < 3 || text[0] != '%') return false;
    if (std::from_chars(text.data() + 1, text.data() + 3, byte, 16).ptr != text.data() + 3) return false;
    character = static_cast<char>(byte);
    return true;
}

void AppendStep(std::string& path, std::string_view step) {
    if (step.empty() || step == ".") return;
    if (step == "..") {
        path.resize(path.empty() ? 0 : path.rfind('/', path.size() - 2) + 1);
    } else {
        path.append(step).push_back('/');
    }
}

// Without empty steps, "." and "..", and with slashes only.
std::string Normalize(std::string_view name) {
    std::string path;
    while (!name.empty()) {
        const std::size_t size = std::min(name.find_first_of(kSlashes), name.size());
        AppendStep(path, name.substr(0, size));
        name.remove_prefix(std::min(size + 1, name.size()));
    }
    if (!path.empty()) path.pop_back();
    return path;
}

}  // namespace

std::string ResolveTarget(std::string_view part, std::string_view target) {
    if (IsFolder(target)) return {};
    const bool isAbsolute = kSlashes.find(target[0]) != std::string_view::npos;
    return Normalize(isAbsolute ? std::string(target) : std::string(FolderOf(part)).append(target));
}

bool IsFolder(std::string_view name) {
    const std::string_view last = name.substr(name.find_last_of(kSlashes) + 1);
    return last.empty() || last == "." || last == "..";
}

std::string RelationshipsOf(std::string_view part) {
    const std::string_view folder = FolderOf(part);
    return std::string(folder).append("_rels/").append(part.substr(folder.size())).append(".rels");
}

std::string PartKey(std::string_view name) {
    std::string key;
    for (std::size_t index = 0; index < name.size(); ++index) {
        char character = name[index];
        if (ReadPercent(name.substr(index), character)) index += 2;
        const bool isCapital = character >= 'A' && character <= 'Z';
        key.push_back(isCapital ? static_cast<char>(character - 'A' + 'a') : character);
    }
    return Normalize(key);
}

}  // namespace NWorkbook::NXlsx
