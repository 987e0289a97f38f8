// The menus of clean-up and shell repairs, and the memory panel.
#include "shell/frmMain.h"

#include "tools/cleanup.h"
#include "tools/shell_repairs.h"
#include "ui/control.h"

namespace shell {

void frmMain::mnuDelete_Click() {
    const tools::ItemState bin = tools::mnuDelete_Click();
    SetItemCaption(menu_bar_, MenuArray::mnuDeleteItem, tools::CleanupItem::RecycleBin, bin.caption);
    EnableItem(menu_bar_, MenuArray::mnuDeleteItem, tools::CleanupItem::RecycleBin, bin.enabled);
    // Installers unpack into the temporary folder.
    EnableItem(menu_bar_, MenuArray::mnuDeleteItem, tools::CleanupItem::TemporaryFiles, !activity_.busy());
}

void frmMain::mnuDeleteItem_Click(int index) {
    if (index == tools::CleanupItem::TemporaryFiles && activity_.busy()) return;
    bool emptied = false;
    {
        const Activity::Command command(activity_);
        emptied = command && tools::mnuDeleteItem_Click(index, *this);
    }
    if (emptied && shown_tab_ == Tab::SystemInformation) activity_.request(Activity::Request::TabClick);
}

void frmMain::mnuSet_Click() {
    const tools::RepairItems items = tools::mnuSet_Click(os_.tenths());
    SetItemCaption(menu_bar_, MenuArray::mnuSetItem, tools::RepairItem::SendTo, items.send_to_caption);
    EnableItem(menu_bar_, MenuArray::mnuSetItem, tools::RepairItem::DownloadLocation, items.download_location_enabled);
}

void frmMain::mnuSetItem_Click(int index) {
    const Activity::Command command(activity_);
    if (!command) return;
    const std::wstring caption = ItemCaption(menu_bar_, MenuArray::mnuSetItem, tools::RepairItem::SendTo);
    tools::mnuSetItem_Click(index, caption, backup_, *this);
}

// ---- the memory panel -------------------------------------------------------------------------------------------

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

}  // namespace shell
