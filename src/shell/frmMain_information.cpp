// Control Panel, system report, memory panel, and the box for registry paths.
#include "shell/frmMain.h"

#include "programs/registry_editor.h"
#include "sysinfo/control_panel.h"
#include "sysinfo/modSystemInfo.h"
#include "ui/control.h"
#include "win/folders.h"

namespace shell {

void frmMain::fill_control_panel() {
    const ui::ListView catalogue = list(Control::ListView2);
    sysinfo::FillControlPanelList(catalogue, control_panel_images_.get(), os_.tenths(),
                                  sysinfo::QueryControlPanelFolders());
    list_filled(Control::ListView2);
}

void frmMain::fill_report() {
    sysinfo::ShowSystemReport(control(Control::txtSys), win::SystemDirectory());
    ui::FitScrollBar(control(Control::txtSys));
    tmrMem_Timer();
}

void frmMain::start_monitor() {
    tmrMem_Timer();
    SetTimer(window_, kMonitorTimer, tools::kTickInterval, nullptr);
}

void frmMain::stop_monitor() {
    KillTimer(window_, kMonitorTimer);
    monitor_.close();
}

void frmMain::tmrMem_Timer() {
    if (shown_tab_ == Tab::SystemInformation) {
        const tools::MemoryTexts& texts = monitor_.read();
        for (int figure = 0; figure < tools::kMemoryFigures; ++figure) {
            ui::SetText(control(Element(Control::lblMem_0, figure, 2)), texts[static_cast<std::size_t>(figure)]);
        }
    }
    SYSTEMTIME now = {};
    GetLocalTime(&now);
    ui::SetText(window_, tools::TitleText(now));
}

void frmMain::cmdSys_Click(int index) {
    const HWND txtMemPath = control(Control::txtMemPath);
    if (index == 0) {
        tools::RunMemoryRelease(ui::TextOf(txtMemPath));
        return;
    }
    const Activity::Command command(activity_);
    if (!command) return;
    const std::wstring chosen = tools::ChooseMemoryRelease(window_);
    if (!chosen.empty()) ui::SetText(txtMemPath, chosen);
}

void frmMain::cb_Enter() {
    if (activity_.running()) return;
    const HWND cb = control(Control::cb);
    std::vector<std::wstring> history = ui::ComboItems(cb);
    const std::wstring text = programs::OpenTypedRegistryPath(ui::TextOf(cb), history);
    ui::SetText(cb, text);
    if (text.empty()) return;
    ui::SetComboItems(cb, history);
    SendMessageW(cb, CB_SETCURSEL, 0, 0);
}

}  // namespace shell
