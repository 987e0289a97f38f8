#include "tools/modURL.h"

#include "support/import_hook.h"
#include "support/show.h"
#include "support/test_host.h"
#include "support/throw_away.h"
#include "win/com_ptr.h"
#include "win/handle.h"

#include <wininet.h>

#include <string>
#include <vector>

using tools::DeleteUrlCacheEntries;

namespace {

constexpr DWORD kCookieEntry = 0x100000;

// An entry of the cache with a file of its own and a header of `header_bytes`.
void MakeEntry(const std::string& url, DWORD type, std::size_t header_bytes = 19) {
    char path[MAX_PATH] = {};
    REQUIRE(CreateUrlCacheEntryA(url.c_str(), 0, "txt", path, 0));
    {
        const win::File file(CreateFileA(path, GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr));
        DWORD written = 0;
        REQUIRE(WriteFile(file.get(), "cached", 6, &written, nullptr));
    }
    std::string header = "HTTP/1.0 200 OK\r\nX: ";
    header.resize(std::max(header.size(), header_bytes - 4), 'x');
    header += "\r\n\r\n";
    REQUIRE(CommitUrlCacheEntryA(url.c_str(), path, {}, {}, type, reinterpret_cast<BYTE*>(header.data()),
                                 static_cast<DWORD>(header.size()), nullptr, nullptr));
}

bool Cached(const std::string& url) {
    DWORD size = 0;
    return GetUrlCacheEntryInfoA(url.c_str(), nullptr, &size) || GetLastError() == ERROR_INSUFFICIENT_BUFFER;
}

void RemoveEntry(const std::string& url) { DeleteUrlCacheEntryA(url.c_str()); }

// Deletes small entries between the product's two calls for one of them.
using FindNext = decltype(FindNextUrlCacheEntryA);
FindNext* find_next = nullptr;
std::vector<std::string> vanishing;

BOOL WINAPI InterferingFindNext(HANDLE entries, INTERNET_CACHE_ENTRY_INFOA* entry, DWORD* size) {
    if (entry && *size < 1000) {
        for (const std::string& url : std::exchange(vanishing, {}))
            RemoveEntry(url);
    }
    return find_next(entries, entry, size);
}

}  // namespace

TEST_CASE("The word in the URL makes a cookie, in exactly this case") {
    CHECK(tools::IsCookieUrl("Cookie:user@host/"));
    CHECK(tools::IsCookieUrl("http://host/MyCookies.htm"));
    CHECK_FALSE(tools::IsCookieUrl("cookie:user@host/"));
    CHECK_FALSE(tools::IsCookieUrl(""));
}

TEST_CASE("Normal entries go by kind, entries of any size, and others stay") {
    REQUIRE_THROW_AWAY();
    const std::string page = "http://host/page";
    const std::string lower = "http://host/cookie";
    const std::string named = "http://host/Cookie.htm";
    const std::string cookie = "Cookie:user@host/";
    const std::string unmarked = "Visited: user@http://host/";
    const std::string unmarked_cookie = "Cookie:user@unmarked/";
    const std::string large = "http://host/" + std::string(1500, 'l');
    const auto make_all = [&] {
        MakeEntry(page, NORMAL_CACHE_ENTRY);
        MakeEntry(large, NORMAL_CACHE_ENTRY, 30000);
        MakeEntry(lower, NORMAL_CACHE_ENTRY, 500);
        MakeEntry(named, NORMAL_CACHE_ENTRY, 5000);
        MakeEntry(cookie, NORMAL_CACHE_ENTRY | kCookieEntry);
        MakeEntry(unmarked, URLHISTORY_CACHE_ENTRY);
        MakeEntry(unmarked_cookie, kCookieEntry);
        for (int number = 0; number < 50; ++number) {
            MakeEntry("http://host/page" + std::to_string(number), NORMAL_CACHE_ENTRY,
                      static_cast<std::size_t>(20 + 37 * number % 1000));
        }
    };
    TestHost host;
    make_all();
    DeleteUrlCacheEntries(false, host);
    CHECK(host.pumps == 1);
    CHECK_FALSE(Cached(page));
    CHECK_FALSE(Cached(large));
    CHECK_FALSE(Cached(lower));
    CHECK(Cached(named));
    CHECK(Cached(cookie));
    CHECK(Cached(unmarked));
    CHECK(Cached(unmarked_cookie));
    for (int number = 0; number < 50; ++number)
        CHECK_FALSE(Cached("http://host/page" + std::to_string(number)));

    make_all();
    DeleteUrlCacheEntries(true, host);
    CHECK(Cached(page));
    CHECK(Cached(large));
    CHECK(Cached(lower));
    CHECK_FALSE(Cached(named));
    CHECK_FALSE(Cached(cookie));
    CHECK(Cached(unmarked));
    CHECK(Cached(unmarked_cookie));

    DeleteUrlCacheEntries(false, host);
    for (const std::string& url : {unmarked, unmarked_cookie})
        RemoveEntry(url);
}

TEST_CASE("An entry that vanishes between the two calls or is locked costs no other entry") {
    REQUIRE_THROW_AWAY();
    const ImportHook hook("FindNextUrlCacheEntryA", &InterferingFindNext);
    REQUIRE(hook);
    find_next = hook.original<FindNext>();
    const std::string locked = "http://host/locked";
    const auto url = [](int number) { return "http://host/page" + std::to_string(number); };
    for (int number = 0; number < 40; ++number) {
        // What is read after a small entry has vanished needs more room than that.
        const bool small = number % 2 != 0;
        MakeEntry(url(number), NORMAL_CACHE_ENTRY, small ? 20 : 20000);
        if (small) vanishing.push_back(url(number));
    }
    MakeEntry(locked, NORMAL_CACHE_ENTRY);
    DWORD size = 0;
    RetrieveUrlCacheEntryFileA(locked.c_str(), nullptr, &size, 0);
    std::vector<char> record(size);
    REQUIRE(RetrieveUrlCacheEntryFileA(locked.c_str(), reinterpret_cast<INTERNET_CACHE_ENTRY_INFOA*>(record.data()),
                                       &size, 0));
    TestHost host;
    DeleteUrlCacheEntries(false, host);
    CHECK(vanishing.empty());
    for (int number = 0; number < 40; ++number)
        CHECK_FALSE(Cached(url(number)));
    UnlockUrlCacheEntryFileA(locked.c_str(), 0);
    RemoveEntry(locked);
}

TEST_CASE("The URL history is cleared by its own object, and whatever that answers is told") {
    CHECK(tools::ClearUrlHistory() == CO_E_NOTINITIALIZED);
    const win::ComApartment apartment;
    CHECK(tools::ClearUrlHistory() == E_NOTIMPL);  // Wine's history exists and refuses
}
