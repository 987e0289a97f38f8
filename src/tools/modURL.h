// The browser's cache, cookies and URL history.
#pragma once

#include "ui/host.h"

#include <string_view>

namespace tools {

// Whether an entry of the browser's cache is a cookie: its URL holds "Cookie", in exactly this case.
bool IsCookieUrl(std::string_view url);

// Deletes the normal entries of the browser's cache (FindFirstUrlCacheEntryA and its kin) that are cookies, or those
// that are none. What cannot be deleted stays.
void DeleteUrlCacheEntries(bool cookies_only, ui::Host& host);

// Clears the URL history through CUrlHistory (IUrlHistoryStg2::ClearHistory). Returns the failure of the creation or
// of the call.
HRESULT ClearUrlHistory();

}  // namespace tools
