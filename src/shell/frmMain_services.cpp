// The tab of services, and the process list behind its removed tab.
#include "shell/frmMain.h"

#include "services/service_control.h"
#include "services/service_list.h"
#include "shell/process_list.h"
#include "ui/control.h"

namespace shell {

void frmMain::fill_services() {
    ui::SetText(control(Control::txtComment), L"");
    services::FillServiceList(list(Control::lvService), *this);
    list_filled(Control::lvService);
}

void frmMain::fill_processes() { FillProcessList(list(Control::lvProcess), *this); }

// Row -1 is empty space: description and status bar are emptied, and nothing can be done with a service.
void frmMain::press_service(int row) {
    const services::ServicePress press = services::lvService_MouseDown(list(Control::lvService), row);
    ui::SetText(control(Control::txtComment), press.detail.comment);
    ui::FitScrollBar(control(Control::txtComment));
    status(press.detail.advice);
    for (const ui::MenuItem& item : services::kServiceMenu) {
        EnableItem(mnuService_.get(), MenuArray::mnuServiceItem, item.index,
                   services::IsServiceItemEnabled(item.index, press.cells));
    }
}

void frmMain::mnuServiceItem_Click(int index) {
    if (index == services::ServiceItem::Refresh) {
        mnuFileItem_Click(FileItem::Refresh);
        return;
    }
    const Activity::Command command(activity_);
    if (command) services::mnuServiceItem_Click(index, list(Control::lvService), pointed_cell_, *this);
}

}  // namespace shell
