// A configuration of ODBC that belongs to the test program.
#pragma once

#include <string>
#include <string_view>

#include "tests/host.h"

// unixODBC forgets a few bytes of each connect string that has both DRIVER and DSN.
extern "C" inline __attribute__((visibility("default"), used)) const char* __lsan_default_suppressions() {
    return "leak:libodbc.so";
}

namespace NTest {

// The driver manager looks for its configuration once in a process and remembers what it found: make one
// before any test, and one only.
class DriverManager {
  public:
    DriverManager() {
        setenv("ODBCSYSINI", Utf8(folder_.Path("")).c_str(), 1);
        setenv("ODBCINI", Utf8(folder_.Path("odbc.ini")).c_str(), 1);
        PutDrivers("");
    }

    // The content of odbcinst.ini and odbc.ini.
    void PutDrivers(std::string_view lines) const { folder_.Put("odbcinst.ini", lines); }
    void PutDataSources(std::string_view lines) const { folder_.Put("odbc.ini", lines); }

    // Where the test may put files beside them.
    [[nodiscard]] const TempFolder& Folder() const { return folder_; }

  private:
    TempFolder folder_;
};

}  // namespace NTest
