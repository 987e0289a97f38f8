// Start and end of the window, and its Host face.
#include "shell/frmMain.h"

#include "programs/current_user.h"
#include "resource.h"
#include "ui/control.h"
#include "ui/input_box.h"
#include "ui/link_label.h"
#include "ui/modDialog.h"
#include "win/folders.h"

#include <utility>

namespace shell {
namespace {

constexpr wchar_t kSettingsFile[] = L"\\setting.ini";

}  // namespace

frmMain::frmMain(HINSTANCE instance)
    : instance_(instance), activity_(*this), window_brush_(CreateSolidBrush(GetSysColor(COLOR_WINDOW))) {}

frmMain::~frmMain() {
    if (window_) DestroyWindow(window_);
}

bool frmMain::open(std::wstring_view argument) {
    // Not ICC_STANDARD_CLASSES: before Windows XP the whole call may fail for it, and the manifest brings those anyway.
    INITCOMMONCONTROLSEX classes = {sizeof classes, ICC_LISTVIEW_CLASSES | ICC_TAB_CLASSES | ICC_BAR_CLASSES};
    InitCommonControlsEx(&classes);
    ui::RegisterLinkLabel(instance_);
    const int small_icon = GetSystemMetrics(SM_CXSMICON);
    WNDCLASSEXW description = {};
    description.cbSize = sizeof description;
    description.lpfnWndProc = &DesignedProcedure;
    description.hInstance = instance_;
    description.hIcon = LoadIconW(instance_, MAKEINTRESOURCEW(IDI_APP));
    description.hIconSm = static_cast<HICON>(
        LoadImageW(instance_, MAKEINTRESOURCEW(IDI_APP), IMAGE_ICON, small_icon, small_icon, LR_SHARED));
    description.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    description.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_BTNFACE + 1);
    description.lpszClassName = kMainClass;
    if (!RegisterClassExW(&description) && GetLastError() != ERROR_CLASS_ALREADY_EXISTS) return false;

    dpi_ = GetDeviceCaps(win::WindowDc(nullptr).get(), LOGPIXELSX);
    os_ = win::QueryOsVersion();
    application_folder_ = win::ApplicationFolder();
    settings_ = Settings(application_folder_ + kSettingsFile);
    create_menus();
    const Rectangle place = stored_place();
    CreateWindowExW(0, kMainClass, ui::kProductName, WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN, place.left, place.top,
                    place.width, place.height, nullptr, menu_bar_, instance_, this);
    if (!window_) return false;
    create_first_controls();
    Form_Load(argument);
    UpdateWindow(window_);
    SetTimer(window_, kActivateTimer, kActivateDelay, nullptr);
    return true;
}

void frmMain::Form_Load(std::wstring_view argument) {
    strSID_ = programs::CurrentUserSid();
    set_list_styles();
    load_view_options();
    replace_window_procedure();
    activity_.request(Activity::Request::Rescan);
    if (activity_.close_waits()) return;
    restore_column_widths(Moment::AtOnce);
    settings_restored_ = true;
    read_font_option();
    if (argument.size() == 1 && argument[0] >= L'2' && argument[0] <= L'6') select_tab(argument[0] - L'1');
    if (activity_.close_waits()) return;
    focus_view();
    start_monitor();
    loaded_ = true;
    arrange();
    ShowWindow(window_, stored_show_command());
}

void frmMain::Form_Activate() {
    KillTimer(window_, kActivateTimer);
    if (std::exchange(activated_, true)) return;
    pump();
    activity_.request(Activity::Request::Catalogue);
}

bool frmMain::Form_QueryUnload() { return activity_.request_close(); }

// Not at once: the close may have been asked for inside a notification of a control, which still lives in it.
void frmMain::close() { PostMessageW(window_, kCloseMessage, 0, 0); }

void frmMain::close_now() {
    Form_Unload();
    DestroyWindow(window_);
}

void frmMain::Form_Unload() {
    restore_window_procedure();
    stop_monitor();
    save_everything();
}

std::optional<LRESULT> frmMain::end_message(UINT message, WPARAM wide) {
    switch (message) {
        case WM_CLOSE:
            Form_QueryUnload();
            return 0;
        case WM_QUERYENDSESSION:
            return !activity_.busy();
        case WM_ENDSESSION:
            if (wide) save_everything();
            return 0;
        case WM_DESTROY:
            closed_ = true;
            PostQuitMessage(0);
            return 0;
        case WM_NCDESTROY:
            window_ = nullptr;
            return 0;
        case kCloseMessage:
            close_now();
            return 0;
        default:
            return {};
    }
}

void frmMain::replace_window_procedure() {
    designed_procedure_ = reinterpret_cast<WNDPROC>(
        SetWindowLongPtrW(window_, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&WindowProcedure)));
}

void frmMain::restore_window_procedure() {
    SetWindowLongPtrW(window_, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(designed_procedure_));
}

// ---- Host -----------------------------------------------------------------------------------------------------

void frmMain::status(std::wstring_view text) {
    status_.write(text);
    show_status();
    UpdateWindow(control(Control::st));
}

void frmMain::show_status() { ui::SetText(control(Control::st), status_.shown()); }

ui::Answer frmMain::confirm(std::wstring_view text, std::wstring_view title, UINT icon) {
    return ui::AskOkCancel(window_, text, title, icon);
}

std::optional<std::wstring> frmMain::input(std::wstring_view prompt, std::wstring_view title) {
    return ui::AskText(window_, prompt, title);
}

bool frmMain::pump() {
    dispatch_pending();
    return !activity_.close_waits() && !closed_;
}

void frmMain::hourglass(bool shown) {
    hourglass_ = shown;
    if (!IsWindowVisible(window_)) return;
    // Windows asks for the pointer again with the next move of the mouse; this is for the one that rests.
    POINT point = {};
    GetCursorPos(&point);
    const HWND under = WindowFromPoint(point);
    if (under == window_ || IsChild(window_, under)) SetCursor(LoadCursorW(nullptr, shown ? IDC_WAIT : IDC_ARROW));
}

}  // namespace shell
