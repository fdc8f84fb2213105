#include "tests/source_kind.h"

namespace NTest {

std::vector<SourceKind> SystemsSourceKinds() { return {}; }

}  // namespace NTest
