// The window procedures, the notifications of the controls, and the message loop.
#include "shell/frmMain.h"

#include "programs/detail_link.h"
#include "shell/selection.h"
#include "shell/window_place.h"
#include "ui/control.h"

#include <windowsx.h>

namespace shell {
namespace {

// Many settings change behind the user's back: environment, policies, regional formats.
bool ConcernsFonts(UINT message, WPARAM action, LPARAM section) {
    if (message != WM_SETTINGCHANGE) return true;
    if (action == SPI_SETNONCLIENTMETRICS || action == SPI_SETICONTITLELOGFONT) return true;
    const auto* name = reinterpret_cast<const wchar_t*>(section);
    return action == 0 && (!name || std::wstring_view(name) == L"WindowMetrics");
}

}  // namespace

// ---- procedures -------------------------------------------------------------------------------------------------

LRESULT CALLBACK frmMain::DesignedProcedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
    if (message == WM_NCCREATE) {
        auto* form = static_cast<frmMain*>(reinterpret_cast<CREATESTRUCTW*>(lparam)->lpCreateParams);
        form->window_ = window;
        SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(form));
    }
    auto* form = reinterpret_cast<frmMain*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    return form ? form->message(message, wparam, lparam) : DefWindowProcW(window, message, wparam, lparam);
}

// In front of the designed procedure from Form_Load to Form_Unload.
std::optional<LRESULT> frmMain::handle(UINT message, WPARAM wparam, LPARAM lparam) {
    switch (message) {
        case WM_NOTIFY:
            return pages_.of_window(ui::NotificationOf(lparam).hwndFrom) ? stripes_.draw(lparam) : std::nullopt;
        case WM_MOUSEWHEEL:
            mouse_wheel(GET_WHEEL_DELTA_WPARAM(wparam));
            return 0;
        case WM_MENUSELECT:
            menu_select(wparam);
            return {};
        default:
            return {};
    }
}

LRESULT frmMain::message(UINT message, WPARAM wparam, LPARAM lparam) {
    if (const auto answer = end_message(message, wparam)) return *answer;
    if (const auto answer = look_message(message, wparam, lparam)) return *answer;
    switch (message) {
        case WM_COMMAND:
            command(LOWORD(wparam), HIWORD(wparam));
            return 0;
        case WM_NOTIFY:
            return notify(lparam);
        case WM_CONTEXTMENU: {
            const POINT screen = {GET_X_LPARAM(lparam), GET_Y_LPARAM(lparam)};
            if (const auto answer = context_menu(reinterpret_cast<HWND>(wparam), screen)) return *answer;
            break;
        }
        case WM_INITMENUPOPUP:
            if (HIWORD(lparam) == 0) menu_opens(reinterpret_cast<HMENU>(wparam));
            return 0;
        case WM_ENTERMENULOOP:
        case WM_EXITMENULOOP:
            in_menu_ = message == WM_ENTERMENULOOP;
            controls_.tips().enable(!in_menu_);
            return 0;
        case WM_TIMER:
            wparam == kActivateTimer ? Form_Activate() : tmrMem_Timer();
            return 0;
        case WM_ACTIVATE:
            strip_.pointer_rests();
            enter_pressed_in_cb_ = false;
            if (LOWORD(wparam) == WA_INACTIVE) focus_.window_left();
            break;
        case WM_SETFOCUS:
            focus_.window_entered(activity_.running());
            return 0;
        case kCatchUpMessage:
            if (ui::Page* page = shown_page(); page && !activity_.running()) page->catch_up();
            return 0;
        default:
            break;
    }
    return DefWindowProcW(window_, message, wparam, lparam);
}

// What the window looks like: size, pointer, colours, fonts.
std::optional<LRESULT> frmMain::look_message(UINT message, WPARAM wparam, LPARAM lparam) {
    switch (message) {
        case WM_SIZE:
            strip_.pointer_rests();
            // What comes into view again in its former size is painted by the system's wish.
            if (loaded_ && !controls_.fill(LOWORD(lparam), HIWORD(lparam))) arrange();
            return 0;
        case WM_GETMINMAXINFO: {
            POINT& least = reinterpret_cast<MINMAXINFO*>(lparam)->ptMinTrackSize;
            least = LeastSize(controls_.metrics());
            return 0;
        }
        case WM_CTLCOLORSTATIC:
            return reinterpret_cast<LRESULT>(
                static_colours(reinterpret_cast<HDC>(wparam), reinterpret_cast<HWND>(lparam)));
        case WM_SETCURSOR:
            if (!hourglass_ || LOWORD(lparam) != HTCLIENT) return {};
            SetCursor(LoadCursorW(nullptr, IDC_WAIT));
            return TRUE;
        case WM_SYSCOLORCHANGE:
            for (const ControlRow& row : AllControls())
                SendMessageW(control(row.control), message, wparam, lparam);
            panel_.renew_colours();
            return {};
        case WM_SETTINGCHANGE:
        case WM_THEMECHANGED:
            if (!loaded_ || !ConcernsFonts(message, wparam, lparam)) return {};
            controls_.renew_fonts();
            if (const ui::Page* page = shown_page()) detail_.measure(*page);
            strip_.forget_height();
            arrange();
            return {};
        default:
            return {};
    }
}

// ---- notifications ----------------------------------------------------------------------------------------------

LRESULT frmMain::notify(LPARAM lparam) {
    if (controls_.tips().answer(lparam)) return 0;
    const NMHDR header = ui::NotificationOf(lparam);
    if (header.hwndFrom == control(Control::tb) && header.code == static_cast<UINT>(TCN_SELCHANGE)) {
        strip_.selection_changed();
    }
    ui::Page* const page = pages_.of_window(header.hwndFrom);
    if (page && header.code == static_cast<UINT>(NM_CUSTOMDRAW))
        return DrawSelection(*reinterpret_cast<NMLVCUSTOMDRAW*>(lparam));
    return page ? list_notify(*page, header.code, lparam) : 0;
}

LRESULT frmMain::list_notify(ui::Page& page, UINT code, LPARAM lparam) {
    const auto* item = reinterpret_cast<const NMLISTVIEW*>(lparam);
    if (code == static_cast<UINT>(LVN_ITEMCHANGED)) {
        const bool selection = (item->uChanged & LVIF_STATE) && ((item->uNewState ^ item->uOldState) & LVIS_SELECTED);
        if (selection) page.selection_changed();
        return 0;
    }
    // While a list is filled it takes no keys, no double clicks and no header clicks, and what else runs may count on
    // its order.
    if (activity_.running()) return 0;
    switch (code) {
        case static_cast<UINT>(LVN_COLUMNCLICK):
            page.column_clicked(item->iSubItem);
            break;
        case static_cast<UINT>(LVN_ITEMACTIVATE):
            page.activate();
            break;
        case static_cast<UINT>(LVN_KEYDOWN): {
            const WORD key = reinterpret_cast<const NMLVKEYDOWN*>(lparam)->wVKey;
            const int command = page.item_of_key(key, GetKeyState(VK_CONTROL) < 0, GetKeyState(VK_SHIFT) < 0);
            if (&page == shown_page() && command != ui::Page::kNoItem) run_item(page, command);
            break;
        }
        default:
            break;
    }
    return 0;
}

void frmMain::command(int id, int code) {
    if (id >= CommandId(MenuArray::mnuFileItem, 0)) {
        menu_Click(id);
        return;
    }
    const auto which = static_cast<Control>(id - kFirstControlId);
    if (which < Control::tb || which >= Control::Count) return;
    controls_.reported(which, code);
    if (!activity_.running()) control_command(which, code);
}

void frmMain::control_command(Control which, int code) {
    switch (which) {
        case Control::cmdMenu_0:
        case Control::cmdMenu_1:
            if (code == BN_CLICKED) cmdMenu_Click(which == Control::cmdMenu_0 ? 0 : 1);
            break;
        case Control::cmdSys_0:
            if (code == BN_CLICKED) panel_.cmdSys_Click(0, window_);
            break;
        case Control::cmdSys_1:
            if (code == BN_CLICKED) {
                const Activity::Exclusive alone(activity_);
                panel_.cmdSys_Click(1, window_);
            }
            break;
        case Control::Label1_2:
        case Control::Label1_3:
        case Control::Label1_11:
            if (code == STN_CLICKED) programs::OpenDetailLink(ui::TextOf(control(which)), *this);
            break;
        case Control::Label1_50:
            if (code == STN_CLICKED) panel_.Label1_MouseDown();
            break;
        default:
            break;
    }
}

HBRUSH frmMain::static_colours(HDC dc, HWND which) const {
    if (const HBRUSH brush = panel_.colours_of(which, dc)) return brush;
    SetTextColor(dc, GetSysColor(COLOR_BTNTEXT));
    SetBkColor(dc, GetSysColor(COLOR_BTNFACE));
    return GetSysColorBrush(COLOR_BTNFACE);
}

// ---- the message loop -------------------------------------------------------------------------------------------

void frmMain::run_until_closed() {
    MSG message = {};
    while (!closed_ && !quit_ && GetMessageW(&message, nullptr, 0, 0) > 0)
        dispatch(message);
    // Somebody else has ended the loop.
    if (!closed_ && window_) close_now();
}

void frmMain::dispatch_pending() {
    MSG message = {};
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
        if (message.message == WM_QUIT) {
            quit_ = true;
            return;
        }
        dispatch(message);
    }
}

void frmMain::dispatch(const MSG& message) {
    if (translate(message)) return;
    TranslateMessage(&message);
    DispatchMessageW(&message);
}

}  // namespace shell
