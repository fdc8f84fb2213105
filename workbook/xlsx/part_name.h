// The names of a package's parts: paths with slashes, from the package's root and without a slash at the
// front.
#pragma once

#include <string>
#include <string_view>

namespace NWorkbook::NXlsx {

// What a target says, seen from a part ("" for the package itself): absolute with a slash at its front, else
// relative to the part's folder. Empty for a target that is no part's name: it is empty or names a folder.
std::string ResolveTarget(std::string_view part, std::string_view target);

// Whether a name ends as that of a folder does: with a slash, "." or "..", or not at all.
bool IsFolder(std::string_view name);

// "xl/_rels/workbook.xml.rels" for "xl/workbook.xml", "_rels/.rels" for the package itself.
std::string RelationshipsOf(std::string_view part);

// The same for all spellings of a name that programs take for one: in capitals, with backslashes, a slash at
// the front, "." and ".." or %20 for a blank.
std::string PartKey(std::string_view name);

}  // namespace NWorkbook::NXlsx
