// The tabs of Control Panel items and of the system report.
#include "shell/frmMain.h"

#include "sysinfo/control_panel.h"
#include "sysinfo/modSystemInfo.h"
#include "sysinfo/report_box.h"
#include "ui/control.h"
#include "win/folders.h"

namespace shell {

void frmMain::fill_control_panel() {
    const ui::ListView catalogue = list(Control::ListView2);
    sysinfo::FillControlPanelList(catalogue, control_panel_images_.get(), os_.tenths(),
                                  sysinfo::QueryControlPanelFolders(), *this);
    list_filled(Control::ListView2);
}

void frmMain::fill_report() {
    sysinfo::ShowInReportBox(control(Control::txtSys), sysinfo::BuildSystemReport(win::SystemDirectory()));
    ui::FitScrollBar(control(Control::txtSys));
    tmrMem_Timer();
}

}  // namespace shell
