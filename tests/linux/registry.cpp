#include "tests/registry.h"

#include <cstdlib>
#include <memory>

#include "tests/host.h"

namespace NTest {

static std::unique_ptr<TempFolder> folder;

Registry::Registry(std::string_view file) {
    folder = std::make_unique<TempFolder>();
    setenv("XLS2TKI_REGISTRY", Utf8(folder->Put("registry", file)).c_str(), 1);
}

Registry::~Registry() {
    unsetenv("XLS2TKI_REGISTRY");
    folder.reset();
}

}  // namespace NTest
