#include "ui/link_label.h"

#include "ui/contrast.h"
#include "ui/control.h"
#include "win/handle.h"

#include <windowsx.h>

namespace ui {
namespace {

// The font of a label, borrowed from whoever sent WM_SETFONT, stands in the window's extra bytes.
constexpr int kFontSlot = 0;

// Around the text, in pixels: there the focus is marked.
constexpr int kMargin = 1;

HFONT FontOf(HWND label) { return reinterpret_cast<HFONT>(GetWindowLongPtrW(label, kFontSlot)); }

// The system's colour of links, unless a colour scheme makes it one that cannot be read on the window.
COLORREF LinkColour() {
    constexpr double kLeastContrast = 3;  // it is underlined besides
    const COLORREF link = GetSysColor(COLOR_HOTLIGHT);
    return ContrastRatio(link, GetSysColor(COLOR_BTNFACE)) < kLeastContrast ? GetSysColor(COLOR_BTNTEXT) : link;
}

win::Font MakeFont(HWND label) {
    LOGFONTW look = {};
    GetObjectW(FontOf(label), sizeof look, &look);
    look.lfUnderline = IsLink(label);
    return win::Font(CreateFontIndirectW(&look));
}

// The text and its margin in the label's client area, as far as they are in it.
RECT TextArea(HWND label, HDC dc, const std::wstring& text) {
    RECT line = {};
    DrawTextW(dc, text.c_str(), static_cast<int>(text.size()), &line, DT_CALCRECT | DT_SINGLELINE | DT_NOPREFIX);
    RECT client = {};
    GetClientRect(label, &client);
    const LONG top = (client.bottom - line.bottom) / 2;
    const RECT around = {0, top - kMargin, line.right + 2 * kMargin, top + line.bottom + kMargin};
    RECT area = {};
    IntersectRect(&area, &client, &around);
    return area;
}

bool IsOnText(HWND label, POINT screen) {
    const std::wstring text = TextOf(label);
    if (text.empty()) return false;
    ScreenToClient(label, &screen);
    const win::WindowDc dc(label);
    const win::Font font = MakeFont(label);
    const win::Selected selected(dc.get(), font.get());
    const RECT area = TextArea(label, dc.get(), text);
    return PtInRect(&area, screen) != FALSE;
}

void Paint(HWND label) {
    PAINTSTRUCT paint = {};
    const HDC dc = BeginPaint(label, &paint);
    {
        RECT area = {};
        GetClientRect(label, &area);
        const std::wstring text = TextOf(label);
        const bool link = IsLink(label);
        const win::Font font = MakeFont(label);
        const win::Selected selected(dc, font.get());
        SetTextColor(dc, link ? LinkColour() : GetSysColor(COLOR_BTNTEXT));
        SetBkColor(dc, GetSysColor(COLOR_BTNFACE));
        ExtTextOutW(dc, 0, 0, ETO_OPAQUE, &area, L"", 0, nullptr);
        RECT line = {area.left + kMargin, area.top, area.right - kMargin, area.bottom};
        DrawTextW(dc, text.c_str(), static_cast<int>(text.size()), &line,
                  DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX | DT_END_ELLIPSIS);
        if (link && GetFocus() == label) {
            const RECT around = TextArea(label, dc, text);
            DrawFocusRect(dc, &around);
        }
    }
    EndPaint(label, &paint);
}

void ReportClick(HWND label) {
    SendMessageW(GetParent(label), WM_COMMAND, MAKEWPARAM(GetDlgCtrlID(label), STN_CLICKED),
                 reinterpret_cast<LPARAM>(label));
}

LRESULT CALLBACK Procedure(HWND label, UINT message, WPARAM wparam, LPARAM lparam) {
    switch (message) {
        case WM_PAINT:
            Paint(label);
            return 0;
        case WM_ERASEBKGND:
            return 1;  // the painting covers every pixel
        case WM_SETFONT:
            SetWindowLongPtrW(label, kFontSlot, static_cast<LONG_PTR>(wparam));
            InvalidateRect(label, nullptr, FALSE);
            return 0;
        case WM_GETFONT:
            return reinterpret_cast<LRESULT>(FontOf(label));
        case WM_SETTEXT:
        case WM_SETFOCUS:
        case WM_KILLFOCUS:
        case WM_SIZE:
            InvalidateRect(label, nullptr, FALSE);
            break;
        case WM_NCHITTEST:
            // Beside its text a label is not there.
            return IsOnText(label, {GET_X_LPARAM(lparam), GET_Y_LPARAM(lparam)}) ? HTCLIENT : HTTRANSPARENT;
        case WM_SETCURSOR:
            // The window says first what it shows, an hourglass perhaps.
            if (SendMessageW(GetParent(label), message, wparam, lparam)) return TRUE;
            if (!IsLink(label)) break;
            SetCursor(LoadCursorW(nullptr, IDC_HAND));
            return TRUE;
        case WM_LBUTTONDOWN:
            if (IsLink(label)) SetFocus(label);
            ReportClick(label);
            return 0;
        case WM_KEYDOWN:
            // Once a press, however long the key is held.
            if ((wparam == VK_RETURN || wparam == VK_SPACE) && (lparam & (1 << 30)) == 0) ReportClick(label);
            return 0;
        default:
            break;
    }
    return DefWindowProcW(label, message, wparam, lparam);
}

}  // namespace

void RegisterLinkLabel(HINSTANCE instance) {
    WNDCLASSW description = {};
    description.lpfnWndProc = &Procedure;
    description.cbWndExtra = sizeof(LONG_PTR);
    description.hInstance = instance;
    description.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    description.lpszClassName = kLinkClass;
    RegisterClassW(&description);
}

void SetLink(HWND label, bool is_link) {
    if (IsLink(label) == is_link) return;
    const LONG style = GetWindowLongW(label, GWL_STYLE);
    SetWindowLongW(label, GWL_STYLE,
                   is_link ? style | static_cast<LONG>(WS_TABSTOP) : style & ~static_cast<LONG>(WS_TABSTOP));
    InvalidateRect(label, nullptr, FALSE);
}

bool IsLink(HWND label) { return (GetWindowLongW(label, GWL_STYLE) & static_cast<LONG>(WS_TABSTOP)) != 0; }

}  // namespace ui
