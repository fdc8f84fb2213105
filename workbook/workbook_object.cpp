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
        const std::int32_t number = arguments.Integer(0);
        const auto count = static_cast<std::int32_t>(worksheets.size());
        if (number < 1 || number > count) {
            throw WorkbookError(NPlatform::Format(
                kLongestMessage, u"There is no worksheet %d: the workbook has %d.", {number, count}));
        }
        return MakeWorksheetObject({reference_, worksheets[static_cast<std::size_t>(number) - 1]});
    }

    Variant Add(const Arguments& arguments) {
        constexpr std::size_t kCount = 2;
        const auto opened = reference_.Get();
        for (std::size_t index = 0; index < arguments.Count(); ++index) {
            const Variant& value = arguments[index];
            if (value.IsMissing() || (index == kCount && value.AsDouble() == 1)) continue;
            throw WorkbookError(u"Worksheets can only be added one at a time, before the active one.");
        }
        Worksheets& worksheets = opened->workbook->worksheets;
        if (worksheets.size() == kMostWorksheets) {
            throw WorkbookError(u"A workbook has at most 32767 worksheets.");
        }
        const auto place = std::find(worksheets.begin(), worksheets.end(), opened->active);
        opened->active = *worksheets.insert(place, std::make_shared<Worksheet>(NewName(*opened)));
        return MakeWorksheetObject({reference_, opened->active});
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
        const auto opened = reference_.Get();
        const std::u16string path = opened->workbook->path;
        if (path.empty()) throw WorkbookError(u"The workbook has no file name yet.");
        SaveAs(*opened, path);
        return {};
    }

    Variant SaveAs(const Arguments& arguments) {
        constexpr std::size_t kFilename = 0;
        const auto opened = reference_.Get();
        for (std::size_t option = 1; option <= 3; ++option) {  // file format, two passwords
            if (arguments[option].IsMissing()) continue;
            throw WorkbookError(u"A workbook can only be saved in the .xlsx format and without a password.");
        }
        SaveAs(*opened, arguments.Text(kFilename));
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

    Variant Close(const Arguments& arguments) {
        constexpr std::size_t kSaveChanges = 0;
        const auto opened = reference_.Get();
        if (arguments.Flag(kSaveChanges))
            throw WorkbookError(u"A workbook must be saved before it is closed.");
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
