// What the host does for a test: links, which Wine cannot make, and many files at once.
#pragma once

#include "throw_away.h"
#include "win/process.h"

#include <string>

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

// The links that are still there at the program's end. The host removes them: Wine would remove what they lead to.
class HostLinks {
public:
    static inline std::wstring left;

    HostLinks() = default;
    HostLinks(const HostLinks&) = delete;
    HostLinks& operator=(const HostLinks&) = delete;
    ~HostLinks() {
        const std::wstring sign = L"C:\\links are gone";
        if (!left.empty() && RunOnHost(L"rm -f" + left + L"; touch '" + HostPath(sign) + L"'", sign))
            DeleteFileW(sign.c_str());
    }
};

// Makes a link at `path` ("C:\...") that leads to `target`, a path as the host reads it from there ("../outside").
inline bool MakeHostLink(const std::wstring& target, const std::wstring& path) {
    static const HostLinks links;
    HostLinks::left += L" '" + HostPath(path) + L"'";
    return RunOnHost(L"ln -s '" + target + L"' '" + HostPath(path) + L"'", path);
}
