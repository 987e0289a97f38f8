// A folder of a test's own below the temporary folder, and its files; deleted at the end.
#pragma once

#include "win/handle.h"
#include "win/text.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

// What is in a file; nothing when it cannot be read.
inline std::string ContentOf(const std::wstring& path) {
    std::ifstream file(path.c_str(), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

inline void MakeFile(const std::wstring& path, DWORD attributes = FILE_ATTRIBUTE_NORMAL,
                     std::string_view content = {}) {
    const win::File file(CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, attributes, nullptr));
    DWORD written = 0;
    WriteFile(file.get(), content.data(), static_cast<DWORD>(content.size()), &written, nullptr);
}

// All names below a folder, as paths from there; a folder's ends with a backslash. What has "link" in its name is one.
inline std::vector<std::wstring> NamesBelow(const std::wstring& folder, const std::wstring& before = {}) {
    std::vector<std::wstring> names;
    WIN32_FIND_DATAW entry = {};
    const std::wstring pattern = L"\\\\?\\" + folder + L"\\" + before + L"*";
    const win::FindHandle find(FindFirstFileW(pattern.c_str(), &entry));
    for (bool more = static_cast<bool>(find); more; more = FindNextFileW(find.get(), &entry) != FALSE) {
        const std::wstring name = entry.cFileName;
        if (name == L"." || name == L"..") continue;
        const bool enters = (entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0 && !win::Contains(name, L"link");
        names.push_back(before + name + (enters ? L"\\" : L""));
        if (!enters) continue;
        for (const std::wstring& below : NamesBelow(folder, names.back()))
            names.push_back(below);
    }
    std::ranges::sort(names);
    return names;
}

class TestFolder {
public:
    explicit TestFolder(std::wstring_view name) {
        wchar_t temporary[MAX_PATH] = {};
        GetTempPathW(MAX_PATH, temporary);
        path_ = std::wstring(temporary) + std::wstring(name);
        CreateDirectoryW(path_.c_str(), nullptr);
    }
    TestFolder(const TestFolder&) = delete;
    TestFolder& operator=(const TestFolder&) = delete;
    ~TestFolder() {
        for (const std::wstring& file : files_) {
            SetFileAttributesW(file.c_str(), FILE_ATTRIBUTE_NORMAL);
            if (!DeleteFileW(file.c_str())) RemoveDirectoryW(file.c_str());
        }
        RemoveDirectoryW(path_.c_str());
    }

    const std::wstring& path() const { return path_; }

    // The path of `name` in the folder. What lies there at the end is deleted.
    std::wstring own(std::wstring_view name) { return files_.emplace_back(path_ + L"\\" + std::wstring(name)); }
    std::wstring make_file(std::wstring_view name, std::string_view content = {},
                           DWORD attributes = FILE_ATTRIBUTE_NORMAL) {
        std::wstring path = own(name);
        MakeFile(path, attributes, content);
        return path;
    }
    std::wstring make_folder(std::wstring_view name) {
        std::wstring path = own(name);
        CreateDirectoryW(path.c_str(), nullptr);
        return path;
    }

private:
    std::wstring path_;
    std::vector<std::wstring> files_;
};
