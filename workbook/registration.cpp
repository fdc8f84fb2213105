// Puts the workbook engine in the place of a spreadsheet application. What is to start it links this file.
#include "platform/automation_servers.h"
#include "workbook/application.h"

namespace NWorkbook {

static const NPlatform::AutomationServer server(u"Excel.Application", StartApplication);

}  // namespace NWorkbook
