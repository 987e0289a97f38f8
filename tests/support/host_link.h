// What the host does for a test: links, which Wine cannot make.
#pragma once

#include "throw_away.h"
#include "win/edition.h"

#include <algorithm>
#include <string>
#include <vector>

// The host's name of a path on drive C:.
inline std::wstring HostPath(const std::wstring& path) {
    std::wstring host = throw_away::Variable(L"WINEPREFIX") + L"/dosdevices/c:" + path.substr(2);
    std::ranges::replace(host, L'\\', L'/');
    return host;
}

// A call into the host's kernel, which a program under Wine can make like any other: quicker than a shell, and between
// two calls of the product.
enum class HostCall { Unlink, Rename, Symlink };

// True when it succeeded. Both paths as the host reads them.
template <bool kWide = win::kIs64Bit>
bool CallHost(HostCall call, const std::wstring& first, const std::wstring& second = {}) {
    throw_away::RequireWine();
    const std::string one = throw_away::Utf8(first), two = throw_away::Utf8(second);
    constexpr int kNumbers[][2] = {{10, 87}, {38, 82}, {83, 88}};  // a 32-bit program's, a 64-bit one's
    INT_PTR result = kNumbers[static_cast<int>(call)][kWide];
    if constexpr (kWide) {
        asm volatile("syscall" : "+a"(result) : "D"(one.c_str()), "S"(two.c_str()) : "rcx", "r11", "memory");
    } else {
        asm volatile("int $0x80" : "+a"(result) : "b"(one.c_str()), "c"(two.c_str()) : "memory");
    }
    return result == 0;
}

// Makes a link at `path` ("C:\...") that leads to `target`, a path as the host reads it from there ("../outside"). What
// is still there at the program's end the host removes: Wine would remove what it leads to.
inline bool MakeHostLink(const std::wstring& target, const std::wstring& path) {
    struct Links {
        std::vector<std::wstring> made;
        ~Links() {
            for (const std::wstring& link : made)
                CallHost(HostCall::Unlink, link);
        }
    };
    static Links links;
    return CallHost(HostCall::Symlink, target, links.made.emplace_back(HostPath(path)));
}
