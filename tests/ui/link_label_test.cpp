#include "ui/link_label.h"

#include "win/handle.h"

#include <doctest/doctest.h>

#include <string>

TEST_CASE("to the pointer a label is its text, and nothing is beside it") {
    constexpr int kWidth = 300;
    constexpr int kHeight = 40;
    ui::RegisterLinkLabel(GetModuleHandleW(nullptr));
    const win::Window frame(
        CreateWindowExW(0, L"STATIC", L"", WS_POPUP, 50, 50, 640, 480, nullptr, nullptr, nullptr, nullptr));
    const HWND label = CreateWindowExW(0, ui::kLinkClass, L"", WS_CHILD | WS_VISIBLE, 10, 10, kWidth, kHeight,
                                       frame.get(), nullptr, nullptr, nullptr);
    SendMessageW(label, WM_SETFONT, reinterpret_cast<WPARAM>(GetStockObject(DEFAULT_GUI_FONT)), FALSE);
    const auto is_there = [&](int x, int y) {
        POINT point = {x, y};
        ClientToScreen(label, &point);
        return SendMessageW(label, WM_NCHITTEST, 0, MAKELPARAM(point.x, point.y)) == HTCLIENT;
    };
    CHECK_FALSE(is_there(2, kHeight / 2));

    SetWindowTextW(label, L"http://a.jp/");
    SIZE text = {};
    {
        const win::WindowDc dc(label);
        const win::Selected font(dc.get(), static_cast<HFONT>(GetStockObject(DEFAULT_GUI_FONT)));
        GetTextExtentPoint32W(dc.get(), L"http://a.jp/", 12, &text);
    }
    CHECK(is_there(0, kHeight / 2));
    CHECK(is_there(text.cx, kHeight / 2));
    CHECK_FALSE(is_there(text.cx + 3, kHeight / 2));
    CHECK_FALSE(is_there(text.cx / 2, 2));
    CHECK_FALSE(is_there(text.cx / 2, kHeight - 3));

    SetWindowTextW(label, (L"http://a.jp/" + std::wstring(500, L'x')).c_str());
    CHECK(is_there(kWidth - 1, kHeight / 2));
}
