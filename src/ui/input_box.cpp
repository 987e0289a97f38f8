#include "ui/input_box.h"

#include "ui/control.h"

#include <algorithm>
#include <iterator>

namespace ui {
namespace {

constexpr wchar_t kOk[] = L"OK";
constexpr wchar_t kCancel[] = L"キャンセル";
constexpr int kEditId = 100;

// In dialog units, as Windows' own dialogs measure.
constexpr int kMargin = 7;
constexpr int kGap = 4;
constexpr int kLeastWidth = 200;
constexpr int kMostWidth = 300;  // a longer prompt is wrapped
constexpr int kFieldHeight = 14;
constexpr int kButtonWidth = 50;

// A dialog without controls: they are made, in the right font, when it opens.
struct EmptyDialog {
    DLGTEMPLATE dialog;
    WORD menu, window_class, title;
};
constexpr EmptyDialog kTemplate = {
    {DS_MODALFRAME | DS_3DLOOK | WS_POPUP | WS_CAPTION | WS_SYSMENU, 0, 0, 0, 0, 0, 0}, 0, 0, 0};

class InputBox {
public:
    InputBox(std::wstring_view prompt, std::wstring_view title) : prompt_(prompt), title_(title) {}

    std::optional<std::wstring> show(HWND owner) {
        const INT_PTR button = DialogBoxIndirectParamW(GetModuleHandleW(nullptr), &kTemplate.dialog, owner,
                                                       &InputBox::procedure, reinterpret_cast<LPARAM>(this));
        if (button != IDOK) return {};
        return std::move(text_);
    }

private:
    static INT_PTR CALLBACK procedure(HWND dialog, UINT message, WPARAM wparam, LPARAM lparam) {
        if (message == WM_INITDIALOG) {
            SetWindowLongPtrW(dialog, DWLP_USER, lparam);
            auto* const box = reinterpret_cast<InputBox*>(lparam);
            box->dialog_ = dialog;
            box->open();
            return FALSE;  // the focus is already where it belongs
        }
        auto* const box = reinterpret_cast<InputBox*>(GetWindowLongPtrW(dialog, DWLP_USER));
        const WORD command = LOWORD(wparam);
        if (!box || message != WM_COMMAND || (command != IDOK && command != IDCANCEL)) return FALSE;
        if (command == IDOK) box->text_ = TextOf(GetDlgItem(dialog, kEditId));
        EndDialog(dialog, command);
        return TRUE;
    }

    void open() {
        SetWindowTextW(dialog_, title_.c_str());
        measure();
        const int prompt_height = measure_prompt();
        const int field_top = down(kMargin + kGap) + prompt_height;
        const int button_top = field_top + down(kFieldHeight + kMargin);
        const int button_left = across(kMargin) + width_ - across(2 * kButtonWidth + kGap);
        const int button_height = down(kFieldHeight);
        add(L"STATIC", prompt_.c_str(), SS_LEFT | SS_NOPREFIX, -1, across(kMargin), down(kMargin), width_,
            prompt_height);
        const HWND edit = add(L"EDIT", L"", WS_TABSTOP | ES_AUTOHSCROLL, kEditId, across(kMargin), field_top, width_,
                              down(kFieldHeight));
        add(L"BUTTON", kOk, WS_TABSTOP | BS_DEFPUSHBUTTON, IDOK, button_left, button_top, across(kButtonWidth),
            button_height);
        add(L"BUTTON", kCancel, WS_TABSTOP, IDCANCEL, button_left + across(kButtonWidth + kGap), button_top,
            across(kButtonWidth), button_height);
        place(width_ + across(2 * kMargin), button_top + button_height + down(kMargin));
        SetFocus(edit);
    }

    // Takes the message font and its dialog units: a quarter of a letter's mean width, an eighth of its height.
    void measure() {
        font_ = CreateMessageFont();
        const win::WindowDc dc(dialog_);
        const win::Selected selected(dc.get(), font_.get());
        constexpr wchar_t kLetters[] = L"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
        constexpr int kLetterCount = static_cast<int>(std::size(kLetters)) - 1;
        GetTextExtentPoint32W(dc.get(), kLetters, kLetterCount, &letter_);
        letter_.cx = (letter_.cx + kLetterCount / 2) / kLetterCount;
    }
    int across(int units) const { return MulDiv(units, letter_.cx, 4); }
    int down(int units) const { return MulDiv(units, letter_.cy, 8); }

    // Settles the width of the contents; returns the height of the prompt in it.
    int measure_prompt() {
        const win::WindowDc dc(dialog_);
        const win::Selected selected(dc.get(), font_.get());
        RECT area = {0, 0, across(kMostWidth), 0};
        DrawTextW(dc.get(), prompt_.c_str(), -1, &area, DT_CALCRECT | DT_WORDBREAK | DT_NOPREFIX);
        width_ = std::max<int>(area.right, across(kLeastWidth));
        return area.bottom;
    }

    HWND add(const wchar_t* control, const wchar_t* text, DWORD style, int id, int x, int y, int width,
             int height) const {
        const DWORD edge = id == kEditId ? WS_EX_CLIENTEDGE : 0;
        const HWND window =
            CreateWindowExW(edge, control, text, WS_CHILD | WS_VISIBLE | style, x, y, width, height, dialog_,
                            reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), GetModuleHandleW(nullptr), nullptr);
        SendMessageW(window, WM_SETFONT, reinterpret_cast<WPARAM>(font_.get()), FALSE);
        return window;
    }

    // In the middle of the owner, but wholly on its monitor.
    void place(int client_width, int client_height) const {
        RECT box = {0, 0, client_width, client_height};
        AdjustWindowRectEx(&box, static_cast<DWORD>(GetWindowLongW(dialog_, GWL_STYLE)), FALSE,
                           static_cast<DWORD>(GetWindowLongW(dialog_, GWL_EXSTYLE)));
        const int width = box.right - box.left;
        const int height = box.bottom - box.top;
        MONITORINFO monitor = {};
        monitor.cbSize = sizeof monitor;
        const HWND owner = GetWindow(dialog_, GW_OWNER);
        GetMonitorInfoW(MonitorFromWindow(owner ? owner : dialog_, MONITOR_DEFAULTTONEAREST), &monitor);
        const RECT& work = monitor.rcWork;
        RECT around = work;
        if (owner) GetWindowRect(owner, &around);
        const int x = (around.left + around.right - width) / 2;
        const int y = (around.top + around.bottom - height) / 2;
        SetWindowPos(dialog_, nullptr, std::max<int>(std::min<int>(x, work.right - width), work.left),
                     std::max<int>(std::min<int>(y, work.bottom - height), work.top), width, height,
                     SWP_NOZORDER | SWP_NOACTIVATE);
    }

    const std::wstring prompt_;
    const std::wstring title_;
    std::wstring text_;
    HWND dialog_ = nullptr;
    win::Font font_;
    SIZE letter_ = {};
    int width_ = 0;  // of everything between the margins
};

}  // namespace

std::optional<std::wstring> AskText(HWND owner, std::wstring_view prompt, std::wstring_view title) {
    return InputBox(prompt, title).show(owner);
}

}  // namespace ui
