// A temporary folder for the tests that delete, and a canary tree beside it that has to live.
#pragma once

#include "support/test_host.h"
#include "support/throw_away.h"
#include "tools/modFile.h"
#include "win/text.h"

#include <doctest/doctest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace deletion {

inline constexpr wchar_t kRoot[] = L"C:\\deletion test";

inline std::wstring Raw(const std::wstring& path) { return L"\\\\?\\" + path; }

inline void MakeFolder(const std::wstring& path) { CreateDirectoryW(Raw(path).c_str(), nullptr); }

inline void MakeFile(const std::wstring& path, DWORD attributes = FILE_ATTRIBUTE_NORMAL) {
    const win::File file(CreateFileW(Raw(path).c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, attributes, nullptr));
    REQUIRE(file);
    DWORD written = 0;
    WriteFile(file.get(), "canary", 6, &written, nullptr);
}

inline std::vector<WIN32_FIND_DATAW> Entries(const std::wstring& folder) {
    std::vector<WIN32_FIND_DATAW> all;
    WIN32_FIND_DATAW entry = {};
    const win::FindHandle find(FindFirstFileW(Raw(folder + L"\\*").c_str(), &entry));
    for (bool more = static_cast<bool>(find); more; more = FindNextFileW(find.get(), &entry) != FALSE) {
        if (std::wstring_view(entry.cFileName) != L"." && std::wstring_view(entry.cFileName) != L"..") {
            all.push_back(entry);
        }
    }
    return all;
}

inline std::wstring Lines(const std::vector<std::wstring>& texts) {
    std::wstring lines;
    for (const std::wstring& text : texts)
        lines += text + L"\n";
    return lines;
}

// Every entry below a folder with its size, links not followed; sorted.
inline std::vector<std::wstring> Tree(const std::wstring& folder) {
    std::vector<std::wstring> all;
    for (const WIN32_FIND_DATAW& entry : Entries(folder)) {
        const std::wstring path = folder + L"\\" + entry.cFileName;
        all.push_back(path + L" " + win::ToText(entry.nFileSizeLow));
        if ((entry.dwFileAttributes & (FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_REPARSE_POINT)) !=
            FILE_ATTRIBUTE_DIRECTORY) {
            continue;
        }
        for (std::wstring& below : Tree(path))
            all.push_back(std::move(below));
    }
    std::sort(all.begin(), all.end());
    return all;
}

inline std::vector<std::wstring> Names(const std::wstring& folder) {
    std::vector<std::wstring> names;
    for (const WIN32_FIND_DATAW& entry : Entries(folder))
        names.emplace_back(entry.cFileName);
    std::sort(names.begin(), names.end());
    return names;
}

// A temporary folder and a canary tree beside it. Links stay behind when it goes: nothing here may follow them, so
// each case has a place of its own.
class Place {
public:
    Place() {
        REQUIRE_THROW_AWAY();
        static int cases = 0;
        const std::wstring root = kRoot + win::ToText(GetTickCount()) + L"-" + win::ToText(++cases);
        temp = root + L"\\temp";
        outside = root + L"\\outside";
        REQUIRE(CreateDirectoryW(root.c_str(), nullptr));
        MakeFolder(temp);
        MakeFolder(outside);
        MakeFolder(outside + L"\\folder");
        MakeFolder(outside + L"\\empty");
        for (const wchar_t* name : {L"\\canary", L"\\folder\\canary", L"\\folder\\another"})
            MakeFile(outside + name);
        canaries_ = Tree(outside);
        REQUIRE(canaries_.size() == 5);
    }
    bool canaries_live() const { return Tree(outside) == canaries_; }
    void clean() { tools::DeleteFolderContents(temp, L"*.*", host); }

    std::wstring temp;
    std::wstring outside;
    TestHost host;

private:
    std::vector<std::wstring> canaries_;
};

}  // namespace deletion
