#include "programs/detail_link.h"

#include "support/import_hook.h"
#include "support/recorder.h"
#include "support/show.h"
#include "support/test_folder.h"
#include "support/test_host.h"
#include "support/test_key.h"
#include "win/com_ptr.h"

#include <doctest/doctest.h>

using namespace programs;

TEST_CASE("A caption leads to a URL of a harmless scheme, to a file that is there, or to a tagged registry key") {
    TestFolder folder(L"detail links");
    const std::wstring help = folder.make_file(L"the help.html");
    const struct {
        std::wstring caption;
        LinkKind kind;
        std::wstring target;
    } cases[] = {
        {L"http://example.com/a b", LinkKind::Url, L"http://example.com/a b"},
        {L"HTTPS://example.com", LinkKind::Url, L"HTTPS://example.com"},
        {L"mailto:help@example.com", LinkKind::Url, L"mailto:help@example.com"},
        {L"javascript:alert(1)", LinkKind::None, {}},
        {L"file:///C:/windows/regedit.exe", LinkKind::None, {}},
        {help, LinkKind::File, help},
        {L"\"" + help + L"\" /open", LinkKind::File, help},
        {folder.path(), LinkKind::File, folder.path()},
        {help + L"<リンク切れ>", LinkKind::None, {}},
        {L"(全ユーザー)SOFTWARE\\Run", LinkKind::RegistryKey, L"HKEY_LOCAL_MACHINE\\SOFTWARE\\Run"},
        {L"(個別ユーザー)SOFTWARE\\Run", LinkKind::RegistryKey, L"HKEY_CURRENT_USER\\SOFTWARE\\Run"},
        {L" (全ユーザー)SOFTWARE\\Run", LinkKind::None, {}},
        {L"03-1234-5678", LinkKind::None, {}},
        {{}, LinkKind::None, {}},
        {std::wstring(5000, L'x'), LinkKind::None, {}},
    };
    for (const auto& each : cases) {
        CAPTURE(each.caption);
        const DetailLink link = FindDetailLink(each.caption);
        CHECK(link.kind == each.kind);
        CHECK(link.target == each.target);
        CHECK(LooksLikeLink(each.caption) == (each.kind != LinkKind::None));
    }
    // Nobody looks at a server because a row is shown.
    static int looks = 0;
    static decltype(GetFileAttributesW)* attributes = nullptr;
    const ImportHook hook(
        "GetFileAttributesW", +[](LPCWSTR path) WINAPI -> DWORD {
            ++looks;
            return attributes(path);
        });
    const ImportHook exists(
        "PathFileExistsW", +[](LPCWSTR) WINAPI -> BOOL {
            ++looks;
            return FALSE;
        });
    REQUIRE((hook && exists));
    attributes = hook.original<decltype(GetFileAttributesW)>();
    for (const wchar_t* on_network :
         {L"\\\\no.such.server\\share\\help.html", L"\"\\\\no.such.server\\share\\x.exe\" -x",
          L"//no.such.server/share/a", L"/\\no.such.server\\share\\a", L"\"\\/no.such.server/share/a\" /S",
          L" \\\\no.such.server\\share\\x.exe /S"}) {
        CAPTURE(std::wstring(on_network));
        CHECK(LooksLikeLink(on_network));
    }
    CHECK(looks == 0);
}

TEST_CASE("A click opens what the caption leads to and says so; nothing else happens") {
    const win::ComApartment apartment;
    Recorder recorder;
    REQUIRE(recorder.install_in_system(L"explorer.exe"));
    REQUIRE(recorder.install_in_system(L"regedit.exe"));
    REQUIRE(recorder.install_in_system(L"winebrowser.exe"));
    const TestKey settings(HKEY_CURRENT_USER, L"Software\\Microsoft\\Windows\\CurrentVersion\\Applets\\Regedit");
    TestFolder folder(L"detail links");
    const std::wstring help = folder.make_file(L"the help.html");
    TestHost host;

    for (const wchar_t* nowhere : {L"03-1234", L"javascript:alert(1)", L""})
        OpenDetailLink(nowhere, host);
    CHECK(host.statuses.empty());
    CHECK(recorder.starts_after_a_while().empty());

    std::size_t opened = 0;
    for (const std::wstring& each :
         {help, std::wstring(L"(個別ユーザー)Software"), std::wstring(L"https://example.com/")}) {
        OpenDetailLink(each, host);
        CHECK(recorder.starts(++opened).size() == opened);
    }
    CHECK(host.statuses == std::vector<std::wstring>{L"ファイル位置をエクスプローラで開きます...",
                                                     L"指定パスをレジストリエディタで開きます...",
                                                     L"指定URLを開きます..."});
    const auto starts = recorder.starts(3);
    REQUIRE(starts.size() == 3);
    CHECK(Recorder::is_in_system(starts[0].program, L"explorer.exe"));
    CHECK(starts[0].command_line == L"explorer.exe /e,/select," + help);
    CHECK(starts[1].command_line == L"regedit");
    CHECK(ValueExists(settings.get(), L"LastKey"));
    CHECK(win::Contains(starts[2].command_line, L"https://example.com/"));
}
