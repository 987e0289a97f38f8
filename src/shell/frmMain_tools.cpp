// Restore points, clean-up and shell repairs.
#include "shell/frmMain.h"

#include "programs/restore_points.h"
#include "tools/cleanup.h"
#include "tools/shell_repairs.h"

namespace shell {

void frmMain::fill_restore_points() {
    const ui::ListView points = list(Control::lvRestore);
    if (!programs::ListRestorePoints(points)) points.clear();
    list_filled(Control::lvRestore);
}

void frmMain::create_restore_point() {
    const Activity::Command command(activity_);
    if (command) programs::CreateRestorePoint(list(Control::lvRestore), *this);
}

void frmMain::delete_restore_point() {
    bool agreed = false;
    {
        const Activity::Command command(activity_);
        agreed = command && programs::DeleteRestorePoint(list(Control::lvRestore), *this);
    }
    if (agreed) activity_.request(Activity::Request::TabClick);
}

void frmMain::mnuDelete_Click() {
    const tools::ItemState bin = tools::mnuDelete_Click();
    const int bin_index = static_cast<int>(tools::Cleanup::RecycleBin);
    SetItemCaption(menu_bar_, MenuArray::mnuDeleteItem, bin_index, bin.caption);
    EnableItem(menu_bar_, MenuArray::mnuDeleteItem, bin_index, bin.enabled);
    // Installers unpack into the temporary folder.
    EnableItem(menu_bar_, MenuArray::mnuDeleteItem, static_cast<int>(tools::Cleanup::TemporaryFiles),
               !activity_.busy());
}

void frmMain::mnuDeleteItem_Click(int index) {
    const auto cleanup = static_cast<tools::Cleanup>(index);
    if (cleanup == tools::Cleanup::TemporaryFiles && activity_.busy()) return;
    bool emptied = false;
    {
        const Activity::Command command(activity_);
        emptied = command && tools::mnuDeleteItem_Click(cleanup, *this);
    }
    if (emptied && shown_tab_ == Tab::SystemInformation) activity_.request(Activity::Request::TabClick);
}

void frmMain::mnuSet_Click() {
    const tools::RepairItems items = tools::mnuSet_Click(os_.tenths());
    SetItemCaption(menu_bar_, MenuArray::mnuSetItem, static_cast<int>(tools::Repair::SendTo), items.send_to_caption);
    EnableItem(menu_bar_, MenuArray::mnuSetItem, static_cast<int>(tools::Repair::DownloadLocation),
               items.download_location_enabled);
}

void frmMain::mnuSetItem_Click(int index) {
    const Activity::Command command(activity_);
    if (!command) return;
    const std::wstring caption = ItemCaption(menu_bar_, MenuArray::mnuSetItem, static_cast<int>(tools::Repair::SendTo));
    tools::mnuSetItem_Click(static_cast<tools::Repair>(index), caption, *this);
}

}  // namespace shell
