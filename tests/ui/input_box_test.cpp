#include "ui/input_box.h"

#include "support/show.h"
#include "ui/host.h"
#include "win/handle.h"

#include <functional>
#include <string>
#include <vector>

namespace {

constexpr wchar_t kPrompt[] = L"復元ポイントを識別するのに役立つ説明を入力してください。";
constexpr int kEdit = 100;

std::wstring TextOf(HWND window) {
    wchar_t text[1000] = {};
    return {text, static_cast<std::size_t>(GetWindowTextW(window, text, 1000))};
}

// What a user does once the dialog is there.
std::function<void(HWND)> act;
HWND opened_over = nullptr;

void CALLBACK Act(HWND, UINT, UINT_PTR timer, DWORD) {
    const HWND dialog = GetActiveWindow();
    if (!dialog || dialog == opened_over) return;
    KillTimer(nullptr, timer);
    act(dialog);
}

// Asks over `owner` and does `user` while the dialog is open.
std::optional<std::wstring> Ask(HWND owner, std::wstring_view prompt, std::function<void(HWND)> user) {
    act = std::move(user);
    opened_over = owner;
    SetTimer(nullptr, 0, 50, &Act);
    return ui::AskText(owner, prompt, ui::kProductName);
}

void Type(HWND dialog, std::wstring_view text) {
    for (const wchar_t each : text)
        SendMessageW(GetDlgItem(dialog, kEdit), WM_CHAR, each, 0);
}

void Press(WPARAM key) { PostMessageW(GetFocus(), WM_KEYDOWN, key, 0); }

// Nothing overlaps, everything lies inside.
void CheckLayout(HWND dialog) {
    std::vector<RECT> areas;
    RECT client = {};
    GetClientRect(dialog, &client);
    InflateRect(&client, -1, -1);
    for (HWND child = GetWindow(dialog, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT)) {
        RECT area = {};
        GetWindowRect(child, &area);
        MapWindowPoints(nullptr, dialog, reinterpret_cast<POINT*>(&area), 2);
        RECT common = {};
        UnionRect(&common, &client, &area);
        CHECK(EqualRect(&common, &client));
        for (const RECT& other : areas)
            CHECK_FALSE(IntersectRect(&common, &area, &other));
        areas.push_back(area);
    }
    REQUIRE(areas.size() == 4);
    // The prompt is wholly shown, in the font of messages.
    const HWND prompt = GetWindow(dialog, GW_CHILD);
    NONCLIENTMETRICSW metrics = {};
    metrics.cbSize = sizeof metrics;
    SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0);
    const auto font = reinterpret_cast<HFONT>(SendMessageW(prompt, WM_GETFONT, 0, 0));
    LOGFONTW look = {};
    GetObjectW(font, sizeof look, &look);
    CHECK(look.lfHeight == metrics.lfMessageFont.lfHeight);
    CHECK(std::wstring(look.lfFaceName) == metrics.lfMessageFont.lfFaceName);
    RECT needed = {0, 0, areas[0].right - areas[0].left, 0};
    const win::WindowDc dc(prompt);
    const win::Selected selected(dc.get(), font);
    DrawTextW(dc.get(), TextOf(prompt).c_str(), -1, &needed, DT_CALCRECT | DT_WORDBREAK | DT_NOPREFIX);
    CHECK(needed.bottom <= areas[0].bottom - areas[0].top);
    CHECK(needed.right <= areas[0].right - areas[0].left);
}

}  // namespace

TEST_CASE("The input box returns what was typed on Enter and OK, nothing on Esc") {
    const HWND owner = CreateWindowExW(0, L"STATIC", L"owner", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 200, 150, 700, 500,
                                       nullptr, nullptr, nullptr, nullptr);
    const auto typed = Ask(owner, kPrompt, [&](HWND dialog) {
        CHECK(TextOf(dialog) == L"Qorvenix");
        CHECK(TextOf(GetWindow(dialog, GW_CHILD)) == kPrompt);
        CHECK(GetFocus() == GetDlgItem(dialog, kEdit));
        CHECK_FALSE(IsWindowEnabled(owner));
        CheckLayout(dialog);
        RECT box = {}, around = {};
        GetWindowRect(dialog, &box);
        GetWindowRect(owner, &around);
        CHECK(std::abs(box.left + box.right - around.left - around.right) <= 1);
        CHECK(std::abs(box.top + box.bottom - around.top - around.bottom) <= 1);
        Type(dialog, L"  導入前 & \"1\"");
        Press(VK_RETURN);
    });
    CHECK(typed == L"  導入前 & \"1\"");
    CHECK(IsWindowEnabled(owner));

    CHECK(Ask(owner, kPrompt, [](HWND dialog) { PostMessageW(GetDlgItem(dialog, IDOK), BM_CLICK, 0, 0); }) == L"");
    CHECK_FALSE(Ask(owner, kPrompt, [](HWND dialog) {
                    Type(dialog, L"typed");
                    Press(VK_ESCAPE);
                }).has_value());
    DestroyWindow(owner);
}

TEST_CASE("The input box wraps a long prompt, stays on the screen, and closing it is Cancel") {
    const HWND owner = CreateWindowExW(0, L"STATIC", L"owner", WS_OVERLAPPEDWINDOW | WS_VISIBLE, -400, -200, 300, 200,
                                       nullptr, nullptr, nullptr, nullptr);
    const std::wstring prompt = L"Lines & more:\r\n" + std::wstring(300, L'説');
    CHECK_FALSE(Ask(owner, prompt, [](HWND dialog) {
                    CheckLayout(dialog);
                    RECT box = {};
                    GetWindowRect(dialog, &box);
                    CHECK(box.left >= 0);
                    CHECK(box.top >= 0);
                    CHECK(box.right <= GetSystemMetrics(SM_CXSCREEN));
                    PostMessageW(dialog, WM_SYSCOMMAND, SC_CLOSE, 0);
                }).has_value());
    DestroyWindow(owner);
}
