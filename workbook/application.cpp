#include "workbook/application.h"

#include "workbook/dispatch_ids.h"
#include "workbook/engine_object.h"
#include "workbook/file_formats.h"
#include "workbook/workbook_object.h"

namespace NWorkbook {

using NPlatform::Variant;

namespace {

class WorkbooksObject : public EngineObject<WorkbooksObject> {
  public:
    explicit WorkbooksObject(std::shared_ptr<Session> session) : session_(std::move(session)) {}

    static const Member kMembers[4];

  private:
    Variant Open(const Arguments& arguments) {
        constexpr std::size_t kFilename = 0;
        constexpr std::size_t kReadOnly = 2;
        RefuseAfterQuit();
        return Hold(OpenWorkbook(arguments.Text(kFilename)), arguments.Flag(kReadOnly));
    }

    Variant Add(const Arguments& arguments) {
        RefuseAfterQuit();
        if (!arguments[0].IsMissing()) {
            throw WorkbookError(u"A new workbook cannot be made from a template.");
        }
        auto workbook = std::make_unique<Workbook>();
        workbook->worksheets.push_back(std::make_shared<Worksheet>(u"Sheet1"));
        return Hold(std::move(workbook), false);
    }

    Variant Close(const Arguments&) {
        session_->workbooks.clear();
        return {};
    }

    Variant Hold(std::unique_ptr<Workbook> workbook, bool isReadOnly) {
        auto opened = std::make_shared<HeldWorkbook>();
        if (!workbook->worksheets.empty()) opened->active = workbook->worksheets.front();
        opened->workbook = std::move(workbook);
        opened->isReadOnly = isReadOnly;
        session_->workbooks.push_back(opened);
        return MakeWorkbookObject({session_, opened});
    }

    void RefuseAfterQuit() const {
        if (session_->hasQuit) throw WorkbookError(u"The application has quit.");
    }

    std::shared_ptr<Session> session_;
};

constinit const WorkbooksObject::Member WorkbooksObject::kMembers[] = {
    {DispatchIds::Workbooks::kOpen15, kMethod, 1, 15, &WorkbooksObject::Open},
    {DispatchIds::Workbooks::kOpen13, kMethod, 1, 13, &WorkbooksObject::Open},
    {DispatchIds::Workbooks::kAdd, kMethod, 0, 1, &WorkbooksObject::Add},
    {DispatchIds::Workbooks::kClose, kMethod, 0, 0, &WorkbooksObject::Close},
};

class ApplicationObject : public EngineObject<ApplicationObject> {
  public:
    static const Member kMembers[6];

  private:
    Variant SetFlag(const Arguments& arguments) {
        static_cast<void>(arguments.Flag(0));
        return {};
    }

    Variant SetNumber(const Arguments& arguments) {
        static_cast<void>(arguments.Integer(0));
        return {};
    }

    Variant Workbooks(const Arguments&) {
        if (session_->hasQuit) throw WorkbookError(u"The application has quit.");
        return MakeObject<WorkbooksObject>(session_);
    }

    Variant Quit(const Arguments&) {
        session_->hasQuit = true;
        session_->workbooks.clear();
        return {};
    }

    std::shared_ptr<Session> session_ = std::make_shared<Session>();
};

constinit const ApplicationObject::Member ApplicationObject::kMembers[] = {
    {DispatchIds::Application::kVisible, kPut, 1, 1, &ApplicationObject::SetFlag},
    {DispatchIds::Application::kDisplayAlerts, kPut, 1, 1, &ApplicationObject::SetFlag},
    {DispatchIds::Application::kEnableEvents, kPut, 1, 1, &ApplicationObject::SetFlag},
    {DispatchIds::Application::kAutomationSecurity, kPut, 1, 1, &ApplicationObject::SetNumber},
    {DispatchIds::Application::kWorkbooks, kGet, 0, 0, &ApplicationObject::Workbooks},
    {DispatchIds::Application::kQuit, kMethod, 0, 0, &ApplicationObject::Quit},
};

}  // namespace

NPlatform::Dispatch StartApplication() { return NPlatform::Dispatch(new ApplicationObject()); }

}  // namespace NWorkbook
