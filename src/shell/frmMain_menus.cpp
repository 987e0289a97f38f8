// The menus of the bar and what their items do.
#include "shell/frmMain.h"

#include "shell/csv_export.h"
#include "shell/help.h"
#include "tools/cleanup.h"
#include "tools/shell_repairs.h"
#include "ui/control.h"
#include "ui/modDialog.h"

namespace shell {
namespace {

constexpr wchar_t kSaveTitle[] = L"名前を付けて保存";
constexpr ui::FileFilter kCsvFilter = {L"CSV ファイル(*.csv)", L"*.csv"};
constexpr wchar_t kSaved[] = L"保存が完了しました";

}  // namespace

void frmMain::create_menus() {
    menu_bar_ = MakeMenuBar().release();  // the window that is made with it destroys it
    for (int index = 0; index < Pages::kCount; ++index) {
        const auto popup = Pages::row(index).popup;
        if (popup) popups_[static_cast<std::size_t>(index)] = MakePopup(*popup);
    }
}

void frmMain::menu_Click(int id) {
    struct ArrayHandler {
        MenuArray array;
        void (frmMain::*click)(int index);
    };
    constexpr ArrayHandler kHandlers[] = {
        {MenuArray::mnuFileItem, &frmMain::mnuFileItem_Click},
        {MenuArray::mnuViewItem, &frmMain::mnuViewItem_Click},
        {MenuArray::mnuDeleteItem, &frmMain::mnuDeleteItem_Click},
        {MenuArray::mnuSetItem, &frmMain::mnuSetItem_Click},
        {MenuArray::mnuHelpItem, &frmMain::mnuHelpItem_Click},
    };
    const auto array = static_cast<MenuArray>(id - id % kMenuArraySize);
    const int index = id % kMenuArraySize;
    for (const ArrayHandler& handler : kHandlers) {
        if (handler.array == array) (this->*handler.click)(index);
    }
    if (ui::Page* page = page_of_menu(array)) run_item(*page, index);
}

void frmMain::mnuFileItem_Click(int index) {
    switch (index) {
        case FileItem::Save:
            save_shown_list();
            break;
        case FileItem::Refresh:
            activity_.request({Activity::Request::Refresh});
            break;
        case FileItem::Exit:
            Form_QueryUnload();
            break;
        default:
            break;
    }
}

void frmMain::menu_opens(HMENU menu) {
    for (int index = 0; index < Pages::kCount; ++index) {
        if (menu == popups_[static_cast<std::size_t>(index)].get()) page_menu_opens(index);
    }
    if (menu == SubMenuOf(menu_bar_, MenuArray::mnuDeleteItem)) mnuDelete_Click();
    if (menu == SubMenuOf(menu_bar_, MenuArray::mnuSetItem)) mnuSet_Click();
    if (menu == SubMenuOf(menu_bar_, MenuArray::mnuFileItem)) {
        EnableItem(menu, MenuArray::mnuFileItem, FileItem::Save, shown_page() != nullptr);
    }
}

// Only the menu bar has hints; a pop-up menu leaves the advice or the count readable.
void frmMain::menu_select(WPARAM wparam) {
    const UINT flags = HIWORD(wparam);
    const bool on_item = flags != 0xFFFF && (flags & (MF_POPUP | MF_SEPARATOR | MF_SYSMENU)) == 0;
    status_.menu(on_item ? HintOf(LOWORD(wparam)) : std::wstring_view());
    show_status();
}

void frmMain::save_shown_list() {
    const Activity::Exclusive alone(activity_);
    const ui::Page* const page = shown_page();
    if (!alone || !page) return;
    const std::wstring path = ui::ChooseFileToSave(window_, kSaveTitle, kCsvFilter, L"csv");
    if (!path.empty() && WriteWholeFile(path, CsvOf(page->list(), *this))) set_status(kSaved);
}

// ---- clean-up, repairs ------------------------------------------------------------------------------------------

void frmMain::mnuDelete_Click() {
    const tools::ItemState bin = tools::QueryRecycleBinItem();
    SetItemCaption(menu_bar_, MenuArray::mnuDeleteItem, tools::CleanupItem::RecycleBin, bin.caption);
    EnableItem(menu_bar_, MenuArray::mnuDeleteItem, tools::CleanupItem::RecycleBin, bin.enabled);
    // Installers unpack into the temporary folder.
    EnableItem(menu_bar_, MenuArray::mnuDeleteItem, tools::CleanupItem::TemporaryFiles, !activity_.close_blocked());
}

void frmMain::mnuDeleteItem_Click(int index) {
    if (index == tools::CleanupItem::TemporaryFiles && activity_.close_blocked()) return;
    bool emptied = false;
    {
        const Activity::Exclusive alone(activity_);
        emptied = alone && tools::RunCleanup(index, *this);
    }
    // The report tells what the bin holds.
    if (emptied && !shown_page()) activity_.request({Activity::Request::TabClick});
}

void frmMain::mnuSet_Click() {
    const tools::RepairItems items = tools::QueryRepairItems(os_);
    SetItemCaption(menu_bar_, MenuArray::mnuSetItem, tools::RepairItem::SendTo, items.send_to_caption);
    EnableItem(menu_bar_, MenuArray::mnuSetItem, tools::RepairItem::DownloadLocation, items.download_location_enabled);
}

void frmMain::mnuSetItem_Click(int index) {
    const Activity::Exclusive alone(activity_);
    if (!alone) return;
    const std::wstring caption = ItemCaption(menu_bar_, MenuArray::mnuSetItem, tools::RepairItem::SendTo);
    tools::RunRepair(index, caption, backup_, *this);
}

void frmMain::mnuHelpItem_Click(int index) {
    const Activity::Exclusive alone(activity_);
    if (alone) RunHelpItem(index, window_, application_folder_);
}

// ---- view -------------------------------------------------------------------------------------------------------

void frmMain::check_view_items() {
    CheckItem(menu_bar_, MenuArray::mnuViewItem, ViewItem::Icons, scan_options_.show_icons);
    CheckItem(menu_bar_, MenuArray::mnuViewItem, ViewItem::Stripes, stripes_.shown);
    CheckItem(menu_bar_, MenuArray::mnuViewItem, ViewItem::SystemComponents, scan_options_.show_system_components);
}

void frmMain::mnuViewItem_Click(int index) {
    switch (index) {
        case ViewItem::Icons:
            scan_options_.show_icons = !scan_options_.show_icons;
            break;
        case ViewItem::Stripes:
            stripes_.shown = !stripes_.shown;
            break;
        case ViewItem::SystemComponents:
            scan_options_.show_system_components = !scan_options_.show_system_components;
            break;
        default:
            return;
    }
    check_view_items();
    if (index == ViewItem::Stripes) {
        activity_.request({Activity::Request::Refresh});
        InvalidateRect(control(RowOf(shown_tab_).view), nullptr, TRUE);
    } else {
        request_fill(pages_.programs());
    }
}

// Twice a second: the figures, and the clock in the title.
void frmMain::tmrMem_Timer() {
    if (!shown_page()) panel_.show_figures();
    SYSTEMTIME now = {};
    GetLocalTime(&now);
    ui::SetText(window_, tools::TitleText(now));
}

}  // namespace shell
