#include "ui/link_label.h"

#include "ui/control.h"
#include "win/handle.h"

namespace ui {
namespace {

// The font of a label, borrowed from whoever sent WM_SETFONT, stands in the window's extra bytes.
constexpr int kFontSlot = 0;

HFONT FontOf(HWND label) { return reinterpret_cast<HFONT>(GetWindowLongPtrW(label, kFontSlot)); }

int Brightness(COLORREF colour) { return 3 * GetRValue(colour) + 6 * GetGValue(colour) + GetBValue(colour); }

// The system's colour of links, unless a colour scheme makes it one that cannot be read on the window.
COLORREF LinkColour() {
    constexpr int kLeastContrast = 800;  // of 2550
    const COLORREF link = GetSysColor(COLOR_HOTLIGHT);
    const int contrast = Brightness(link) - Brightness(GetSysColor(COLOR_BTNFACE));
    return contrast > -kLeastContrast && contrast < kLeastContrast ? GetSysColor(COLOR_BTNTEXT) : link;
}

void Paint(HWND label) {
    PAINTSTRUCT paint = {};
    const HDC dc = BeginPaint(label, &paint);
    {
        RECT area = {};
        GetClientRect(label, &area);
        const std::wstring text = TextOf(label);
        const bool link = IsLink(label);
        LOGFONTW look = {};
        GetObjectW(FontOf(label), sizeof look, &look);
        look.lfUnderline = link;
        const win::Font font(CreateFontIndirectW(&look));
        const win::Selected selected(dc, font.get());
        SetTextColor(dc, link ? LinkColour() : GetSysColor(COLOR_BTNTEXT));
        SetBkColor(dc, GetSysColor(COLOR_BTNFACE));
        ExtTextOutW(dc, 0, 0, ETO_OPAQUE, &area, L"", 0, nullptr);
        RECT line = {area.left + 1, area.top, area.right - 1, area.bottom};
        DrawTextW(dc, text.c_str(), static_cast<int>(text.size()), &line,
                  DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX | DT_END_ELLIPSIS);
        if (link && GetFocus() == label) DrawFocusRect(dc, &area);
    }
    EndPaint(label, &paint);
}

void ReportClick(HWND label) {
    SendMessageW(GetParent(label), WM_COMMAND, MAKEWPARAM(GetDlgCtrlID(label), STN_CLICKED),
                 reinterpret_cast<LPARAM>(label));
}

LRESULT CALLBACK Procedure(HWND label, UINT message, WPARAM wide, LPARAM parameter) {
    switch (message) {
        case WM_PAINT:
            Paint(label);
            return 0;
        case WM_ERASEBKGND:
            return 1;  // the painting covers every pixel
        case WM_SETFONT:
            SetWindowLongPtrW(label, kFontSlot, static_cast<LONG_PTR>(wide));
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
        case WM_SETCURSOR:
            // The window says first what it shows, an hourglass perhaps.
            if (SendMessageW(GetParent(label), message, wide, parameter)) return TRUE;
            if (!IsLink(label)) break;
            SetCursor(LoadCursorW(nullptr, IDC_HAND));
            return TRUE;
        case WM_LBUTTONDOWN:
            if (IsLink(label)) SetFocus(label);
            ReportClick(label);
            return 0;
        case WM_KEYDOWN:
            if (wide == VK_RETURN || wide == VK_SPACE) ReportClick(label);
            return 0;
        default:
            break;
    }
    return DefWindowProcW(label, message, wide, parameter);
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
