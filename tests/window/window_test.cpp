#include "driven.h"

#include "support/import_hook.h"
#include "support/test_key.h"
#include "ui/link_label.h"
#include "win/text.h"

#include <vector>

using namespace shell;

namespace {

// An entry of the Uninstall key for the length of a test.
class Program {
public:
    Program(const wchar_t* key, const wchar_t* name, const wchar_t* command)
        : key_(HKEY_LOCAL_MACHINE, std::wstring(L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\") + key) {
        key_.set_text({}, L"DisplayName", name);
        key_.set_text({}, L"UninstallString", command);
        key_.set_text({}, L"HelpLink", L"https://help.example/");
        key_.set_text({}, L"HelpTelephone", L"03-0000-0000");
    }

private:
    TestKey key_;
};

std::vector<std::wstring> Captions(const Driven& window) {
    std::vector<std::wstring> captions;
    for (int place = 0; place < window.tabs(); ++place) {
        wchar_t text[64] = {};
        TCITEMW item = {};
        item.mask = TCIF_TEXT;
        item.pszText = text;
        item.cchTextMax = 64;
        SendMessageW(window.at(Control::tb), TCM_GETITEMW, static_cast<WPARAM>(place), reinterpret_cast<LPARAM>(&item));
        captions.emplace_back(text);
    }
    return captions;
}

// Readable on white, not on lavender.
DWORD WINAPI GreyText(int) { return RGB(0x76, 0x76, 0x76); }

BOOL WINAPI HighContrast(UINT, UINT, void* wanted, UINT) {
    static_cast<HIGHCONTRASTW*>(wanted)->dwFlags = HCF_HIGHCONTRASTON;
    return TRUE;
}

}  // namespace

TEST_CASE("the window opens on the programs with designed sizes and the count of the first fill") {
    const SettingsFile settings;
    const Program program(L"QvxOne", L"一つ目", L"C:\\none.exe");
    const Driven window;
    CHECK(Captions(window) == std::vector<std::wstring>{L"プログラムの追加と削除", L"更新プログラム", L"スタートアップ",
                                                        L"サービス", L"コントロールパネル", L"システムの復元",
                                                        L"システム情報"});
    RECT place = {};
    GetWindowRect(window.form->window(), &place);
    CHECK(place.left == 0);
    CHECK(place.top == 0);
    CHECK(place.right == 800);
    CHECK(place.bottom - place.top == 533);  // 8000 twips, to the nearest pixel
    CHECK(window.shown(Control::ListView1_0));
    CHECK(window.list(Control::ListView1_0).find(0, L"一つ目") >= 0);
    CHECK(window.status() == win::ToText(window.list(Control::ListView1_0).count()) + L" 個の項目");
    CHECK(window.list(Control::ListView1_0).selected() == -1);
    CHECK(window.text(Control::Label1_6) == L"HelpTel：");
    CHECK(window.text(Control::cmdMenu_1) == L"強制削除(&F)");
    CHECK(window.list(Control::ListView2).count() > 0);  // built by the activation
}

TEST_CASE("each tab shows its own controls and writes its count") {
    const SettingsFile settings;
    const Driven window;
    constexpr Control lists[] = {Control::ListView1_0, Control::ListView1_1, Control::lvStartUp,
                                 Control::lvService,   Control::ListView2,   Control::lvRestore};
    for (const int place : {5, 4, 3, 2, 1, 0}) {
        CAPTURE(place);
        window.click(place);
        for (int other = 0; other < 6; ++other)
            CHECK(window.shown(lists[other]) == (other == place));
        CHECK(window.status() == win::ToText(window.list(lists[place]).count()) + L" 個の項目");
        CHECK(window.shown(Control::cmdMenu_0) == (place != 3 && place != 4));
        CHECK(window.shown(Control::cmdMenu_1) == (place == 0 || place == 1 || place == 5));
        CHECK(window.shown(Control::txtComment) == (place == 3));
        CHECK(window.shown(Control::Label1_1) == (place < 3));
        CHECK(window.text(Control::cmdMenu_1) == (place == 5 ? L"作成(&N)" : L"強制削除"));
        CHECK_FALSE(window.shown(Control::txtSys));
    }
    const std::wstring before = window.status();
    window.click(6);
    CHECK(window.shown(Control::txtSys));
    CHECK(window.shown(Control::lblMem_1));
    CHECK_FALSE(window.shown(Control::Label1_0));
    CHECK(window.text(Control::txtSys).starts_with(L"\r\nOS\t\t"));
    CHECK(window.status() == before);  // the report counts nothing
}

TEST_CASE("the argument selects a tab only when it is one digit from 2 to 6") {
    const SettingsFile settings;
    struct Start {
        const wchar_t* argument;
        int tab;
    };
    for (const Start& start :
         {Start{L"2", 1}, {L"3", 2}, {L"6", 5}, {L"7", 0}, {L"1", 0}, {L" 2", 0}, {L"22", 0}, {L"x", 0}}) {
        CAPTURE(start.tab);
        const Driven window(start.argument);
        CHECK(window.tab() == start.tab);
        const wchar_t* caption = start.tab == 0 ? L"強制削除(&F)" : start.tab == 5 ? L"作成(&N)" : L"強制削除";
        CHECK(window.text(Control::cmdMenu_1) == caption);
    }
}

TEST_CASE("parts of a notch add up, and a far turn ends at the last tab") {
    const SettingsFile settings;
    const Driven window;
    for (int part = 0; part < 6; ++part)
        window.wheel(-40, Control::ListView1_0);
    CHECK(window.tab() == 2);
    window.wheel(1200);
    CHECK(window.tab() == 0);
    window.wheel(-100 * 120);
    CHECK(window.tab() == 6);
}

TEST_CASE("geometry, widths and options come back at every start") {
    const SettingsFile settings(
        "X=1515\r\nY=-300\r\nW=9015\r\nH=7005\r\nStripe=1\r\n3Col0=70000\r\n1Col3=-2\r\n"
        "2Col2=77\r\nMem=C:\\a b.exe\r\n");
    for (int start = 0; start < 3; ++start) {
        const Driven window;
        RECT place = {};
        GetWindowRect(window.form->window(), &place);
        REQUIRE(place.left == 101);
        REQUIRE(place.top == -20);
        REQUIRE(place.right - place.left == 601);
        if (start > 0) continue;
        CHECK(window.list(Control::ListView1_0).column_width(2) == 32767);
        CHECK(window.list(Control::lvService).column_width(0) == 0);
        CHECK(window.list(Control::lvStartUp).column_width(1) == 77);
        CHECK(window.text(Control::txtMemPath) == L"C:\\a b.exe");
    }
    CHECK(settings.number("X") == 1515);
    CHECK(settings.number("H") == 7005);
    CHECK(settings.number("Stripe") == -1);
    CHECK(settings.number("Icon") == 0);
    CHECK(settings.number("4Col2") > 0);
    CHECK(settings.number("6Col3") == -999);
    CHECK(settings.number("8Col0") == -999);
}

TEST_CASE("a window that was stored far away, tiny or maximised is usable") {
    {
        const SettingsFile settings("X=999999999\r\nY=-999999999\r\nW=-5\r\nH=0\r\nFont=こんな書体はない\r\n");
        const Driven window;
        RECT place = {};
        GetWindowRect(window.form->window(), &place);
        CHECK(MonitorFromRect(&place, MONITOR_DEFAULTTONULL) != nullptr);
        CHECK(place.right - place.left == 480);
        CHECK(place.bottom - place.top == 320);
    }
    {
        // Windows cuts the width to the screen's: nothing would be seen at the stored place.
        const SettingsFile settings("X=-28800\r\nW=90000\r\n");
        const Driven window;
        CHECK(MonitorFromWindow(window.form->window(), MONITOR_DEFAULTTONULL) != nullptr);
    }
    const SettingsFile settings("WinState=2\r\nX=150\r\n");
    {
        const Driven window;
        CHECK(IsZoomed(window.form->window()));
    }
    CHECK(settings.number("WinState") == 2);
    CHECK(settings.number("X") == 150);  // the geometry of the last normal state stays
}

TEST_CASE("the font option reaches lists, labels, buttons and text boxes, nothing else") {
    const SettingsFile settings("Font=IPAGothic\r\n");
    const Driven window;
    const auto face = [&window](Control control) { return std::wstring(window.font(control).lfFaceName); };
    for (const Control control : {Control::ListView1_0, Control::cmdMenu_0, Control::Label1_0, Control::Label1_2,
                                  Control::txtSys, Control::st}) {
        CHECK(face(control) == L"IPAGothic");
    }
    CHECK(face(Control::tb) != L"IPAGothic");
    CHECK(face(Control::cb) != L"IPAGothic");
}

TEST_CASE("a row's details show, links are tab stops, and a tab click empties them") {
    const SettingsFile settings;
    const Program program(L"QvxTwo", L"二つ目", L"C:\\none.exe");
    const Driven window;
    const ui::ListView list = window.list(Control::ListView1_0);
    list.select(list.find(0, L"二つ目"));
    CHECK(window.status() == L"二つ目");
    CHECK(window.text(Control::Label1_2) == L"https://help.example/");
    CHECK(window.text(Control::Label1_11) == L"03-0000-0000");
    CHECK(ui::IsLink(window.at(Control::Label1_2)));
    CHECK_FALSE(ui::IsLink(window.at(Control::Label1_11)));
    window.click(1);
    CHECK(window.text(Control::Label1_2).empty());
    CHECK_FALSE(ui::IsLink(window.at(Control::Label1_2)));
}

TEST_CASE("headers sort, the size by its hidden key, and a refresh keeps the order") {
    const SettingsFile settings;
    const Program first(L"QvxA", L"qvx b", L"C:\\a.exe");
    const Program second(L"QvxB", L"qvx A", L"C:\\b.exe");
    const Driven window;
    const ui::ListView list = window.list(Control::ListView1_0);
    const auto click_header = [&](int column) {
        NMLISTVIEW click = {};
        click.hdr = {list.window(), static_cast<UINT_PTR>(IdOf(Control::ListView1_0)),
                     static_cast<UINT>(LVN_COLUMNCLICK)};
        click.iItem = -1;
        click.iSubItem = column;
        SendMessageW(window.form->window(), WM_NOTIFY, click.hdr.idFrom, reinterpret_cast<LPARAM>(&click));
    };
    const auto before = [&](const wchar_t* one, const wchar_t* other) {
        return list.find(0, one) < list.find(0, other);
    };
    CHECK(before(L"qvx b", L"qvx A"));  // the registry's order
    click_header(0);
    CHECK(before(L"qvx A", L"qvx b"));
    click_header(0);
    CHECK(before(L"qvx b", L"qvx A"));
    window.command(MenuArray::mnuFileItem, 5);
    CHECK(before(L"qvx b", L"qvx A"));
    click_header(2);
    click_header(0);
    CHECK(before(L"qvx A", L"qvx b"));
    CHECK(list.column_width(7) == 0);
    NMHEADERW pull = {};
    pull.hdr = {reinterpret_cast<HWND>(SendMessageW(list.window(), LVM_GETHEADER, 0, 0)), 0,
                static_cast<UINT>(HDN_BEGINTRACKW)};
    pull.iItem = 7;
    CHECK(SendMessageW(list.window(), WM_NOTIFY, 0, reinterpret_cast<LPARAM>(&pull)) != 0);
    pull.iItem = 6;
    CHECK(SendMessageW(list.window(), WM_NOTIFY, 0, reinterpret_cast<LPARAM>(&pull)) == 0);
}

TEST_CASE("hints cover the status text for as long as menu or strip are under the pointer") {
    const SettingsFile settings;
    const Driven window;
    const HWND form = window.form->window();
    const std::wstring count = window.status();
    const HMENU file = GetSubMenu(GetMenu(form), 0);
    SendMessageW(form, WM_MENUSELECT, MAKEWPARAM(CommandId(MenuArray::mnuFileItem, 5), MF_HILITE),
                 reinterpret_cast<LPARAM>(file));
    CHECK(window.status() == L"表示中の情報を最新の状態に更新します");
    SendMessageW(form, WM_MENUSELECT, MAKEWPARAM(0, 0xFFFF), 0);
    CHECK(window.status() == count);

    SendMessageW(window.at(Control::tb), WM_MOUSEMOVE, 0, window.middle(3));
    CHECK(window.status() == L"Windowsサービスの情報を一覧表示し、開始・停止等を行います");
    SendMessageW(window.at(Control::tb), WM_MOUSELEAVE, 0, 0);
    CHECK(window.status() == count);
    SendMessageW(window.at(Control::tb), WM_MOUSEMOVE, 0, window.middle(3));
    window.click(3);
    const std::wstring services = window.status();
    CHECK(services.ends_with(L" 個の項目"));
    // The pointer that rests on the tab does not cover the count, one that moves on it does.
    SendMessageW(window.at(Control::tb), WM_MOUSEMOVE, 0, window.middle(3));
    CHECK(window.status() == services);
    SendMessageW(window.at(Control::tb), WM_MOUSEMOVE, 0, window.middle(3) + 1);
    CHECK(window.status() == L"Windowsサービスの情報を一覧表示し、開始・停止等を行います");
    SendMessageW(window.at(Control::tb), WM_MOUSELEAVE, 0, 0);
    CHECK(window.status() == services);
}

namespace {

void CALLBACK CloseForm(HWND, UINT, UINT_PTR timer, DWORD) {
    const HWND form = FindWindowW(kMainClass, nullptr);
    if (!form || GetWindowThreadProcessId(form, nullptr) != GetCurrentThreadId()) return;
    KillTimer(nullptr, timer);
    PostMessageW(form, WM_CLOSE, 0, 0);
}

}  // namespace

TEST_CASE("a close before the window is shown, or a quit from outside, loses nothing that was stored") {
    const SettingsFile settings("WinState=2\r\nX=150\r\n3Col0=77\r\n");
    const win::ComApartment apartment;
    SetTimer(nullptr, 0, 1, &CloseForm);
    frmMain early(GetModuleHandleW(nullptr));
    early.open(L"3");
    early.run_until_closed();
    CHECK(settings.number("WinState") == 2);
    CHECK(settings.number("X") == 150);
    CHECK(settings.number("3Col0") == 77);

    settings.write("[Morlet]\r\nX=1515\r\n");
    frmMain quit(GetModuleHandleW(nullptr));
    REQUIRE(quit.open(L""));
    MoveWindow(quit.window(), 202, 0, 600, 400, FALSE);
    PostQuitMessage(0);
    quit.run_until_closed();
    CHECK(quit.window() == nullptr);
    CHECK(settings.number("X") == 3030);
}

TEST_CASE("a link and the box for registry paths act once a press, however long the key is held") {
    const SettingsFile settings;
    const Program program(L"QvxTwo", L"二つ目", L"C:\\none.exe");
    const Driven window;
    const ui::ListView list = window.list(Control::ListView1_0);
    list.select(list.find(0, L"二つ目"));
    REQUIRE(window.status() == L"二つ目");
    constexpr LPARAM kRepeated = 1 << 30;
    SendMessageW(window.at(Control::Label1_2), WM_KEYDOWN, VK_RETURN, kRepeated);
    CHECK(window.status() == L"二つ目");  // opening a link says so there

    window.click(6);
    const HWND cb = window.at(Control::cb);
    const HWND box = GetWindow(cb, GW_CHILD);
    SetFocus(box);
    SetWindowTextW(cb, L"  ");
    for (int repeat = 0; repeat < 5; ++repeat)
        PostMessageW(box, WM_KEYDOWN, VK_RETURN, repeat == 0 ? 0 : kRepeated);
    window.form->pump();
    CHECK(window.text(Control::cb) == L"  ");
    PostMessageW(box, WM_KEYUP, VK_RETURN, 0);
    window.form->pump();
    CHECK(window.text(Control::cb).empty());  // what is read loses its leading blanks
}

TEST_CASE("stripes colour every other row while they are switched on") {
    const SettingsFile settings;
    const Driven window;
    NMLVCUSTOMDRAW draw = {};
    const auto ask = [&](DWORD stage, DWORD_PTR row) {
        draw.nmcd.hdr = {window.at(Control::lvService), 0, static_cast<UINT>(NM_CUSTOMDRAW)};
        draw.nmcd.dwDrawStage = stage;
        draw.nmcd.dwItemSpec = row;
        draw.clrTextBk = 1;
        return SendMessageW(window.form->window(), WM_NOTIFY, 0, reinterpret_cast<LPARAM>(&draw));
    };
    CHECK(ask(CDDS_PREPAINT, 0) == 0);
    window.command(MenuArray::mnuViewItem, 2);
    CHECK(ask(CDDS_PREPAINT, 0) == CDRF_NOTIFYITEMDRAW);
    CHECK(ask(CDDS_ITEMPREPAINT, 0) == 0);
    CHECK(draw.clrTextBk == RGB(255, 255, 255));
    CHECK(ask(CDDS_ITEMPREPAINT, 7) == 0);
    CHECK(draw.clrTextBk == RGB(240, 240, 255));

    // The selected row stands out in a list without the keys.
    window.list(Control::ListView1_0).select(-1);
    const Program program(L"QvxTwo", L"二つ目", L"C:\\none.exe");
    window.command(MenuArray::mnuFileItem, FileItem::Refresh);
    window.list(Control::ListView1_0).select(0);
    SetFocus(window.at(Control::tb));
    draw.nmcd.uItemState = CDIS_SELECTED;
    draw.nmcd.hdr.hwndFrom = window.at(Control::ListView1_0);
    const auto ask_selected = [&](HWND focus) {
        SetFocus(focus);
        draw.nmcd.dwItemSpec = 0;
        draw.nmcd.dwDrawStage = CDDS_ITEMPREPAINT;
        draw.nmcd.uItemState = CDIS_SELECTED;
        SendMessageW(window.form->window(), WM_NOTIFY, 0, reinterpret_cast<LPARAM>(&draw));
        return draw.clrTextBk;
    };
    CHECK(ask_selected(draw.nmcd.hdr.hwndFrom) == RGB(255, 255, 255));
    CHECK(ask_selected(window.at(Control::tb)) != RGB(255, 255, 255));
    CHECK((draw.nmcd.uItemState & CDIS_SELECTED) == 0);

    // Where they could not be read the rows keep the system's colours, and the answers are the same.
    const auto keeps_colours = [&] {
        CHECK(ask(CDDS_PREPAINT, 0) == CDRF_NOTIFYITEMDRAW);
        CHECK(ask(CDDS_ITEMPREPAINT, 7) == 0);
        CHECK(draw.clrTextBk == 1);
    };
    {
        const ImportHook text("GetSysColor", GreyText);
        keeps_colours();
    }
    const ImportHook contrast("SystemParametersInfoW", HighContrast);
    keeps_colours();
}

TEST_CASE("the list of typed registry paths opens as wide as its longest line") {
    const SettingsFile settings;
    const Driven window;
    window.click(6);
    const HWND box = window.at(Control::cb);
    const auto opened_with = [box](const wchar_t* line) {
        SendMessageW(box, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(line));
        SendMessageW(box, CB_SHOWDROPDOWN, TRUE, 0);
        SendMessageW(box, CB_SHOWDROPDOWN, FALSE, 0);
        return SendMessageW(box, CB_GETDROPPEDWIDTH, 0, 0);
    };
    RECT closed = {};
    GetWindowRect(box, &closed);
    CHECK(opened_with(L"HKEY_USERS") == closed.right - closed.left);
    CHECK(opened_with(L"HKEY_LOCAL_MACHINE\\SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Uninstall") > 350);
}

TEST_CASE("the longest description of a service is read whole, and a short one takes no more than its lines") {
    const SettingsFile settings;
    const Driven window;
    window.click(3);
    const HWND box = window.at(Control::txtComment);
    const auto height_with = [&](const std::wstring& description) {
        window.list(Control::lvService).set_cell(0, 3, description);
        SendMessageW(window.form->window(), WM_SETTINGCHANGE, 0, 0);
        window.list(Control::lvService).select(-1);
        window.list(Control::lvService).select(0);
        RECT bounds = {};
        GetWindowRect(box, &bounds);
        return bounds.bottom - bounds.top;
    };
    std::wstring sentences;
    for (int count = 0; count < 5; ++count)
        sentences += L"プログラムの更新を検出し、ダウンロードしてインストールします。";
    const LONG usual = height_with(L"短い説明。");
    const LONG full = height_with(sentences);
    CHECK(full > usual);
    CHECK((GetWindowLongW(box, GWL_STYLE) & WS_VSCROLL) == 0);
    CHECK(SendMessageW(box, EM_GETLINECOUNT, 0, 0) == 5);
    CHECK(height_with(sentences + sentences + sentences) < 533 / 4);
    CHECK((GetWindowLongW(box, GWL_STYLE) & WS_VSCROLL) != 0);
    ShowWindow(window.form->window(), SW_MAXIMIZE);
    CHECK(height_with(L"短い説明。") <= usual);
}

TEST_CASE("Ctrl+A selects the whole report") {
    const SettingsFile settings;
    const Driven window;
    window.click(6);
    const HWND report = window.at(Control::txtSys);
    SetFocus(report);
    BYTE keys[256] = {};
    BYTE before[256] = {};
    GetKeyboardState(before);
    keys[VK_CONTROL] = 0x80;
    SetKeyboardState(keys);
    PostMessageW(report, WM_KEYDOWN, L'A', 1);
    window.form->pump();
    SetKeyboardState(before);
    DWORD from = 1;
    DWORD to = 0;
    SendMessageW(report, EM_GETSEL, reinterpret_cast<WPARAM>(&from), reinterpret_cast<LPARAM>(&to));
    CHECK(from == 0);
    CHECK(to == window.text(Control::txtSys).size());
}

TEST_CASE("a status text and a label that are cut off have their whole text as a tip") {
    const SettingsFile settings;
    const Driven window;
    HWND tips = nullptr;
    do {
        tips = FindWindowExW(nullptr, tips, TOOLTIPS_CLASSW, nullptr);
    } while (tips && GetWindow(tips, GW_OWNER) != window.form->window());
    const auto tip_of = [&](Control control) {
        NMTTDISPINFOW wanted = {};
        wanted.hdr = {tips, reinterpret_cast<UINT_PTR>(window.at(control)), static_cast<UINT>(TTN_GETDISPINFOW)};
        wanted.lpszText = wanted.szText;
        SendMessageW(window.form->window(), WM_NOTIFY, wanted.hdr.idFrom, reinterpret_cast<LPARAM>(&wanted));
        return std::wstring(wanted.lpszText);
    };
    const std::wstring advice(200, L'字');
    for (const Control control : {Control::st, Control::lblMem_1, Control::Label1_0}) {
        CHECK(tip_of(control).empty());
        SetWindowTextW(window.at(control), advice.c_str());
        CHECK(tip_of(control) == advice);
    }
}
