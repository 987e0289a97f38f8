#include "tools/modURL.h"

#include "win/com_ptr.h"
#include "win/handle.h"
#include "win/system_library.h"

#include <urlhist.h>
#include <wininet.h>

#include <algorithm>
#include <utility>
#include <vector>

namespace tools {
namespace {

constexpr char kCookie[] = "Cookie";

// The pattern of the first probe. Windows takes the digit for every entry, Wine for none.
constexpr char kProbePattern[] = "0";

// An entry can be replaced by a larger one between the question for its size and the reading.
constexpr int kMostAttempts = 8;
constexpr DWORD kMostBytes = 16U << 20;

constexpr CLSID kUrlHistoryClass = {0x3C374A40, 0xBAE4, 0x11CF, {0xBF, 0x7D, 0x00, 0xAA, 0x00, 0x69, 0x46, 0xEE}};
constexpr IID kUrlHistoryInterface = {0xAFA0DC11, 0xC313, 0x11D0, {0x83, 0x1A, 0x00, 0xC0, 0x4F, 0xD5, 0xAE, 0x38}};

// The browser's cache and one walk through it. Its library is loaded by the first deletion: it brings a dozen others
// along, and today's Windows would take it from the program's own folder, had the program imported it. It stays,
// because a thread of it may still run.
class UrlCache {
public:
    UrlCache()
        : library_(win::LoadSystemLibrary(L"wininet.dll").release()),
          find_first_(find<decltype(&FindFirstUrlCacheEntryA)>("FindFirstUrlCacheEntryA")),
          find_next_(find<decltype(&FindNextUrlCacheEntryA)>("FindNextUrlCacheEntryA")),
          find_close_(find<decltype(&FindCloseUrlCache)>("FindCloseUrlCache")),
          delete_entry_(find<decltype(&DeleteUrlCacheEntryA)>("DeleteUrlCacheEntryA")) {}
    UrlCache(const UrlCache&) = delete;
    UrlCache& operator=(const UrlCache&) = delete;
    ~UrlCache() { close(); }

    explicit operator bool() const { return find_first_ && find_next_ && find_close_ && delete_entry_; }

    // Both as the Windows calls of these names, with their GetLastError; the walk starts anew with the first.
    bool find_first(const char* pattern, INTERNET_CACHE_ENTRY_INFOA* record, DWORD* size) {
        close();
        entries_ = find_first_(pattern, record, size);
        return entries_ != nullptr;
    }
    bool find_next(INTERNET_CACHE_ENTRY_INFOA* record, DWORD* size) {
        return find_next_(entries_, record, size) != FALSE;
    }

    void remove(const char* url) { delete_entry_(url); }

private:
    template <class Function>
    Function find(const char* name) const {
        return win::FindFunction<Function>(library_, name);
    }

    void close() {
        if (entries_) find_close_(std::exchange(entries_, nullptr));
    }

    HMODULE library_;
    decltype(&FindFirstUrlCacheEntryA) find_first_;
    decltype(&FindNextUrlCacheEntryA) find_next_;
    decltype(&FindCloseUrlCache) find_close_;
    decltype(&DeleteUrlCacheEntryA) delete_entry_;
    HANDLE entries_ = nullptr;
};

// One entry as the cache writes it into a buffer of its size: a header and the texts that it points to.
class CacheEntry {
public:
    // Asks `read(INTERNET_CACHE_ENTRY_INFOA*, DWORD* size)` for the size, then for the entry. False when there is
    // none.
    template <class Read>
    bool read(Read&& read_entry) {
        DWORD size = 0;
        if (read_entry(nullptr, &size)) return false;
        for (int attempt = 0; attempt < kMostAttempts; ++attempt) {
            if (GetLastError() != ERROR_INSUFFICIENT_BUFFER || size > kMostBytes) return false;
            buffer_.assign(std::max<std::size_t>(size, sizeof(INTERNET_CACHE_ENTRY_INFOA)), 0);
            size = static_cast<DWORD>(buffer_.size());
            header()->dwStructSize = size;
            if (read_entry(header(), &size)) return true;
        }
        return false;
    }

    bool is_normal() { return (header()->CacheEntryType & NORMAL_CACHE_ENTRY) != 0; }

    // Null for an entry without a URL inside its buffer.
    const char* url() {
        const char* const begin = buffer_.data();
        const char* const end = begin + buffer_.size();
        const char* const url = header()->lpszSourceUrlName;
        if (url < begin || url >= end || std::find(url, end, '\0') == end) return nullptr;
        return url;
    }

private:
    INTERNET_CACHE_ENTRY_INFOA* header() { return reinterpret_cast<INTERNET_CACHE_ENTRY_INFOA*>(buffer_.data()); }

    std::vector<char> buffer_;
};

// True when the cache holds an entry: asked for its size, it answers that there is no room for it.
bool HasEntries(UrlCache& cache, const char* pattern) {
    DWORD size = 0;
    return !cache.find_first(pattern, nullptr, &size) && GetLastError() == ERROR_INSUFFICIENT_BUFFER;
}

bool ProbeCache(UrlCache& cache) {
    if (HasEntries(cache, kProbePattern)) return true;
    return GetLastError() == ERROR_NO_MORE_ITEMS && HasEntries(cache, nullptr);
}

void DeleteIfMeant(UrlCache& cache, CacheEntry& entry, bool cookies_only) {
    const char* const url = entry.is_normal() ? entry.url() : nullptr;
    if (url && IsCookieUrl(url) == cookies_only) cache.remove(url);
}

}  // namespace

bool IsCookieUrl(std::string_view url) { return url.find(kCookie) != url.npos; }

void DeleteUrlCacheEntries(bool cookies_only, ui::Host& host) {
    host.pump();
    UrlCache cache;
    if (!cache || !ProbeCache(cache)) return;
    ui::PumpNowAndThen pump(host);
    CacheEntry entry;
    bool found = entry.read(
        [&cache](INTERNET_CACHE_ENTRY_INFOA* record, DWORD* size) { return cache.find_first(nullptr, record, size); });
    while (found && pump()) {
        DeleteIfMeant(cache, entry, cookies_only);
        found = entry.read(
            [&cache](INTERNET_CACHE_ENTRY_INFOA* record, DWORD* size) { return cache.find_next(record, size); });
    }
}

HRESULT ClearUrlHistory() {
    win::ComPtr<IUrlHistoryStg2> history;
    const HRESULT created =
        CoCreateInstance(kUrlHistoryClass, nullptr, CLSCTX_INPROC, kUrlHistoryInterface, history.put_void());
    return FAILED(created) ? created : history->ClearHistory();
}

}  // namespace tools
