// A walk of random steps: what the window shows after each of them is what painting all of it again would show.
#include "driven.h"

#include "support/hostile.h"
#include "support/throw_away.h"
#include "win/system_library.h"

#include <functional>

using namespace shell;

namespace {

constexpr std::uint64_t kSteps = 50;  // of each look

// From now on every window of this program has the look of Windows 2000. There is no way back: this file's tests are
// the last ones.
void SwitchThemesOff() {
    const auto enable = win::FindFunction<HRESULT(WINAPI*)(BOOL)>(LoadLibraryW(L"uxtheme.dll"), "EnableTheming");
    REQUIRE((enable != nullptr));
    enable(FALSE);
}

// The font of message boxes, for windows that are opened or told of it.
void SetMessageFont(int height) {
    NONCLIENTMETRICSW metrics = {};
    metrics.cbSize = sizeof metrics;
    SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0);
    metrics.lfMessageFont.lfHeight = -height;
    SystemParametersInfoW(SPI_SETNONCLIENTMETRICS, sizeof metrics, &metrics, 0);
}

// The client area with everything in it. The caret is hidden meanwhile; a tool tip is a window of its own.
std::vector<DWORD> Picture(HWND window) {
    const HWND focus = GetFocus();
    HideCaret(focus);
    RECT client = {};
    GetClientRect(window, &client);
    const HDC dc = GetDCEx(window, nullptr, DCX_CACHE);  // the window's own one would leave the controls out
    const win::MemoryDc memory(CreateCompatibleDC(dc));
    BITMAPINFO format = {};
    format.bmiHeader = {sizeof format.bmiHeader, client.right, -client.bottom, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
    void* bits = nullptr;
    const win::Bitmap bitmap(CreateDIBSection(dc, &format, DIB_RGB_COLORS, &bits, nullptr, 0));
    const win::Selected selected(memory.get(), bitmap.get());
    BitBlt(memory.get(), 0, 0, client.right, client.bottom, dc, 0, 0, SRCCOPY);
    GdiFlush();
    ReleaseDC(window, dc);
    ShowCaret(focus);
    const auto* const pixels = static_cast<const DWORD*>(bits);
    return {pixels, pixels + client.right * client.bottom};
}

void CheckPainted(const Driven& driven, const std::string& done) {
    driven.pump();
    driven.pump();
    RECT client = {};
    GetClientRect(driven.window(), &client);
    MapWindowPoints(driven.window(), nullptr, reinterpret_cast<POINT*>(&client), 2);
    const RECT strip = BoundsOf(driven.at(Control::tb)), status = BoundsOf(driven.at(Control::st));
    CHECK((strip.right == client.right && status.bottom == client.bottom));
    const std::vector<DWORD> seen = Picture(driven.window());
    RedrawWindow(driven.window(), nullptr, nullptr,
                 RDW_ERASE | RDW_FRAME | RDW_INVALIDATE | RDW_ALLCHILDREN | RDW_UPDATENOW);
    const std::vector<DWORD> whole = Picture(driven.window());
    const auto first_different = std::ranges::mismatch(seen, whole).in1 - seen.begin();
    CAPTURE(done);
    CAPTURE(first_different);
    CHECK((seen == whole));
}

void WalkWith(int font_height) {
    REQUIRE_THROW_AWAY();
    const SettingsFile settings("W=15\r\nH=15\r\n");
    const Seeded seeded;
    SetMessageFont(font_height);
    const Driven driven;
    const HWND window = driven.window();
    const auto resize = [&](int width, int height) {
        SetWindowPos(window, nullptr, 0, 0, width, height, SWP_NOZORDER | SWP_NOACTIVATE | SWP_NOMOVE);
    };
    const RECT least = BoundsOf(window);
    CHECK((least.right - least.left == 40 * font_height && least.bottom - least.top == 320 * font_height / 12));
    CHECK(driven.list(Control::ListView1_0).column_width(0) == 260 * font_height / 12);
    CHECK(driven.list(Control::ListView2).column_width(0) == 200 * font_height / 12);
    SetCursorPos(GetSystemMetrics(SM_CXSCREEN) - 1, 0);  // over nothing that lights up under the pointer
    resize(800, 533);
    for (int tab = 0; tab < kTabs; ++tab) {
        driven.click(tab);
        driven.command(MenuArray::mnuViewItem, ViewItem::Stripes);
        CheckPainted(driven, "stripes");
    }

    hostile::Run("painting", kSteps, [&](hostile::Source& source, std::uint64_t) {
        const auto below = [&](int count) { return static_cast<int>(source.below(static_cast<std::size_t>(count))); };
        const Control view = kViews[std::min(driven.tab(), kInformation - 1)];
        const std::pair<const char*, std::function<void()>> steps[] = {
            {"tab", [&] { driven.click(below(kTabs)); }},
            {"row", [&] { driven.list(view).select(below(driven.list(view).count() + 1) - 1); }},
            {"key", [&] { PostMessageW(GetFocus(), WM_KEYDOWN, below(2) ? VK_TAB : VK_NEXT, 1); }},
            {"scroll", [&] { SendMessageW(driven.at(view), LVM_SCROLL, 0, below(2000) - 1000); }},
            {"sort", [&] { driven.click_header(view, below(3)); }},
            {"refresh", [&] { driven.command(MenuArray::mnuFileItem, FileItem::Refresh); }},
            {"view", [&] { driven.command(MenuArray::mnuViewItem, below(2) ? ViewItem::Stripes : ViewItem::Icons); }},
            // The border is dragged: some of the steps are painted, some come too fast for it.
            {"drag",
             [&] {
                 const int across = below(3) - 1, down = below(3) - 1;
                 for (int moves = 2 + below(8); moves > 0; --moves) {
                     const RECT now = BoundsOf(window);
                     resize(now.right - now.left + across * below(40), now.bottom - now.top + down * below(40));
                     if (below(2)) driven.pump();
                 }
             }},
            {"state",
             [&] {
                 ShowWindow(window, below(2) ? SW_MAXIMIZE : SW_RESTORE);
                 ShowWindow(window, below(2) ? SW_MINIMIZE : SW_HIDE);
                 driven.pump();
                 ShowWindow(window, IsIconic(window) ? SW_RESTORE : SW_SHOWNA);
             }},
            {"look", [&] {
                 constexpr UINT kMessages[] = {WM_THEMECHANGED, WM_SYSCOLORCHANGE, WM_SETTINGCHANGE};
                 SetMessageFont(12 + below(2) * below(7));
                 SendMessageW(window, source.pick(kMessages), 0, 0);
             }}};
        const auto& step = source.pick(steps);
        step.second();
        CheckPainted(driven, step.first);
    });
    SetMessageFont(12);
}

}  // namespace

TEST_CASE("after every step the window shows what painting all of it shows, with a theme and without, in any font") {
    WalkWith(12);
    SwitchThemesOff();
    WalkWith(18);
}
