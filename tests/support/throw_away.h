// Tests that delete, or change what is not their own, begin with REQUIRE_THROW_AWAY(). On Windows they run where
// test.cmd was told that the machine may be thrown away. Under Wine a deletion through a link reaches what the link
// leads to, Documents and Desktop are links into the home folder, Z: is the whole disk and the recycle bin is the
// host's.
#pragma once

#include "win/handle.h"

#include <string>
#include <string_view>

namespace throw_away {

// Ends the test case, which counts as skipped then; the tests' main function puts it here.
inline void (*skip)(const char* reason) = nullptr;

inline bool OnWine() { return GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "wine_get_version") != nullptr; }

// For what leans on links, files or counters of Wine's own.
inline void RequireWine() {
    if (!OnWine() && skip) skip("it stands on Wine alone");
}

inline std::wstring Variable(const wchar_t* name) {
    wchar_t value[1024] = {};
    return {value, GetEnvironmentVariableW(name, value, 1024)};
}

inline std::string Utf8(const std::wstring& text) {
    std::string utf8(text.size() * 3, '\0');
    const int room = static_cast<int>(utf8.size());
    utf8.resize(static_cast<std::size_t>(WideCharToMultiByte(CP_UTF8, 0, text.data(), static_cast<int>(text.size()),
                                                             utf8.data(), room, nullptr, nullptr)));
    return utf8;
}

// A link among the user's folders; empty when there is none.
inline std::wstring LinkBelow(const std::wstring& folder, int depth) {
    WIN32_FIND_DATAW entry = {};
    const win::FindHandle find(FindFirstFileW((folder + L"\\*").c_str(), &entry));
    for (bool more = static_cast<bool>(find); more; more = FindNextFileW(find.get(), &entry) != FALSE) {
        const std::wstring name = entry.cFileName;
        std::wstring path = folder + L"\\";
        path += name;
        if (name == L"." || name == L"..") continue;
        if (entry.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) return path;
        if ((entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) == 0 || depth == 0) continue;
        if (std::wstring link = LinkBelow(path, depth - 1); !link.empty()) return link;
    }
    return {};
}

// Why this is no place for a test that deletes; empty when it is one. It skips the test where test.cmd has not allowed
// that.
inline std::wstring Objection() {
    const std::wstring said = Variable(L"QORVENIX_THROW_AWAY");  // by test.cmd: 0 or 1
    if ((said == L"0" || (said.empty() && !OnWine())) && skip) skip("it changes this machine");
    if (!OnWine()) return {};
    // The prefix and the home folder as Windows paths, the data folder as the host has it.
    const std::wstring prefix = Variable(L"WINECONFIGDIR");
    const std::wstring home = Variable(L"WINEHOMEDIR");
    const std::wstring data = Variable(L"XDG_DATA_HOME");
    const std::wstring host_prefix = Variable(L"WINEPREFIX");
    if (prefix.empty() || host_prefix.empty()) return L"not in a Wine prefix";
    if (!home.starts_with(prefix + L"\\")) return L"HOME lies outside the prefix: " + home;
    if (!data.starts_with(host_prefix + L"/")) return L"XDG_DATA_HOME lies outside the prefix: " + data;
    std::wstring mark = prefix + L"\\made-by";
    mark[1] = L'\\';  // from "\??\"
    if (GetFileAttributesW(mark.c_str()) == INVALID_FILE_ATTRIBUTES) return L"the prefix was not made by tools/prefix";
    constexpr DWORD kOwnDrives = 1U << ('C' - 'A') | 1U << ('Q' - 'A');
    if ((GetLogicalDrives() & ~kOwnDrives) != 0) return L"drives other than C: and Q:";
    const std::wstring link = LinkBelow(L"C:\\users", 3);
    return link.empty() ? link : L"a link leads out: " + link;
}

}  // namespace throw_away

#define REQUIRE_THROW_AWAY() REQUIRE(throw_away::Objection() == std::wstring())
