#include "workbook/workbook_object.h"

#include <algorithm>

#include "platform/files.h"
#include "platform/format.h"
#include "workbook/cell_rules.h"
#include "workbook/dispatch_ids.h"
#include "workbook/engine_object.h"
#include "workbook/file_formats.h"

namespace NWorkbook {

using NPlatform::Variant;
using NPlatform::VariantType;

namespace {

constexpr std::size_t kLongestMessage = 256;

using Worksheets = std::vector<std::shared_ptr<Worksheet>>;

Worksheets::const_iterator FindName(const Worksheets& worksheets, std::u16string_view name) {
    return std::find_if(worksheets.begin(), worksheets.end(),
                        [&](const auto& worksheet) { return IsSameWorksheetName(worksheet->Name(), name); });
}

// ---- Sheets ----

class SheetsObject : public EngineObject<SheetsObject> {
  public:
    explicit SheetsObject(WorkbookReference reference) : reference_(std::move(reference)) {}

    static const Member kMembers[3];

  private:
    Variant Count(const Arguments&) {
        return Variant::Int32(static_cast<std::int32_t>(reference_.Get()->workbook->worksheets.size()));
    }

    Variant Item(const Arguments& arguments) {
        const auto opened = reference_.Get();
        const Worksheets& worksheets = opened->workbook->worksheets;
        const bool isName = arguments[0].Type() == VariantType::String;
        return MakeWorksheetObject({reference_, isName ? WithName(worksheets, arguments.Text(0))
                                                       : At(worksheets, arguments.Integer(0))});
    }

    static const std::shared_ptr<Worksheet>& WithName(const Worksheets& worksheets,
                                                      const std::u16string& name) {
        const auto found = FindName(worksheets, name);
        if (found == worksheets.end()) throw WorkbookError(u"There is no worksheet '" + name + u"'.");
        return *found;
    }

    static const std::shared_ptr<Worksheet>& At(const Worksheets& worksheets, std::int32_t number) {
        const auto count = static_cast<std::int32_t>(worksheets.size());
        if (number >= 1 && number <= count) return worksheets[static_cast<std::size_t>(number) - 1];
        throw WorkbookError(NPlatform::Format(
            kLongestMessage, u"There is no worksheet %d: the workbook has %d.", {number, count}));
    }

    Variant Add(const Arguments& arguments) {
        constexpr std::size_t kBefore = 0;
        constexpr std::size_t kAfter = 1;
        constexpr std::size_t kCount = 2;
        constexpr std::size_t kType = 3;
        constexpr std::int32_t kMostAtOnce = 255;
        const auto opened = reference_.Get();
        if (!arguments[kBefore].IsMissing() || !arguments[kAfter].IsMissing()) {
            throw WorkbookError(u"A worksheet can be added before the active one only.");
        }
        if (!arguments[kType].IsMissing()) throw WorkbookError(u"Only plain worksheets can be added.");
        const std::int32_t count = arguments[kCount].IsMissing() ? 1 : arguments.Integer(kCount);
        if (count < 1 || count > kMostAtOnce) {
            throw WorkbookError(u"From 1 to 255 worksheets can be added at once.");
        }
        return MakeWorksheetObject({reference_, AddBeforeActive(*opened, static_cast<std::size_t>(count))});
    }

    // The first of those added.
    static const std::shared_ptr<Worksheet>& AddBeforeActive(HeldWorkbook& opened, std::size_t count) {
        Worksheets& worksheets = opened.workbook->worksheets;
        if (worksheets.size() + count > kMostWorksheets) {
            throw WorkbookError(u"A workbook has at most 32767 worksheets.");
        }
        Worksheets added;
        for (std::size_t index = 0; index < count; ++index) {
            added.push_back(std::make_shared<Worksheet>(NewName(opened)));
        }
        const auto active = std::find(worksheets.begin(), worksheets.end(), opened.active);
        worksheets.insert(active, added.begin(), added.end());
        opened.active = added.front();
        return opened.active;
    }

    static std::u16string NewName(HeldWorkbook& opened) {
        const Worksheets& worksheets = opened.workbook->worksheets;
        std::u16string name;
        do {
            name = NPlatform::Format(kLongestMessage, u"Sheet%d", {++opened.newWorksheets});
        } while (FindName(worksheets, name) != worksheets.end());
        return name;
    }

    WorkbookReference reference_;
};

constinit const SheetsObject::Member SheetsObject::kMembers[] = {
    {DispatchIds::Sheets::kItem, kGet, 1, 1, &SheetsObject::Item},
    {DispatchIds::Sheets::kCount, kGet, 0, 0, &SheetsObject::Count},
    {DispatchIds::Sheets::kAdd, kMethod, 0, 4, &SheetsObject::Add},
};

// ---- Workbook ----

class WorkbookObject : public EngineObject<WorkbookObject> {
  public:
    explicit WorkbookObject(WorkbookReference reference) : reference_(std::move(reference)) {}

    static const Member kMembers[5];

  private:
    Variant Worksheets(const Arguments&) {
        static_cast<void>(reference_.Get());
        return MakeObject<SheetsObject>(reference_);
    }

    Variant Save(const Arguments&) {
        Save(*reference_.Get());
        return {};
    }

    static void Save(HeldWorkbook& opened) {
        const std::u16string path = opened.workbook->path;
        if (path.empty()) throw WorkbookError(u"The workbook has no file name yet.");
        SaveAs(opened, path);
    }

    Variant SaveAs(const Arguments& arguments) {
        constexpr std::size_t kFilename = 0;
        constexpr std::size_t kFileFormat = 1;
        constexpr std::size_t kPassword = 2;
        constexpr std::size_t kWritePassword = 3;
        const auto opened = reference_.Get();
        const std::u16string& path = arguments.Text(kFilename);
        RefuseFormat(arguments, kFileFormat);
        RefusePassword(arguments[kPassword]);
        RefusePassword(arguments[kWritePassword]);
        SaveAs(*opened, path);
        return {};
    }

    static void SaveAs(HeldWorkbook& opened, std::u16string_view path) {
        std::u16string fullPath;
        const bool isSame = opened.workbook->path == path || (NPlatform::FindReadableFile(path, fullPath) &&
                                                              opened.workbook->path == fullPath);
        if (opened.isReadOnly && isSame) {
            throw WorkbookError(u"The workbook was opened read-only: '" + opened.workbook->path + u"'.");
        }
        SaveWorkbook(*opened.workbook, path);
        opened.isReadOnly = false;
    }

    static void RefuseFormat(const Arguments& arguments, std::size_t index) {
        constexpr std::int32_t kWorkbookWithoutMacros = 51;
        if (arguments[index].IsMissing() || arguments.Integer(index) == kWorkbookWithoutMacros) return;
        throw WorkbookError(u"A workbook can be saved in the .xlsx format only.");
    }

    static void RefusePassword(const Variant& password) {
        const bool isNone = password.IsMissing() || password.IsEmpty() || password.AsString().empty();
        if (!isNone) throw WorkbookError(u"A workbook cannot be saved with a password.");
    }

    Variant Close(const Arguments& arguments) {
        constexpr std::size_t kSaveChanges = 0;
        constexpr std::size_t kFilename = 1;
        const auto opened = reference_.Get();
        if (arguments.Flag(kSaveChanges)) {
            arguments[kFilename].IsMissing() ? Save(*opened) : SaveAs(*opened, arguments.Text(kFilename));
        }
        std::erase(reference_.session->workbooks, opened);
        return {};
    }

    WorkbookReference reference_;
};

constinit const WorkbookObject::Member WorkbookObject::kMembers[] = {
    {DispatchIds::Workbook::kWorksheets, kGet, 0, 0, &WorkbookObject::Worksheets},
    {DispatchIds::Workbook::kSave, kMethod, 0, 0, &WorkbookObject::Save},
    {DispatchIds::Workbook::kSaveAs11, kMethod, 1, 11, &WorkbookObject::SaveAs},
    {DispatchIds::Workbook::kSaveAs12, kMethod, 1, 12, &WorkbookObject::SaveAs},
    {DispatchIds::Workbook::kClose, kMethod, 0, 3, &WorkbookObject::Close},
};

}  // namespace

NPlatform::Variant MakeWorkbookObject(WorkbookReference reference) {
    return MakeObject<WorkbookObject>(std::move(reference));
}

}  // namespace NWorkbook
