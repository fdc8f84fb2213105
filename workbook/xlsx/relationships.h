// Which parts a part refers to.
#pragma once

#include <functional>
#include <map>
#include <string>
#include <string_view>

#include "workbook/xlsx/package.h"

namespace NWorkbook::NXlsx {

struct Relationship {
    std::string kind;  // the last step of its type: "worksheet"
    std::string part;  // what it refers to; empty if that is outside the package or no part's name
};

// By identifier.
using Relationships = std::map<std::string, Relationship, std::less<>>;

// Of a part, or of the package itself (""); none if it has no list of them. Throws WorkbookError.
Relationships ReadRelationships(Package& package, std::string_view part);

// The part that a relationship of this kind refers to; empty if there is none. Valid as long as they are.
std::string_view FindPart(const Relationships& relationships, std::string_view kind);

}  // namespace NWorkbook::NXlsx
