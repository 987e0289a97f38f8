// A recycle bin of the test prefix's own, and files to put there. REQUIRE_THROW_AWAY() comes first.
#pragma once

#include "support/test_folder.h"
#include "support/throw_away.h"

#include <doctest/doctest.h>

// Wine takes the recycle bin from the host, and has none without the folder around it.
inline void MakeDataFolder() {
    if (!throw_away::OnWine()) return;
    const std::wstring folder = L"\\\\?\\unix" + throw_away::Variable(L"XDG_DATA_HOME");
    for (std::size_t at = folder.find(L'/', 9); at != folder.npos; at = folder.find(L'/', at + 1)) {
        CreateDirectoryW(folder.substr(0, at).c_str(), nullptr);
    }
    CreateDirectoryW(folder.c_str(), nullptr);
}

// Puts a file of `bytes` bytes into the recycle bin.
inline void Discard(TestFolder& folder, const std::wstring& name, std::size_t bytes) {
    std::wstring path = folder.make_file(name, std::string(bytes, 'x'));
    path.append(1, L'\0');
    SHFILEOPSTRUCTW operation = {};
    operation.wFunc = FO_DELETE;
    operation.pFrom = path.c_str();
    operation.fFlags = FOF_ALLOWUNDO | FOF_NOCONFIRMATION | FOF_SILENT | FOF_NOERRORUI;
    REQUIRE(SHFileOperationW(&operation) == 0);
}
