#include "sysinfo/control_panel.h"

#include "support/import_hook.h"
#include "support/recorder.h"
#include "support/show.h"
#include "support/test_host.h"
#include "support/test_key.h"
#include "support/test_list.h"
#include "win/com_ptr.h"

#include <set>

using namespace sysinfo;

namespace {

// A machine with these files and icons ("file#index"), and those that were taken, in the order of the image list.
std::set<std::wstring> files, icons;
std::vector<std::wstring> taken;

UINT WINAPI ExtractSmallIcon(LPCWSTR file, int index, HICON* large, HICON* icon, UINT count) {
    const std::wstring name = std::wstring(file) + L"#" + std::to_wstring(index);
    if (large || count != 1 || !icons.contains(name)) return 0;
    taken.push_back(name);
    *icon = CopyIcon(LoadIconW(nullptr, IDI_APPLICATION));
    return 1;
}

// Name, path and icon of a row, if its icon is there.
using Row = std::vector<std::wstring>;

// The version in tenths: 61 is Windows 7.
std::vector<Row> Fill(const TestList& shown, unsigned os_number, const ControlPanelFolders& folders) {
    static const win::ImageList images(ImageList_Create(16, 16, ILC_COLOR32 | ILC_MASK, 8, 8));
    TestHost host;
    taken.clear();
    FillControlPanelList(shown.list, images.get(), {os_number / 10, os_number % 10}, folders, host);
    std::vector<Row> rows;
    for (int row = 0; row < shown.list.count(); ++row) {
        rows.push_back(
            {shown.list.cell(row, ControlPanelColumn::Name), shown.list.cell(row, ControlPanelColumn::Path)});
        const auto image = static_cast<std::size_t>(shown.image(row));
        if (image < taken.size()) rows.back().push_back(taken[image]);
    }
    return rows;
}

}  // namespace

TEST_CASE("the list has each version's rows with path and icon; what is missing takes its row or only its icon along") {
    const TestList shown(kControlPanelColumns);
    CHECK_FALSE(Fill(shown, 61, QueryControlPanelFolders()).empty());
    const int editor = shown.list.find(ControlPanelColumn::Path, win::WindowsDirectory() + L"\\regedit.exe");
    CHECK(shown.image(editor) >= 0);
    CHECK(shown.list.cell(editor, ControlPanelColumn::Comment) ==
          L"システム レジストリの設定を表示および変更を行います。");

    const ImportHook exists(
        "PathFileExistsW", +[](LPCWSTR path) WINAPI -> BOOL { return files.contains(path); });
    const ImportHook extract("ExtractIconExW", &ExtractSmallIcon);
    const ControlPanelFolders folders = {L"S:", L"P:", L"W:"};
    CHECK(Fill(shown, 61, folders) == std::vector<Row>{{L"フォルダ オプション", L"Folders"}});
    const std::wstring sidebar = L"P:\\Windows Sidebar\\sidebar.exe";
    files = {sidebar, L"S:\\wuapp.exe", L"S:\\main.cpl", L"S:\\Wscui.cpl", L"W:\\regedit.exe"};
    const struct {
        unsigned from, to;
        Row row;
    } expected[] = {
        {0, 99, {L"フォルダ オプション", L"Folders", L"S:\\shell32.dll#110"}},
        {51, 99, {L"フォント", L"%windir%\\fonts", L"S:\\shell32.dll#38"}},
        {51, 99, {L"コンピュータの簡単操作センター", L"Utilman.exe", L"Utilman.exe#0"}},
        {51, 60, {L"Windows サイドバー", sidebar, sidebar + L"#0"}},
        {51, 60, {L"Windows サイドバーのプロパティ", sidebar + L" /property", sidebar + L"#0"}},
        {51, 99, {L"Windows Update", L"wuapp.exe", L"wucltux.dll#0"}},
        {0, 50, {L"フォント", L"%windir%\\fonts", L"S:\\main.cpl#9"}},
        {0, 99, {L"マウス", L"S:\\main.cpl", L"S:\\main.cpl#0"}},
        {0, 99, {L"キーボード", L"S:\\main.cpl @1", L"S:\\main.cpl#7"}},
        {0, 60, {L"セキュリティ センター", L"S:\\Wscui.cpl"}},
        {61, 99, {L"アクション センター", L"S:\\Wscui.cpl", L"S:\\ActionCenter.dll#0"}},
        {0, 99, {L"レジストリエディタ", L"W:\\regedit.exe", L"W:\\regedit.exe#0"}},
    };
    for (const auto& each : expected)
        if (each.row.size() > 2) icons.insert(each.row[2]);
    for (const unsigned os_number : {50U, 51U, 60U, 61U}) {
        CAPTURE(os_number);
        std::vector<Row> rows;
        for (const auto& each : expected)
            if (os_number >= each.from && os_number <= each.to) rows.push_back(each.row);
        CHECK(Fill(shown, os_number, folders) == rows);
    }
}

TEST_CASE("rows are opened themselves or through control.exe, with exact parameters") {
    const win::ComApartment apartment;
    TestFolder folder(L"コントロール パネル");
    const std::wstring system = folder.path();
    folder.make_folder(L"a b");
    Recorder recorder;
    const StandIn control(L"control.exe", StandIn::built(L"recorder_gui.exe"));
    for (const wchar_t* file : {L"\\consoles.exe", L"\\a b\\bar.exe", L"\\cleanmgr.exe"})
        REQUIRE(recorder.install(system + file));
    const StandIn console(L"taskschd.msc", win::WindowsDirectory() + L"\\win.ini");
    const TestKey extension(HKEY_LOCAL_MACHINE, L"Software\\Classes\\.msc");
    extension.set_text(L"", L"", L"QorvenixTest.Console");
    const TestKey type(HKEY_LOCAL_MACHINE, L"Software\\Classes\\QorvenixTest.Console");
    type.set_text(L"shell\\open\\command", L"", L"\"" + system + L"\\consoles.exe\" \"%1\"");

    const struct {
        std::wstring path, program, parameters;  // program and the end of its command line as the recorder notes them
    } openings[] = {
        {system + L"\\cleanmgr.exe", system + L"\\cleanmgr.exe", L"cleanmgr.exe\""},
        {system + L"\\a b\\bar.exe /property", system + L"\\a b\\bar.exe", L"bar.exe\" /property"},
        {L"taskschd.msc", system + L"\\consoles.exe", L"\\taskschd.msc\""},
        {system + L"\\main.cpl @1", L"control.exe", L"\" " + system + L"\\main.cpl @1"},
        {L"%windir%\\fonts", L"control.exe", L"\" %windir%\\fonts"},
    };
    OpenControlPanelRow(nullptr, system + L"\\missing.exe");
    std::size_t opened = 0;
    for (const auto& opening : openings) {
        OpenControlPanelRow(nullptr, opening.path);
        const auto starts = recorder.starts(++opened);
        REQUIRE(starts.size() == opened);
        CHECK(starts.back().program.ends_with(win::LowerCase(opening.program)));
        CHECK(starts.back().command_line.ends_with(opening.parameters));
        CHECK(starts.back().show == L"5");
    }
    CHECK(recorder.starts_after_a_while().size() == opened);
}
