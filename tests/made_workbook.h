// Workbooks made for a test, of parts as they stand in the file.
#pragma once

#include <gtest/gtest.h>
#include <zip.h>

#include <map>
#include <string>
#include <string_view>

#include "tests/host.h"

namespace NTest {

using Parts = std::map<std::string, std::string>;

inline constexpr std::string_view kMain = "http://schemas.openxmlformats.org/spreadsheetml/2006/main";
inline constexpr std::string_view kReferences =
    "http://schemas.openxmlformats.org/officeDocument/2006/relationships";

inline std::string Relationships(std::string_view kind, std::string_view target) {
    const std::string list =
        "<Relationships xmlns='http://schemas.openxmlformats.org/package/2006/relationships'>"
        "<Relationship Id='a' Type='KIND' Target='TARGET'/></Relationships>";
    return ReplaceAll(ReplaceAll(list, "KIND", kind), "TARGET", target);
}

inline std::string Sheet(const std::string& rows) {
    return "<worksheet xmlns='" + std::string(kMain) + "'><sheetData>" + rows + "</sheetData></worksheet>";
}

// A workbook of one worksheet; `changed` replaces its parts or adds some, an empty one is left out.
inline Parts Small(const Parts& changed) {
    Parts parts = {
        {"_rels/.rels", Relationships("officeDocument", "w.xml")},
        {"_rels/w.xml.rels", Relationships("worksheet", "s.xml")},
        {"w.xml", "<workbook xmlns='" + std::string(kMain) + "' xmlns:r='" + std::string(kReferences) +
                      "'><sheets><sheet name='S' r:id='a'/></sheets></workbook>"},
        {"s.xml", Sheet("<row><c><v>1</v></c></row>")}};
    for (const auto& [name, content] : changed) parts[name] = content;
    return parts;
}

inline std::u16string Zip(const TempFolder& folder, const Parts& parts) {
    const std::string path = Utf8(folder.Path("a.xlsx"));
    zip_t* const zip = zip_open(path.c_str(), ZIP_CREATE | ZIP_TRUNCATE, nullptr);
    for (const auto& [name, content] : parts) {
        if (content.empty()) continue;
        zip_file_add(zip, name.c_str(), zip_source_buffer(zip, content.data(), content.size(), 0), 0);
    }
    EXPECT_EQ(zip_close(zip), 0);
    return folder.Path("a.xlsx");
}

inline std::string Repeat(std::string_view text, std::size_t count) {
    std::string result;
    while (count-- > 0) result += text;
    return result;
}

}  // namespace NTest
