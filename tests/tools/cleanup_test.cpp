#include "tools/cleanup.h"

#include "support/import_hook.h"
#include "support/show.h"
#include "support/test_folder.h"
#include "support/test_host.h"
#include "support/throw_away.h"
#include "tools/modFile.h"
#include "tools/modURL.h"
#include "win/com_ptr.h"
#include "win/folders.h"

#include <wininet.h>

using namespace tools;

namespace {

const std::vector<std::wstring> kFramed = {L"削除処理中です...", L"削除完了"};

// An entry of the cache with a file of its own and a header of `header_bytes`.
void MakeEntry(const std::string& url, DWORD type, std::size_t header_bytes) {
    char path[MAX_PATH] = {};
    REQUIRE(CreateUrlCacheEntryA(url.c_str(), 0, "txt", path, 0));
    win::File(CreateFileA(path, GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr)).reset();
    std::vector<BYTE> header(header_bytes, 'x');
    REQUIRE(CommitUrlCacheEntryA(url.c_str(), path, {}, {}, type, header.data(), static_cast<DWORD>(header.size()),
                                 nullptr, nullptr));
}

bool Cached(const std::string& url) {
    DWORD size = 0;
    return GetUrlCacheEntryInfoA(url.c_str(), nullptr, &size) || GetLastError() == ERROR_INSUFFICIENT_BUFFER;
}

// Small entries, which go between the product's two calls for one of them.
std::vector<std::string> vanishing;

BOOL WINAPI InterferingFindNext(HANDLE entries, INTERNET_CACHE_ENTRY_INFOA* entry, DWORD* size) {
    for (; entry && *size < 1000 && !vanishing.empty(); vanishing.pop_back())
        DeleteUrlCacheEntryA(vanishing.back().c_str());
    if (entry) Sleep(1);
    return FindNextUrlCacheEntryA(entries, entry, size);
}

}  // namespace

TEST_CASE("the recycle bin is emptied after a question that tells what it holds, and an empty one asks nothing") {
    REQUIRE_THROW_AWAY();
    // Wine takes the bin from the host, and has none without the folder around it.
    const std::wstring data = L"\\\\?\\unix" + throw_away::Variable(L"XDG_DATA_HOME") + L"/";
    for (std::size_t at = 9; throw_away::OnWine() && (at = data.find(L'/', at + 1)) != data.npos;)
        CreateDirectoryW(data.substr(0, at).c_str(), nullptr);
    TestFolder folder(L"discarded");
    TestHost host;
    const auto run = [&](std::uint64_t before, std::uint64_t after, std::size_t questions) {
        REQUIRE(GetRecycleBinCount() == before);
        CHECK(QueryRecycleBinItem().enabled == (before > 0));
        host.statuses.clear();
        CHECK(RunCleanup(CleanupItem::RecycleBin, host) == (before > after));
        CHECK(GetRecycleBinCount() == after);
        CHECK(host.statuses == kFramed);
        CHECK(host.questions.size() == questions);
    };
    CHECK(QueryRecycleBinItem().caption == std::wstring(L"ごみ箱を空にする(空)"));
    run(0, 0, 0);
    for (const auto& [name, bytes] : {std::pair(L"one.txt", 1500U), {L"二.txt", 3108U}}) {
        const std::wstring path = folder.make_file(name, std::string(bytes, 'x')) + L'\0';
        SHFILEOPSTRUCTW operation = {};
        operation.wFunc = FO_DELETE;
        operation.pFrom = path.c_str();
        operation.fFlags = FOF_ALLOWUNDO | FOF_NOCONFIRMATION | FOF_SILENT | FOF_NOERRORUI;
        REQUIRE(SHFileOperationW(&operation) == 0);
    }
    CHECK(QueryRecycleBinItem().caption == std::wstring(L"ごみ箱を空にする(&E)"));
    host.answer = ui::Answer::Cancel;
    run(2, 2, 1);
    CHECK(host.questions[0].title == L"ファイル削除の確認");
    CHECK(host.questions[0].text == L"ごみ箱を空にしますか？\r\n\r\nファイル総数 2個 (4.50 KB)");
    CHECK(host.questions[0].icon == MB_ICONQUESTION);
    host.answer = ui::Answer::Ok;
    run(2, 0, 2);
}

TEST_CASE("the temporary folder is emptied, but never one that is none, and that is said") {
    REQUIRE_THROW_AWAY();
    TestFolder folder(L"emptied");
    folder.make_folder(L"temp");
    const std::wstring old = throw_away::Variable(L"TMP");
    // Relative to the current folder the first would lead to one that may be emptied.
    SetCurrentDirectoryW(folder.path().c_str());
    for (const bool is_one : {false, true}) {
        const std::wstring file = folder.make_file(L"temp\\file");
        SetEnvironmentVariableW(L"TMP", is_one ? (folder.path() + L"\\temp").c_str() : L"C:temp");
        TestHost host;
        CHECK_FALSE(RunCleanup(CleanupItem::TemporaryFiles, host));
        CHECK(win::IsFile(file) != is_one);
        CHECK(host.statuses[1] == (is_one ? kFramed[1] : L"安全のため、この一時フォルダの中身は削除しませんでした"));
        CHECK((host.statuses[0] == kFramed[0] && host.questions.empty() && !host.pointer_shows_hourglass));
    }
    SetCurrentDirectoryW(L"C:\\");
    SetEnvironmentVariableW(L"TMP", old.c_str());
}

TEST_CASE("cookies or pages go from the cache, of any size, and one that vanishes or is locked costs no other") {
    REQUIRE_THROW_AWAY();
    constexpr int kPages = CleanupItem::BrowserCache, kCookies = CleanupItem::Cookies, kNothing = -1;
    struct Kind {
        std::string url;
        DWORD type;
        std::size_t header_bytes;
        int goes_with;
    };
    std::vector<Kind> kinds = {{"http://host/" + std::string(1500, 'l'), NORMAL_CACHE_ENTRY, 30000, kPages},
                               {"http://host/cookie", NORMAL_CACHE_ENTRY, 1500, kPages},
                               {"http://host/Cookie.htm", NORMAL_CACHE_ENTRY, 5000, kCookies},
                               {"Cookie:user@host/", NORMAL_CACHE_ENTRY | COOKIE_CACHE_ENTRY, 1500, kCookies},
                               {"Visited: user@http://host/", URLHISTORY_CACHE_ENTRY, 1500, kNothing},
                               {"Cookie:user@unmarked/", COOKIE_CACHE_ENTRY, 1500, kNothing},
                               {"http://host/locked", NORMAL_CACHE_ENTRY, 1500, kNothing}};
    // What is read after a small entry has vanished needs more room than that.
    for (unsigned number = 0; number < 40; ++number)
        kinds.push_back({"http://page/" + std::to_string(number), NORMAL_CACHE_ENTRY, 20 + number % 2 * 20000, kPages});
    LookUpHook hook;
    hook.put("FindNextUrlCacheEntryA", &InterferingFindNext);
    // The cache's library stays: a thread of it may still run.
    static int freed = 0;
    const ImportHook frees(
        "FreeLibrary", +[](HMODULE) WINAPI -> BOOL { return ++freed; });
    for (const int command : {kCookies, kPages}) {
        for (const Kind& kind : kinds) {
            MakeEntry(kind.url, kind.type, kind.header_bytes);
            if (kind.header_bytes == 20 && command == kPages) vanishing.push_back(kind.url);
        }
        INTERNET_CACHE_ENTRY_INFOA record[100] = {};
        DWORD size = sizeof record;
        REQUIRE(RetrieveUrlCacheEntryFileA("http://host/locked", record, &size, 0));
        TestHost host;
        CHECK_FALSE(RunCleanup(command, host));
        CHECK((host.statuses == kFramed && host.questions.empty()));
        CHECK(host.pumps > 1);  // the window lives while the cache takes its time
        CHECK(vanishing.empty());
        for (const Kind& kind : kinds) {
            CAPTURE(kind.url);
            CHECK(Cached(kind.url) == (kind.goes_with != command));
        }
        UnlockUrlCacheEntryFileA("http://host/locked", 0);
        for (const Kind& kind : kinds)
            DeleteUrlCacheEntryA(kind.url.c_str());
    }
    CHECK(freed == 0);
}

TEST_CASE("recent documents go by one call without one, the URL history by its own object, and both are told as done") {
    REQUIRE_THROW_AWAY();
    static std::vector<std::pair<UINT, LPCVOID>> calls;
    const ImportHook hook(
        "SHAddToRecentDocs", +[](UINT flags, LPCVOID file) WINAPI { calls.emplace_back(flags, file); });
    for (const int command : {CleanupItem::RecentDocuments, CleanupItem::UrlHistory}) {
        TestHost host;  // without COM the history cannot even be created
        CHECK_FALSE(RunCleanup(command, host));
        CHECK((host.statuses == kFramed && host.questions.empty()));
    }
    CHECK((calls == std::vector<std::pair<UINT, LPCVOID>>{{2, nullptr}}));
    const win::ComApartment apartment;
    CHECK(ClearUrlHistory() == E_NOTIMPL);  // Wine's history exists and refuses
}
