// Registers the workbook engine as the spreadsheet application. Link this file to be able to start it.
#include "platform/automation_servers.h"
#include "workbook/application.h"

namespace NWorkbook {

static const NPlatform::AutomationServer server(u"Excel.Application", StartApplication);

}  // namespace NWorkbook
