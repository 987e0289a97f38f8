// A temporary folder for the tests that delete, and a canary tree beside it that has to live.
#pragma once

#include "support/import_hook.h"
#include "support/test_host.h"
#include "support/throw_away.h"
#include "tools/modFile.h"
#include "win/text.h"

#include <doctest/doctest.h>

#include <winternl.h>

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

// How Windows looks to the deletion: with or without the functions that came with Vista, and with links that show as
// such or look like what they lead to. The entries of this test that are links have "link" in their names. Before Vista
// an object's name begins with a device, which Wine does not show.
class Ways {
public:
    struct Way {
        bool vista;
        bool links_show;
    };
    static constexpr Way kAll[] = {{true, true}, {true, false}, {false, true}, {false, false}};

    explicit Ways(Way way) {
        way_ = way;
        find_function_ = functions_.original<decltype(GetProcAddress)>();
        find_first_ = first_.original<decltype(FindFirstFileW)>();
        find_next_ = next_.original<decltype(FindNextFileW)>();
    }

    // Comes before every change of a file or folder that the product makes by path or by handle.
    static inline void (*before_change)() = nullptr;

private:
    using Function = FARPROC;
    template <class Replacement>
    static Function As(Replacement* replacement) {
        return reinterpret_cast<Function>(reinterpret_cast<void*>(replacement));
    }

    static Function WINAPI Find(HMODULE library, LPCSTR name) {
        const std::string_view wanted = name;
        const Function found = find_function_(library, name);
        if (!way_.vista && (wanted == "GetFinalPathNameByHandleW" || wanted == "SetFileInformationByHandle")) return {};
        if (!way_.vista && wanted == "NtQueryObject") {
            query_ = reinterpret_cast<decltype(query_)>(reinterpret_cast<void*>(found));
            return As(&QueryObject);
        }
        if (wanted != "NtSetInformationFile") return found;
        set_ = reinterpret_cast<decltype(set_)>(reinterpret_cast<void*>(found));
        return As(&SetInformation);
    }

    static LONG NTAPI QueryObject(HANDLE object, ULONG kind, void* name, ULONG size, ULONG* length) {
        const LONG result = query_(object, kind, name, size, length);
        auto* const text = static_cast<UNICODE_STRING*>(name);
        const std::wstring old(text->Buffer, text->Length / sizeof(wchar_t));
        wchar_t device[MAX_PATH] = {};
        if (result < 0 || !QueryDosDeviceW(old.substr(4, 2).c_str(), device, MAX_PATH)) return result;
        const std::wstring changed = device + old.substr(6);
        changed.copy(text->Buffer, changed.size());
        text->Length = static_cast<USHORT>(changed.size() * sizeof(wchar_t));
        return result;
    }

    static LONG NTAPI SetInformation(HANDLE file, void* status, void* record, ULONG size, int kind) {
        if (before_change) before_change();
        return set_(file, status, record, size, kind);
    }

    static void Show(WIN32_FIND_DATAW& entry) {
        const bool link = std::wstring_view(entry.cFileName).find(L"link") != std::wstring_view::npos;
        entry.dwFileAttributes &= ~DWORD{FILE_ATTRIBUTE_REPARSE_POINT};
        if (!link || !way_.links_show) return;
        entry.dwFileAttributes |= FILE_ATTRIBUTE_REPARSE_POINT;
        entry.dwReserved0 = 0xA000000C;
    }
    static HANDLE WINAPI FindFirst(LPCWSTR pattern, WIN32_FIND_DATAW* entry) {
        const HANDLE find = find_first_(pattern, entry);
        if (find != INVALID_HANDLE_VALUE) Show(*entry);
        return find;
    }
    static BOOL WINAPI FindNext(HANDLE find, WIN32_FIND_DATAW* entry) {
        const BOOL found = find_next_(find, entry);
        if (found) Show(*entry);
        return found;
    }

    static inline Way way_;
    static inline decltype(GetProcAddress)* find_function_;
    static inline decltype(FindFirstFileW)* find_first_;
    static inline decltype(FindNextFileW)* find_next_;
    static inline LONG(NTAPI* query_)(HANDLE, ULONG, void*, ULONG, ULONG*);
    static inline LONG(NTAPI* set_)(HANDLE, void*, void*, ULONG, int);

    const ImportHook functions_{"GetProcAddress", &Find};
    const ImportHook first_{"FindFirstFileW", &FindFirst};
    const ImportHook next_{"FindNextFileW", &FindNext};
};

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
    bool canaries_live() const { return lost_canaries() == 0; }
    std::size_t lost_canaries() const { return canaries_.size() - Tree(outside).size(); }
    void clean() { tools::DeleteFolderContents(temp, L"*.*", host); }

    std::wstring temp;
    std::wstring outside;
    TestHost host;

private:
    std::vector<std::wstring> canaries_;
};

}  // namespace deletion
