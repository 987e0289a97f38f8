// Start and end of the window, and its Host face.
#include "shell/frmMain.h"

#include "programs/current_user.h"
#include "resource.h"
#include "shell/tab_view.h"
#include "shell/window_place.h"
#include "ui/control.h"
#include "ui/input_box.h"
#include "ui/link_label.h"
#include "ui/modDialog.h"
#include "win/folders.h"

#include <utility>

namespace shell {
namespace {

constexpr wchar_t kSettingsFile[] = L"\\setting.ini";
constexpr wchar_t kCloseRefused[] = L"アンインストールが終わるまで、Qorvenixは終了できません";

}  // namespace

frmMain::frmMain(HINSTANCE instance)
    : instance_(instance),
      activity_(*this),
      strip_(*this),
      pages_(os_, scan_options_, strSID_, backup_),
      detail_(controls_),
      panel_(controls_) {}

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
    if (settings_.text(kBackupKey) != L"0") backup_ = win::BackupFolder(application_folder_);
    controls_.begin(dpi_);
    const std::wstring face = settings_.text(kFontKey);
    if (!face.empty()) controls_.use_face(face);
    create_menus();
    create_window();
    if (!window_) return false;
    KeepOnMonitor(window_);
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
    const Rectangle bounds = StoredBounds(settings_, controls_.metrics());
    CreateWindowExW(0, kMainClass, ui::kProductName, WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN, bounds.left, bounds.top,
                    bounds.width, bounds.height, nullptr, menu_bar_, instance_, this);
}

// ---- controls ---------------------------------------------------------------------------------------------------

void frmMain::create_first_controls() {
    const Control view = RowOf(shown_tab_).view;
    controls_.set_owner(window_, instance_);
    controls_.create(CreationPhase::Frame, view);
    strip_.attach(control(Control::tb), os_);
    focus_.begin(window_, control(Control::tb));
    place();
    controls_.create(CreationPhase::FirstView, view);
    attach_pages(CreationPhase::FirstView);
    focus_.set_view(control(view));
    ShowView(controls_, RowOf(shown_tab_), shown_page());
    detail_.begin(RowOf(shown_tab_));
}

// The rest, before anything but the programs is asked for. COM neither: the list of programs without icons does
// not need it.
void frmMain::create_later_controls() {
    if (apartment_) return;
    apartment_.emplace();
    controls_.create(CreationPhase::Later, RowOf(shown_tab_).view);
    attach_pages(CreationPhase::Later);
    controls_.finish();
    pages_.buffer();
    pages_.restore_column_widths(settings_, CreationPhase::Later);
    panel_.set_release_program(settings_.text(kMemoryReleaseKey));
    ShowView(controls_, RowOf(shown_tab_), shown_page());
    place();
}

void frmMain::attach_pages(CreationPhase phase) {
    for (const PageRow& row : AllPageRows()) {
        if (PhaseOf(RowOf(row.list)) == phase)
            pages_.of(row.list)->attach(control(row.list), *this, controls_.metrics().scale);
    }
}

// ---- start and end ----------------------------------------------------------------------------------------------

void frmMain::Form_Load(std::wstring_view argument) {
    strSID_ = programs::CurrentUserSid();
    pages_.set_list_styles();
    load_view_options();
    procedure_.install(window_, *this);
    request_fill(pages_.programs());
    if (activity_.close_waits()) return;
    pages_.restore_column_widths(settings_, CreationPhase::FirstView);
    settings_restored_ = true;
    if (argument.size() == 1 && argument[0] >= L'2' && argument[0] <= L'6') strip_.select(argument[0] - L'1');
    if (activity_.close_waits()) return;
    focus_.to_view();
    tmrMem_Timer();
    SetTimer(window_, kMonitorTimer, tools::kTickInterval, nullptr);
    loaded_ = true;
    strip_.pointer_rests();
    place();
    ShowWindow(window_, StoredShowCommand(settings_));
}

void frmMain::Form_Activate() {
    KillTimer(window_, kActivateTimer);
    if (std::exchange(activated_, true)) return;
    pump();
    // Already there where the window was started on it.
    if (pages_.control_panel().list().count() == 0) request_fill(pages_.control_panel());
}

bool frmMain::Form_QueryUnload() { return !refuses_close() && activity_.request_close(); }

bool frmMain::refuses_close() {
    const wchar_t* const notice = activity_.close_blocked() ? kCloseRefused : std::exchange(close_notice_, nullptr);
    if (notice) set_status(notice);
    refusal_ = notice ? notice : refusal_;
    return notice != nullptr;
}

void frmMain::refusal_ends() {
    if (!refusal_ || activity_.close_blocked()) return;
    const bool stands = status_.text() == std::exchange(refusal_, nullptr);
    ui::Page* const page = shown_page();
    if (stands) page ? page->show_again() : set_status({});
}

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
            return !(activity_.close_blocked() && refuses_close());
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
    if (text == win::kNothingKept) nothing_kept_ = true;
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
    return !activity_.close_waits() && !closed_ && !quit_;
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
