// A walk of random steps: what the window shows after each of them is what painting all of it again would show.
#include "driven.h"

#include "support/hostile.h"
#include "support/import_hook.h"
#include "support/test_key.h"
#include "win/text.h"

#include <vector>

using namespace shell;

namespace {

constexpr std::uint64_t kSteps = 60;  // of each look

// ---- the look ---------------------------------------------------------------------------------------------------

bool themed = true;
int screen_dpi = 96;
int font_height = 12;  // pixels, of message boxes
ImportHook* capabilities = nullptr;
ImportHook* parameters = nullptr;

int WINAPI ShownCapabilities(HDC dc, int index) {
    return index == LOGPIXELSX ? screen_dpi : capabilities->original<int WINAPI(HDC, int)>()(dc, index);
}

BOOL WINAPI ShownParameters(UINT action, UINT number, void* data, UINT flags) {
    const BOOL done = parameters->original<BOOL WINAPI(UINT, UINT, void*, UINT)>()(action, number, data, flags);
    if (action == SPI_GETNONCLIENTMETRICS)
        static_cast<NONCLIENTMETRICSW*>(data)->lfMessageFont.lfHeight = -MulDiv(font_height, screen_dpi, 96);
    return done;
}

// A screen of that resolution and a font of that height at 96 dpi, for windows that are opened from now on.
struct Screen {
    Screen(int dpi, int font) {
        REQUIRE((of_device && of_system));
        capabilities = &of_device;
        parameters = &of_system;
        screen_dpi = dpi;
        font_height = font;
    }

    ImportHook of_device{"GetDeviceCaps", &ShownCapabilities};
    ImportHook of_system{"SystemParametersInfoW", &ShownParameters};
};

// From now on every window of this program has the look of Windows 2000. There is no way back: this file's tests are
// the last ones.
void SwitchThemesOff() {
    const HMODULE themes = LoadLibraryW(L"uxtheme.dll");
    const FARPROC found = GetProcAddress(themes, "EnableTheming");
    REQUIRE((found != nullptr));
    themed = false;
    reinterpret_cast<HRESULT(WINAPI*)(BOOL)>(reinterpret_cast<void*>(found))(FALSE);
}

// ---- pictures ---------------------------------------------------------------------------------------------------

struct Picture {
    int width = 0;
    int height = 0;
    std::vector<DWORD> pixels;
};

// The client area with everything in it. The caret is hidden meanwhile; a tool tip is a window of its own.
Picture Take(HWND window) {
    const HWND focus = GetFocus();
    HideCaret(focus);
    RECT client = {};
    GetClientRect(window, &client);
    Picture picture = {client.right, client.bottom, {}};
    const HDC dc = GetDCEx(window, nullptr, DCX_CACHE);  // the window's own one would leave the controls out
    const HDC memory = CreateCompatibleDC(dc);
    BITMAPINFO format = {};
    format.bmiHeader = {sizeof format.bmiHeader, picture.width, -picture.height, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
    void* bits = nullptr;
    const HBITMAP bitmap = CreateDIBSection(dc, &format, DIB_RGB_COLORS, &bits, nullptr, 0);
    const HGDIOBJ former = SelectObject(memory, bitmap);
    BitBlt(memory, 0, 0, picture.width, picture.height, dc, 0, 0, SRCCOPY);
    GdiFlush();
    const auto* first = static_cast<const DWORD*>(bits);
    picture.pixels.assign(first, first + picture.width * picture.height);
    SelectObject(memory, former);
    DeleteObject(bitmap);
    DeleteDC(memory);
    ReleaseDC(window, dc);
    ShowCaret(focus);
    return picture;
}

RECT Difference(const Picture& left, const Picture& right) {
    RECT all = {};
    for (int y = 0; y < left.height; ++y) {
        for (int x = 0; x < left.width; ++x) {
            const auto at = static_cast<std::size_t>(y * left.width + x);
            if (left.pixels[at] == right.pixels[at]) continue;
            const RECT pixel = {x, y, x + 1, y + 1};
            UnionRect(&all, &all, &pixel);
        }
    }
    return all;
}

// ---- the walk ---------------------------------------------------------------------------------------------------

class Walk {
public:
    Walk(const Driven& driven, hostile::Source& source)
        : driven_(driven), window_(driven.form->window()), source_(source) {}

    // Returns the name of what was done.
    const char* step() {
        struct Step {
            const char* name;
            void (Walk::*go)();
        };
        constexpr Step kAll[] = {
            {"tab", &Walk::click_tab},  {"tab", &Walk::click_tab}, {"wheel", &Walk::wheel}, {"size", &Walk::size},
            {"drag", &Walk::drag},      {"drag", &Walk::drag},     {"state", &Walk::state}, {"command", &Walk::command},
            {"row", &Walk::row},        {"scroll", &Walk::scroll}, {"sort", &Walk::sort},   {"key", &Walk::key},
            {"menu", &Walk::open_menu}, {"cover", &Walk::cover},   {"look", &Walk::look},   {"drop", &Walk::open_box}};
        const Step& step = source_.pick(kAll);
        (this->*step.go)();
        settle();
        return step.name;
    }

    void settle() const {
        driven_.form->pump();
        if (IsIconic(window_)) ShowWindow(window_, SW_RESTORE);
        driven_.form->pump();
    }

private:
    int below(int count) { return static_cast<int>(source_.below(static_cast<std::size_t>(count))); }
    ui::ListView shown_list() const {
        for (Control list = Control::ListView1_0; list <= Control::lvRestore; list = Element(list, 1)) {
            if (driven_.shown(list)) return driven_.list(list);
        }
        return {};
    }
    void resize(int width, int height) const {
        SetWindowPos(window_, nullptr, 0, 0, width, height, SWP_NOZORDER | SWP_NOACTIVATE | SWP_NOMOVE);
    }

    void click_tab() { driven_.click(below(driven_.tabs())); }
    void wheel() { driven_.wheel(source_.once_in(2) ? 120 : -120); }
    void size() { resize(480 + below(700), 320 + below(500)); }

    // The border is dragged: some of the steps are painted, some come too fast for it.
    void drag() {
        const int across = below(3) - 1;
        const int down = below(3) - 1;
        for (int moves = 2 + below(8); moves > 0; --moves) {
            RECT now = {};
            GetWindowRect(window_, &now);
            resize(now.right - now.left + across * below(40), now.bottom - now.top + down * below(40));
            if (source_.once_in(2)) driven_.form->pump();
        }
    }

    void state() {
        constexpr int kStates[] = {SW_MAXIMIZE, SW_RESTORE, SW_MINIMIZE, SW_HIDE};
        const int wanted = source_.pick(kStates);
        ShowWindow(window_, wanted);
        driven_.form->pump();
        if (wanted == SW_HIDE) ShowWindow(window_, SW_SHOWNA);
    }

    void command() {
        if (source_.once_in(2)) {
            driven_.command(MenuArray::mnuFileItem, FileItem::Refresh);
        } else {
            driven_.command(MenuArray::mnuViewItem, source_.once_in(2) ? ViewItem::Stripes : ViewItem::Icons);
        }
    }

    void row() {
        const ui::ListView list = shown_list();
        if (list.count() > 0) list.select(below(list.count() + 1) - 1);
    }

    void scroll() {
        const HWND list = shown_list().window();
        if (list) SendMessageW(list, LVM_SCROLL, 0, below(2000) - 1000);
    }

    void sort() {
        const ui::ListView list = shown_list();
        if (!list.window()) return;
        NMLISTVIEW click = {};
        click.hdr = {list.window(), static_cast<UINT_PTR>(GetDlgCtrlID(list.window())),
                     static_cast<UINT>(LVN_COLUMNCLICK)};
        click.iItem = -1;
        click.iSubItem = below(list.column_count());
        SendMessageW(window_, WM_NOTIFY, click.hdr.idFrom, reinterpret_cast<LPARAM>(&click));
    }

    void key() {
        constexpr WPARAM kKeys[] = {VK_TAB, VK_DOWN, VK_END, VK_HOME, VK_NEXT, VK_LEFT};
        const WPARAM chosen = source_.pick(kKeys);
        const HWND focus = GetFocus();
        PostMessageW(focus ? focus : window_, WM_KEYDOWN, chosen, 1);
        PostMessageW(focus ? focus : window_, WM_KEYUP, chosen, 1);
    }

    // Opens a menu, walks in it and leaves it without choosing.
    void open_menu() {
        constexpr wchar_t kMenus[] = {L'f', L'v', L'd', L'r', L'h'};
        PostMessageW(window_, WM_SYSCOMMAND, SC_KEYMENU, static_cast<LPARAM>(source_.pick(kMenus)));
        for (const int press : {VK_DOWN, VK_RIGHT, VK_ESCAPE, VK_ESCAPE, VK_ESCAPE})
            PostMessageW(window_, WM_KEYDOWN, static_cast<WPARAM>(press), 1);
    }

    // Another window lies over a part of this one, and leaves.
    void cover() {
        RECT client = {};
        GetClientRect(window_, &client);
        POINT corner = {below(client.right), below(client.bottom)};
        RECT part = {corner.x, corner.y, corner.x + 1 + below(300), corner.y + 1 + below(300)};
        ClientToScreen(window_, &corner);
        const win::Window other(CreateWindowExW(WS_EX_TOPMOST | WS_EX_NOACTIVATE, L"STATIC", L"", WS_POPUP | WS_VISIBLE,
                                                corner.x, corner.y, part.right - part.left, part.bottom - part.top,
                                                nullptr, nullptr, nullptr, nullptr));
        driven_.form->pump();
        ShowWindow(other.get(), SW_HIDE);
        // Where windows are not composed of kept pictures, what was covered has to be painted. With a theme Wine draws
        // a part of a scroll bar or of a frame otherwise than the same part of the whole.
        if (themed) return;
        RedrawWindow(window_, &part, nullptr, RDW_ERASE | RDW_FRAME | RDW_INVALIDATE | RDW_ALLCHILDREN);
    }

    void look() {
        constexpr UINT kMessages[] = {WM_THEMECHANGED, WM_SYSCOLORCHANGE, WM_SETTINGCHANGE};
        font_height = source_.once_in(2) ? 12 : 12 + below(7);
        SendMessageW(window_, source_.pick(kMessages), 0, 0);
    }

    void open_box() {
        const HWND box = driven_.at(Control::cb);
        if (!IsWindowVisible(box)) return;
        SendMessageW(box, CB_SHOWDROPDOWN, TRUE, 0);
        driven_.form->pump();
        SendMessageW(box, CB_SHOWDROPDOWN, FALSE, 0);
    }

    const Driven& driven_;
    const HWND window_;
    hostile::Source& source_;
};

// Enough entries of the Uninstall key for a list that scrolls, in both directions.
class Programs {
public:
    Programs() {
        for (int number = 0; number < 60; ++number) {
            const std::wstring name = L"プログラム " + win::ToText(number);
            const auto& key = keys_.emplace_back(std::make_unique<TestKey>(
                HKEY_LOCAL_MACHINE,
                L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\QvxWalk" + win::ToText(number)));
            key->set_text({}, L"DisplayName", name + (number % 7 == 0 ? L" (KB900001)" : L""));
            key->set_text({}, L"UninstallString", L"C:\\Program Files\\" + name + L"\\uninst.exe");
            key->set_text({}, L"InstallLocation", L"C:\\Program Files\\" + name);
            key->set_text({}, L"HelpLink", L"https://help.example/" + win::ToText(number));
            key->set_text({}, L"DisplayIcon", L"C:\\windows\\regedit.exe");
        }
    }

private:
    std::vector<std::unique_ptr<TestKey>> keys_;
};

void WalkAt(int dpi) {
    const SettingsFile settings;
    const Programs programs;
    const Screen screen(dpi, 12);
    const Driven driven;
    const HWND window = driven.form->window();
    SetCursorPos(GetSystemMetrics(SM_CXSCREEN) - 1, 0);  // over nothing that lights up under the pointer
    hostile::Run("painting", kSteps, [&](hostile::Source& source, std::uint64_t) {
        const std::string done = Walk(driven, source).step();
        const Picture seen = Take(window);
        RedrawWindow(window, nullptr, nullptr,
                     RDW_ERASE | RDW_FRAME | RDW_INVALIDATE | RDW_ALLCHILDREN | RDW_UPDATENOW);
        const Picture whole = Take(window);
        const RECT difference = Difference(seen, whole);
        CAPTURE(done);
        CAPTURE(driven.tab());
        CAPTURE(seen.width);
        CAPTURE(seen.height);
        CAPTURE(difference.left);
        CAPTURE(difference.top);
        CAPTURE(difference.right);
        CAPTURE(difference.bottom);
        CHECK(IsRectEmpty(&difference));
    });
}

}  // namespace

TEST_CASE("columns and the least window follow the font as well as the resolution") {
    struct Look {
        int dpi;
        int font;
        int scale;
    };
    for (const Look& look : {Look{96, 12, 96}, {144, 12, 144}, {96, 18, 144}, {144, 18, 216}}) {
        CAPTURE(look.scale);
        const SettingsFile settings("W=15\r\nH=15\r\n");
        const Screen screen(look.dpi, look.font);
        const Driven window;
        RECT place = {};
        GetWindowRect(window.form->window(), &place);
        CHECK(place.right - place.left == 480 * look.scale / 96);
        CHECK(place.bottom - place.top == 320 * look.scale / 96);
        CHECK(window.list(Control::ListView1_0).column_width(0) == 260 * look.scale / 96);
        CHECK(window.list(Control::ListView2).column_width(0) == 200 * look.scale / 96);
    }
}

TEST_CASE("after every step the window shows what painting all of it shows") {
    WalkAt(96);
    WalkAt(144);
    SwitchThemesOff();
    WalkAt(96);
    WalkAt(144);
}
