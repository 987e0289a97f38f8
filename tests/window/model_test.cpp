// A random walk through the whole window: what the user does arrives before, in the middle of and after fills and
// questions, and after every step the press, the row, the details and the tab agree.
#include "driven.h"

#include "services/service_list.h"
#include "startup/startup_menu.h"
#include "support/hostile.h"
#include "ui/clipboard.h"
#include "ui/link_label.h"

#include <functional>

using namespace shell;

namespace {

constexpr std::uint64_t kWalks = 3;
constexpr int kSteps = 50;
constexpr wchar_t kSentinel[] = L"nothing was copied";

std::wstring Clipboard() {
    if (!OpenClipboard(nullptr)) return {};
    const HANDLE memory = GetClipboardData(CF_UNICODETEXT);
    std::wstring text = memory ? static_cast<const wchar_t*>(GlobalLock(memory)) : L"";
    GlobalUnlock(memory);
    CloseClipboard();
    return text;
}

// Of the tabs that have one.
constexpr MenuArray kPopups[] = {MenuArray::mnuPopItem, MenuArray::mnuPopItem, MenuArray::mnuStartItem,
                                 MenuArray::mnuServiceItem};
constexpr int kRefreshItem = 99;

class Walk {
public:
    explicit Walk(hostile::Source& source) : source_(source) {
        SetWindowPos(form(), nullptr, 0, 0, 800 + 7 * below(20), 400 + below(40), SWP_NOMOVE | SWP_NOZORDER);
        // Menus that open and close report the real pointer to what lies under it.
        SetCursorPos(GetSystemMetrics(SM_CXSCREEN) - 1, GetSystemMetrics(SM_CYSCREEN) - 1);
    }

    void step() {
        constexpr std::size_t kAnywhere = 5;  // the other actions are those on a list, of the settled window
        constexpr void (Walk::*kActions[])() = {
            &Walk::refresh,       &Walk::rescan,      &Walk::change_view,    &Walk::change_view,
            &Walk::ask,           &Walk::press_left,  &Walk::press_and_copy, &Walk::press_during_work,
            &Walk::select_by_key, &Walk::click_header};
        const std::size_t action = source_.below(std::size(kActions));
        log_ = "action " + std::to_string(action);
        CAPTURE(log_);
        for (int count = below(4); count > 0; --count)
            post_something();
        if (action >= kAnywhere) settle();
        if (action < kAnywhere || tab_ != kInformation) (this->*kActions[action])();
        settle();
        check();
    }

    // A close in the middle of whatever the last step leaves.
    void close() {
        post_something();
        PostMessageW(form(), WM_CLOSE, 0, 0);
        post_something();
        const HWND closed = form();
        window_.command(MenuArray::mnuPopItem, kRefreshItem);
        window_.pump();
        CHECK_FALSE(IsWindow(closed));
    }

private:
    HWND form() const { return window_.window(); }
    Control view() const { return kViews[tab_]; }
    ui::ListView list() const { return window_.list(view()); }
    bool has_menu() const { return tab_ < static_cast<int>(std::size(kPopups)); }
    int below(int count) { return static_cast<int>(source_.below(static_cast<std::size_t>(count))); }
    void settle() const {
        window_.pump();
        window_.pump();
    }

    void post_tab() {
        tab_ = below(source_.once_in(2) ? 3 : kTabs);
        window_.post_click(tab_);
        log_ += "; tab " + std::to_string(tab_);
    }

    void post_wheel() {
        const int back = below(2) ? 1 : -1;
        for (int notches = 1 + below(4); notches > 0; --notches) {
            for (int part = 0; part < 3; ++part)
                window_.post_wheel(back * WHEEL_DELTA / 3);
            tab_ = std::clamp(tab_ - back, 0, kTabs - 1);
        }
        log_ += "; wheel to " + std::to_string(tab_);
    }

    void post_something() {
        const int what = below(4);
        if (what == 0) post_tab();
        if (what == 1) post_wheel();
        if (what == 2) post_press(point_in_list());
        if (what == 3) PostMessageW(list().window(), WM_MOUSEMOVE, 0, point_in_list());
    }

    LPARAM point_in_list() {
        RECT area = {};
        GetClientRect(list().window(), &area);
        const int height = std::max<int>(area.bottom - 24, 1);
        // The last row is often only partly in view.
        const int y = source_.once_in(3) ? height - 1 : below(height);
        return MAKELPARAM(below(std::max<int>(area.right, 1)), 24 + y);
    }

    // The button goes up `lower` pixels below the point.
    void post_press(LPARAM point, bool right = false, int lower = 0) const {
        PostMessageW(list().window(), right ? WM_RBUTTONDOWN : WM_LBUTTONDOWN, right ? MK_RBUTTON : MK_LBUTTON, point);
        PostMessageW(list().window(), right ? WM_RBUTTONUP : WM_LBUTTONUP, 0,
                     MAKELPARAM(LOWORD(point), HIWORD(point) + lower));
    }

    void press_left() { press(source_.once_in(2) ? point_in_list() : MAKELPARAM(30, 4000), false); }
    void press_and_copy() { press(point_in_list(), true); }

    // By the right button with a copy from the menu that follows.
    void press(LPARAM point, bool right) {
        const ui::ListView rows = list();
        const auto hit = rows.hit_test({LOWORD(point), HIWORD(point)});
        const std::wstring name = rows.cell(hit.row, 0);
        const std::wstring cell = hit.row < 0 ? std::wstring() : rows.cell(hit.row, hit.column);
        const int top = rows.top_row();
        const bool copies = right && has_menu() && !cell.empty();
        if (copies) ui::CopyText(nullptr, kSentinel);
        post_press(point, right, 12);
        for (const int key : {VK_DOWN, copies ? VK_RETURN : VK_ESCAPE, copies ? 0 : VK_ESCAPE})
            if (right && has_menu()) PostMessageW(form(), WM_KEYDOWN, static_cast<WPARAM>(key), 0);
        settle();
        CHECK(rows.selected() == hit.row);
        CHECK(rows.cell(rows.selected(), 0) == name);
        CHECK(rows.top_row() == top);
        if (copies) CHECK(Clipboard() == cell);
    }

    std::wstring copy_item() const {
        ui::CopyText(nullptr, kSentinel);
        window_.command(kPopups[tab_], ui::Page::kCopyItem);
        return Clipboard();
    }

    // The refill leaves no cell to copy.
    void refresh() {
        for (int time = 0; time < 2; ++time) {
            window_.command(MenuArray::mnuFileItem, FileItem::Refresh);
            settle();
        }
        if (!has_menu()) return;
        CHECK(copy_item() == kSentinel);
        list().select(0);
        window_.command(kPopups[tab_], kRefreshItem);
        settle();
        CHECK(list().selected() == -1);
    }

    void rescan() { window_.command(source_.pick(kPopups), kRefreshItem); }
    void change_view() {
        window_.command(MenuArray::mnuViewItem, source_.once_in(3) ? ViewItem::Icons : ViewItem::SystemComponents);
    }

    // A row is pressed while another list is filled.
    void press_during_work() {
        const LPARAM point = point_in_list();
        const int row = list().hit_test({LOWORD(point), HIWORD(point)}).row;
        post_press(point);
        window_.command(kPopups[tab_ < 2 ? 2 : 0], kRefreshItem);
        settle();
        CHECK(list().selected() == row);
    }

    // A row is pressed, and a tab, while a question is open.
    void ask() {
        settle();
        window_.click(tab_ = 2);
        list().select(below(Seeded::kStartups));
        post_press(point_in_list());
        if (source_.once_in(2)) post_tab();
        window_.command(MenuArray::mnuStartItem, startup::StartItem::Delete);
    }

    // The arrow keys leave no cell to copy but the name, and no tip.
    void select_by_key() {
        if (list().count() == 0) return;
        press(point_in_list(), false);
        const int before = list().selected();
        SendMessageW(list().window(), WM_KEYDOWN, source_.once_in(2) ? VK_DOWN : VK_HOME, 0);
        settle();
        if (!has_menu() || list().selected() == before) return;
        CHECK(copy_item() == list().cell(list().selected(), 0));
        CHECK(window_.tip(view()).empty());
    }

    void click_header() {
        window_.click_header(view(), 0);
        sorted_[tab_] = sorted_[tab_] == 1 ? -1 : 1;
    }

    void check() const {
        // The last tab that was chosen is the one that is shown, alone.
        REQUIRE(window_.tab() == tab_);
        for (int tab = 0; tab < kTabs; ++tab)
            CHECK(window_.shown(kViews[tab]) == (tab == tab_));
        const HWND focus = GetFocus();
        CHECK((!focus || focus == form() || (IsChild(form(), focus) && IsWindowVisible(focus))));
        if (tab_ == kInformation) return;
        check_rows();
        check_texts(list().selected());
        check_tips();
    }

    // No list holds rows of two fills, and each keeps its order.
    void check_rows() const {
        const auto names = window_.names(view());
        const auto components = static_cast<UINT>(CommandId(MenuArray::mnuViewItem, ViewItem::SystemComponents));
        const bool all = (GetMenuState(GetMenu(form()), components, MF_BYCOMMAND) & MF_CHECKED) != 0;
        constexpr int counts[kTabs] = {Seeded::kPrograms, Seeded::kUpdates, Seeded::kStartups};
        CHECK(static_cast<int>(names.size()) == (tab_ < 2 && !all ? counts[tab_] * 3 / 4 : counts[tab_]));
        if (sorted_[tab_] == 1) CHECK(std::ranges::is_sorted(names));
        if (sorted_[tab_] == -1) CHECK(std::ranges::is_sorted(names, std::greater()));
    }

    // What is described is the selected row, or nothing.
    void check_texts(int row) const {
        const std::wstring name = list().cell(row, 0), status = window_.status();
        if (row >= 0 && tab_ < 2 && !name.starts_with(L"model ")) return;  // a program of the machine's own
        std::vector<std::wstring> expected(4);                             // the values, the comment
        if (row < 0) {
            // Empty space of these two lists empties the status bar.
            CHECK((status == window_.count(view()) || ((tab_ == 2 || tab_ == 3) && status.empty())));
        } else if (tab_ < 2) {
            expected = {L"https://help.example/" + name, {}, L"03 " + name, {}};
            CHECK(status == name);
        } else if (tab_ == 2) {
            expected[0] = name;
            expected[1] = list().cell(row, startup::StartupColumn::Value);
            expected[2] = list().cell(row, startup::StartupColumn::Location);
        } else if (tab_ == 3) {
            expected[3] = services::ServiceDetailOf(list(), row).comment;
            CHECK(status == services::ServiceDetailOf(list(), row).advice);
        }
        CHECK(std::vector{window_.text(Control::Label1_2), window_.text(Control::Label1_3),
                          window_.text(Control::Label1_11), window_.text(Control::txtComment)} == expected);
        if (tab_ < 2) CHECK(ui::IsLink(window_.at(Control::Label1_2)) == (row >= 0));
        if (tab_ < 2) CHECK_FALSE(ui::IsLink(window_.at(Control::Label1_11)));
    }

    // A list that is not shown has no tip, and the one of the shown list stands in it.
    void check_tips() const {
        for (int tab = 0; tab < kInformation; ++tab) {
            const std::wstring tip = window_.tip(kViews[tab]);
            bool known = tip.empty();
            for (int column = 0; tab == tab_ && column < list().column_count(); ++column)
                known = known || list().find(column, tip) >= 0;
            CHECK(known);
        }
    }

    hostile::Source& source_;
    std::string log_;  // what this step does
    const Driven window_;
    int tab_ = 0;
    int sorted_[kTabs] = {};
};

}  // namespace

TEST_CASE("whatever the user does, whenever: the press, the row, its details and the tab agree") {
    const SettingsFile settings;
    const Seeded seeded;
    const BoxesCancelled cancelled;
    hostile::Run("window model", kWalks, [](hostile::Source& source, std::uint64_t) {
        Walk walk(source);
        for (int step = 0; step < kSteps; ++step) {
            CAPTURE(step);
            walk.step();
        }
        walk.close();
    });
}
