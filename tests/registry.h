// The registry that the library sees.
#pragma once

#include <string_view>

namespace NTest {

// While it lives, the system's registry has at HKEY_LOCAL_MACHINE\SOFTWARE\Classes\Excel.Application\CurVer
// what a file in the format of registry exports says. One at a time.
class Registry {
  public:
    explicit Registry(std::string_view file);
    Registry(const Registry&) = delete;
    ~Registry();
};

}  // namespace NTest
