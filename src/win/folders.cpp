#include "win/folders.h"

#include "win/platform.h"
#include "win/sized_text.h"

namespace win {
namespace {

std::wstring FolderFrom(UINT(WINAPI* query)(LPWSTR, UINT)) {
    const std::wstring folder = SizedText(query);
    return folder.substr(0, folder.find_last_not_of(L'\\') + 1);
}

constexpr wchar_t kExtendedPrefix[] = L"\\\\?\\";
constexpr wchar_t kExtendedShare[] = L"\\\\?\\UNC";
constexpr wchar_t kDevicePrefix[] = L"\\\\.\\";

}  // namespace

std::wstring FullPath(const std::wstring& path) {
    return SizedText([&](LPWSTR text, DWORD size) { return GetFullPathNameW(path.c_str(), size, text, nullptr); });
}

const std::wstring& SystemDirectory() {
    static const std::wstring folder = FolderFrom(&GetSystemDirectoryW);
    return folder;
}

const std::wstring& WindowsDirectory() {
    static const std::wstring folder = FolderFrom(&GetSystemWindowsDirectoryW);
    return folder;
}

std::wstring GetSpecialFolderPath(int csidl) {
    // One more than asked for: of a registry setting with exactly MAX_PATH characters and no end, Wine writes the end
    // behind the buffer.
    wchar_t folder[MAX_PATH + 1] = {};
    return SHGetSpecialFolderPathW(nullptr, folder, csidl, FALSE) ? folder : std::wstring();
}

std::wstring ApplicationFolder() {
    std::wstring path(MAX_PATH, L'\0');
    for (;;) {
        const DWORD length = GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
        if (length < path.size()) {
            path.resize(length);
            return path.substr(0, path.rfind(L'\\'));
        }
        path.resize(path.size() * 2);
    }
}

std::wstring ExtendedPath(const std::wstring& path) {
    const std::wstring full = FullPath(path);
    if (full.starts_with(kExtendedPrefix) || full.starts_with(kDevicePrefix)) return path;
    if (full.starts_with(L"\\\\")) return kExtendedShare + full.substr(1);
    return full.size() > 2 && full[1] == L':' ? kExtendedPrefix + full : path;
}

std::wstring PlainPath(const std::wstring& extended) {
    std::wstring plain = extended;
    if (extended.starts_with(kExtendedShare)) {
        plain = extended.substr(std::size(kExtendedShare) - 1).insert(0, 1, L'\\');
    } else if (extended.starts_with(kExtendedPrefix)) {
        plain = extended.substr(std::size(kExtendedPrefix) - 1);
    }
    return FullPath(plain) == plain ? plain : extended;
}

bool IsFile(const std::wstring& path) {
    const DWORD attributes = GetFileAttributesW(path.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) == 0;
}

std::wstring FindSystemFile(std::wstring_view name) {
    if (name.empty() || name.find_first_of(L"\\/:") != name.npos) return {};
    for (const std::wstring* folder : {&SystemDirectory(), &WindowsDirectory()}) {
        std::wstring path = *folder + L"\\" + std::wstring(name);
        if (IsFile(path)) return path;
    }
    return {};
}

}  // namespace win
