// The menus, and what the items of File, View and Help do.
#include "shell/frmMain.h"

#include "shell/about.h"
#include "shell/csv_export.h"
#include "ui/modDialog.h"
#include "version.h"
#include "win/open_with_shell.h"

namespace shell {
namespace {

constexpr wchar_t kReadMeFile[] = L"\\ReadMe.txt";
constexpr wchar_t kUpdateFile[] = L"\\Update.exe";

constexpr wchar_t kSaveTitle[] = L"名前を付けて保存";
constexpr ui::FileFilter kCsvFilter = {L"CSV ファイル(*.csv)", L"*.csv"};
constexpr wchar_t kSaved[] = L"保存が完了しました";

}  // namespace

void frmMain::create_menus() {
    menu_bar_ = MakeMenuBar().release();  // the window that is made with it destroys it
    mnuPop_ = MakePopup(MenuArray::mnuPopItem);
    mnuStart_ = MakePopup(MenuArray::mnuStartItem);
    mnuService_ = MakePopup(MenuArray::mnuServiceItem);
}

void frmMain::menu_Click(int id) {
    struct Handler {
        MenuArray array;
        void (frmMain::*click)(int index);
    };
    constexpr Handler kHandlers[] = {
        {MenuArray::mnuFileItem, &frmMain::mnuFileItem_Click},
        {MenuArray::mnuViewItem, &frmMain::mnuViewItem_Click},
        {MenuArray::mnuDeleteItem, &frmMain::mnuDeleteItem_Click},
        {MenuArray::mnuSetItem, &frmMain::mnuSetItem_Click},
        {MenuArray::mnuHelpItem, &frmMain::mnuHelpItem_Click},
        {MenuArray::mnuPopItem, &frmMain::mnuPopItem_Click},
        {MenuArray::mnuStartItem, &frmMain::mnuStartItem_Click},
        {MenuArray::mnuServiceItem, &frmMain::mnuServiceItem_Click},
    };
    for (const Handler& handler : kHandlers) {
        const int index = id - CommandId(handler.array, 0);
        if (index >= 0 && index < kMenuArraySize) (this->*handler.click)(index);
    }
}

void frmMain::mnuFileItem_Click(int index) {
    switch (index) {
        case FileItem::Save:
            save_shown_list();
            break;
        case FileItem::Refresh:
            activity_.request(Activity::Request::Refresh);
            break;
        case FileItem::Exit:
            Form_QueryUnload();
            break;
        default:
            break;
    }
}

void frmMain::menu_opens(HMENU menu) {
    if (menu == mnuPop_.get()) mnuPop_Click();
    if (menu == mnuStart_.get()) mnuStart_Click();
    if (menu == SubMenuOf(menu_bar_, MenuArray::mnuDeleteItem)) mnuDelete_Click();
    if (menu == SubMenuOf(menu_bar_, MenuArray::mnuSetItem)) mnuSet_Click();
    if (menu == SubMenuOf(menu_bar_, MenuArray::mnuFileItem)) {
        EnableItem(menu, MenuArray::mnuFileItem, FileItem::Save, shown_list_can_be_saved());
    }
}

// Only the menu bar has hints; a pop-up menu leaves the advice or the count readable.
void frmMain::menu_select(WPARAM wide) {
    const UINT flags = HIWORD(wide);
    const bool on_item = flags != 0xFFFF && (flags & (MF_POPUP | MF_SEPARATOR | MF_SYSMENU)) == 0;
    status_.menu(on_item ? HintOf(LOWORD(wide)) : std::wstring_view());
    show_status();
}

// The tab of the system report shows no list.
bool frmMain::shown_list_can_be_saved() const { return shown_tab_ != Tab::SystemInformation; }

void frmMain::save_shown_list() {
    const Activity::Command command(activity_);
    if (!command || !shown_list_can_be_saved()) return;
    const ui::ListView shown = list(RowOf(shown_tab_).view);
    const std::wstring path = ui::ChooseFileToSave(window_, kSaveTitle, kCsvFilter, L"csv");
    if (!path.empty() && WriteWholeFile(path, CsvOf(shown, *this))) status(kSaved);
}

void frmMain::mnuHelpItem_Click(int index) {
    if (activity_.running()) return;
    const auto open_if_there = [this](const std::wstring& file) {
        if (PathFileExistsW(file.c_str())) win::OpenWithShell(window_, file, L"", L"");
    };
    switch (index) {
        case HelpItem::ReadMe:
            open_if_there(application_folder_ + kReadMeFile);
            break;
        case HelpItem::HomePage:
            win::OpenWithShell(window_, kHomePage, L"", win::kNoFolder);
            break;
        case HelpItem::Version:
            show_version();
            break;
        case HelpItem::Update:
            open_if_there(application_folder_ + kUpdateFile);
            break;
        default:
            break;
    }
}

void frmMain::show_version() {
    const Activity::Command command(activity_);
    if (!command) return;
    const std::wstring text = std::wstring(ui::kProductName) + L" Ver" + kVersion + L"\r\n" + kAuthor;
    ui::Inform(window_, text, ui::kProductName);
}

void frmMain::check_view_items() {
    CheckItem(menu_bar_, MenuArray::mnuViewItem, ViewItem::Icons, scan_options_.show_icons);
    CheckItem(menu_bar_, MenuArray::mnuViewItem, ViewItem::Stripes, stripes_);
    CheckItem(menu_bar_, MenuArray::mnuViewItem, ViewItem::SystemComponents, scan_options_.show_system_components);
}

void frmMain::mnuViewItem_Click(int index) {
    switch (index) {
        case ViewItem::Icons:
            scan_options_.show_icons = !scan_options_.show_icons;
            break;
        case ViewItem::Stripes:
            stripes_ = !stripes_;
            break;
        case ViewItem::SystemComponents:
            scan_options_.show_system_components = !scan_options_.show_system_components;
            break;
        default:
            return;
    }
    check_view_items();
    if (index == ViewItem::Stripes) {
        activity_.request(Activity::Request::Refresh);
        InvalidateRect(control(RowOf(shown_tab_).view), nullptr, TRUE);
    } else {
        activity_.request(Activity::Request::Rescan);
    }
}

}  // namespace shell
