// A random walk through the whole window: what the user does arrives before, in the middle of and after fills and
// questions, and after every step the press, the row, the details and the tab agree.
#include "driven.h"

#include "programs/uninstall_key.h"
#include "services/service_list.h"
#include "startup/startup_menu.h"
#include "startup/startup_scan.h"
#include "support/hostile.h"
#include "support/test_key.h"
#include "ui/clipboard.h"
#include "win/text.h"

#include <algorithm>
#include <cwchar>
#include <deque>
#include <memory>

using namespace shell;

namespace {

constexpr std::uint64_t kWalks = 3;
constexpr int kSteps = 70;
constexpr int kPrograms = 120;
constexpr int kUpdates = 60;
constexpr int kStartups = 60;
constexpr wchar_t kSentinel[] = L"nothing was copied";

std::wstring Number(int number) { return win::PadZeros(static_cast<unsigned>(number), 3); }

// Long lists, whose rows are told from each other by their texts.
struct Seeded {
    Seeded() {
        const auto machine = programs::FindUninstallKey(programs::UninstallPlace::Machine, {});
        for (int number = 0; number < kPrograms + kUpdates; ++number) {
            const bool update = number >= kPrograms;
            auto& key =
                keys.emplace_back(HKEY_LOCAL_MACHINE, machine.path + (update ? L"\\KB" : L"\\Qvx") + Number(number));
            key.set_text({}, L"DisplayName", L"model " + Number(number * 77 % 1000));
            key.set_text({}, L"Publisher", (update ? L"Microsoft " : L"by ") + Number(number * 31 % 1000));
            key.set_text({}, L"UninstallString", L"C:\\none.exe");
            key.set_text({}, L"HelpLink", L"https://help.example/" + Number(number * 77 % 1000));
        }
        for (int number = 0; number < kStartups; ++number)
            run.set_text({}, L"model " + Number(number * 77 % 1000), L"C:\\none\\" + Number(number) + L".exe");
    }
    std::deque<TestKey> keys;
    TestKey run{HKEY_CURRENT_USER, startup::kRunKey};
};

std::wstring Clipboard() {
    std::wstring text;
    if (!OpenClipboard(nullptr)) return text;
    if (const HANDLE memory = GetClipboardData(CF_UNICODETEXT)) {
        text = static_cast<const wchar_t*>(GlobalLock(memory));
        GlobalUnlock(memory);
    }
    CloseClipboard();
    return text;
}

BOOL CALLBACK CancelBox(HWND window, LPARAM) {
    wchar_t name[8] = {};
    GetClassNameW(window, name, 8);
    if (std::wcscmp(name, L"#32770") == 0) PostMessageW(window, WM_COMMAND, IDCANCEL, 0);
    return TRUE;
}

void CALLBACK AnswerBoxes(HWND, UINT, UINT_PTR, DWORD) { EnumThreadWindows(GetCurrentThreadId(), &CancelBox, 0); }

struct TipSearch {
    HWND form;
    HWND control;
    std::wstring text;
};

BOOL CALLBACK ReadTip(HWND window, LPARAM parameter) {
    auto& search = *reinterpret_cast<TipSearch*>(parameter);
    wchar_t name[32] = {};
    GetClassNameW(window, name, 32);
    if (std::wcscmp(name, TOOLTIPS_CLASSW) != 0) return TRUE;
    wchar_t text[1024] = {};
    TTTOOLINFOW tool = {};
    tool.cbSize = TTTOOLINFOW_V2_SIZE;
    tool.hwnd = search.form;
    tool.uId = reinterpret_cast<UINT_PTR>(search.control);
    tool.lpszText = text;
    SendMessageW(window, TTM_GETTEXTW, 0, reinterpret_cast<LPARAM>(&tool));
    search.text += text;
    return TRUE;
}

// The tool tip of a control, empty for none.
std::wstring TipOf(HWND form, HWND control) {
    TipSearch search = {form, control, {}};
    EnumThreadWindows(GetCurrentThreadId(), &ReadTip, reinterpret_cast<LPARAM>(&search));
    return search.text;
}

struct View {
    Control list;
    MenuArray popup;  // that the list has; mnuFileItem for none
    bool details;
};

// In the order of the strip; the last tab has no list.
constexpr View kViews[] = {
    {Control::ListView1_0, MenuArray::mnuPopItem, true}, {Control::ListView1_1, MenuArray::mnuPopItem, true},
    {Control::lvStartUp, MenuArray::mnuStartItem, true}, {Control::lvService, MenuArray::mnuServiceItem, false},
    {Control::ListView2, MenuArray::mnuFileItem, false}, {Control::lvRestore, MenuArray::mnuFileItem, false},
    {Control::txtSys, MenuArray::mnuFileItem, false},
};
constexpr int kTabs = 7;
constexpr int kInformation = 6;

class Walk {
public:
    explicit Walk(hostile::Source& source) : source_(source) {
        SetWindowPos(form(), nullptr, 0, 0, 800 + 7 * static_cast<int>(source.below(20)),
                     400 + static_cast<int>(source.below(40)), SWP_NOMOVE | SWP_NOZORDER);
        // Menus that open and close report the real pointer to what lies under it.
        SetCursorPos(GetSystemMetrics(SM_CXSCREEN) - 1, GetSystemMetrics(SM_CYSCREEN) - 1);
        timer_ = SetTimer(nullptr, 0, 40, &AnswerBoxes);
    }
    Walk(const Walk&) = delete;
    Walk& operator=(const Walk&) = delete;
    ~Walk() { KillTimer(nullptr, timer_); }

    void step() {
        log_.clear();
        CAPTURE(log_);
        const std::size_t action = source_.below(9);
        for (std::size_t count = source_.below(4); count > 0; --count)
            post_something();
        note("then " + std::to_string(action));
        switch (action) {
            case 0:
                command(MenuArray::mnuFileItem, FileItem::Refresh);
                forget();
                break;
            case 1:
                command(source_.pick(kPopups), 99);
                break;
            case 2:
                command(MenuArray::mnuViewItem, source_.once_in(2) ? ViewItem::Icons : ViewItem::SystemComponents);
                break;
            case 3:
                ask();
                break;
            case 4:
                press(source_.once_in(2), false);
                break;
            case 5:
                press(true, true);
                break;
            case 6:
                select_by_key();
                break;
            case 7:
                click_header();
                break;
            default:
                press_during_work();
                break;
        }
        settle();
        check();
    }

    // A close in the middle of whatever the last step leaves.
    void close() {
        post_something();
        PostMessageW(form(), WM_CLOSE, 0, 0);
        post_something();
        const HWND closed = form();
        SendMessageW(closed, WM_COMMAND, static_cast<WPARAM>(CommandId(MenuArray::mnuPopItem, 99)), 0);
        window_.form->pump();
        CHECK_FALSE(IsWindow(closed));
    }

private:
    static constexpr MenuArray kPopups[] = {MenuArray::mnuPopItem, MenuArray::mnuStartItem, MenuArray::mnuServiceItem};

    HWND form() const { return window_.form->window(); }
    const View& view() const { return kViews[tab_]; }
    ui::ListView list() const { return window_.list(view().list); }
    void command(MenuArray array, int index) const { window_.command(array, index); }

    void settle() const {
        window_.form->pump();
        window_.form->pump();
    }

    void choose_tab(int tab) {
        tab_ = tab;
        note("tab " + std::to_string(tab));
    }
    void note(const std::string& text) { log_ += text + "; "; }

    void post_something() {
        switch (source_.below(4)) {
            case 0: {
                const int tab = static_cast<int>(source_.below(kTabs));
                window_.post_click(tab);
                choose_tab(tab);
                break;
            }
            case 3:
                for (std::size_t notches = 1 + source_.below(9), away = source_.below(2); notches > 0; --notches) {
                    PostMessageW(window_.at(Control::tb), WM_MOUSEWHEEL,
                                 MAKEWPARAM(0, static_cast<WORD>(away ? WHEEL_DELTA : -WHEEL_DELTA)), 0);
                    choose_tab(std::clamp(tab_ + (away ? -1 : 1), 0, kTabs - 1));
                }
                break;
            case 2:
                note("press");
                post_press(list().window(), WM_LBUTTONDOWN, WM_LBUTTONUP, point_in_list(), 0);
                break;
            case 1:
                note("move");
                PostMessageW(list().window(), WM_MOUSEMOVE, 0, point_in_list());
                break;
            default:
                break;
        }
    }

    LPARAM point_in_list() {
        RECT area = {};
        GetClientRect(list().window(), &area);
        const auto width = static_cast<std::size_t>(std::max<LONG>(area.right, 1));
        const auto height = static_cast<std::size_t>(std::max<LONG>(area.bottom - 24, 1));
        // The last row is often only partly in view.
        const std::size_t y = source_.once_in(3) ? height - 1 : source_.below(height);
        return MAKELPARAM(source_.below(width), 24 + y);
    }

    static void post_press(HWND window, UINT down, UINT up, LPARAM point, int lower) {
        PostMessageW(window, down, down == WM_LBUTTONDOWN ? MK_LBUTTON : MK_RBUTTON, point);
        PostMessageW(window, up, 0, MAKELPARAM(LOWORD(point), HIWORD(point) + lower));
    }

    // A press on a row of the settled window, by the right button with a copy from the menu that follows.
    void press(bool over_row, bool right) {
        settle();
        if (tab_ == kInformation) return;
        const ui::ListView rows = list();
        const LPARAM point = over_row ? point_in_list() : MAKELPARAM(30, 4000);
        const auto hit = rows.hit_test({LOWORD(point), HIWORD(point)});
        const std::wstring name = rows.cell(hit.row, 0);
        const std::wstring cell = hit.row < 0 ? std::wstring() : rows.cell(hit.row, hit.column);
        const int top = rows.top_row();
        const bool copies = right && view().popup != MenuArray::mnuFileItem && hit.row >= 0 && !cell.empty();
        if (copies) ui::CopyText(nullptr, kSentinel);
        // The button goes up over the row below.
        post_press(rows.window(), right ? WM_RBUTTONDOWN : WM_LBUTTONDOWN, right ? WM_RBUTTONUP : WM_LBUTTONUP, point,
                   12);
        if (right && view().popup != MenuArray::mnuFileItem) {
            PostMessageW(form(), WM_KEYDOWN, VK_DOWN, 0);
            PostMessageW(form(), WM_KEYDOWN, copies ? VK_RETURN : VK_ESCAPE, 0);
            if (!copies) PostMessageW(form(), WM_KEYDOWN, VK_ESCAPE, 0);
        }
        settle();
        CHECK(rows.selected() == hit.row);
        CHECK(rows.cell(rows.selected(), 0) == name);
        CHECK(rows.top_row() == top);
        if (copies) CHECK(Clipboard() == cell);
    }

    // A refill leaves no cell to copy.
    void forget() {
        settle();
        if (view().popup == MenuArray::mnuFileItem) return;
        command(MenuArray::mnuFileItem, FileItem::Refresh);
        settle();
        ui::CopyText(nullptr, kSentinel);
        command(view().popup, 1);
        CHECK(Clipboard() == kSentinel);
    }

    // A row is pressed while another list is filled, and while a question is open.
    void press_during_work() {
        settle();
        if (tab_ == kInformation) return;
        const LPARAM point = point_in_list();
        const auto hit = list().hit_test({LOWORD(point), HIWORD(point)});
        post_press(list().window(), WM_LBUTTONDOWN, WM_LBUTTONUP, point, 0);
        command(tab_ < 2 ? MenuArray::mnuStartItem : MenuArray::mnuPopItem, 99);
        settle();
        CHECK(list().selected() == hit.row);
    }

    void ask() {
        settle();
        window_.click(2);
        choose_tab(2);
        list().select(static_cast<int>(source_.below(kStartups)));
        post_press(list().window(), WM_LBUTTONDOWN, WM_LBUTTONUP, point_in_list(), 0);
        if (source_.once_in(2)) {
            const int tab = static_cast<int>(source_.below(kTabs));
            window_.post_click(tab);
            choose_tab(tab);
        }
        command(MenuArray::mnuStartItem, startup::StartItem::Delete);
    }

    // The arrow keys leave no cell to copy but the name, and no tip.
    void select_by_key() {
        settle();
        if (tab_ == kInformation || list().count() == 0) return;
        press(true, false);
        const int before = list().selected();
        SendMessageW(list().window(), WM_KEYDOWN, source_.once_in(2) ? VK_DOWN : VK_HOME, 0);
        settle();
        if (view().popup == MenuArray::mnuFileItem || list().selected() == before) return;
        ui::CopyText(nullptr, kSentinel);
        command(view().popup, 1);
        CHECK(Clipboard() == list().cell(list().selected(), 0));
        CHECK(TipOf(form(), list().window()).empty());
    }

    void click_header() {
        settle();
        if (tab_ == kInformation) return;
        NMLISTVIEW click = {};
        click.hdr = {list().window(), static_cast<UINT_PTR>(IdOf(view().list)), static_cast<UINT>(LVN_COLUMNCLICK)};
        SendMessageW(form(), WM_NOTIFY, click.hdr.idFrom, reinterpret_cast<LPARAM>(&click));
        sorted_[tab_] = sorted_[tab_] == 1 ? -1 : 1;
    }

    void check() {
        // The last tab that was chosen is the one that is shown, alone.
        REQUIRE(window_.tab() == tab_);
        for (int tab = 0; tab < kTabs; ++tab)
            CHECK(window_.shown(kViews[tab].list) == (tab == tab_));
        const HWND focus = GetFocus();
        CHECK((!focus || focus == form() || (IsChild(form(), focus) && IsWindowVisible(focus))));
        check_rows();
        check_texts();
        check_tips();
    }

    // No list holds rows of two fills, and each keeps its order.
    void check_rows() const {
        if (tab_ == kInformation) return;
        const ui::ListView rows = list();
        int seeded = 0;
        std::wstring before;
        for (int row = 0; row < rows.count(); ++row) {
            const std::wstring name = rows.cell(row, 0);
            seeded += name.starts_with(L"model ");
            const int order =
                CompareStringW(LOCALE_USER_DEFAULT, NORM_IGNORECASE, before.c_str(), -1, name.c_str(), -1);
            if (row > 0 && sorted_[tab_] == 1) CHECK(order != CSTR_GREATER_THAN);
            if (row > 0 && sorted_[tab_] == -1) CHECK(order != CSTR_LESS_THAN);
            before = name;
        }
        constexpr int counts[] = {kPrograms, kUpdates, kStartups};
        if (tab_ < 3) CHECK(seeded == counts[tab_]);
    }

    // What is described is the selected row, or nothing.
    void check_texts() const {
        const std::wstring values[] = {window_.text(Control::Label1_2), window_.text(Control::Label1_3),
                                       window_.text(Control::Label1_11)};
        if (tab_ == kInformation) return;
        const ui::ListView rows = list();
        const int selected = rows.selected();
        const std::wstring count = win::ToText(rows.count()) + L" 個の項目";
        if (selected < 0) {
            for (const std::wstring& value : values)
                CHECK(value.empty());
            CHECK(window_.text(Control::txtComment).empty());
            const std::wstring status = window_.status();
            // Empty space of these two lists empties the status bar.
            CHECK((status == count || ((tab_ == 2 || tab_ == 3) && status.empty())));
            return;
        }
        const std::wstring name = rows.cell(selected, 0);
        if (tab_ < 2 && name.starts_with(L"model ")) {
            CHECK(values[0] == L"https://help.example/" + name.substr(6));
            CHECK(window_.status() == name);
        }
        if (tab_ == 2) {
            CHECK(values[0] == name);
            CHECK(values[1] == rows.cell(selected, startup::StartupColumn::Value));
            CHECK(values[2] == rows.cell(selected, startup::StartupColumn::Location));
        }
        if (tab_ == 3) {
            const auto detail = services::ServiceDetailOf(rows, selected);
            CHECK(window_.text(Control::txtComment) == detail.comment);
            CHECK(window_.status() == detail.advice);
        }
    }

    // A list that is not shown has no tip, and the one of the shown list stands in it.
    void check_tips() {
        for (int tab = 0; tab < kInformation; ++tab) {
            const std::wstring tip = TipOf(form(), window_.at(kViews[tab].list));
            if (tab != tab_) {
                CHECK(tip.empty());
            } else {
                CHECK((tip.empty() || is_a_cell(tip)));
            }
        }
    }

    bool is_a_cell(const std::wstring& text) const {
        for (int column = 0; column < list().column_count(); ++column)
            if (list().find(column, text) >= 0) return true;
        return false;
    }

    hostile::Source& source_;
    std::string log_;  // what this step does
    const Driven window_;
    UINT_PTR timer_;
    int tab_ = 0;
    int sorted_[kTabs] = {};
};

}  // namespace

TEST_CASE("whatever the user does, whenever: the press, the row, its details and the tab agree") {
    const SettingsFile settings;
    const Seeded seeded;
    hostile::Run("window model", kWalks, [](hostile::Source& source, std::uint64_t) {
        Walk walk(source);
        for (int step = 0; step < kSteps; ++step) {
            CAPTURE(step);
            walk.step();
        }
        walk.close();
    });
}
