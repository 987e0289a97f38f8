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

constexpr UINT kFullRowSelectAndGridLines = LVS_EX_FULLROWSELECT | LVS_EX_GRIDLINES;  // 33
constexpr UINT kDoubleBuffer = 0x00010000;  // no flicker while the border is dragged; Windows 2000 ignores it

}  // namespace

frmMain::frmMain(HINSTANCE instance)
    : instance_(instance), activity_(*this), strip_(*this), pages_(os_, scan_options_, strSID_), panel_(controls_) {}

frmMain::~frmMain() {
    if (window_) DestroyWindow(window_);
}

bool frmMain::open(std::wstring_view argument) {
    // Not ICC_STANDARD_CLASSES: before Windows XP the whole call may fail for it, and the manifest brings those anyway.
    INITCOMMONCONTROLSEX classes = {sizeof classes, ICC_LISTVIEW_CLASSES | ICC_TAB_CLASSES | ICC_BAR_CLASSES};
    InitCommonControlsEx(&classes);
    ui::RegisterLinkLabel(instance_);
    dpi_ = GetDeviceCaps(win::WindowDc(nullptr).get(), LOGPIXELSX);
    os_ = win::QueryOsVersion();
    application_folder_ = win::ApplicationFolder();
    settings_ = Settings(application_folder_ + kSettingsFile);
    create_menus();
    create_window();
    if (!window_) return false;
    keep_on_monitor();
    create_first_controls();
    Form_Load(argument);
    UpdateWindow(window_);
    SetTimer(window_, kActivateTimer, kActivateDelay, nullptr);
    return true;
}

void frmMain::create_window() {
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
    if (!RegisterClassExW(&description) && GetLastError() != ERROR_CLASS_ALREADY_EXISTS) return;
    const Rectangle bounds = stored_bounds();
    CreateWindowExW(0, kMainClass, ui::kProductName, WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN, bounds.left, bounds.top,
                    bounds.width, bounds.height, nullptr, menu_bar_, instance_, this);
}

// ---- controls ---------------------------------------------------------------------------------------------------

void frmMain::create_first_controls() {
    const Control view = RowOf(shown_tab_).view;
    controls_.begin(window_, instance_, dpi_);
    controls_.create(CreationPhase::Frame, view);
    strip_.attach(control(Control::tb), os_);
    arrange();
    controls_.create(CreationPhase::FirstView, view);
    attach_pages(CreationPhase::FirstView);
    hide_views();
    show_detail();
}

// The rest, before anything but the programs is asked for. COM neither: the list of programs without icons does
// not need it.
void frmMain::create_later_controls() {
    if (apartment_) return;
    apartment_.emplace();
    controls_.create(CreationPhase::Later, RowOf(shown_tab_).view);
    attach_pages(CreationPhase::Later);
    controls_.finish();
    buffer_lists();
    restore_column_widths(CreationPhase::Later);
    panel_.set_release_program(settings_.text(kMemoryReleaseKey));
    hide_views();
    arrange();
    show_views();
}

void frmMain::attach_pages(CreationPhase phase) {
    for (const PageRow& row : AllPageRows()) {
        if (PhaseOf(RowOf(row.list)) == phase) pages_.of(row.list)->attach(control(row.list), *this, dpi_);
    }
}

// The style of the first list goes to all of them.
void frmMain::set_list_styles() const {
    const HWND first = control(AllPageRows().front().list);
    const LRESULT style = SendMessageW(first, LVM_GETEXTENDEDLISTVIEWSTYLE, 0, 0);
    for (const PageRow& row : AllPageRows()) {
        if (!control(row.list)) continue;
        SendMessageW(control(row.list), LVM_SETEXTENDEDLISTVIEWSTYLE, 0,
                     static_cast<LPARAM>(style) | static_cast<LPARAM>(kFullRowSelectAndGridLines));
    }
}

// From now on nothing flickers; the first painting has nothing to flicker with, and is spared a picture of the list's
// size. A list wants to be painted again with every change of its style, but it would look the same.
void frmMain::buffer_lists() const {
    const HWND painted = control(RowOf(shown_tab_).view);
    UpdateWindow(painted);
    SendMessageW(control(AllPageRows().front().list), LVM_SETEXTENDEDLISTVIEWSTYLE, kDoubleBuffer, kDoubleBuffer);
    set_list_styles();
    ValidateRect(painted, nullptr);
}

// ---- start and end ----------------------------------------------------------------------------------------------

void frmMain::Form_Load(std::wstring_view argument) {
    strSID_ = programs::CurrentUserSid();
    set_list_styles();
    load_view_options();
    procedure_.install(window_, *this);
    request_fill(pages_.programs());
    if (activity_.close_waits()) return;
    restore_column_widths(CreationPhase::FirstView);
    settings_restored_ = true;
    const std::wstring face = settings_.text(kFontKey);
    if (!face.empty()) controls_.use_face(face);
    if (argument.size() == 1 && argument[0] >= L'2' && argument[0] <= L'6') strip_.select(argument[0] - L'1');
    if (activity_.close_waits()) return;
    focus_view();
    tmrMem_Timer();
    SetTimer(window_, kMonitorTimer, tools::kTickInterval, nullptr);
    loaded_ = true;
    strip_.pointer_rests();
    arrange();
    ShowWindow(window_, stored_show_command());
}

void frmMain::Form_Activate() {
    KillTimer(window_, kActivateTimer);
    if (std::exchange(activated_, true)) return;
    pump();
    request_fill(pages_.control_panel());
}

bool frmMain::Form_QueryUnload() { return activity_.request_close(); }

// Not at once: the close may have been asked for inside a notification of a control, which still lives in it.
void frmMain::close() { PostMessageW(window_, kCloseMessage, 0, 0); }

void frmMain::close_now() {
    Form_Unload();
    DestroyWindow(window_);
}

void frmMain::Form_Unload() {
    procedure_.remove();
    KillTimer(window_, kMonitorTimer);
    panel_.close();
    save_everything();
}

std::optional<LRESULT> frmMain::end_message(UINT message, WPARAM wparam) {
    switch (message) {
        case WM_CLOSE:
            Form_QueryUnload();
            return 0;
        case WM_QUERYENDSESSION:
            return !activity_.close_blocked();
        case WM_ENDSESSION:
            if (wparam) save_everything();
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

// ---- Host -------------------------------------------------------------------------------------------------------

void frmMain::set_status(std::wstring_view text) {
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

// Windows asks for the pointer again with the next move of the mouse; this is for the one that rests.
void frmMain::hourglass(bool shown) {
    hourglass_ = shown;
    if (!IsWindowVisible(window_)) return;
    POINT point = {};
    GetCursorPos(&point);
    const HWND under = WindowFromPoint(point);
    if (under != window_ && !IsChild(window_, under)) return;
    const LRESULT part = SendMessageW(under, WM_NCHITTEST, 0, MAKELPARAM(point.x, point.y));
    SendMessageW(under, WM_SETCURSOR, reinterpret_cast<WPARAM>(under), MAKELPARAM(part, WM_MOUSEMOVE));
}

}  // namespace shell
