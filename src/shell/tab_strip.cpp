#include "shell/tab_strip.h"

#include "win/handle.h"

#include <windowsx.h>

#include <algorithm>
#include <utility>

namespace shell {

void TabStrip::attach(HWND strip, const win::OsVersion& os) {
    strip_ = strip;
    for (const TabRow& row : AllTabs()) {
        if (!IsOnStrip(row, os)) continue;
        TCITEMW item = {};
        item.mask = TCIF_TEXT;
        item.pszText = const_cast<wchar_t*>(row.caption);
        SendMessageW(strip, TCM_INSERTITEMW, tabs_.size(), reinterpret_cast<LPARAM>(&item));
        tabs_.push_back(row.tab);
    }
    subclass_.install(strip, *this);
}

// ---- selection --------------------------------------------------------------------------------------------------

int TabStrip::selected_index() const { return static_cast<int>(SendMessageW(strip_, TCM_GETCURSEL, 0, 0)); }

Tab TabStrip::selected() const { return tabs_[static_cast<std::size_t>(std::max(selected_index(), 0))]; }

void TabStrip::select(int index) {
    SendMessageW(strip_, TCM_SETCURSEL, static_cast<WPARAM>(index), 0);
    selection_changed();
}

void TabStrip::selection_changed() {
    if (selected_index() == sought_) sought_ = -1;
    listener_.tab_selected();
}

void TabStrip::step(int direction) {
    const int tabs = static_cast<int>(tabs_.size());
    select((selected_index() + direction + tabs) % tabs);
}

// The selection is made once, and only after the notches are taken off: the fill that it starts lets the wheel turn on.
void TabStrip::wheel(int delta) {
    wheel_ += delta;
    const int notches = wheel_ / WHEEL_DELTA;
    wheel_ -= notches * WHEEL_DELTA;
    const int present = selected_index();
    const int next = std::clamp(present - notches, 0, static_cast<int>(tabs_.size()) - 1);
    if (next != present) select(next);
}

// ---- the pointer ------------------------------------------------------------------------------------------------

std::optional<LRESULT> TabStrip::handle(UINT message, WPARAM wparam, LPARAM lparam) {
    switch (message) {
        case WM_MOUSEMOVE: {
            TRACKMOUSEEVENT leave = {sizeof leave, TME_LEAVE, strip_, 0};
            TrackMouseEvent(&leave);
            pointer_moved({GET_X_LPARAM(lparam), GET_Y_LPARAM(lparam)});
            return {};
        }
        case WM_MOUSELEAVE:
            pointer_rests();
            listener_.tab_pointed(nullptr);
            return {};
        case WM_LBUTTONDOWN:
            return press(message, wparam, lparam);
        case WM_ERASEBKGND:
            if (!painted_) return {};
            return TRUE;  // done along with the painting
        case WM_PAINT:
            if (!std::exchange(painted_, true)) return {};
            paint();
            return 0;
        default:
            return {};
    }
}

LRESULT TabStrip::press(UINT message, WPARAM wparam, LPARAM lparam) {
    // Looked up first: the rows of a strip in several rows change places with the selection.
    const int index = tab_at({GET_X_LPARAM(lparam), GET_Y_LPARAM(lparam)});
    const int outer = std::exchange(sought_, index == selected_index() ? -1 : index);
    const LRESULT answer = subclass_.pass_on(message, wparam, lparam);
    // After a walk by arrow keys Wine reports a click, but leaves the selection where it was. Where the tab was
    // selected, the user may have chosen the next one while it was filled.
    const bool missed = sought_ >= 0;
    sought_ = outer;
    if (missed) select(index);
    listener_.strip_pressed();
    return answer;
}

// Windows reports a move without a movement whenever something under the pointer appears or disappears.
void TabStrip::pointer_moved(POINT client) {
    POINT screen = client;
    ClientToScreen(strip_, &screen);
    if (screen.x == pointer_.x && screen.y == pointer_.y) return;
    pointer_ = screen;
    const int index = tab_at(client);
    const bool on_tab = index >= 0 && index < static_cast<int>(tabs_.size());
    listener_.tab_pointed(on_tab ? RowOf(tabs_[static_cast<std::size_t>(index)]).hover : nullptr);
}

void TabStrip::pointer_rests() { GetCursorPos(&pointer_); }

int TabStrip::tab_at(POINT client) const {
    TCHITTESTINFO hit = {client, 0};
    return static_cast<int>(SendMessageW(strip_, TCM_HITTEST, 0, reinterpret_cast<LPARAM>(&hit)));
}

// In memory first: the strip would be seen blank between its background and its tabs. The first painting has nothing to
// flicker with.
void TabStrip::paint() const {
    PAINTSTRUCT request = {};
    const HDC screen = BeginPaint(strip_, &request);
    RECT all = {};
    GetClientRect(strip_, &all);
    const win::MemoryDc memory(CreateCompatibleDC(screen));
    const win::Bitmap bitmap(CreateCompatibleBitmap(screen, all.right, all.bottom));
    {
        const win::Selected picture(memory.get(), bitmap.get());
        const auto dc = reinterpret_cast<WPARAM>(memory.get());
        FillRect(memory.get(), &all, GetSysColorBrush(COLOR_BTNFACE));
        subclass_.pass_on(WM_ERASEBKGND, dc, 0);
        subclass_.pass_on(WM_PRINTCLIENT, dc, PRF_CLIENT);
        BitBlt(screen, 0, 0, all.right, all.bottom, memory.get(), 0, 0, SRCCOPY);
    }
    EndPaint(strip_, &request);
}

// ---- size -------------------------------------------------------------------------------------------------------

int TabStrip::height(int width, int least) {
    if (width == width_) return height_;
    SetWindowPos(strip_, nullptr, 0, 0, width, std::max(height_, least), SWP_NOZORDER | SWP_NOACTIVATE | SWP_NOREDRAW);
    RECT page = {0, 0, width, 1000};
    SendMessageW(strip_, TCM_ADJUSTRECT, FALSE, reinterpret_cast<LPARAM>(&page));
    width_ = width;
    height_ = page.top;
    return height_;
}

}  // namespace shell
