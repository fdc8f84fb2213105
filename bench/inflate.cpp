// The least that reading a workbook through libzip and expat has to do, to measure others against:
// inflate INPUT OUTPUT
//
// Inflates every part of the workbook and lets expat look at it; what it finds is only counted. The counts go
// to OUTPUT: inflated bytes, elements, attributes, bytes of text.

#include <expat.h>
#include <zip.h>

#include <cstdio>
#include <exception>
#include <memory>
#include <stdexcept>
#include <string>

namespace {

constexpr int kPiece = 64 * 1024;

struct Counts {
    unsigned long long bytes = 0, elements = 0, attributes = 0, text = 0;
};

struct Closing {
    void operator()(zip_t* archive) const { zip_discard(archive); }
    void operator()(zip_file_t* part) const { zip_fclose(part); }
    void operator()(XML_Parser parser) const { XML_ParserFree(parser); }
};
using Archive = std::unique_ptr<zip_t, Closing>;
using Part = std::unique_ptr<zip_file_t, Closing>;
using Parser = std::unique_ptr<XML_ParserStruct, Closing>;

void XMLCALL CountElement(void* counts, const XML_Char*, const XML_Char** attributes) {
    auto& counted = *static_cast<Counts*>(counts);
    ++counted.elements;
    for (; *attributes != nullptr; attributes += 2) ++counted.attributes;
}

void XMLCALL IgnoreEnd(void*, const XML_Char*) {}

void XMLCALL CountText(void* counts, const XML_Char*, int size) {
    static_cast<Counts*>(counts)->text += static_cast<unsigned>(size);
}

void ParsePart(zip_file_t* part, Counts& counts) {
    const Parser parser(XML_ParserCreate(nullptr));
    XML_SetUserData(parser.get(), &counts);
    XML_SetElementHandler(parser.get(), CountElement, IgnoreEnd);
    XML_SetCharacterDataHandler(parser.get(), CountText);
    zip_int64_t size = 0;
    do {
        size = zip_fread(part, XML_GetBuffer(parser.get(), kPiece), kPiece);
        if (size < 0) throw std::runtime_error("cannot inflate");
        counts.bytes += static_cast<unsigned long long>(size);
        if (XML_ParseBuffer(parser.get(), static_cast<int>(size), size == 0) != XML_STATUS_OK)
            throw std::runtime_error("not well-formed");
    } while (size > 0);
}

Counts ParseWorkbook(const char* path) {
    const Archive archive(zip_open(path, ZIP_RDONLY, nullptr));
    if (!archive) throw std::runtime_error("cannot open the workbook");
    Counts counts;
    const auto parts = static_cast<zip_uint64_t>(zip_get_num_entries(archive.get(), 0));
    for (zip_uint64_t index = 0; index < parts; ++index) {
        const Part part(zip_fopen_index(archive.get(), index, 0));
        if (!part) throw std::runtime_error("cannot open a part");
        ParsePart(part.get(), counts);
    }
    return counts;
}

void Write(const char* path, const Counts& counts) {
    std::FILE* const file = std::fopen(path, "w");
    if (file == nullptr) throw std::runtime_error("cannot open the output");
    std::fprintf(file, "%llu %llu %llu %llu\n", counts.bytes, counts.elements, counts.attributes,
                 counts.text);
    if (std::fclose(file) != 0) throw std::runtime_error("cannot write the output");
}

}  // namespace

int main(int argc, char* argv[]) try {
    if (argc != 3) throw std::runtime_error("usage: inflate INPUT OUTPUT");
    Write(argv[2], ParseWorkbook(argv[1]));
    return 0;
} catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
}
