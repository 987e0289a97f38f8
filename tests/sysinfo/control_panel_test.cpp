#include "sysinfo/control_panel.h"

#include "icon_library.h"
#include "support/recorder.h"
#include "support/show.h"
#include "support/stand_in.h"
#include "support/test_host.h"
#include "support/test_key.h"
#include "support/test_list.h"
#include "support/throw_away.h"
#include "win/com_ptr.h"
#include "win/folders.h"
#include "win/system_text.h"

#include <doctest/doctest.h>

#include <map>
#include <optional>

using namespace sysinfo;

namespace {

// A machine with a program folder of Japanese letters and blanks. Files that are searched for by their bare names, and
// the one with a fixed path, go to the real folders, where nothing of that name may lie before.
class Machine {
public:
    const ControlPanelFolders folders = {L"C:\\qorvenix test\\system", L"C:\\qorvenix test\\プログラム ファイル",
                                         L"C:\\qorvenix test\\windows"};

    Machine() { REQUIRE_THROW_AWAY(); }
    Machine(const Machine&) = delete;
    Machine& operator=(const Machine&) = delete;
    ~Machine() {
        for (const auto& [path, family] : planted_) {
            for (int turn = 0; turn < 100 && !DeleteFileW(path.c_str()); ++turn)
                Sleep(50);  // it may still run
        }
    }

    // "SYS\", "PF\" and "WIN\" at the start of a text stand for the folders.
    std::wstring expand(const std::wstring& text) const {
        for (const auto& [mark, folder] : {std::pair(L"SYS\\", &folders.system), std::pair(L"PF\\", &folders.programs),
                                           std::pair(L"WIN\\", &folders.windows)}) {
            if (text.starts_with(mark)) return *folder + text.substr(std::wcslen(mark) - 1);
        }
        return text;
    }

    // A file with icons of a family of its own, or an empty one.
    void plant(const std::wstring& name, int icons = 0) {
        const std::wstring path = place(name);
        REQUIRE(GetFileAttributesW(path.c_str()) == INVALID_FILE_ATTRIBUTES);
        for (std::size_t end = path.find(L'\\', 3); end != path.npos; end = path.find(L'\\', end + 1))
            CreateDirectoryW(path.substr(0, end).c_str(), nullptr);
        const int family = static_cast<int>(planted_.size()) + 1;
        if (icons > 0) {
            REQUIRE(MakeIconLibrary(path, family, icons));
        } else {
            REQUIRE(win::File(CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, 0, nullptr)));
        }
        planted_[path] = family;
    }

    COLORREF colour(const std::wstring& name, int index) { return IconColour(planted_.at(place(name)), index); }

private:
    // Where a file is planted: one without a folder in the system's own.
    std::wstring place(const std::wstring& name) const {
        return name.find(L'\\') == name.npos ? win::SystemDirectory() + L"\\" + name : expand(name);
    }

    std::map<std::wstring, int> planted_;  // path to icon family
};

class Panel {
public:
    ~Panel() { ImageList_Destroy(images); }

    // The version in tenths: 61 is Windows 7.
    void fill(const Machine& machine, unsigned os_number) {
        FillControlPanelList(shown.list, images, {os_number / 10, os_number % 10}, machine.folders, host);
    }

    // The colour of a row's icon; nothing for a row without one.
    std::optional<COLORREF> colour(int row) const {
        const int image = shown.image(row);
        if (image == ui::ListView::kNoImage) return {};
        return ImageColour(images, image);
    }

    TestHost host;
    TestList shown{kControlPanelColumns};
    HIMAGELIST images = ImageList_Create(16, 16, ILC_COLOR32 | ILC_MASK, 8, 8);
};

// What rows of every kind must show: name, path, the icon's file and index unless it is the first one of the path, and
// the OS numbers between which they are there.
struct Expected {
    const wchar_t* name;
    const wchar_t* path;
    const wchar_t* icon = L"";
    unsigned from = 0;
    unsigned to = 999;
};
constexpr Expected kExpected[] = {
    {L"フォルダ オプション", L"Folders", L"SYS\\shell32.dll#110"},
    {L"フォント", L"%windir%\\fonts", L"SYS\\shell32.dll#38", 51},
    {L"システム", L"/name Microsoft.System", L"SYS\\shell32.dll#272", 51},
    {L"コンピュータの簡単操作センター", L"Utilman.exe", L"", 51},
    {L"Windows サイドバー", L"PF\\Windows Sidebar\\sidebar.exe", L"", 51, 60},
    {L"Windows サイドバーのプロパティ", L"PF\\Windows Sidebar\\sidebar.exe /property",
     L"PF\\Windows Sidebar\\sidebar.exe#0", 51, 60},
    {L"Windows Update", L"wuapp.exe", L"wucltux.dll#0", 51},
    {L"ユーザー アカウント", L"userpasswords", L"SYS\\shell32.dll#170", 51},
    {L"フォント", L"%windir%\\fonts", L"SYS\\main.cpl#9", 0, 50},
    {L"ディスク デフラグ", L"SYS\\dfrg.msc", L"SYS\\shell32.dll#80", 0, 50},
    {L"マウス", L"SYS\\main.cpl"},
    {L"キーボード", L"SYS\\main.cpl @1", L"SYS\\main.cpl#7"},
    {L"セキュリティ センター", L"SYS\\Wscui.cpl", L"", 0, 60},
    {L"アクション センター", L"SYS\\Wscui.cpl", L"SYS\\ActionCenter.dll#0", 61},
    {L"スキャナとカメラ", L"SCANNERCAMERA", L"SYS\\sti_ci.dll#0"},
    {L"デバイスマネージャ", L"SYS\\DEVMGMT.MSC", L"SYS\\shell32.dll#15"},
    {L"レジストリエディタ", L"WIN\\regedit.exe"},
    {L"システム情報", L"C:\\Program Files\\Common Files\\Microsoft Shared\\MSInfo\\msinfo32.exe"},
};
// Files that rows depend on without showing their icons.
constexpr const wchar_t* kFilesAlone[] = {L"SYS\\wuapp.exe", L"SYS\\dfrg.msc", L"SYS\\DEVMGMT.MSC"};

std::wstring IconFile(const Expected& row) {
    const std::wstring icon = *row.icon ? row.icon : row.path;
    return icon.substr(0, icon.find(L'#'));
}
int IconIndex(const Expected& row) {
    const wchar_t* const mark = std::wcschr(row.icon, L'#');
    return mark ? std::stoi(mark + 1) : 0;
}

}  // namespace

TEST_CASE("The catalogue's rows, paths and icons for each version of Windows") {
    Machine machine;
    std::map<std::wstring, int> icons;
    for (const Expected& row : kExpected)
        icons[IconFile(row)] = std::max(icons[IconFile(row)], IconIndex(row) + 1);
    for (const auto& [file, count] : icons)
        machine.plant(file, count);
    for (const wchar_t* file : kFilesAlone)
        machine.plant(file);

    Panel panel;
    for (const unsigned os_number : {50U, 51U, 60U, 61U}) {
        CAPTURE(os_number);
        panel.fill(machine, os_number);
        int index = 0;
        for (const Expected& row : kExpected) {
            if (os_number < row.from || os_number > row.to) continue;
            CHECK(panel.shown.list.cell(index, ControlPanelColumn::Name) == row.name);
            CHECK(panel.shown.list.cell(index, ControlPanelColumn::Path) == machine.expand(row.path));
            CHECK(panel.colour(index) == machine.colour(IconFile(row), IconIndex(row)));
            ++index;
        }
        CHECK(panel.shown.list.count() == index);
        CHECK(ImageList_GetImageCount(panel.images) == index);
    }

    const auto comment = [&](const wchar_t* name) {
        return panel.shown.list.cell(panel.shown.list.find(ControlPanelColumn::Name, name),
                                     ControlPanelColumn::Comment);
    };
    CHECK(comment(L"アクション センター") == L"最近のメッセージを確認し、コンピュータ上の問題を解決します。");
    CHECK(comment(L"レジストリエディタ") == L"システム レジストリの設定を表示および変更を行います。");
}

TEST_CASE("Files and icons that are missing take their rows or only their icons along") {
    Machine machine;
    Panel panel;
    using Names = std::vector<std::wstring>;
    panel.fill(machine, 61);
    CHECK(panel.shown.column(ControlPanelColumn::Name) == Names{L"フォルダ オプション"});
    CHECK_FALSE(panel.colour(0));

    machine.plant(L"SYS\\shell32.dll", 100);  // enough icons for 38 and 80, not for 110
    machine.plant(L"SYS\\main.cpl");          // no icon at all
    machine.plant(L"SYS\\Firewall.cpl");      // icon of another file from Windows 7 on
    machine.plant(L"SYS\\FirewallControlPanel.dll", 1);
    panel.fill(machine, 51);
    CHECK(panel.shown.column(ControlPanelColumn::Name) ==
          Names{L"フォルダ オプション", L"フォント", L"マウス", L"キーボード", L"Windows ファイアウォール"});
    CHECK(panel.colour(1) == machine.colour(L"SYS\\shell32.dll", 38));
    CHECK_FALSE(panel.colour(4));
    panel.fill(machine, 61);
    CHECK(panel.colour(4) == machine.colour(L"SYS\\FirewallControlPanel.dll", 0));
    CHECK(ImageList_GetImageCount(panel.images) == 2);
}

TEST_CASE("Rows are opened themselves or through control.exe, with exact parameters") {
    const win::ComApartment apartment;
    Machine machine;
    const StandIn control(L"control.exe", StandIn::built(L"recorder_gui.exe"));
    REQUIRE(control.placed());
    for (const wchar_t* file : {L"SYS\\consoles.exe", L"PF\\Windows Sidebar\\sidebar.exe", L"SYS\\cleanmgr.exe"})
        machine.plant(file, 1);
    machine.plant(win::SystemDirectory() + L"\\taskschd.msc");
    const TestKey extension(HKEY_LOCAL_MACHINE, L"Software\\Classes\\.msc");
    extension.set_text(L"", L"", L"QorvenixTest.Console");
    const TestKey type(HKEY_LOCAL_MACHINE, L"Software\\Classes\\QorvenixTest.Console");
    type.set_text(L"shell\\open\\command", L"", L"\"" + machine.expand(L"SYS\\consoles.exe") + L"\" \"%1\"");

    const struct {
        const wchar_t* path;
        const wchar_t* program;     // as the recorder notes it
        const wchar_t* parameters;  // the end of its command line
    } openings[] = {
        {L"SYS\\cleanmgr.exe", L"SYS\\cleanmgr.exe", L"cleanmgr.exe\""},
        {L"PF\\Windows Sidebar\\sidebar.exe /property", L"PF\\windows sidebar\\sidebar.exe",
         L"sidebar.exe\" /property"},
        {L"taskschd.msc", L"SYS\\consoles.exe", L"\\taskschd.msc\""},
        {L"SYS\\main.cpl @1", L"control.exe", L"\" C:\\qorvenix test\\system\\main.cpl @1"},
        {L"%windir%\\fonts", L"control.exe", L"\" %windir%\\fonts"},
        {L"desk.cpl,screensaver,@screensaver", L"control.exe", L"\" desk.cpl,screensaver,@screensaver"},
    };
    for (const auto& opening : openings) {
        const std::wstring path = machine.expand(opening.path);
        CAPTURE(path);
        const Recorder recorder;
        OpenControlPanelRow(nullptr, path);
        const auto starts = recorder.starts(1);
        REQUIRE(starts.size() == 1);
        CHECK(starts[0].program.ends_with(win::LowerCase(machine.expand(opening.program))));
        CHECK(starts[0].command_line.ends_with(opening.parameters));
        CHECK(starts[0].show == L"5");
    }
    const Recorder recorder;
    OpenControlPanelRow(nullptr, machine.expand(L"SYS\\missing.exe"));
    CHECK(recorder.starts_after_a_while().empty());
}
