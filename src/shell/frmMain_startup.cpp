// The tab of startup items.
#include "shell/frmMain.h"

#include "programs/detail_link.h"
#include "startup/modAPI.h"
#include "startup/startup_actions.h"
#include "startup/startup_scan.h"
#include "startup/startup_shortcut.h"
#include "ui/clipboard.h"
#include "ui/control.h"
#include "ui/drop_files.h"

namespace shell {

using startup::StartItem;

void frmMain::fill_startup() {
    attach_system_images();
    startup::ScanStartup(list(Control::lvStartUp), *this);
    list_filled(Control::lvStartUp);
}

void frmMain::press_startup(bool over_row) {
    start_menu_.press(over_row);
    if (over_row) {
        show_startup_entry();
    } else {
        status(L"");
    }
}

void frmMain::show_startup_entry() {
    const auto entry = startup::SelectedStartupEntry(list(Control::lvStartUp));
    if (!entry) return;
    status(entry->description);
    const std::wstring* values[] = {&entry->name, &entry->value, &entry->location};
    for (std::size_t i = 0; i < std::size(values); ++i) {
        set_detail_value(kDetailValues[i], *values[i], programs::LooksLikeLink(*values[i]));
    }
}

void frmMain::mnuStart_Click() {
    start_menu_.open(startup::SelectedStartupEntry(list(Control::lvStartUp)));
    for (const ui::MenuItem& item : startup::kStartMenu) {
        EnableItem(mnuStart_.get(), MenuArray::mnuStartItem, item.index, start_menu_.is_enabled(item.index));
    }
    SetItemCaption(mnuStart_.get(), MenuArray::mnuStartItem, StartItem::Open, start_menu_.open_caption());
}

void frmMain::mnuStartItem_Click(int index) {
    if (index == StartItem::Refresh) {
        activity_.request(Activity::Request::Startup);
        return;
    }
    const auto entry = startup::SelectedStartupEntry(list(Control::lvStartUp));
    if (index == StartItem::Copy && (entry || !pointed_cell_.empty())) {
        ui::CopyText(window_, pointed_cell_.empty() ? entry->name : pointed_cell_);
    }
    if (!entry) return;
    switch (index) {
        case StartItem::Delete:
            delete_startup_entry();
            break;
        case StartItem::Open:
            startup::OpenStartupLocation(entry->location);
            break;
        case StartItem::Properties:
            startup::ShowFileProperties(startup::EntryFile(*entry));
            break;
        default:
            break;
    }
}

void frmMain::delete_startup_entry() {
    bool deleted = false;
    {
        const Activity::Command command(activity_);
        if (!command) return;
        const auto entry = startup::SelectedStartupEntry(list(Control::lvStartUp));
        deleted = entry && startup::DeleteStartupEntry(*entry, backup_, *this);
    }
    if (deleted) refresh_after_deletion(Activity::Request::Startup);
}

void frmMain::files_dropped(WPARAM drop) {
    const std::wstring file = ui::TakeFirstDroppedFile(drop);
    {
        const Activity::Command command(activity_);
        if (command && !file.empty()) startup::CreateStartupShortcut(file, *this);
    }
    activity_.request(Activity::Request::Startup);
}

}  // namespace shell
