#include "ui/drop_list.h"

#include "ui/control.h"

#include <algorithm>

namespace ui {
namespace {

int WidestLine(HWND combo) {
    const win::WindowDc dc(combo);
    const win::Selected font(dc.get(), reinterpret_cast<HFONT>(SendMessageW(combo, WM_GETFONT, 0, 0)));
    int widest = 0;
    for (const std::wstring& line : ComboItems(combo)) {
        SIZE size = {};
        GetTextExtentPoint32W(dc.get(), line.c_str(), static_cast<int>(line.size()), &size);
        widest = std::max<int>(widest, size.cx);
    }
    return widest;
}

RECT WorkAreaOf(HWND window) {
    MONITORINFO monitor = {};
    monitor.cbSize = sizeof monitor;
    GetMonitorInfoW(MonitorFromWindow(window, MONITOR_DEFAULTTONEAREST), &monitor);
    return monitor.rcWork;
}

void KeepOnMonitor(HWND list, HWND combo) {
    RECT bounds = {};
    GetWindowRect(list, &bounds);
    const RECT area = WorkAreaOf(combo);
    if (bounds.right <= area.right || bounds.left <= area.left) return;
    const LONG left = std::max(area.right - (bounds.right - bounds.left), area.left);
    SetWindowPos(list, nullptr, left, bounds.top, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE | SWP_NOCOPYBITS);
    InvalidateAll(list);  // what is being painted was clipped by the screen's edge
}

}  // namespace

void DropList::attach(HWND combo) {
    combo_ = combo;
    subclass_.install(combo, *this);
}

void DropList::widen(HWND combo) {
    const RECT area = WorkAreaOf(combo);
    const int frame = GetSystemMetrics(SM_CXVSCROLL) + 6 * GetSystemMetrics(SM_CXEDGE);
    const int width = std::min<int>(WidestLine(combo) + frame, area.right - area.left);
    SendMessageW(combo, CB_SETDROPPEDWIDTH, static_cast<WPARAM>(width), 0);
}

// The list asks for its colours before it is painted for the first time: then it stands where it opens.
std::optional<LRESULT> DropList::handle(UINT message, WPARAM /*wparam*/, LPARAM lparam) {
    if (message == WM_CTLCOLORLISTBOX) KeepOnMonitor(reinterpret_cast<HWND>(lparam), combo_);
    return {};
}

}  // namespace ui
