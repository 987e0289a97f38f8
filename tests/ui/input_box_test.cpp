#include "ui/input_box.h"

#include "support/show.h"
#include "ui/control.h"
#include "ui/host.h"

#include <functional>

namespace {

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

void TypeAndPress(std::wstring_view text, WPARAM key) {
    for (const wchar_t each : text)
        SendMessageW(GetFocus(), WM_CHAR, each, 0);
    PostMessageW(GetFocus(), WM_KEYDOWN, key, 0);
}

// The box is on the screen, everything lies in it, and the prompt is wholly shown above the rest.
void CheckLayout(HWND dialog) {
    RECT client = {}, box = {}, area = {}, common = {}, former = {};
    GetClientRect(dialog, &client);
    GetWindowRect(dialog, &box);
    CHECK((box.left >= 0 && box.top >= 0 && box.right <= GetSystemMetrics(SM_CXSCREEN)));
    const HWND prompt = GetWindow(dialog, GW_CHILD);
    const win::WindowDc dc(prompt);
    const win::Selected font(dc.get(), reinterpret_cast<HFONT>(SendMessageW(prompt, WM_GETFONT, 0, 0)));
    RECT needed = {};
    GetClientRect(prompt, &needed);
    const LONG width = needed.right, height = needed.bottom;
    DrawTextW(dc.get(), ui::TextOf(prompt).c_str(), -1, &needed, DT_CALCRECT | DT_WORDBREAK | DT_NOPREFIX);
    CHECK((needed.right <= width && needed.bottom <= height));
    for (HWND child = prompt; child; child = GetWindow(child, GW_HWNDNEXT)) {
        GetWindowRect(child, &area);
        MapWindowPoints(nullptr, dialog, reinterpret_cast<POINT*>(&area), 2);
        CHECK((UnionRect(&common, &client, &area) && EqualRect(&common, &client)));
        CHECK((child == prompt || area.top >= height));
        CHECK_FALSE(IntersectRect(&common, &former, &area));
        former = area;
    }
}

}  // namespace

TEST_CASE("the input box returns what was typed on Enter and OK, nothing on Esc and on closing, and is read whole") {
    constexpr wchar_t kPrompt[] = L"復元ポイントを識別するのに役立つ説明を入力してください。";
    const win::Window owner(CreateWindowExW(0, L"STATIC", L"owner", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 200, 150, 700,
                                            500, nullptr, nullptr, nullptr, nullptr));
    const auto typed = Ask(owner.get(), kPrompt, [&](HWND dialog) {
        CHECK(ui::TextOf(dialog) == L"Qorvenix");
        CHECK(ui::TextOf(GetWindow(dialog, GW_CHILD)) == kPrompt);
        CHECK_FALSE(IsWindowEnabled(owner.get()));
        CheckLayout(dialog);
        TypeAndPress(L"  導入前 & \"1\"", VK_RETURN);
    });
    CHECK(typed == L"  導入前 & \"1\"");
    CHECK(IsWindowEnabled(owner.get()));
    CHECK(Ask(owner.get(), kPrompt, [](HWND dialog) { SendMessageW(GetDlgItem(dialog, IDOK), BM_CLICK, 0, 0); }) ==
          L"");
    CHECK_FALSE(Ask(owner.get(), kPrompt, [](HWND) { TypeAndPress(L"typed", VK_ESCAPE); }).has_value());

    SetWindowPos(owner.get(), nullptr, -400, -200, 300, 200, SWP_NOZORDER);
    CHECK_FALSE(Ask(owner.get(), L"Lines & more:\r\n" + std::wstring(300, L'説'), [](HWND dialog) {
                    CheckLayout(dialog);
                    PostMessageW(dialog, WM_SYSCOMMAND, SC_CLOSE, 0);
                }).has_value());
}
