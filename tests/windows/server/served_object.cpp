#include "tests/windows/server/served_object.h"

#include <windows.h>
// Behind it:
#include <filesystem>
#include <memory>
#include <vector>

#include "platform/windows/wide.h"
#include "workbook/dispatch_ids.h"

namespace NTest {

using NPlatform::Dispatch;
using NPlatform::Variant;
using NPlatform::VariantType;

namespace {

int objects = 0;

bool TakesPath(NPlatform::DispatchId member) {
    using namespace NWorkbook::DispatchIds;
    return member == Workbooks::kOpen13 || member == Workbooks::kOpen15 || member == Workbook::kSaveAs11 ||
           member == Workbook::kSaveAs12;
}

// The name that a file of Windows has on the system below Wine; the name itself where it has none.
std::u16string PathBelow(const std::u16string& path) {
    const auto free = [](char* name) { HeapFree(GetProcessHeap(), 0, name); };
    const std::unique_ptr<char, decltype(free)> name(
        wine_get_unix_file_name(NPlatform::AsWide(path.c_str())));
    return name == nullptr ? path : std::filesystem::path(name.get()).u16string();
}

}  // namespace

ServedObject::ServedObject(Dispatch object, Faults& faults) : object_(std::move(object)), faults_(faults) {
    ++objects;
}

ServedObject::~ServedObject() {
    if (--objects == 0) PostQuitMessage(0);
}

Variant ServedObject::Invoke(NPlatform::DispatchId member, NPlatform::InvokeKind kind,
                             std::span<const Variant> arguments) {
    faults_.Commit(member);
    std::vector<Variant> given(arguments.begin(), arguments.end());
    if (TakesPath(member)) given.at(0) = Variant::String(PathBelow(given.at(0).AsString()));
    Variant result = object_.Object()->Invoke(member, kind, given);
    if (result.Type() != VariantType::Dispatch) return result;
    return Variant::Object(Dispatch(new ServedObject(result.AsObject(), faults_)));
}

}  // namespace NTest
