#include "sysinfo/modSystemInfo.h"

#include "support/import_hook.h"
#include "support/show.h"
#include "support/throw_away.h"
#include "sysinfo/os_name.h"
#include "sysinfo/report_box.h"
#include "sysinfo/system_report.h"
#include "win/folders.h"
#include "win/handle.h"

#include <regex>
#include <set>

using namespace sysinfo;

namespace {

// What GetVersionExW tells of the system; the extended record is refused where this is a plain one.
OSVERSIONINFOEXW told = {};

BOOL WINAPI TellVersion(OSVERSIONINFOW* record) {
    const DWORD size = record->dwOSVersionInfoSize;
    if (size <= told.dwOSVersionInfoSize) CopyMemory(record, &told, size);
    return size <= told.dwOSVersionInfoSize;
}

}  // namespace

TEST_CASE("the display has its inches, the keyboard its name") {
    // Rounded twice, halves to the even number.
    CHECK(DisplayInches(1008, 96, 96, 96) == L"10");      // 10 (10.5) and 1
    CHECK(DisplayInches(1009, 96, 96, 96) == L"11");      // 11 (10.51) and 1
    CHECK(DisplayInches(1920, 1080, 96, 96) == L"23");    // 20 and 11 (11.25): 22.8
    CHECK(DisplayInches(3840, 2160, 144, 192) == L"29");  // 27 (26.67) and 11 (11.25)
    CHECK(DisplayInches(1920, 1080, 96, 0) == L"");
    CHECK(KeyboardTypeName(1) == L"IBM(R) PC/XT(R)または互換性のある(83キー)キーボード");
    CHECK(KeyboardSubtypeName(4) == L"IBM-5576 001キーボード");
    CHECK((KeyboardTypeName(0).empty() && KeyboardTypeName(8).empty()));
    CHECK((KeyboardSubtypeName(-1).empty() && KeyboardSubtypeName(5).empty()));
}

TEST_CASE("the report tells this machine's facts line by line; what cannot be had is empty") {
    throw_away::RequireWine();
    static HRESULT bin_answer = S_OK;
    const ImportHook bin(
        "SHQueryRecycleBinA", +[](LPCSTR, SHQUERYRBINFO* record) WINAPI -> HRESULT {
            record->i64NumItems = 2;
            record->i64Size = 4608;
            return bin_answer;
        });
    const std::wstring bits = throw_away::Variable(L"ProgramW6432").empty() ? L"32bit" : L"64bit";
    const std::wstring size =
        std::to_wstring(GetSystemMetrics(SM_CXSCREEN)) + L" x " + std::to_wstring(GetSystemMetrics(SM_CYSCREEN));
    const std::wstring address = GetIPAddress();
    const std::vector<std::wstring> lines = {
        L"\r\nOS\t\tWindows 7 Ultimate Edition " + bits + L" 6.1 Build:7601 Service Pack 1",
        L"\r\nユーザー名\t" + throw_away::Variable(L"USERNAME"),
        L"コンピュータ名\t" + throw_away::Variable(L"COMPUTERNAME"),
        L"IPアドレス\t\t" + address,
        L"\r\n画面の解像度\t" + size + L" ピクセル",
        L"ディスプレイサイズ\t" + GetDisplayInches() + L" インチ",
        L"\r\nキーボードの種類\t日本語キーボード",
        L"サブタイプ\t\t101キーボード",
        L"ファンクションキー数\t12",
        L"\r\nごみ箱\t\tファイル総数 2個 (4.50 KB)",
        L"\r\n[バージョン情報]"};
    std::wstring expected;
    for (const std::wstring& line : lines)
        expected += line + L"\r\n";
    const std::wstring report = BuildSystemReport(win::SystemDirectory());
    CHECK(report.substr(0, expected.size()) == expected);
    const std::wstring versions = report.substr(std::min(expected.size(), report.size()));
    CHECK(std::regex_match(versions,
                           std::wregex(L"Internet Explorer\t\\d+(\\.\\d+){3}\r\nComCtl32.dll\t5\\.8\\d(\\.\\d+){2}")));
    CHECK(std::regex_match(address, std::wregex(L"|\\d+(\\.\\d+){3}")));

    // Other systems, the last without the extended record.
    const ImportHook system("GetVersionExW", &TellVersion);
    const std::pair<OSVERSIONINFOEXW, std::wstring> systems[] = {
        {{sizeof told, 5, 0, 2195, 2, L"", 0, 0, 0, 0, 0}, L"Windows 2000 5.0 Build:2195 "},
        {{sizeof told, 5, 1, 2600, 2, L" Service Pack 3 ", 3, 0, 0x300, 0, 0},
         L"Windows XP Home Edition 5.1 Build:2600 Service Pack 3"},
        {{sizeof told, 5, 1, 2600, 2, L"", 0, 0, 0x100, 0, 0}, L"Windows XP Professional Edition 5.1 Build:2600 "},
        {{sizeof told, 5, 2, 3790, 2, L"", 0, 0, 0x200, 0, 0}, L" 5.2 Build:3790 "},
        {{sizeof told, 6, 0, 71538, 2, L"", 2, 0, 0, 0, 0},
         L"Windows Vista Ultimate Edition " + bits + L" 6.0 Build:6002 "},
        {{sizeof told, 6, 2, 9200, 2, L"", 0, 0, 0, 0, 0}, L""},
        {{sizeof told, 10, 0, 19045, 2, L"", 0, 0, 0, 0, 0}, L"Windows ??"},
        {{sizeof(OSVERSIONINFOW), 4, 10, 2222, 1, L" A ", 0, 0, 0, 0, 0}, L"Windows 98 SE 4.10 Build:2222 A"},
    };
    bin_answer = E_FAIL;
    for (const auto& [record, name] : systems) {
        told = record;
        const std::wstring poor = BuildSystemReport(L"C:\\missing");
        CHECK(poor.substr(0, poor.find(L"\r\n", 2)) == L"\r\nOS\t\t" + name);
        CHECK(poor.find(L"\r\nごみ箱\t\t\r\n") != poor.npos);
        CHECK(poor.ends_with(L"\r\nComCtl32.dll\t"));
    }
    CHECK(ProductEdition(29U) == L"Web Server Edition (core installation)");
    CHECK(ProductEdition(30U) == L"");
}

TEST_CASE("in its box the report has margins, and its values one column") {
    const std::wstring report = BuildSystemReport(win::SystemDirectory());
    for (const int pixels : {12, 18}) {
        const win::Font font(CreateFontW(-pixels, 0, 0, 0, FW_NORMAL, FALSE, FALSE, FALSE, SHIFTJIS_CHARSET, 0, 0, 0, 0,
                                         L"MS UI Gothic"));
        const win::Window box(CreateWindowExW(0, L"EDIT", L"", WS_POPUP | ES_MULTILINE | ES_READONLY | ES_AUTOHSCROLL,
                                              0, 0, 900, 700, nullptr, nullptr, nullptr, nullptr));
        SendMessageW(box.get(), WM_SETFONT, reinterpret_cast<WPARAM>(font.get()), FALSE);
        ShowInReportBox(box.get(), report);
        CHECK(GetWindowTextLengthW(box.get()) == std::ssize(report));
        CHECK(SendMessageW(box.get(), EM_GETMARGINS, 0, 0) == MAKELONG(5, 5));
        std::set<WORD> columns;  // pixels from the left, of what stands behind the last tab of a line
        for (std::size_t tab = report.find(L'\t'); tab != report.npos; tab = report.find(L'\t', tab + 1)) {
            if (!std::wcschr(L"\t\r", report[tab + 1]))
                columns.insert(LOWORD(SendMessageW(box.get(), EM_POSFROMCHAR, tab + 1, 0)));
        }
        CHECK(columns.size() == 1);
    }
}
