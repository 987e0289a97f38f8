#include "ui/control.h"

#include <cstring>
#include <iterator>

namespace ui {

std::wstring TextOf(HWND control) {
    const auto length = static_cast<std::size_t>(SendMessageW(control, WM_GETTEXTLENGTH, 0, 0));
    std::wstring text(length + 1, L'\0');
    const LRESULT copied = SendMessageW(control, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()));
    text.resize(static_cast<std::size_t>(copied));
    return text;
}

bool IsTextCut(HWND control) {
    // Of a status bar: what it leaves free beside the text, about, in pixels at both ends together.
    constexpr int kPadding = 8;
    RECT room = {};
    GetClientRect(control, &room);
    // Only a status bar answers. Its text goes on under the size grip.
    const bool is_status_bar = SendMessageW(control, SB_GETPARTS, 0, 0) > 0;
    if (is_status_bar) room.right -= GetSystemMetrics(SM_CXVSCROLL) + kPadding;
    RECT needed = {};
    {
        const std::wstring text = TextOf(control);
        const win::WindowDc dc(control);
        const win::Selected font(dc.get(), reinterpret_cast<HFONT>(SendMessageW(control, WM_GETFONT, 0, 0)));
        DrawTextW(dc.get(), text.c_str(), static_cast<int>(text.size()), &needed,
                  DT_CALCRECT | DT_SINGLELINE | DT_NOPREFIX);
    }
    return needed.right > room.right;
}

void SetText(HWND control, std::wstring_view text) {
    if (TextOf(control) != text) SetWindowTextW(control, std::wstring(text).c_str());
}

NMHDR NotificationOf(LPARAM lparam) {
    NMHDR header = {};
    std::memcpy(&header, reinterpret_cast<const void*>(lparam), sizeof header);
    return header;
}

win::Font CreateMessageFont() {
    NONCLIENTMETRICSW metrics = {};
    metrics.cbSize = sizeof metrics;
    SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0);
    return win::Font(CreateFontIndirectW(&metrics.lfMessageFont));
}

bool SelectAllText(HWND control) {
    wchar_t name[8] = {};
    GetClassNameW(control, name, static_cast<int>(std::size(name)));
    if (std::wstring_view(name) != L"Edit") return false;
    SendMessageW(control, EM_SETSEL, 0, -1);
    return true;
}

void FitScrollBar(HWND box) {
    RECT inner = {};
    SendMessageW(box, EM_GETRECT, 0, reinterpret_cast<LPARAM>(&inner));
    TEXTMETRICW text = {};
    {
        const win::WindowDc dc(box);
        const win::Selected font(dc.get(), reinterpret_cast<HFONT>(SendMessageW(box, WM_GETFONT, 0, 0)));
        GetTextMetricsW(dc.get(), &text);
    }
    const bool needed = SendMessageW(box, EM_GETLINECOUNT, 0, 0) * text.tmHeight > inner.bottom - inner.top;
    const bool shown = (GetWindowLongW(box, GWL_STYLE) & WS_VSCROLL) != 0;
    if (needed != shown) ShowScrollBar(box, SB_VERT, needed);
}

void SetShown(HWND control, bool shown) {
    constexpr UINT kNothingElse = SWP_NOMOVE | SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE | SWP_NOREDRAW;
    if (IsShown(control) == shown) return;
    SetWindowPos(control, nullptr, 0, 0, 0, 0, kNothingElse | (shown ? SWP_SHOWWINDOW : SWP_HIDEWINDOW));
}

void Show(HWND control, bool shown) {
    if (IsShown(control) == shown) return;
    SetShown(control, shown);
    if (shown) {
        InvalidateAll(control);
        return;
    }
    const HWND parent = GetParent(control);
    RECT area = {};
    GetWindowRect(control, &area);
    MapWindowPoints(nullptr, parent, reinterpret_cast<POINT*>(&area), 2);
    InvalidateRect(parent, &area, TRUE);
}

void InvalidateAll(HWND window) {
    RedrawWindow(window, nullptr, nullptr, RDW_ERASE | RDW_FRAME | RDW_INVALIDATE | RDW_ALLCHILDREN);
}

std::vector<std::wstring> ComboItems(HWND combo) {
    std::vector<std::wstring> items;
    const LRESULT count = SendMessageW(combo, CB_GETCOUNT, 0, 0);
    for (LRESULT index = 0; index < count; ++index) {
        const auto item = static_cast<WPARAM>(index);
        const LRESULT length = SendMessageW(combo, CB_GETLBTEXTLEN, item, 0);
        if (length < 0) continue;
        std::wstring text(static_cast<std::size_t>(length) + 1, L'\0');
        SendMessageW(combo, CB_GETLBTEXT, item, reinterpret_cast<LPARAM>(text.data()));
        text.resize(static_cast<std::size_t>(length));
        items.push_back(std::move(text));
    }
    return items;
}

void SetComboItems(HWND combo, const std::vector<std::wstring>& items) {
    SendMessageW(combo, CB_RESETCONTENT, 0, 0);
    for (const std::wstring& item : items) {
        SendMessageW(combo, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(item.c_str()));
    }
}

}  // namespace ui
