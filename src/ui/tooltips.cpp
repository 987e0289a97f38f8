#include "ui/tooltips.h"

#include "ui/control.h"

namespace ui {
namespace {

constexpr int kWidestTip = 600;         // pixels at 96 dpi; longer texts go on in a second line
constexpr LPARAM kLongestTime = 30000;  // milliseconds a tip stays
constexpr UINT_PTR kShowTimer = 1;      // the control's own: the pointer rests

}  // namespace

void Tooltips::create(HWND owner, int dpi) {
    owner_ = owner;
    window_ = CreateWindowExW(WS_EX_TOPMOST, TOOLTIPS_CLASSW, nullptr, WS_POPUP | TTS_NOPREFIX | TTS_ALWAYSTIP, 0, 0, 0,
                              0, owner, nullptr, nullptr, nullptr);
    SendMessageW(window_, TTM_SETMAXTIPWIDTH, 0, MulDiv(kWidestTip, dpi, 96));
    SendMessageW(window_, TTM_SETDELAYTIME, TTDT_AUTOPOP, kLongestTime);
}

void Tooltips::set_font(HFONT font) const { SendMessageW(window_, WM_SETFONT, reinterpret_cast<WPARAM>(font), FALSE); }

void Tooltips::set(HWND control, std::wstring_view text) const {
    std::wstring shown(text);
    add(control, shown.data());
}

void Tooltips::set_whole_text(HWND control) const { add(control, LPSTR_TEXTCALLBACKW); }

void Tooltips::add(HWND control, wchar_t* text) const {
    if (!window_) return;
    TTTOOLINFOW tool = {};
    tool.cbSize = TTTOOLINFOW_V2_SIZE;  // the size that every common-controls version takes
    tool.uFlags = TTF_IDISHWND | TTF_SUBCLASS;
    tool.hwnd = owner_;
    tool.uId = reinterpret_cast<UINT_PTR>(control);
    SendMessageW(window_, TTM_DELTOOLW, 0, reinterpret_cast<LPARAM>(&tool));
    if (text != LPSTR_TEXTCALLBACKW && *text == L'\0') return;
    tool.lpszText = text;
    SendMessageW(window_, TTM_ADDTOOLW, 0, reinterpret_cast<LPARAM>(&tool));
}

bool Tooltips::answer(LPARAM lparam) {
    const NMHDR header = NotificationOf(lparam);
    if (!window_ || header.hwndFrom != window_) return false;
    if (header.code == static_cast<UINT>(TTN_GETDISPINFOW)) {
        const HWND control = reinterpret_cast<HWND>(header.idFrom);
        whole_text_ = IsTextCut(control) ? TextOf(control) : std::wstring();
        reinterpret_cast<NMTTDISPINFOW*>(lparam)->lpszText = whole_text_.data();
    }
    return true;
}

void Tooltips::enable(bool enabled) const {
    SendMessageW(window_, TTM_ACTIVATE, enabled, 0);
    // Under Wine a tip that is about to appear still would.
    if (!enabled) KillTimer(window_, kShowTimer);
}

}  // namespace ui
