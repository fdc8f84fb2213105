// A host in C++: converts a CSV table in UTF-8. Usage: host INPUT OUTPUT
#include <xls2tki.h>

#include <filesystem>
#include <fstream>
#include <iostream>

using namespace NXls2Tki;
using std::filesystem::path;

// The result of a conversion does not tell whether the document could be written: look for its last line.
static bool IsComplete(const path& document) {
    const std::string end = "</TAMRISKIMPORT>\r\n";
    std::string found(end.size(), ' ');
    std::ifstream file(document, std::ios::binary);
    return file.seekg(-18, std::ios::end).read(found.data(), 18) && found == end;
}

int main(int count, char** arguments) {
    if (count != 3) return 2;
    const path input = arguments[1], output = arguments[2], fresh = output.string() + ".new";
    const WideString from = input.string<WideChar>(), to = fresh.string<WideChar>();
    remove(fresh);
    if (!Xls2TkiConvert(from.c_str(), to.c_str(), ImportTypeCSV, false, ';', true)) {
        std::cerr << path(GetLoggedMessages()).string() << '\n';  // a path converts any text
        return 1;
    }
    if (!IsComplete(fresh)) {
        std::cerr << arguments[2] << ": could not be written\n";
        return 1;
    }
    rename(fresh, output);
}
