// The import document of a table of SAE codes through libcsv and pugixml's tree: pugixml INPUT OUTPUT
//
// pugixml's writer decides on line breaks and on the blanks inside tags; the elements, attributes and texts
// are those of the other programs.

#include <csv.h>

#include <charconv>
#include <cstdio>
#include <exception>
#include <fstream>
#include <pugixml.hpp>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace {

// P0123 is 291: two bits of system above the hexadecimal digits.
int Number(std::string_view code) {
    const auto system = std::string_view("PCBU").find(code.front());
    unsigned digits = 0;
    std::from_chars(code.data() + 1, code.data() + code.size(), digits, 16);
    return static_cast<int>(digits | static_cast<unsigned>(system) << (4 * code.size() - 6));
}

class Document {
  public:
    Document();
    void AddCell(const char* text, std::size_t size);
    void EndRow();
    void Save(const char* path) const;

  private:
    void AddTitle(const char* text);
    void AddItem(const char* text, std::size_t size);

    pugi::xml_document document_;
    pugi::xml_node mappings_, dtcs_, dtc_, record_;
    std::vector<std::string> ids_;
    std::size_t column_ = 0;
    bool header_ = true;
};

Document::Document() {
    auto declaration = document_.append_child(pugi::node_declaration);
    declaration.append_attribute("version") = "1.0";
    declaration.append_attribute("encoding") = "utf-8";
    auto root = document_.append_child("TAMRISKIMPORT");
    root.append_attribute("dtdfilevers") = "1.5.2";
    root.append_attribute("xmlns:xsi") = "http://www.w3.org/2001/XMLSchema-instance";
    auto collection = root.append_child("IMPORTDOC").append_child("DTCCOLLECTION");
    auto service = collection.append_child("SERVICEMAPPING");
    service.append_attribute("diaginstance") = "Emission_Related_Trouble_Codes";
    service.append_attribute("variant") = "COMMON_DIAGNOSTICS";
    mappings_ = collection.append_child("RECORDTEMPLATEMAPPING");
    dtcs_ = collection.append_child("DTCS");
}

void Document::AddCell(const char* text, std::size_t size) {
    const auto column = column_++;
    if (header_) {
        if (column >= 2) AddTitle(text);
    } else if (column == 0) {
        dtc_ = dtcs_.append_child("DTC");
        dtc_.append_attribute("number") = Number({text, size});
    } else if (column == 1) {
        dtc_.append_child("ERRORTEXT").text() = text;
        record_ = dtc_.append_child("RECORD");
    } else if (size > 0) {
        auto item = record_.append_child("RECORDITEM");
        item.append_attribute("itemmappingref") = ids_[column - 2].c_str();
        item.text() = text;
    }
}

void Document::AddTitle(const char* text) {
    ids_.push_back('_' + std::to_string(ids_.size() + 1));
    auto mapping = mappings_.append_child("ITEMMAPPING");
    mapping.append_attribute("id") = ids_.back().c_str();
    mapping.append_attribute("type") = "RI";
    mapping.text() = text;
}

void Document::EndRow() {
    column_ = 0;
    header_ = false;
}

void Document::Save(const char* path) const {
    if (!document_.save_file(path, "", pugi::format_default, pugi::encoding_utf8))
        throw std::runtime_error("the output cannot be written");
}

void CellRead(void* text, std::size_t size, void* document) {
    static_cast<Document*>(document)->AddCell(static_cast<const char*>(text), size);
}

void RowRead(int, void* document) { static_cast<Document*>(document)->EndRow(); }

void Read(const char* path, Document& document) {
    std::ifstream table(path, std::ios::binary);
    if (!table) throw std::runtime_error("the input cannot be read");
    csv_parser parser;
    csv_init(&parser, CSV_APPEND_NULL);
    csv_set_delim(&parser, ';');
    csv_set_space_func(&parser, [](unsigned char) { return 0; });
    std::vector<char> block(1 << 16);
    while (table.read(block.data(), static_cast<std::streamsize>(block.size())) || table.gcount() > 0)
        csv_parse(&parser, block.data(), static_cast<std::size_t>(table.gcount()), CellRead, RowRead,
                  &document);
    csv_fini(&parser, CellRead, RowRead, &document);
    csv_free(&parser);
}

}  // namespace

int main(int argc, char* argv[]) try {
    if (argc != 3) throw std::runtime_error("usage: pugixml INPUT OUTPUT");
    Document document;
    Read(argv[1], document);
    document.Save(argv[2]);
    return 0;
} catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
}
