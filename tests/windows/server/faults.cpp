#include "tests/windows/server/faults.h"

#include <windows.h>
// Behind it:
#include <string>

namespace NTest {

Faults::Faults(std::span<const char* const> arguments) {
    std::size_t next = 0;
    const auto number = [&] { return static_cast<int>(std::stol(arguments[next++], nullptr, 0)); };
    while (next < arguments.size()) {
        const std::string name = arguments[next++];
        if (name == "--fail") {
            failing_ = number();
        } else if (name == "--busy") {
            busy_ = number();
            busyCalls_ = number();
        } else if (name == "--die") {
            deadly_ = number();
        } else if (name == "--refuse") {
            refuses_ = true;
        } else if (name == "--linger") {
            lingers_ = std::chrono::milliseconds(number());
        }
    }
}

void Faults::Commit(NPlatform::DispatchId member) {
    if (member == deadly_) TerminateProcess(GetCurrentProcess(), 1);
    if (member == busy_ && busyCalls_-- > 0) throw NPlatform::OleException(RPC_E_SERVERCALL_RETRYLATER, u"");
    if (member == failing_) {
        throw NPlatform::DispatchException(1004, u"Excel cannot do that: \u4E2D\u6587.", u"Microsoft Excel",
                                           u"xlmain.chm");
    }
}

}  // namespace NTest
