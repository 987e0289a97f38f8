#include "tools/real_path.h"

#include "win/sized_text.h"
#include "win/system_library.h"

#include <winternl.h>

#include <iterator>
#include <vector>

namespace tools {
namespace {

constexpr wchar_t kExtendedPrefix[] = L"\\\\?\\";
constexpr wchar_t kObjectPrefix[] = L"\\??\\";
constexpr std::size_t kLongestPath = 32768;
constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
constexpr DWORD kNameSurrogate = 0x20000000;  // in a reparse tag: the entry stands for another one

using FinalPathFunction = DWORD(WINAPI*)(HANDLE, LPWSTR, DWORD, DWORD);

FinalPathFunction FindFinalPathFunction() {
    static const auto function =
        win::FindFunction<FinalPathFunction>(GetModuleHandleW(L"kernel32.dll"), "GetFinalPathNameByHandleW");
    return function;
}

// The name of the opened object, where that is a path (NtQueryObject). Wine's GetFinalPathNameByHandleW ends at 260
// characters, this does not; on Windows the name begins with a device and is no path.
std::wstring ObjectPath(HANDLE file) {
    using QueryObject = LONG(NTAPI*)(HANDLE, ULONG, void*, ULONG, ULONG*);
    constexpr ULONG kObjectNameInformation = 1;
    static const auto query = win::FindFunction<QueryObject>(GetModuleHandleW(L"ntdll.dll"), "NtQueryObject");
    std::vector<UNICODE_STRING> buffer((sizeof(UNICODE_STRING) + kLongestPath * sizeof(wchar_t)) /
                                       sizeof(UNICODE_STRING));
    const auto size = static_cast<ULONG>(buffer.size() * sizeof(UNICODE_STRING));
    if (!query || query(file, kObjectNameInformation, buffer.data(), size, nullptr) < 0) return {};
    const std::wstring_view name(buffer[0].Buffer, buffer[0].Length / sizeof(wchar_t));
    return name.starts_with(kObjectPrefix) ? Extended(name.substr(std::size(kObjectPrefix) - 1)) : std::wstring();
}

std::wstring FinalPath(HANDLE file) {
    std::wstring path =
        win::SizedText([file](LPWSTR text, DWORD size) { return FindFinalPathFunction()(file, text, size, 0); });
    return path.empty() ? ObjectPath(file) : path;
}

// Without the dots and blanks before each backslash and at the end.
std::wstring WithoutNameEndings(std::wstring_view path) {
    std::wstring result;
    for (const wchar_t each : path) {
        if (each == L'\\') result.resize(result.find_last_not_of(L". ") + 1);
        result += each;
    }
    result.resize(result.find_last_not_of(L". ") + 1);
    return result;
}

bool IsReparsePoint(HANDLE file) {
    BY_HANDLE_FILE_INFORMATION information = {};
    return !GetFileInformationByHandle(file, &information) ||
           (information.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
}

}  // namespace

std::wstring Extended(std::wstring_view path) { return std::wstring(kExtendedPrefix).append(path); }

std::wstring RealPath(const std::wstring& path) {
    if (!FindFinalPathFunction()) {
        const std::wstring full =
            win::SizedText([&](LPWSTR text, DWORD size) { return GetLongPathNameW(path.c_str(), text, size); });
        return full.empty() || full.starts_with(kExtendedPrefix) ? full : Extended(full);
    }
    const win::File file(CreateFileW(path.c_str(), FILE_READ_ATTRIBUTES, kShareAll, nullptr, OPEN_EXISTING,
                                     FILE_FLAG_BACKUP_SEMANTICS, nullptr));
    return file ? FinalPath(file.get()) : std::wstring();
}

bool LiesAt(std::wstring_view real, std::wstring_view path) { return real == path || real == WithoutNameEndings(path); }

win::File OpenRealFolder(const std::wstring& path) {
    // Asking to list the folder makes the missing right to share its deletion count.
    const bool resolves = FindFinalPathFunction() != nullptr;
    win::File folder(CreateFileW(path.c_str(), FILE_LIST_DIRECTORY, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                 OPEN_EXISTING,
                                 FILE_FLAG_BACKUP_SEMANTICS | (resolves ? 0 : FILE_FLAG_OPEN_REPARSE_POINT), nullptr));
    if (!folder) return {};
    if (resolves ? !LiesAt(FinalPath(folder.get()), path) : IsReparsePoint(folder.get())) return {};
    return folder;
}

bool DeleteRealFile(const std::wstring& path) {
    using SetInformation = BOOL(WINAPI*)(HANDLE, int, void*, DWORD);
    constexpr int kDisposition = 4;  // FileDispositionInfo
    static const auto set_information =
        win::FindFunction<SetInformation>(GetModuleHandleW(L"kernel32.dll"), "SetFileInformationByHandle");
    if (!set_information || !FindFinalPathFunction()) return DeleteFileW(path.c_str()) != FALSE;
    const win::File file(CreateFileW(path.c_str(), DELETE | FILE_READ_ATTRIBUTES, kShareAll, nullptr, OPEN_EXISTING,
                                     FILE_FLAG_OPEN_REPARSE_POINT, nullptr));
    if (!file) return false;
    if (!LiesAt(FinalPath(file.get()), path)) {
        SetLastError(ERROR_CANT_ACCESS_FILE);
        return false;
    }
    BOOLEAN deletes = TRUE;
    return set_information(file.get(), kDisposition, &deletes, sizeof deletes) != FALSE;
}

bool HasOneName(const std::wstring& path) {
    const win::File file(CreateFileW(path.c_str(), FILE_READ_ATTRIBUTES, kShareAll, nullptr, OPEN_EXISTING,
                                     FILE_FLAG_OPEN_REPARSE_POINT, nullptr));
    BY_HANDLE_FILE_INFORMATION information = {};
    return file && GetFileInformationByHandle(file.get(), &information) && information.nNumberOfLinks == 1;
}

bool IsLink(const WIN32_FIND_DATAW& entry) {
    const DWORD tag = entry.dwReserved0;
    return (entry.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0 && (tag == 0 || (tag & kNameSurrogate) != 0);
}

bool VolumeMarksLinks(std::wstring_view path) {
    const std::wstring root(path.substr(0, 3));
    DWORD flags = 0;
    return GetVolumeInformationW(root.c_str(), nullptr, 0, nullptr, nullptr, &flags, nullptr, 0) &&
           (flags & FILE_SUPPORTS_REPARSE_POINTS) != 0;
}

}  // namespace tools
