// The window procedures, the notifications of the controls, and the message loop.
#include "shell/frmMain.h"

#include <windowsx.h>

#include <algorithm>

namespace shell {

// ---- procedures -------------------------------------------------------------------------------------------------

frmMain* frmMain::form_of(HWND window) { return reinterpret_cast<frmMain*>(GetWindowLongPtrW(window, GWLP_USERDATA)); }

LRESULT CALLBACK frmMain::DesignedProcedure(HWND window, UINT message, WPARAM wide, LPARAM parameter) {
    if (message == WM_NCCREATE) {
        auto* form = static_cast<frmMain*>(reinterpret_cast<CREATESTRUCTW*>(parameter)->lpCreateParams);
        form->window_ = window;
        SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(form));
    }
    frmMain* form = form_of(window);
    return form ? form->message(message, wide, parameter) : DefWindowProcW(window, message, wide, parameter);
}

// In front of the designed procedure from Form_Load to Form_Unload; what it does not consume goes on to that one.
LRESULT CALLBACK frmMain::WindowProcedure(HWND window, UINT message, WPARAM wide, LPARAM parameter) {
    frmMain* form = form_of(window);
    LRESULT answer = 0;
    switch (message) {
        case WM_NOTIFY:
            if (form->stripe(*reinterpret_cast<NMHDR*>(parameter), answer)) return answer;
            break;
        case WM_MOUSEWHEEL:
            form->mouse_wheel(GET_WHEEL_DELTA_WPARAM(wide));
            return 0;
        case WM_MENUSELECT:
            form->menu_select(wide);
            break;
        default:
            break;
    }
    return CallWindowProcW(form->designed_procedure_, window, message, wide, parameter);
}

// The tab strip tells its window nothing of the pointer, and a click on a tab shall lead into the list.
LRESULT CALLBACK frmMain::StripProcedure(HWND strip, UINT message, WPARAM wide, LPARAM parameter) {
    frmMain* form = form_of(strip);
    switch (message) {
        case WM_MOUSEMOVE: {
            TRACKMOUSEEVENT leave = {sizeof leave, TME_LEAVE, strip, 0};
            TrackMouseEvent(&leave);
            form->tb_MouseMove({GET_X_LPARAM(parameter), GET_Y_LPARAM(parameter)});
            break;
        }
        case WM_MOUSELEAVE:
            form->tb_MouseLeave();
            break;
        case WM_LBUTTONDOWN: {
            // Looked up first: the rows of a strip in several rows change places with the selection.
            const int place = form->tab_at({GET_X_LPARAM(parameter), GET_Y_LPARAM(parameter)});
            form->focus_view_wanted_ = true;
            const LRESULT answer = CallWindowProcW(form->strip_procedure_, strip, message, wide, parameter);
            // After a walk by arrow keys Wine reports a click, but leaves the selection where it was.
            if (place >= 0 && place != SendMessageW(strip, TCM_GETCURSEL, 0, 0)) form->select_tab(place);
            if (form->activity_.running()) return answer;
            form->focus_view_wanted_ = false;
            form->focus_view();
            return answer;
        }
        default:
            break;
    }
    return CallWindowProcW(form->strip_procedure_, strip, message, wide, parameter);
}

LRESULT frmMain::message(UINT message, WPARAM wide, LPARAM parameter) {
    if (const auto answer = end_message(message, wide)) return *answer;
    switch (message) {
        case WM_SIZE:
            if (loaded_) arrange();
            return 0;
        case WM_GETMINMAXINFO: {
            POINT& least = reinterpret_cast<MINMAXINFO*>(parameter)->ptMinTrackSize;
            least = {scaled(kLeastWidth), scaled(kLeastHeight)};
            return 0;
        }
        case WM_COMMAND:
            command(LOWORD(wide), HIWORD(wide));
            return 0;
        case WM_NOTIFY:
            return notify(*reinterpret_cast<NMHDR*>(parameter));
        case WM_CONTEXTMENU:
            return context_menu(reinterpret_cast<HWND>(wide), {GET_X_LPARAM(parameter), GET_Y_LPARAM(parameter)});
        case WM_CTLCOLORSTATIC:
            return reinterpret_cast<LRESULT>(
                static_colours(reinterpret_cast<HDC>(wide), reinterpret_cast<HWND>(parameter)));
        case WM_SETCURSOR:
            if (!hourglass_ || LOWORD(parameter) != HTCLIENT) break;
            SetCursor(LoadCursorW(nullptr, IDC_WAIT));
            return TRUE;
        case WM_INITMENUPOPUP:
            if (HIWORD(parameter) == 0) menu_opens(reinterpret_cast<HMENU>(wide));
            return 0;
        case WM_ENTERMENULOOP:
        case WM_EXITMENULOOP:
            in_menu_ = message == WM_ENTERMENULOOP;
            return 0;
        case WM_TIMER:
            wide == kActivateTimer ? Form_Activate() : tmrMem_Timer();
            return 0;
        case WM_ACTIVATE:
            if (LOWORD(wide) == WA_INACTIVE && IsChild(window_, GetFocus())) last_focus_ = GetFocus();
            break;
        case WM_SETFOCUS:
            give_focus_on();
            return 0;
        case WM_SYSCOLORCHANGE:
            for (const HWND each : controls_)
                SendMessageW(each, message, wide, parameter);
            window_brush_.reset(CreateSolidBrush(GetSysColor(COLOR_WINDOW)));
            break;
        default:
            break;
    }
    return DefWindowProcW(window_, message, wide, parameter);
}

// ---- notifications ----------------------------------------------------------------------------------------------

const ControlRow* frmMain::row_of(HWND which) const {
    const auto place = std::find(controls_.begin(), controls_.end(), which);
    if (!which || place == controls_.end()) return nullptr;
    return &RowOf(static_cast<Control>(place - controls_.begin()));
}

LRESULT frmMain::notify(NMHDR& header) {
    if (header.hwndFrom == control(Control::tb)) {
        if (header.code == static_cast<UINT>(TCN_SELCHANGE)) activity_.request(Activity::Request::TabClick);
        return 0;
    }
    const ControlRow* row = row_of(header.hwndFrom);
    return row && row->kind == Kind::ListView ? list_notify(row->control, header) : 0;
}

LRESULT frmMain::list_notify(Control which, NMHDR& header) {
    // A list that is being filled takes no keys, no double clicks and no header clicks.
    if (activity_.running()) return 0;
    const auto& item = reinterpret_cast<const NMLISTVIEW&>(header);
    const auto& click = reinterpret_cast<const NMITEMACTIVATE&>(header);
    switch (header.code) {
        case static_cast<UINT>(LVN_COLUMNCLICK):
            list_ColumnClick(which, item.iSubItem);
            break;
        case static_cast<UINT>(LVN_ITEMCHANGED):
            if ((item.uChanged & LVIF_STATE) && (item.uNewState & ~item.uOldState & LVIS_SELECTED)) {
                row_selected(which);
            }
            break;
        case static_cast<UINT>(NM_CLICK):
            list_pressed(which, click.ptAction);
            break;
        case static_cast<UINT>(LVN_ITEMACTIVATE):
            list_activated(which);
            break;
        case static_cast<UINT>(LVN_KEYDOWN):
            list_KeyDown(which, reinterpret_cast<const NMLVKEYDOWN&>(header).wVKey);
            break;
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
    if (which >= Control::tb && which < Control::Count) control_command(which, code);
}

HBRUSH frmMain::static_colours(HDC dc, HWND which) const {
    if (which == control(Control::txtSys)) {
        SetTextColor(dc, GetSysColor(COLOR_WINDOWTEXT));
        SetBkColor(dc, GetSysColor(COLOR_WINDOW));
        return window_brush_.get();
    }
    SetTextColor(dc, GetSysColor(COLOR_BTNTEXT));
    SetBkColor(dc, GetSysColor(COLOR_BTNFACE));
    return GetSysColorBrush(COLOR_BTNFACE);
}

// ---- the message loop -------------------------------------------------------------------------------------------

void frmMain::run_until_closed() {
    MSG message = {};
    while (!closed_ && GetMessageW(&message, nullptr, 0, 0) > 0)
        dispatch(message);
}

void frmMain::dispatch_pending() {
    MSG message = {};
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
        if (message.message == WM_QUIT) {
            // The loop that runs the program has to see it too.
            PostQuitMessage(static_cast<int>(message.wParam));
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
