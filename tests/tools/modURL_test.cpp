#include "tools/modURL.h"

#include "support/import_hook.h"
#include "support/show.h"
#include "support/test_host.h"
#include "support/throw_away.h"
#include "tools/memory_monitor.h"
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

// Deletes small entries between the product's two calls for one of them.
std::vector<std::string> vanishing;

BOOL WINAPI InterferingFindNext(HANDLE entries, INTERNET_CACHE_ENTRY_INFOA* entry, DWORD* size) {
    if (entry && *size < 1000) {
        for (const std::string& url : std::exchange(vanishing, {}))
            DeleteUrlCacheEntryA(url.c_str());
        Sleep(20);
    }
    return FindNextUrlCacheEntryA(entries, entry, size);
}

using FindFunction = decltype(GetProcAddress);
FindFunction* find_function = nullptr;

FARPROC WINAPI FindInterfering(HMODULE library, const char* name) {
    const std::string_view wanted = name;
    if (wanted == "GetOpenFileNameW") {
        return reinterpret_cast<FARPROC>(reinterpret_cast<void*>(+[](void*) WINAPI -> BOOL { return FALSE; }));
    }
    if (wanted != "FindNextUrlCacheEntryA") return find_function(library, name);
    return reinterpret_cast<FARPROC>(reinterpret_cast<void*>(&InterferingFindNext));
}

}  // namespace

TEST_CASE("Normal entries go by kind, entries of any size, and others stay") {
    REQUIRE_THROW_AWAY();
    struct Kind {
        std::string url;
        DWORD type;
        std::size_t header_bytes;
        bool stays_without_cookies, stays_without_pages;
    };
    std::vector<Kind> kinds = {
        {"http://host/" + std::string(1500, 'l'), NORMAL_CACHE_ENTRY, 30000, true, false},
        {"http://host/cookie", NORMAL_CACHE_ENTRY, 500, true, false},
        {"http://host/Cookie.htm", NORMAL_CACHE_ENTRY, 5000, false, true},
        {"cookie:user@host/", NORMAL_CACHE_ENTRY, 19, true, false},
        {"Cookie:user@host/", NORMAL_CACHE_ENTRY | kCookieEntry, 19, false, true},
        {"Visited: user@http://host/", URLHISTORY_CACHE_ENTRY, 19, true, true},
        {"Cookie:user@unmarked/", kCookieEntry, 19, true, true},
    };
    for (std::size_t number = 0; number < 50; ++number) {
        const std::string url = "http://host/page" + std::to_string(number);
        kinds.push_back({url, NORMAL_CACHE_ENTRY, 20 + 37 * number % 1000, true, false});
    }
    for (const bool cookies : {false, true}) {
        for (const Kind& kind : kinds)
            MakeEntry(kind.url, kind.type, kind.header_bytes);
        TestHost host;
        DeleteUrlCacheEntries(cookies, host);
        CHECK(host.pumps > 0);
        for (const Kind& kind : kinds) {
            CAPTURE(kind.url);
            CHECK(Cached(kind.url) == (cookies ? kind.stays_without_cookies : kind.stays_without_pages));
        }
    }
    for (const Kind& kind : kinds)
        DeleteUrlCacheEntryA(kind.url.c_str());
}

TEST_CASE("An entry that vanishes between the two calls or is locked costs no other entry") {
    REQUIRE_THROW_AWAY();
    const ImportHook hook("GetProcAddress", &FindInterfering);
    REQUIRE(hook);
    find_function = hook.original<FindFunction>();
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
    // The library stays as the dialogs' does: a thread of it may still run.
    static int freed = 0;
    const ImportHook frees(
        "FreeLibrary", +[](HMODULE) WINAPI -> BOOL { return ++freed; });
    REQUIRE(frees);
    TestHost host;
    DeleteUrlCacheEntries(false, host);
    CHECK(tools::ChooseMemoryRelease(nullptr) == L"");
    CHECK(freed == 0);
    CHECK(vanishing.empty());
    CHECK(host.pumps > 1);  // the window lives while the cache takes its time
    for (int number = 0; number < 40; ++number)
        CHECK_FALSE(Cached(url(number)));
    UnlockUrlCacheEntryFileA(locked.c_str(), 0);
    DeleteUrlCacheEntryA(locked.c_str());
}

TEST_CASE("The URL history is cleared by its own object, and whatever that answers is told") {
    CHECK(tools::ClearUrlHistory() == CO_E_NOTINITIALIZED);
    const win::ComApartment apartment;
    CHECK(tools::ClearUrlHistory() == E_NOTIMPL);  // Wine's history exists and refuses
}
