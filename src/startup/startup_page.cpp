#include "startup/startup_page.h"

#include "startup/modAPI.h"
#include "startup/startup_actions.h"
#include "startup/startup_scan.h"
#include "startup/startup_shortcut.h"
#include "ui/drop_files.h"

namespace startup {

StartupPage::StartupPage(const win::BackupFolder& backup) : Page(kStartupColumns), backup_(backup) {}

void StartupPage::attach(HWND list, ui::PageHost& host, int scale) {
    Page::attach(list, host, scale);
    ui::AllowDrops(list);
}

// The list shows icons of the system's own image list, which it must not destroy. That holds icons of every size, so it
// is not loaded before the list is filled.
void StartupPage::fill() {
    SHFILEINFOW info = {};
    const DWORD_PTR images = SHGetFileInfoW(L"C:\\", 0, &info, sizeof info, SHGFI_SYSICONINDEX | SHGFI_SMALLICON);
    list().set_small_images(reinterpret_cast<HIMAGELIST>(images));
    ScanStartup(list(), host());
}

void StartupPage::lvStartUp_MouseDown(int row) { menu_state_.press(row >= 0); }

void StartupPage::lvStartUp_ItemClick(int row) {
    const auto entry = StartupEntryAt(list(), row);
    if (!entry) {
        host().show_details({});
        host().set_status(L"");
        return;
    }
    host().set_status(entry->description);
    const std::wstring values[] = {entry->name, entry->value, entry->location};
    host().show_details(values);
}

void StartupPage::mnuStart_Click() { menu_state_.open(StartupEntryAt(list(), list().selected())); }

const wchar_t* StartupPage::caption(int item) const {
    return item == StartItem::Open ? menu_state_.open_caption() : nullptr;
}

int StartupPage::item_of_key(WORD key, bool control, bool shift) const {
    return key == VK_DELETE ? static_cast<int>(StartItem::Delete) : Page::item_of_key(key, control, shift);
}

ui::Then StartupPage::mnuStartItem_Click(int item) {
    if (item == StartItem::Refresh) return ui::Then::FillThis;
    const auto entry = StartupEntryAt(list(), list().selected());
    if (!entry) return ui::Then::Nothing;
    switch (item) {
        case StartItem::Delete:
            return DeleteStartupEntry(*entry, backup_, host()) ? ui::Then::FillThis : ui::Then::Nothing;
        case StartItem::Open:
            OpenStartupLocation(entry->location);
            return ui::Then::Nothing;
        case StartItem::Properties:
            ShowFileProperties(EntryFile(*entry));
            return ui::Then::Nothing;
        default:
            return ui::Then::Nothing;
    }
}

// The list is filled again whatever came of it.
ui::Then StartupPage::lvStartUp_OLEDragDrop(const std::wstring& path) {
    if (!path.empty()) CreateStartupShortcut(path, host());
    return ui::Then::FillThis;
}

}  // namespace startup
