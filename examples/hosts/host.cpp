// A host in C++: converts a CSV table in UTF-8. Usage: host INPUT OUTPUT
#include <xls2tki.h>
#include <xls2tki_c.h>

#include <filesystem>
#include <iostream>
#include <stdexcept>

using namespace NXls2Tki;
using std::filesystem::path;

// The result of a conversion does not tell whether the document was written.
static bool IsWritten() {
    Xls2TkiFacts facts = {};
    facts.size = sizeof facts;
    return xls2tki_facts(&facts) && facts.written;
}

int main(int count, char** arguments) try {
    if (count != 3) return 2;
    const path input = arguments[1], output = arguments[2], fresh = output.string() + ".new";
    const auto older = symlink_status(output);
    if (exists(older) && !is_regular_file(older))
        throw std::runtime_error(output.string() + " is not a regular file.");
    if (exists(symlink_status(fresh)))
        throw std::runtime_error(fresh.string() + " exists already: remove it.");
    const WideString from = input.string<WideChar>(), to = fresh.string<WideChar>();
    if (!Xls2TkiConvert(from.c_str(), to.c_str(), ImportTypeCSV, false, ';', true)) {
        throw std::runtime_error(path(GetLoggedMessages()).string());  // a path converts any text
    }
    if (!IsWritten()) {
        remove(fresh);
        throw std::runtime_error(output.string() + " could not be written.");
    }
    if (exists(older)) permissions(fresh, older.permissions());
    rename(fresh, output);
    return 0;
} catch (const std::exception& error) {
    std::cerr << error.what() << '\n';
    return 1;
}
