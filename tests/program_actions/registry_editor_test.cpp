#include "programs/registry_editor.h"

#include "support/recorder.h"
#include "support/show.h"
#include "support/test_host.h"
#include "support/test_key.h"
#include "win/text.h"

#include <doctest/doctest.h>

using namespace programs;

namespace {

constexpr wchar_t kSettings[] = L"Software\\Microsoft\\Windows\\CurrentVersion\\Applets\\Regedit";

// The stored bytes in the system's code page, the terminating NUL included.
std::string StoredBytes(const TestKey& settings) {
    char bytes[16384] = {};
    DWORD size = sizeof bytes;
    DWORD type = REG_NONE;
    if (RegQueryValueExA(settings.get(), "LastKey", nullptr, &type, reinterpret_cast<BYTE*>(bytes), &size) != 0)
        return {};
    return type == REG_SZ ? std::string(bytes, size) : std::string();
}

// "コンピュータ\" in code page 932.
const std::string kTop = "\x83\x52\x83\x93\x83\x73\x83\x85\x81\x5b\x83\x5e\\";

std::string Terminated(const std::string& text) { return text + '\0'; }

}  // namespace

TEST_CASE("LastKey is stored in code page 932, with the tree's top in front exactly once") {
    REQUIRE(GetACP() == 932);
    const TestKey settings(HKEY_CURRENT_USER, kSettings);

    const std::pair<const wchar_t*, std::string> cases[] = {
        {L"HKEY_LOCAL_MACHINE\\SOFTWARE", kTop + "HKEY_LOCAL_MACHINE\\SOFTWARE"},
        {L"コンピュータ\\HKEY_CURRENT_USER\\Software", kTop + "HKEY_CURRENT_USER\\Software"},
        {L"HKEY_CURRENT_USER\\ソフト ", kTop + "HKEY_CURRENT_USER\\\x83\x5c\x83\x74\x83\x67 "},
        // Only at the very beginning does the top count as given; short root names stay as they are.
        {L"HKLM\\コンピュータ\\", kTop + "HKLM\\" + kTop},
    };
    for (const auto& [path, stored] : cases) {
        StoreLastKey(path);
        CHECK(StoredBytes(settings) == Terminated(stored));
    }
    StoreLastKey(std::wstring(5000, L'あ'));
    CHECK(StoredBytes(settings).size() == kTop.size() + 10001);
}

TEST_CASE("The editor starts from the system's folders whether or not its setting can be stored") {
    Recorder recorder;
    REQUIRE(recorder.install_in_system(L"regedit.exe"));
    TestHost host;
    {
        const TestKey settings(HKEY_CURRENT_USER, kSettings);
        OpenRegistryEditorAt(L"", host);
        CHECK(host.statuses.empty());
        OpenRegistryEditorAt(L"HKEY_LOCAL_MACHINE\\SOFTWARE", host);
        CHECK(host.status_text() == L"指定パスをレジストリエディタで開きます...");
        CHECK(StoredBytes(settings) == Terminated(kTop + "HKEY_LOCAL_MACHINE\\SOFTWARE"));

        // A typed path loses its leading blanks only.
        std::vector<std::wstring> history;
        CHECK(OpenTypedRegistryPath(L"   ", history) == L"");
        CHECK(history.empty());
        CHECK(OpenTypedRegistryPath(L"  HKEY_CLASSES_ROOT\\.txt ", history) == L"HKEY_CLASSES_ROOT\\.txt ");
        CHECK(StoredBytes(settings) == Terminated(kTop + "HKEY_CLASSES_ROOT\\.txt "));
        CHECK(history == std::vector<std::wstring>{L"HKEY_CLASSES_ROOT\\.txt "});
    }
    REQUIRE_FALSE(KeyExists(HKEY_CURRENT_USER, kSettings));
    OpenRegistryEditorAt(L"HKEY_LOCAL_MACHINE\\SOFTWARE", host);
    CHECK_FALSE(KeyExists(HKEY_CURRENT_USER, kSettings));

    const auto starts = recorder.starts(3);
    REQUIRE(starts.size() == 3);
    for (const auto& start : starts) {
        CHECK(Recorder::is_in_system(start.program, L"regedit.exe"));
        CHECK(start.command_line == L"regedit");
        CHECK(start.show == L"1");
    }
}

TEST_CASE("The history holds the fourteen most recent paths, each once") {
    std::vector<std::wstring> history;
    for (const int number : {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 16, 3})
        RememberRegistryPath(L"path " + win::ToText(number), history);
    REQUIRE(history.size() == 14);
    CHECK((history[0] == L"path 3" && history[1] == L"path 16" && history[2] == L"path 15"));
    CHECK(history.back() == L"path 4");
}
