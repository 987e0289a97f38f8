// Links made by the host, since Wine makes none.
#pragma once

#include "support/throw_away.h"

#include <string>

// Makes a link at `path` ("C:\...") that leads to `target`, a path as the host reads it from there ("../outside").
// False when no link is there after five seconds.
inline bool MakeHostLink(const std::wstring& target, const std::wstring& path) {
    const std::wstring host = throw_away::Variable(L"WINEPREFIX") + L"/dosdevices/c:" + path.substr(2);
    std::wstring command = L"ln -s \"" + target + L"\" \"" + host + L"\"";
    for (wchar_t& each : command) {
        if (each == L'\\') each = L'/';
    }
    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION started = {};
    // A program of the host has no process handle: its work tells that it has run.
    if (!CreateProcessW(L"\\\\?\\unix\\bin\\ln", command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                        &started)) {
        return false;
    }
    for (int turn = 0; turn < 100; ++turn) {
        if (GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES) return true;
        Sleep(50);
    }
    return false;
}
