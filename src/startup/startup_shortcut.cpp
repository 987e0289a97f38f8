#include "startup/startup_shortcut.h"

#include "startup/path.h"
#include "win/automation.h"
#include "win/file_identity.h"
#include "win/folders.h"
#include "win/system_text.h"

namespace startup {
namespace {

constexpr wchar_t kTitle[] = L"ショートカットの作成";

// What these shortcuts have always stored; Windows takes it for a normal window.
constexpr std::int32_t kNormalWindow = SW_SHOWNOACTIVATE;

std::wstring Question(const std::wstring& target_path) {
    return L"スタートアップフォルダに\r\n" + target_path + L"\r\nのショートカットを作成します。よろしいですか？";
}

std::wstring StartupFolder(const win::Object& script_host) {
    const std::wstring own = win::GetSpecialFolderPath(CSIDL_STARTUP);
    const std::wstring folder = script_host.get(L"SpecialFolders", L"Startup").text();
    return folder.empty() || !win::FitsAnsi(own) ? own : folder;
}

struct Shortcut {
    std::wstring link;
    std::wstring target;
    std::wstring working_folder;
};

// The script host takes all of it through the ANSI code page.
bool FitsScriptHost(const Shortcut& shortcut) {
    return win::FitsAnsi(shortcut.link) && win::FitsAnsi(shortcut.target) && win::FitsAnsi(shortcut.working_folder);
}

bool SaveByScriptHost(const win::Object& script_host, const Shortcut& shortcut) {
    const win::Object link = script_host.get_object(L"CreateShortcut", shortcut.link);
    return SUCCEEDED(link.put(L"TargetPath", win::Variant(shortcut.target))) &&
           SUCCEEDED(link.put(L"WorkingDirectory", win::Variant(shortcut.working_folder))) &&
           SUCCEEDED(link.put(L"WindowStyle", win::Variant(kNormalWindow))) &&
           SUCCEEDED(link.invoke(L"Save", {}, nullptr));
}

void SaveByShell(const Shortcut& shortcut) {
    win::ComPtr<IShellLinkW> link;
    if (FAILED(CoCreateInstance(CLSID_ShellLink, nullptr, CLSCTX_INPROC_SERVER, IID_IShellLinkW, link.put_void()))) {
        return;
    }
    const auto file = link.as<IPersistFile>(IID_IPersistFile);
    if (!file || FAILED(link->SetPath(shortcut.target.c_str()))) return;
    link->SetWorkingDirectory(shortcut.working_folder.c_str());
    link->SetShowCmd(kNormalWindow);
    file->Save(shortcut.link.c_str(), TRUE);
}

// Whether `path` is a shortcut in `folder`, whatever the folder is called in it.
bool IsShortcutIn(const std::wstring& folder, const std::wstring& path) {
    if (win::LowerCase(ExtensionPart(path)) != L"lnk") return false;
    const auto place = win::IdentityOf(ParentFolder(win::FullPath(path)));
    return place && place == win::IdentityOf(folder);
}

}  // namespace

void CreateStartupShortcut(const std::wstring& target_path, ui::Host& host) {
    const win::Object script_host = win::Object::create(L"WScript.Shell");
    const std::wstring folder = StartupFolder(script_host);
    if (IsShortcutIn(folder, target_path)) return;
    if (host.confirm(Question(target_path), kTitle) == ui::Answer::Cancel || folder.empty()) return;
    const Shortcut shortcut = {
        .link = folder + L"\\" + BaseNamePart(target_path) + L".lnk",
        .target = win::ExpandVariables(target_path),
        .working_folder = ParentFolder(target_path),
    };
    if (!FitsScriptHost(shortcut) || !SaveByScriptHost(script_host, shortcut)) SaveByShell(shortcut);
}

}  // namespace startup
