#include "ui/tooltips.h"

#include <string>

namespace ui {
namespace {

constexpr int kWidestTip = 600;         // pixels at 96 dpi; longer texts go on in a second line
constexpr LPARAM kLongestTime = 30000;  // milliseconds a tip stays

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
    if (!window_) return;
    std::wstring shown(text);
    TTTOOLINFOW tool = {};
    tool.cbSize = TTTOOLINFOW_V2_SIZE;  // the size that every common-controls version takes
    tool.uFlags = TTF_IDISHWND | TTF_SUBCLASS;
    tool.hwnd = owner_;
    tool.uId = reinterpret_cast<UINT_PTR>(control);
    SendMessageW(window_, TTM_DELTOOLW, 0, reinterpret_cast<LPARAM>(&tool));
    if (shown.empty()) return;
    tool.lpszText = shown.data();
    SendMessageW(window_, TTM_ADDTOOLW, 0, reinterpret_cast<LPARAM>(&tool));
}

}  // namespace ui
