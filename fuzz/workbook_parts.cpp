// The parts of a workbook to its cells: without compression and checksums, which no search would get past.
//
// The input is the rows of the worksheet. A line `@@ NAME` begins another part; it takes the place of the
// part of this name below.
#include <zip.h>

#include <map>
#include <string>

#include "fuzz/memory_file.h"
#include "fuzz/workbook_check.h"

namespace {

using namespace NFuzz;

using Parts = std::map<std::string, std::string, std::less<>>;

#define MAIN "http://schemas.openxmlformats.org/spreadsheetml/2006/main"
#define REFERENCES "http://schemas.openxmlformats.org/officeDocument/2006/relationships"
#define LIST "<Relationships xmlns='http://schemas.openxmlformats.org/package/2006/relationships'>"

const Parts kParts = {
    {"_rels/.rels", LIST "<Relationship Id='a' Type='/officeDocument' Target='w.xml'/></Relationships>"},
    {"_rels/w.xml.rels", LIST "<Relationship Id='a' Type='/worksheet' Target='s.xml'/>"
                              "<Relationship Id='b' Type='/worksheet' Target='t.xml'/>"
                              "<Relationship Id='c' Type='/sharedStrings' Target='u.xml'/></Relationships>"},
    {"w.xml", "<workbook xmlns='" MAIN "' xmlns:r='" REFERENCES "'><sheets><sheet name='S' r:id='a'/>"
              "<sheet name='T' r:id='b'/></sheets></workbook>"},
    {"t.xml", "<worksheet xmlns='" MAIN "'/>"},
    {"u.xml", "<sst xmlns='" MAIN "'><si><t>one</t></si><si><r><t>t</t></r><r><t>wo</t></r></si></sst>"}};

Parts ReadParts(std::string_view input) {
    constexpr std::string_view kMark = "\n@@ ";
    Parts parts = kParts;
    std::size_t end = input.find(kMark);
    const std::string rows(input.substr(0, end));
    parts["s.xml"] = "<worksheet xmlns='" MAIN "'><sheetData>" + rows + "</sheetData></worksheet>";
    while (end != std::string_view::npos) {
        input.remove_prefix(end + kMark.size());
        end = input.find(kMark);
        const std::string_view part = input.substr(0, end);
        const std::size_t line = std::min(part.find('\n'), part.size());
        parts[std::string(part.substr(0, line))] = part.substr(std::min(line + 1, part.size()));
    }
    return parts;
}

void Add(zip_t* zip, const std::string& name, const std::string& content) {
    zip_source_t* const source = zip_source_buffer(zip, content.data(), content.size(), 0);
    const zip_int64_t index = zip_file_add(zip, name.c_str(), source, 0);
    if (index < 0) return zip_source_free(source);
    zip_set_file_compression(zip, static_cast<zip_uint64_t>(index), ZIP_CM_STORE, 0);
}

std::string Take(zip_source_t* archive) {
    zip_stat_t stat;
    zip_source_stat(archive, &stat);
    std::string bytes(stat.size, '\0');
    zip_source_open(archive);
    zip_source_read(archive, bytes.data(), bytes.size());
    zip_source_close(archive);
    return bytes;
}

// Names that no archive takes are left out.
std::string Pack(const Parts& parts) {
    zip_source_t* const archive = zip_source_buffer_create(nullptr, 0, 0, nullptr);
    zip_source_keep(archive);
    zip_t* const zip = zip_open_from_source(archive, ZIP_TRUNCATE, nullptr);
    for (const auto& [name, content] : parts) Add(zip, name, content);
    Require(zip_close(zip) == 0, "parts can be packed");
    std::string bytes = Take(archive);
    zip_source_free(archive);
    return bytes;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    CheckWorkbook(Pack(ReadParts(Bytes(data, size))));
    return 0;
}
