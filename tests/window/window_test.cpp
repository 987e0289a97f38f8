#include "driven.h"

#include "support/hostile.h"
#include "support/import_hook.h"
#include "support/test_folder.h"
#include "support/throw_away.h"
#include "tools/cleanup.h"
#include "tools/shell_repairs.h"
#include "win/process.h"
#include "win/system_text.h"

using namespace shell;

namespace {

struct Opened {
    const SettingsFile settings;
    const Seeded seeded;
    const Driven window;
};

BOOL WINAPI HighContrast(UINT, UINT, void* wanted, UINT) {
    static_cast<HIGHCONTRASTW*>(wanted)->dwFlags = HCF_HIGHCONTRASTON;
    return TRUE;
}

void CALLBACK CloseForm(HWND, UINT, UINT_PTR timer, DWORD) {
    const HWND form = FindWindowW(kMainClass, nullptr);
    if (!form || GetWindowThreadProcessId(form, nullptr) != GetCurrentThreadId()) return;
    KillTimer(nullptr, timer);
    PostMessageW(form, WM_CLOSE, 0, 0);
}

}  // namespace

TEST_CASE_FIXTURE(
    Opened, "the window opens in its designed size on the programs, or on the tab that one digit from 2 to 6 tells") {
    const RECT place = BoundsOf(window.window());
    CHECK((place.left == 0 && place.top == 0 && place.right == 800 && place.bottom == 533));  // 8000 twips
    CHECK(window.names(Control::ListView1_0).size() == Seeded::kPrograms * 3 / 4);
    CHECK(window.text(Control::cmdMenu_1) == L"強制削除(&F)");
    constexpr const wchar_t* captions[] = {L"プログラムの追加と削除", L"更新プログラム"};
    for (int tab = 0; tab < 2; ++tab) {
        wchar_t caption[64] = {};
        TCITEMW item = {TCIF_TEXT, 0, 0, caption, 64, 0, 0};
        SendMessageW(window.at(Control::tb), TCM_GETITEMW, static_cast<WPARAM>(tab), reinterpret_cast<LPARAM>(&item));
        CHECK(caption == std::wstring(captions[tab]));
    }
    for (const int column : {2, 0}) {  // the sizes are those of the names, as numbers
        window.click_header(Control::ListView1_0, column);
        CHECK(std::ranges::is_sorted(window.names(Control::ListView1_0)));
    }
    NMHEADERW pulled = {{nullptr, 0, static_cast<UINT>(HDN_BEGINTRACKW)}, 6, 0, nullptr};
    for (; pulled.iItem < 8; ++pulled.iItem) {  // the last column has the sort keys and stays closed
        const auto at = reinterpret_cast<LPARAM>(&pulled);
        CHECK(SendMessageW(window.at(Control::ListView1_0), WM_NOTIFY, 0, at) == (pulled.iItem == 7));
    }
    window.list(Control::ListView1_0).select(0);
    SendMessageW(window.at(Control::cmdMenu_0), BM_CLICK, 0, 0);  // its uninstaller is gone
    CHECK(IsWindowEnabled(window.at(Control::cmdMenu_0)));
    window.click(2);
    CHECK((window.shown(Control::cmdMenu_0) && !window.shown(Control::cmdMenu_1)));
    window.click(5);
    CHECK(window.text(Control::cmdMenu_1) == L"作成(&N)");
    window.click(3);
    CHECK((window.shown(Control::txtComment) && !window.shown(Control::cmdMenu_0)));
    window.click(kInformation);
    CHECK(window.status() == window.count(Control::lvService));
    CHECK(window.text(Control::txtSys).starts_with(L"\r\nOS\t\t"));
    for (const auto& [argument, tab] : {std::pair(L"2", 1), {L"6", 5}, {L"7", 0}, {L"1", 0}, {L"22", 0}})
        CHECK(Driven(argument).tab() == tab);
}

TEST_CASE("the program that users start opens its window, fills its list and ends when it is closed") {
    REQUIRE_THROW_AWAY();
    TestFolder folder(L"the program");
    const std::wstring copy = folder.own(L"Qorvenix.exe");
    folder.own(L"setting.ini");
    REQUIRE(CopyFileW(throw_away::Variable(L"QORVENIX").c_str(), copy.c_str(), FALSE));
    const auto program = win::StartProcess(copy, L"Qorvenix", win::WindowStyle::Normal);
    const auto counted = [] {
        const HWND bar = FindWindowExW(FindWindowW(kMainClass, nullptr), nullptr, STATUSCLASSNAMEW, nullptr);
        return bar && ui::TextOf(bar).ends_with(L"個の項目");
    };
    for (int tenths = 0; tenths < 600 && !counted(); ++tenths)
        Sleep(100);
    CHECK(counted());
    PostMessageW(FindWindowW(kMainClass, nullptr), WM_CLOSE, 0, 0);
    CHECK(WaitForSingleObject(program.process.get(), 20000) == WAIT_OBJECT_0);
    DWORD code = 1;
    CHECK((GetExitCodeProcess(program.process.get(), &code) && code == 0));
}

TEST_CASE("place, font, options and the width of every column come back at every start") {
    const SettingsFile settings(
        "X=1515\r\nY=-300\r\nW=9015\r\nH=7005\r\nStripe=1\r\nMem=C:\\\x8A\x4A\x95\xFA "
        ".exe\r\nFont=IPAGothic\r\n3Col0=70000\r\n");
    constexpr int stored_columns[] = {7, 7, 4, 5};
    for (int start = 0; start < 3; ++start) {
        const Driven window;
        const RECT place = BoundsOf(window.window());
        CHECK((place.left == 101 && place.top == -20 && place.right == 702 && place.bottom == 447));
        CHECK(window.text(Control::txtMemPath) == L"C:\\開放 .exe");
        const auto stripes = static_cast<UINT>(CommandId(MenuArray::mnuViewItem, ViewItem::Stripes));
        CHECK(GetMenuState(GetMenu(window.window()), stripes, MF_BYCOMMAND) == MF_CHECKED);
        for (const Control control : {Control::ListView1_0, Control::cmdMenu_0, Control::txtSys, Control::Label1_0,
                                      Control::Label1_2, Control::st, Control::cb, Control::tb}) {
            LOGFONTW look = {};
            GetObjectW(reinterpret_cast<HFONT>(SendMessageW(window.at(control), WM_GETFONT, 0, 0)), sizeof look, &look);
            const bool takes_it = control != Control::tb && control != Control::cb;
            CHECK((std::wstring_view(look.lfFaceName) == L"IPAGothic") == takes_it);
        }
        if (start == 0) CHECK(window.list(Control::ListView1_0).column_width(2) == 32767);
        int width = 20 + start;
        for (std::size_t tab = 0; tab < std::size(stored_columns); ++tab) {
            for (int column = 0; column < stored_columns[tab]; ++column, ++width) {
                if (start > 0) CHECK(window.list(kViews[tab]).column_width(column) == width);
                window.list(kViews[tab]).set_column_width(column, width + 1);
            }
        }
    }
}

TEST_CASE("twips and pixels do not drift at any resolution") {
    for (int pixels = -2000; pixels <= 4000; pixels += 7)
        for (const int dpi : {96, 120, 144, 192})
            REQUIRE(PixelsFromTwips(TwipsFromPixels(pixels, dpi), dpi) == pixels);
    CHECK(TwipsFromPixels(-100, 96) == -1500);
    CHECK(PixelsFromTwips(2147483647, 192) > 0);
}

TEST_CASE("whatever is in setting.ini is read as Windows reads it, the window is seen, no stranger's line is lost") {
    constexpr const char* keys[] = {"X",      "Y",   "W",   "H",    "WinState", "Icon",
                                    "Stripe", "Mem", "mem", "Font", "1Col0",    "SysCom"};
    constexpr const char* values[] = {
        "",          " 7 ",     "-1",         "12000", "-2147483648",     "4294967295", "+3",
        "0x10",      "010",     "1 ; remark", "a=b",   "\"5\"",           "'6'",        "\"",
        "\"\"a\"\"", "C:\\a b", "\x83\x5C",   "\t9",   "\x82\x6C\x82\x72"};
    // Windows cuts the width to the screen's: nothing would be seen at the stored place.
    const std::string known[] = {
        "X=-28800\r\nY=-90000\r\nW=90000\r\nFont=" + std::string(60, 'x') + "\r\n",
        std::string(40'000, ';') + "\r\nX=8\r\nX=9\r\n" + std::string(70'000, 'k') + "=1\r\nY=2\r\n"};
    const SettingsFile file;
    const std::string path = win::ToAnsi(file.path);
    const auto strangers = [&] {
        return 10 * GetPrivateProfileIntA("Other", "Keep", 0, path.c_str()) +
               GetPrivateProfileIntA("Morlet", "Mine", 0, path.c_str());
    };
    hostile::Run("settings", 100, [&](hostile::Source& source, std::uint64_t round) {
        std::string content = "[Other]\r\nKeep=1\r\n[morlet]\r\nMine=2\r\n";
        if (round < std::size(known)) content += known[round];
        for (std::size_t lines = round < std::size(known) ? 0 : source.below(30); lines > 0; --lines) {
            const std::string value = source.once_in(20) ? std::string(source.size() % 3000, 'x') : source.pick(values);
            content += std::string(source.pick(keys)) + (source.once_in(4) ? " = " : "=") + value + "\r\n";
            if (source.once_in(20)) source.mutate(content);
        }
        file.write(content);
        const UINT others = strangers();
        const Settings settings(file.path);
        for (const char* key : keys) {
            char alone[1024] = {};
            REQUIRE(settings.text(key).size() < 1024);
            // Under Wine a line without "=" hides the later lines of its key. What more than 19 digits become is
            // nobody's concern.
            if (!GetPrivateProfileStringA("Morlet", key, "", alone, sizeof alone, path.c_str())) continue;
            REQUIRE(settings.text(key) == win::FromAnsi(alone));
            const auto number = static_cast<int>(GetPrivateProfileIntA("Morlet", key, 7, path.c_str()));
            REQUIRE((settings.number(key, 7) == number || std::string_view(alone).size() > 19));
        }
        for (int start = round % 16 == 0 ? 2 : 0; start > 0; --start) {  // the second with what the first has saved
            const Driven window;
            const bool seen = MonitorFromWindow(window.window(), MONITOR_DEFAULTTONULL) != nullptr;
            REQUIRE((seen || IsIconic(window.window())));
        }
        REQUIRE(strangers() == others);
    });
}

TEST_CASE("a maximised window, an early close, a log-off and a quit from outside lose nothing stored") {
    const SettingsFile settings("WinState=2\r\nX=150\r\n3Col0=77\r\n");
    CHECK(IsZoomed(Driven().window()));
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
    MoveWindow(quit.window(), 300, 0, 600, 400, FALSE);
    for (const auto& [ends, x] : {std::pair(FALSE, 1515), {TRUE, 4500}}) {
        SendMessageW(quit.window(), WM_ENDSESSION, static_cast<WPARAM>(ends), 0);
        CHECK(settings.number("X") == x);
    }
    MoveWindow(quit.window(), 202, 0, 600, 400, FALSE);
    PostQuitMessage(0);
    quit.run_until_closed();
    CHECK(settings.number("X") == 3030);
}

TEST_CASE_FIXTURE(Opened, "stripes colour every other row while they can be read, and the selected row stands out") {
    NMLVCUSTOMDRAW draw = {};
    const auto answer_at = [&](DWORD stage) {
        draw.nmcd.dwDrawStage = stage;
        return SendMessageW(window.window(), WM_NOTIFY, 0, reinterpret_cast<LPARAM>(&draw));
    };
    const auto colour_of = [&](DWORD_PTR row, UINT state = 0) {
        draw = {};
        draw.nmcd.hdr = {window.at(Control::ListView1_0), 0, static_cast<UINT>(NM_CUSTOMDRAW)};
        draw.nmcd.dwItemSpec = row;
        draw.nmcd.uItemState = state;
        CHECK((answer_at(CDDS_PREPAINT) == CDRF_NOTIFYITEMDRAW && answer_at(CDDS_ITEMPREPAINT) == CDRF_DODEFAULT));
        return draw.clrTextBk;
    };
    draw.nmcd.hdr = {window.at(Control::ListView1_0), 0, static_cast<UINT>(NM_CUSTOMDRAW)};
    CHECK(answer_at(CDDS_PREPAINT) == CDRF_DODEFAULT);
    window.command(MenuArray::mnuViewItem, ViewItem::Stripes);
    CHECK(colour_of(0) == RGB(255, 255, 255));
    CHECK(colour_of(7) == RGB(240, 240, 255));
    window.list(Control::ListView1_0).select(0);
    SetFocus(window.at(Control::ListView1_0));
    CHECK(colour_of(0, CDIS_SELECTED) == RGB(255, 255, 255));
    SetFocus(window.at(Control::tb));
    CHECK(colour_of(0, CDIS_SELECTED) != RGB(255, 255, 255));
    CHECK((draw.nmcd.uItemState & CDIS_SELECTED) == 0);
    {
        const ImportHook grey(
            "GetSysColor", +[](int) WINAPI -> DWORD { return 0x767676; });  // to be read on white alone
        CHECK(colour_of(7) == 0);
    }
    const ImportHook contrast("SystemParametersInfoW", HighContrast);
    CHECK(colour_of(7) == 0);
}

TEST_CASE_FIXTURE(Opened, "hints cover the status text for as long as menu or strip are under the pointer") {
    const auto after = [&](HWND to, UINT message, WPARAM wparam, LPARAM lparam = 0) {
        SendMessageW(to, message, wparam, lparam);
        return window.status();
    };
    const auto item = static_cast<WPARAM>(CommandId(MenuArray::mnuFileItem, FileItem::Refresh));
    CHECK(after(window.window(), WM_MENUSELECT, item) == L"表示中の情報を最新の状態に更新します");
    CHECK(after(window.window(), WM_MENUSELECT, MAKEWPARAM(0, 0xFFFF)) == window.count(Control::ListView1_0));
    const HWND tb = window.at(Control::tb);
    const std::wstring hint = L"Windowsサービスの情報を一覧表示し、開始・停止等を行います";
    CHECK(after(tb, WM_MOUSEMOVE, 0, window.middle(3)) == hint);
    window.click(3);
    // The pointer that rests on the tab does not cover the count, one that moves on it does.
    CHECK(after(tb, WM_MOUSEMOVE, 0, window.middle(3)) == window.count(Control::lvService));
    CHECK(after(tb, WM_MOUSEMOVE, 0, window.middle(3) + 1) == hint);
}

TEST_CASE_FIXTURE(
    Opened,
    "what a full bin and this Windows allow can be chosen, no menu opens in a fill, Ctrl+A selects the whole report") {
    const ImportHook bin(
        "SHQueryRecycleBinA", +[](LPCSTR, SHQUERYRBINFO* record) WINAPI -> HRESULT {
            record->i64NumItems = 2;
            return S_OK;
        });
    for (const auto& [place, array, item] :
         {std::tuple(2, MenuArray::mnuDeleteItem, static_cast<int>(tools::CleanupItem::RecycleBin)),
          {3, MenuArray::mnuSetItem, static_cast<int>(tools::RepairItem::DownloadLocation)}}) {
        const HMENU menu = GetSubMenu(GetMenu(window.window()), place);
        SendMessageW(window.window(), WM_INITMENUPOPUP, reinterpret_cast<WPARAM>(menu), place);
        const UINT state = GetMenuState(menu, static_cast<UINT>(CommandId(array, item)), MF_BYCOMMAND);
        CHECK((state & MF_GRAYED) == 0);
    }
    // A menu that is asked for while a list is filled would act on rows that the user has not seen.
    static int menus = 0;
    const ImportHook opens(
        "TrackPopupMenu", +[](HMENU, UINT, int, int, int, HWND, const RECT*) WINAPI -> BOOL { return ++menus; });
    window.click(2);
    for (const int expected : {0, 1}) {
        PostMessageW(window.window(), WM_CONTEXTMENU, reinterpret_cast<WPARAM>(window.at(Control::lvStartUp)), -1);
        if (expected == 0) window.command(MenuArray::mnuFileItem, FileItem::Refresh);
        window.pump();
        CHECK(menus == expected);
    }
    window.click(kInformation);
    const HWND report = window.at(Control::txtSys);
    SetFocus(report);
    BYTE keys[256] = {};
    keys[VK_CONTROL] = 0x80;
    SetKeyboardState(keys);
    PostMessageW(report, WM_KEYDOWN, L'A', 1);
    window.pump();
    keys[VK_CONTROL] = 0;
    SetKeyboardState(keys);
    const auto length = static_cast<WORD>(window.text(Control::txtSys).size());
    CHECK(SendMessageW(report, EM_GETSEL, 0, 0) == MAKELONG(0, length));
}

TEST_CASE_FIXTURE(Opened,
                  "a link is its text and acts once a press, and so do a button and the box for registry paths") {
    constexpr LPARAM kRepeated = 1 << 30;
    window.list(Control::ListView1_0).select(0);
    const std::wstring name = window.status();
    const HWND link = window.at(Control::Label1_2);
    UpdateWindow(link);
    SetWindowTextW(link, L"https://other.example/ and what is longer than it");
    CHECK(GetUpdateRect(link, nullptr, FALSE));
    SendMessageW(link, WM_KEYDOWN, VK_RETURN, kRepeated);
    CHECK(window.status() == name);  // opening a link says so there
    const RECT area = BoundsOf(link);
    const LONG middle = (area.top + area.bottom) / 2;
    CHECK(SendMessageW(link, WM_NCHITTEST, 0, MAKELPARAM(area.left + 60, middle)) == HTCLIENT);
    CHECK(SendMessageW(link, WM_NCHITTEST, 0, MAKELPARAM(area.right - 2, middle)) == HTTRANSPARENT);

    static int asked = 0;
    const ImportHook questions(
        "MessageBoxW", +[](HWND, LPCWSTR, LPCWSTR, UINT) WINAPI -> int { return ++asked, IDCANCEL; });
    window.click(2);
    window.list(Control::lvStartUp).select(0);
    for (const LPARAM held : {LPARAM{0}, kRepeated, kRepeated}) {
        SetFocus(window.at(Control::cmdMenu_0));
        PostMessageW(GetFocus(), WM_KEYDOWN, VK_RETURN, held);
        window.pump();
    }
    CHECK(asked == 1);

    window.click(kInformation);
    const HWND cb = window.at(Control::cb);
    const HWND box = GetWindow(cb, GW_CHILD);
    SendMessageW(cb, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(std::wstring(75, L'W').c_str()));
    for (const WPARAM open : {WPARAM{TRUE}, WPARAM{FALSE}}) {  // no tip lies over the open list
        SendMessageW(cb, CB_SHOWDROPDOWN, open, 0);
        CHECK(window.tip(Control::cb).empty() == (open != FALSE));
    }
    CHECK(SendMessageW(cb, CB_GETDROPPEDWIDTH, 0, 0) > 350);
    SetFocus(box);
    SetWindowTextW(cb, L"  ");
    for (const LPARAM held : {LPARAM{0}, kRepeated, kRepeated})
        PostMessageW(box, WM_KEYDOWN, VK_RETURN, held);
    window.pump();
    CHECK(window.text(Control::cb) == L"  ");
    PostMessageW(box, WM_KEYUP, VK_RETURN, 0);
    window.pump();
    CHECK(window.text(Control::cb).empty());  // what is read loses its leading blanks
}

TEST_CASE_FIXTURE(Opened,
                  "the longest description of a service is read whole, and what is cut off elsewhere has a tip") {
    window.click(3);
    const HWND box = window.at(Control::txtComment);
    const auto height_with = [&](const std::wstring& description) {
        window.list(Control::lvService).set_cell(0, 3, description);
        SendMessageW(window.window(), WM_SETTINGCHANGE, 0, 0);
        window.list(Control::lvService).select(-1);
        window.list(Control::lvService).select(0);
        return BoundsOf(box).bottom - BoundsOf(box).top;
    };
    const std::wstring sentence =  // a little longer than a line
        L"プログラムの更新を検出し、ダウンロードしてインストールします、ほかの製品の更新も選んだ時刻に"
        L"確認し、再起動が必要なときは画面の右下で通知します。";
    const LONG usual = height_with(sentence);
    CHECK(height_with(sentence + sentence + sentence) > usual);
    CHECK((GetWindowLongW(box, GWL_STYLE) & WS_VSCROLL) == 0);
    CHECK(SendMessageW(box, EM_GETLINECOUNT, 0, 0) == 6);
    CHECK(height_with(std::wstring(5000, L'長')) < 533 / 4);
    CHECK((GetWindowLongW(box, GWL_STYLE) & WS_VSCROLL) != 0);

    for (const Control control : {Control::st, Control::lblMem_1, Control::Label1_0}) {
        SetWindowTextW(window.at(control), L"短い");
        CHECK(window.tip(control).empty());
        SetWindowTextW(window.at(control), std::wstring(200, L'字').c_str());
        CHECK(window.tip(control) == std::wstring(200, L'字'));
    }
    window.click(0);
    const ui::ListView list = window.list(Control::ListView1_0);
    list.set_column_width(0, 40);
    SendMessageW(list.window(), WM_MOUSEMOVE, 0, MAKELPARAM(10, 30));
    CHECK(window.tip(Control::ListView1_0) == list.cell(list.hit_test({10, 30}).row, 0));
}
