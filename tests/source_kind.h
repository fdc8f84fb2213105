// What the contract of all table sources is held against.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "tests/host.h"
#include "tests/rooms.h"

namespace NTest {

struct SourceKind {
    const char* name;
    // Makes a source that will deliver the table, from the file "input" in the folder.
    std::unique_ptr<VCSVReader::VHeapInterface> (*make)(const TempFolder& folder, const Table& table,
                                                        VCSVReader::VLogObject* log);
    // Of opening and reading; '*' stands for the path. What those that drive Excel tell is in
    // excel_calls.txt.
    std::vector<std::u16string> progress = {};
    bool checksFile = true;     // before anybody else is asked to open it
    bool namesColumns = false;  // no cell of its first row is empty
};

// Those whose input can be made on this system only.
std::vector<SourceKind> SystemsSourceKinds();

}  // namespace NTest
