#include "startup/shell_files.h"

#include "startup/path.h"
#include "win/folders.h"
#include "win/shell_file_info.h"
#include "win/system_text.h"
#include "win/text.h"

namespace startup {
namespace {

// The header as the Japanese shell writes it; in another language no description is shown.
constexpr std::wstring_view kDescriptionHeader = L"ファイルの説明";
constexpr int kDetailColumns = 41;

std::wstring TargetByShellLink(const std::wstring& file) {
    win::ComPtr<IShellLinkW> link;
    if (FAILED(CoCreateInstance(CLSID_ShellLink, nullptr, CLSCTX_INPROC_SERVER, IID_IShellLinkW, link.put_void()))) {
        return {};
    }
    const auto stored = link.as<IPersistFile>(IID_IPersistFile);
    wchar_t target[MAX_PATH] = {};
    if (!stored || FAILED(stored->Load(file.c_str(), STGM_READ)) ||
        link->GetPath(target, MAX_PATH, nullptr, 0) != S_OK) {
        return {};
    }
    return target;
}

std::wstring StoredTarget(const std::wstring& file, FileProbe& probe) {
    const win::Object shortcut = win::Object::create(L"WScript.Shell").get_object(L"CreateShortcut", file);
    win::Variant target;
    if (FAILED(shortcut.invoke(L"TargetPath", {}, &target))) return TargetByShellLink(file);
    if (probe.exists(target.text())) return target.text();
    const std::wstring exact = TargetByShellLink(file);
    return exact.empty() ? target.text() : exact;
}

// On 64-bit Windows the shell may tell a 32-bit program "C:\Program Files (x86)\..." where the shortcut says
// "C:\Program Files\...".
std::wstring WhereProgramsLie(const std::wstring& target, FileProbe& probe) {
    wchar_t native[MAX_PATH] = {};
    if (!GetEnvironmentVariableW(L"ProgramW6432", native, MAX_PATH)) return target;
    for (const int csidl : {CSIDL_PROGRAM_FILES, CSIDL_PROGRAM_FILESX86}) {
        const std::wstring folder = win::GetSpecialFolderPath(csidl);
        if (folder.empty() || !win::LowerCase(target).starts_with(win::LowerCase(folder) + L"\\")) continue;
        std::wstring native_target = native + target.substr(folder.size());
        if (!probe.exists(target) && probe.exists(native_target)) return native_target;
    }
    return target;
}

}  // namespace

std::wstring GetShortcutTarget(const std::wstring& file, FileProbe& probe) {
    if (!win::LowerCase(file).ends_with(L".lnk")) return {};
    return WhereProgramsLie(StoredTarget(file, probe), probe);
}

std::wstring GetShortcutTarget(const std::wstring& file) {
    FileProbe probe;
    return GetShortcutTarget(file, probe);
}

int GetSystemIconIndex(const std::wstring& path) {
    SHFILEINFOW info = {};
    win::GetShellFileInfo(path, SHGFI_SYSICONINDEX | SHGFI_DISPLAYNAME | SHGFI_SMALLICON, info);
    return info.iIcon;
}

const FileDescriptions::Folder& FileDescriptions::folder_at(const std::wstring& path) {
    const auto [place, added] = folders_.try_emplace(win::LowerCase(path));
    Folder& folder = place->second;
    if (!added) return folder;
    if (!shell_) shell_ = win::Object::create(L"Shell.Application");
    folder.object = shell_.get_object(L"Namespace", path);
    if (!folder.object) return folder;
    for (int column = 0; column < kDetailColumns; ++column) {
        if (folder.object.get(L"GetDetailsOf", win::Variant(), column).text() == kDescriptionHeader) {
            folder.columns.push_back(column);
        }
    }
    return folder;
}

std::wstring FileDescriptions::describe(const std::wstring& path) {
    const Folder& folder = folder_at(ParentFolder(path));
    if (folder.columns.empty()) return {};
    const win::Object item = folder.object.get_object(L"ParseName", FileNamePart(path));
    std::wstring description;
    // A later column of that name wins. Without an item the shell would answer with the header itself.
    for (const int column : folder.columns) {
        win::Variant detail;
        const win::Variant arguments[] = {win::Variant(item.get()), win::Variant(column)};
        if (item && SUCCEEDED(folder.object.invoke(L"GetDetailsOf", arguments, &detail))) description = detail.text();
    }
    return description;
}

}  // namespace startup
