#include "tools/modURL.h"

#include "support/automation_double.h"
#include "support/import_hook.h"
#include "support/show.h"
#include "support/test_host.h"
#include "support/throw_away.h"
#include "win/com_ptr.h"
#include "win/handle.h"

#include <urlhist.h>
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

using FindNext = decltype(FindNextUrlCacheEntryA);
using FindFirst = decltype(FindFirstUrlCacheEntryA);

// What the stand-ins below do between the product and the cache.
struct Interference {
    FindFirst* find_first = nullptr;
    FindNext* find_next = nullptr;
    std::vector<std::string> patterns;   // of each first-entry call; "(none)" for a null one
    bool windows_pattern = false;        // the pattern "0" stands for every entry
    std::vector<std::string> vanishing;  // small entries deleted between the two calls for one of them
} interference;

HANDLE WINAPI InterferingFindFirst(LPCSTR pattern, INTERNET_CACHE_ENTRY_INFOA* entry, DWORD* size) {
    interference.patterns.emplace_back(pattern ? pattern : "(none)");
    return interference.find_first(interference.windows_pattern ? nullptr : pattern, entry, size);
}

BOOL WINAPI InterferingFindNext(HANDLE entries, INTERNET_CACHE_ENTRY_INFOA* entry, DWORD* size) {
    if (entry && *size < 1000) {
        for (const std::string& url : std::exchange(interference.vanishing, {}))
            RemoveEntry(url);
    }
    return interference.find_next(entries, entry, size);
}

}  // namespace

TEST_CASE("The word in the URL makes a cookie, in exactly this case") {
    CHECK(tools::IsCookieUrl("Cookie:user@host/"));
    CHECK(tools::IsCookieUrl("http://host/MyCookies.htm"));
    CHECK_FALSE(tools::IsCookieUrl("cookie:user@host/"));
    CHECK_FALSE(tools::IsCookieUrl("COOKIE"));
    CHECK_FALSE(tools::IsCookieUrl("http://host/"));
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

TEST_CASE("The cache is asked with the pattern first, and without one where that finds nothing") {
    REQUIRE_THROW_AWAY();
    interference = {};
    const ImportHook hook("FindFirstUrlCacheEntryA", &InterferingFindFirst);
    REQUIRE(hook);
    interference.find_first = hook.original<FindFirst>();
    TestHost host;
    for (const bool windows : {false, true}) {
        CAPTURE(windows);
        interference.windows_pattern = windows;
        MakeEntry("http://host/page", NORMAL_CACHE_ENTRY);
        interference.patterns.clear();
        DeleteUrlCacheEntries(false, host);
        CHECK_FALSE(Cached("http://host/page"));
        REQUIRE(interference.patterns.size() >= 2);
        CHECK(interference.patterns[0] == "0");
        for (std::size_t call = 1; call < interference.patterns.size(); ++call) {
            CHECK(interference.patterns[call] == "(none)");
        }
        CHECK(interference.patterns.size() == (windows ? 3 : 4));
    }
    // An empty cache.
    DeleteUrlCacheEntries(false, host);
}

TEST_CASE("An entry that vanishes between the two calls or is locked costs no other entry") {
    REQUIRE_THROW_AWAY();
    interference = {};
    const ImportHook hook("FindNextUrlCacheEntryA", &InterferingFindNext);
    REQUIRE(hook);
    interference.find_next = hook.original<FindNext>();
    const std::string locked = "http://host/locked";
    const auto url = [](int number) { return "http://host/page" + std::to_string(number); };
    for (int number = 0; number < 40; ++number) {
        // What is read after a small entry has vanished needs more room than that.
        const bool small = number % 2 != 0;
        MakeEntry(url(number), NORMAL_CACHE_ENTRY, small ? 20 : 20000);
        if (small) interference.vanishing.push_back(url(number));
    }
    MakeEntry(locked, NORMAL_CACHE_ENTRY);
    DWORD size = 0;
    RetrieveUrlCacheEntryFileA(locked.c_str(), nullptr, &size, 0);
    std::vector<char> record(size);
    REQUIRE(RetrieveUrlCacheEntryFileA(locked.c_str(), reinterpret_cast<INTERNET_CACHE_ENTRY_INFOA*>(record.data()),
                                       &size, 0));
    TestHost host;
    DeleteUrlCacheEntries(false, host);
    CHECK(interference.vanishing.empty());
    for (int number = 0; number < 40; ++number)
        CHECK_FALSE(Cached(url(number)));
    UnlockUrlCacheEntryFileA(locked.c_str(), 0);
    RemoveEntry(locked);
}

namespace {

constexpr IID kHistoryInterface = {0xAFA0DC11, 0xC313, 0x11D0, {0x83, 0x1A, 0x00, 0xC0, 0x4F, 0xD5, 0xAE, 0x38}};
constexpr CLSID kHistoryClass = {0x3C374A40, 0xBAE4, 0x11CF, {0xBF, 0x7D, 0x00, 0xAA, 0x00, 0x69, 0x46, 0xEE}};

// What was called of the URL history, and what it answers.
std::vector<std::string> history_calls;
HRESULT history_answer = S_OK;

HRESULT Note(const char* call) {
    history_calls.emplace_back(call);
    return history_answer;
}

class HistoryDouble final : public doubles::Counted<IUrlHistoryStg2, kHistoryInterface> {
public:
    HRESULT STDMETHODCALLTYPE AddUrl(LPCOLESTR, LPCOLESTR, DWORD) override { return Note("AddUrl"); }
    HRESULT STDMETHODCALLTYPE DeleteUrl(LPCOLESTR, DWORD) override { return Note("DeleteUrl"); }
    HRESULT STDMETHODCALLTYPE QueryUrl(LPCOLESTR, DWORD, LPSTATURL) override { return Note("QueryUrl"); }
    HRESULT STDMETHODCALLTYPE BindToObject(LPCOLESTR, REFIID, void**) override { return Note("BindToObject"); }
    HRESULT STDMETHODCALLTYPE EnumUrls(IEnumSTATURL**) override { return Note("EnumUrls"); }
    HRESULT STDMETHODCALLTYPE AddUrlAndNotify(LPCOLESTR, LPCOLESTR, DWORD, WINBOOL, IOleCommandTarget*,
                                              IUnknown*) override {
        return Note("AddUrlAndNotify");
    }
    HRESULT STDMETHODCALLTYPE ClearHistory() override { return Note("ClearHistory"); }
};

class HistoryFactory final : public doubles::Counted<IClassFactory, IID_IClassFactory> {
public:
    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown*, REFIID id, void** object) override {
        *object = nullptr;
        return refuses ? E_ACCESSDENIED : win::ComPtr<HistoryDouble>(new HistoryDouble)->QueryInterface(id, object);
    }
    HRESULT STDMETHODCALLTYPE LockServer(BOOL) override { return S_OK; }

    bool refuses = false;
};

}  // namespace

TEST_CASE("The URL history is cleared by one call of its own object") {
    const win::ComApartment apartment;
    // Wine's history exists and refuses.
    CHECK(tools::ClearUrlHistory() == E_NOTIMPL);

    const long alive = doubles::alive;
    const win::ComPtr<HistoryFactory> factory(new HistoryFactory);
    DWORD cookie = 0;
    REQUIRE(SUCCEEDED(
        CoRegisterClassObject(kHistoryClass, factory.get(), CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE, &cookie)));
    CHECK(tools::ClearUrlHistory() == S_OK);
    CHECK(history_calls == std::vector<std::string>{"ClearHistory"});
    history_answer = E_FAIL;
    CHECK(tools::ClearUrlHistory() == E_FAIL);
    factory->refuses = true;
    CHECK(tools::ClearUrlHistory() == E_ACCESSDENIED);
    CHECK(history_calls.size() == 2);
    CHECK(doubles::alive == alive + 1);
    CoRevokeClassObject(cookie);
}
