#include "programs/registry_editor.h"

#include "win/handle.h"
#include "win/process.h"
#include "win/system_text.h"
#include "win/text.h"

#include <algorithm>

namespace programs {
namespace {

constexpr wchar_t kEditorSettings[] = L"Software\\Microsoft\\Windows\\CurrentVersion\\Applets\\Regedit";

// The Japanese editor's label of the tree's top.
constexpr std::wstring_view kTreeTop = L"コンピュータ\\";

constexpr wchar_t kOpening[] = L"指定パスをレジストリエディタで開きます...";

constexpr std::size_t kHistoryLength = 14;

}  // namespace

void StoreLastKey(std::wstring_view path) {
    win::RegKey key;
    if (RegOpenKeyExW(HKEY_CURRENT_USER, kEditorSettings, 0, KEY_SET_VALUE, key.put()) != ERROR_SUCCESS) return;
    std::wstring text(path);
    if (!text.starts_with(kTreeTop)) text.insert(0, kTreeTop);
    const std::string ansi = win::ToAnsi(text);
    RegSetValueExA(key.get(), "LastKey", 0, REG_SZ, reinterpret_cast<const BYTE*>(ansi.c_str()),
                   static_cast<DWORD>(ansi.size() + 1));
}

void StartRegistryEditor() { win::StartSystemProgram(L"regedit.exe", L"regedit", win::WindowStyle::Normal); }

void OpenRegistryEditorAt(std::wstring_view path, ui::Host& host) {
    if (path.empty()) return;
    host.set_status(kOpening);
    StoreLastKey(path);
    StartRegistryEditor();
}

std::wstring OpenTypedRegistryPath(std::wstring_view typed, std::vector<std::wstring>& history) {
    std::wstring path(win::TrimLeadingBlanks(typed));
    if (path.empty()) return path;
    StoreLastKey(path);
    StartRegistryEditor();
    RememberRegistryPath(path, history);
    return path;
}

void RememberRegistryPath(std::wstring_view text, std::vector<std::wstring>& history) {
    history.emplace(history.begin(), text);
    const auto duplicate = std::find(history.begin() + 1, history.end(), text);
    if (duplicate != history.end()) history.erase(duplicate);
    if (history.size() > kHistoryLength) history.resize(kHistoryLength);
}

}  // namespace programs
