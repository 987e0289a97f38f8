// What the host does for a test: links, which Wine cannot make, and many files at once.
#pragma once

#include "throw_away.h"
#include "win/edition.h"
#include "win/process.h"

#include <string>
#include <vector>

// The host's name of a path on drive C:.
inline std::wstring HostPath(const std::wstring& path) {
    std::wstring host = throw_away::Variable(L"WINEPREFIX") + L"/dosdevices/c:" + path.substr(2);
    for (wchar_t& each : host) {
        if (each == L'\\') each = L'/';
    }
    return host;
}

// Runs a shell command of the host, which has to bring `sign` into being, a path on drive C:. False when it is not
// there after that many seconds: such a program has no process handle to wait for.
inline bool RunOnHost(const std::wstring& shell_command, const std::wstring& sign, int seconds = 5) {
    throw_away::RequireWine();
    const std::wstring command = L"sh -c \"" + shell_command + L"\"";
    win::StartProcess(L"\\\\?\\unix\\bin\\sh", command, win::WindowStyle::Normal);
    for (int turn = 0; turn < 50 * seconds; ++turn) {
        if (GetFileAttributesW(sign.c_str()) != INVALID_FILE_ATTRIBUTES) return true;
        Sleep(20);
    }
    return false;
}

// A call into the host's kernel, which a program under Wine can make like any other: quicker than a shell, and between
// two calls of the product.
enum class HostCall { Unlink, Rename, Symlink };

// True when it succeeded. Both paths as the host reads them.
template <bool kWide = win::kIs64Bit>
bool CallHost(HostCall call, const std::wstring& first, const std::wstring& second = {}) {
    throw_away::RequireWine();
    const auto utf8 = [](const std::wstring& text) {
        std::string bytes(text.size() * 3 + 1, '\0');
        WideCharToMultiByte(CP_UTF8, 0, text.c_str(), -1, bytes.data(), static_cast<int>(bytes.size()), nullptr,
                            nullptr);
        return bytes;
    };
    const std::string one = utf8(first);
    const std::string two = utf8(second);
    constexpr int kNumbers[][2] = {{10, 87}, {38, 82}, {83, 88}};  // a 32-bit program's, a 64-bit one's
    INT_PTR result = kNumbers[static_cast<int>(call)][kWide];
    if constexpr (kWide) {
        asm volatile("syscall" : "+a"(result) : "D"(one.c_str()), "S"(two.c_str()) : "rcx", "r11", "memory");
    } else {
        asm volatile("int $0x80" : "+a"(result) : "b"(one.c_str()), "c"(two.c_str()) : "memory");
    }
    return result == 0;
}

// The links that are still there at the program's end. The host removes them: Wine would remove what they lead to.
class HostLinks {
public:
    HostLinks() = default;
    HostLinks(const HostLinks&) = delete;
    HostLinks& operator=(const HostLinks&) = delete;
    ~HostLinks() {
        for (const std::wstring& path : made)
            CallHost(HostCall::Unlink, path);
    }

    std::vector<std::wstring> made;
};

// Makes a link at `path` ("C:\...") that leads to `target`, a path as the host reads it from there ("../outside").
inline bool MakeHostLink(const std::wstring& target, const std::wstring& path) {
    static HostLinks links;
    links.made.push_back(HostPath(path));
    return CallHost(HostCall::Symlink, target, HostPath(path));
}
