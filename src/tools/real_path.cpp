#include "tools/real_path.h"

#include "win/sized_text.h"
#include "win/system_library.h"

#include <winternl.h>

#include <iterator>
#include <utility>
#include <vector>

namespace tools {
namespace {

constexpr wchar_t kExtendedPrefix[] = L"\\\\?\\";
constexpr wchar_t kObjectPrefix[] = L"\\??\\";
constexpr std::size_t kLongestPath = 32768;
constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
constexpr DWORD kNameSurrogate = 0x20000000;  // in a reparse tag: the entry stands for another one

template <class Function>
Function Find(const wchar_t* library, const char* name) {
    return win::FindFunction<Function>(GetModuleHandleW(library), name);
}

// "C:\a" of "\Device\HarddiskVolume1\a", extended; empty for a volume without a drive letter.
std::wstring PathOfDevice(std::wstring_view name) {
    for (wchar_t letter = L'A'; letter <= L'Z'; ++letter) {
        const wchar_t drive[] = {letter, L':', L'\0'};
        wchar_t device[MAX_PATH] = {};
        if (!QueryDosDeviceW(drive, device, MAX_PATH)) continue;
        const std::wstring root = std::wstring(device) + L"\\";
        if (name.starts_with(root)) return Extended(drive + std::wstring(name.substr(root.size() - 1)));
    }
    return {};
}

// The path from the name of the opened object (NtQueryObject), which has no link and no substituted drive in it.
// Wine's GetFinalPathNameByHandleW ends at 260 characters, this does not, and the name begins with a drive there.
std::wstring ObjectPath(HANDLE file) {
    using QueryObject = LONG(NTAPI*)(HANDLE, ULONG, void*, ULONG, ULONG*);
    constexpr ULONG kObjectNameInformation = 1;
    const auto query = Find<QueryObject>(L"ntdll.dll", "NtQueryObject");
    std::vector<UNICODE_STRING> buffer((sizeof(UNICODE_STRING) + kLongestPath * sizeof(wchar_t)) /
                                       sizeof(UNICODE_STRING));
    const auto size = static_cast<ULONG>(buffer.size() * sizeof(UNICODE_STRING));
    if (!query || query(file, kObjectNameInformation, buffer.data(), size, nullptr) < 0) return {};
    const std::wstring_view name(buffer[0].Buffer, buffer[0].Length / sizeof(wchar_t));
    if (!name.starts_with(kObjectPrefix)) return PathOfDevice(name);
    return Extended(name.substr(std::size(kObjectPrefix) - 1));
}

std::wstring FinalPath(HANDLE file) {
    using FinalPathFunction = DWORD(WINAPI*)(HANDLE, LPWSTR, DWORD, DWORD);
    const auto final_path = Find<FinalPathFunction>(L"kernel32.dll", "GetFinalPathNameByHandleW");
    if (!final_path) return ObjectPath(file);
    std::wstring path = win::SizedText([&](LPWSTR text, DWORD size) { return final_path(file, text, size, 0); });
    return path.empty() ? ObjectPath(file) : path;
}

// With the long names in the place of short ones; as it is where that fails.
std::wstring LongPath(const std::wstring& path) {
    std::wstring full =
        win::SizedText([&](LPWSTR text, DWORD size) { return GetLongPathNameW(path.c_str(), text, size); });
    return full.empty() ? path : full;
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

// What lies at `path`, a link itself and not what it leads to; empty when it really lies elsewhere.
win::File OpenRealEntry(const std::wstring& path, DWORD access) {
    win::File entry(CreateFileW(path.c_str(), access, kShareAll, nullptr, OPEN_EXISTING,
                                FILE_FLAG_OPEN_REPARSE_POINT | FILE_FLAG_BACKUP_SEMANTICS, nullptr));
    return entry && LiesAt(FinalPath(entry.get()), path) ? std::move(entry) : win::File();
}

// NtSetInformationFile, which every Windows has; kernel32 leads to it from Vista on only.
template <class Record>
bool SetInformation(HANDLE file, ULONG kind, Record record) {
    using SetFunction = LONG(NTAPI*)(HANDLE, IO_STATUS_BLOCK*, void*, ULONG, ULONG);
    const auto set = Find<SetFunction>(L"ntdll.dll", "NtSetInformationFile");
    IO_STATUS_BLOCK status = {};
    return set && set(file, &status, &record, sizeof record, kind) >= 0;
}

bool MarkDeleted(HANDLE entry) {
    constexpr ULONG kDisposition = 13;
    return SetInformation(entry, kDisposition, BOOLEAN{TRUE});
}

bool SetAttributes(HANDLE entry, DWORD attributes) {
    constexpr ULONG kBasic = 4;
    // Times of 0 stay as they are, as would attributes of 0.
    struct {
        LARGE_INTEGER times[4];
        ULONG attributes;
    } record = {{}, attributes == 0 ? DWORD{FILE_ATTRIBUTE_NORMAL} : attributes};
    return SetInformation(entry, kBasic, record);
}

}  // namespace

std::wstring Extended(std::wstring_view path) { return std::wstring(kExtendedPrefix).append(path); }

std::wstring RealPath(const std::wstring& path) {
    const win::File file(CreateFileW(LongPath(path).c_str(), FILE_READ_ATTRIBUTES, kShareAll, nullptr, OPEN_EXISTING,
                                     FILE_FLAG_BACKUP_SEMANTICS, nullptr));
    return file ? LongPath(FinalPath(file.get())) : std::wstring();
}

bool LiesAt(std::wstring_view real, std::wstring_view path) { return real == path || real == WithoutNameEndings(path); }

win::File OpenRealFolder(const std::wstring& path) {
    // Asking to list the folder makes the missing right to share its deletion count.
    win::File folder(CreateFileW(path.c_str(), FILE_LIST_DIRECTORY, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                 OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr));
    return folder && LiesAt(FinalPath(folder.get()), path) ? std::move(folder) : win::File();
}

bool DeleteRealEntry(const std::wstring& path) {
    const win::File entry = OpenRealEntry(path, DELETE | FILE_READ_ATTRIBUTES);
    if (!entry) return false;
    if (MarkDeleted(entry.get())) return true;
    BY_HANDLE_FILE_INFORMATION information = {};
    if (!GetFileInformationByHandle(entry.get(), &information)) return false;
    const DWORD attributes = information.dwFileAttributes;
    const bool folder = (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
    if ((attributes & FILE_ATTRIBUTE_READONLY) == 0 || (!folder && information.nNumberOfLinks != 1)) return false;
    const win::File writable = OpenRealEntry(path, FILE_WRITE_ATTRIBUTES | FILE_READ_ATTRIBUTES);
    if (!writable || !SetAttributes(writable.get(), attributes & ~DWORD{FILE_ATTRIBUTE_READONLY})) return false;
    if (MarkDeleted(entry.get())) return true;
    SetAttributes(writable.get(), attributes);
    return false;
}

bool IsLink(const WIN32_FIND_DATAW& entry) {
    const DWORD tag = entry.dwReserved0;
    return (entry.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0 && (tag == 0 || (tag & kNameSurrogate) != 0);
}

}  // namespace tools
