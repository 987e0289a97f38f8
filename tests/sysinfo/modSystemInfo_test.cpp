#include "sysinfo/modSystemInfo.h"

#include "programs/modReg.h"
#include "support/recycle_bin.h"
#include "support/show.h"
#include "support/stand_in.h"
#include "support/test_key.h"
#include "sysinfo/report_box.h"
#include "sysinfo/system_report.h"
#include "win/folders.h"
#include "win/process.h"
#include "win/size_text.h"
#include "win/text.h"

#include <doctest/doctest.h>

#include <algorithm>
#include <vector>

using namespace sysinfo;

namespace {

constexpr wchar_t kReportFile[] = L"QORVENIX_REPORT";

std::wstring Environment(const wchar_t* name) {
    wchar_t text[MAX_PATH] = {};
    GetEnvironmentVariableW(name, text, MAX_PATH);
    return text;
}

std::vector<std::wstring> Lines(const std::wstring& text) {
    std::vector<std::wstring> lines;
    std::size_t from = 0;
    for (std::size_t end; (end = text.find(L"\r\n", from)) != text.npos; from = end + 2) {
        lines.push_back(text.substr(from, end - from));
    }
    lines.push_back(text.substr(from));
    return lines;
}

// Whether what stands behind the last tab is four numbers with dots between.
bool EndsWithFourNumbers(const std::wstring& line) {
    const std::wstring text = line.substr(line.rfind(L'\t') + 1);
    return std::count(text.begin(), text.end(), L'.') == 3 && text.find_first_not_of(L"0123456789.") == text.npos;
}

// The report of a process that runs under another version of Windows: a copy of this program that writes it.
class Versioned {
public:
    Versioned() {
        throw_away::RequireWine();  // whose setting for one program gives it another version
        REQUIRE(CopyFileW(StandIn::built(L"test_sysinfo.exe").c_str(), program_.c_str(), FALSE));
        SetEnvironmentVariableW(kReportFile, report_.c_str());
    }

    std::wstring report(const wchar_t* version) {
        if (*version) setting_.set_text({}, L"Version", version);
        const std::wstring command_line = L"\"" + program_ + L"\" --no-skip --out=NUL -tc=\"report of a copy\"";
        const auto copy = win::StartProcess(program_, command_line, win::WindowStyle::Normal);
        REQUIRE(WaitForSingleObject(copy.process.get(), 60000) == WAIT_OBJECT_0);
        return WideContentOf(report_);
    }

private:
    TestFolder folder_{L"versioned report"};
    std::wstring program_ = folder_.own(L"versioned.exe");
    std::wstring report_ = folder_.own(L"report.txt");
    TestKey setting_{HKEY_CURRENT_USER, L"Software\\Wine\\AppDefaults\\versioned.exe"};
};

// Where a character of an edit control begins, in pixels from the left.
int Left(HWND box, std::size_t character) {
    return static_cast<short>(LOWORD(SendMessageW(box, EM_POSFROMCHAR, character, 0)));
}

}  // namespace

TEST_CASE("report of a copy" * doctest::skip()) {
    const std::wstring report = BuildSystemReport(win::SystemDirectory());
    const win::File file(CreateFileW(Environment(kReportFile).c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                                     FILE_ATTRIBUTE_NORMAL, nullptr));
    DWORD bytes = 0;
    REQUIRE(WriteFile(file.get(), report.data(), static_cast<DWORD>(report.size() * sizeof(wchar_t)), &bytes, nullptr));
}

TEST_CASE("The report under the versions of Windows, line by line") {
    REQUIRE_THROW_AWAY();
    MakeDataFolder();
    const bool wow64 = !Environment(L"PROCESSOR_ARCHITEW6432").empty();
    CHECK(IsWow64() == wow64);
    const std::wstring bits = Environment(L"ProgramW6432").empty() ? L"32bit" : L"64bit";
    Versioned versioned;
    const struct {
        const wchar_t* version;
        std::wstring name;
    } cases[] = {
        {L"", L"Windows 7 Ultimate Edition " + bits + L" 6.1 Build:7601 Service Pack 1"},
        {L"vista", L"Windows Vista Ultimate Edition " + bits + L" 6.0 Build:6002 Service Pack 2"},
        {L"winxp", L"Windows XP Professional Edition 5.1 Build:2600 Service Pack 3"},
        {L"win2003", L" 5.2 Build:3790 Service Pack 2"},
        {L"win2k", L"Windows 2000 5.0 Build:2195 Service Pack 4"},
        {L"win98", L"Windows 98 SE 4.10 Build:2222 A"},
        {L"win10", {}},
    };
    for (const auto& each : cases) {
        const std::vector<std::wstring> lines = Lines(versioned.report(each.version));
        REQUIRE(lines.size() == 19);
        for (const int empty : {0, 2, 6, 9, 13, 15})
            CHECK(lines[static_cast<std::size_t>(empty)] == L"");
        CHECK(lines[1] == L"OS\t\t" + each.name);
        CHECK(lines[3] == L"ユーザー名\t" + Environment(L"USERNAME"));
        CHECK(lines[4] == L"コンピュータ名\t" + Environment(L"COMPUTERNAME"));
        CHECK(lines[5] == L"IPアドレス\t\t" + GetIPAddress());
        CHECK(lines[7] == L"画面の解像度\t" + std::to_wstring(GetSystemMetrics(SM_CXSCREEN)) + L" x " +
                              std::to_wstring(GetSystemMetrics(SM_CYSCREEN)) + L" ピクセル");
        CHECK(lines[8] == L"ディスプレイサイズ\t" + GetDisplayInches() + L" インチ");
        CHECK(lines[10] == L"キーボードの種類\t日本語キーボード");
        CHECK(lines[11] == L"サブタイプ\t\t101キーボード");
        CHECK(lines[12] == L"ファンクションキー数\t12");
        CHECK(lines[14] == L"ごみ箱\t\t" + GetRecycleBinSummary());
        CHECK(lines[16] == L"[バージョン情報]");
        CHECK(lines[17].starts_with(L"Internet Explorer\t"));
        CHECK(lines[18].starts_with(L"ComCtl32.dll\t5.8"));
        for (const auto& line : {lines[17], lines[18]})
            CHECK(EndsWithFourNumbers(line));
        CHECK((GetIPAddress().empty() || EndsWithFourNumbers(lines[5])));
    }
    // Without a folder for it the shell cannot ask for the recycle bin.
    const std::wstring data = Environment(L"XDG_DATA_HOME");
    SetEnvironmentVariableW(L"XDG_DATA_HOME", L"/nonexistent");
    CHECK(Lines(versioned.report(L"")).at(14) == L"ごみ箱\t\t");
    SetEnvironmentVariableW(L"XDG_DATA_HOME", data.c_str());
    CHECK(BuildSystemReport(L"C:\\missing").ends_with(L"\r\nComCtl32.dll\t"));
}

TEST_CASE("In its box the report has margins, and its values one column") {
    for (const int pixels : {12, 15, 18, 24}) {
        CAPTURE(pixels);
        const win::Font font(CreateFontW(-pixels, 0, 0, 0, FW_NORMAL, FALSE, FALSE, FALSE, SHIFTJIS_CHARSET, 0, 0, 0, 0,
                                         L"MS UI Gothic"));
        const win::Window box(CreateWindowExW(0, L"EDIT", L"", WS_POPUP | ES_MULTILINE | ES_READONLY | ES_AUTOHSCROLL,
                                              0, 0, 900, 700, nullptr, nullptr, nullptr, nullptr));
        SendMessageW(box.get(), WM_SETFONT, reinterpret_cast<WPARAM>(font.get()), FALSE);
        for (int time = 0; time < 2; ++time)
            ShowInReportBox(box.get(), BuildSystemReport(win::SystemDirectory()));

        std::wstring text(static_cast<std::size_t>(GetWindowTextLengthW(box.get())) + 1, L'\0');
        text.resize(static_cast<std::size_t>(GetWindowTextW(box.get(), text.data(), static_cast<int>(text.size()))));
        CHECK(text == BuildSystemReport(win::SystemDirectory()));
        CHECK(SendMessageW(box.get(), EM_GETMARGINS, 0, 0) == MAKELONG(5, 5));

        std::vector<int> columns;
        std::size_t from = 0;
        for (const std::wstring& line : Lines(text)) {
            const std::size_t tab = line.rfind(L'\t');
            if (tab != line.npos && tab + 1 < line.size()) columns.push_back(Left(box.get(), from + tab + 1));
            from += line.size() + 2;
        }
        CHECK(columns.size() >= 11);
        for (const int column : columns)
            CHECK(column == columns[0]);
    }
}
