#include "startup/startup_actions.h"

#include "programs/modReg.h"
#include "programs/registry_editor.h"
#include "startup/modAPI.h"
#include "startup/path.h"
#include "startup/startup_scan.h"
#include "win/folders.h"
#include "win/handle.h"
#include "win/text.h"

namespace startup {
namespace {

using programs::Scope;

// Null for the location of a file.
const Scope* FindScope(std::wstring_view location) {
    for (const Scope& scope : programs::Scopes()) {
        if (win::Contains(location, scope.tag)) return &scope;
    }
    return nullptr;
}

std::wstring DeletionQuestion(const std::wstring& name) {
    return L"「" + name + L"」を削除します。\r\nよろしいですか？";
}

}  // namespace

std::optional<StartupEntry> SelectedStartupEntry(const ui::ListView& list) {
    const int row = list.selected();
    if (row < 0) return {};
    const LPARAM tag = list.tag(row);
    const std::wstring name = list.cell(row, StartupColumn::Name);
    return StartupEntry{
        .name = name,
        .value = list.cell(row, StartupColumn::Value),
        .location = list.cell(row, StartupColumn::Location),
        .description = list.cell(row, StartupColumn::Description),
        .name_goes_on = (tag & kNameGoesOn) != 0,
        .file_name = TrimmedName::of(name, tag).whole(),
    };
}

bool IsRegistryEntry(std::wstring_view location) { return FindScope(location) != nullptr; }

std::wstring EntryFile(const StartupEntry& entry) {
    const std::wstring folder = win::ExtendedPath(entry.location);
    const bool ends = folder.ends_with(L"\\");
    return folder + (ends ? L"" : L"\\") + (entry.file_name.empty() ? entry.name : entry.file_name);
}

bool DeleteStartupEntry(const StartupEntry& entry, ui::Host& host) {
    if (host.confirm(DeletionQuestion(entry.name)) != ui::Answer::Ok) return false;
    if (const Scope* scope = FindScope(entry.location)) {
        // The tag is taken to stand at the beginning, wherever it was found.
        const std::wstring key_path = entry.location.substr(scope->tag.size());
        win::RegKey key;
        if (RegOpenKeyExW(scope->root, key_path.c_str(), 0, KEY_SET_VALUE, key.put()) != ERROR_SUCCESS) return false;
        if (!entry.name_goes_on) RegDeleteValueW(key.get(), entry.name.c_str());
        return true;
    }
    DeleteFileW(EntryFile(entry).c_str());
    return true;
}

void OpenStartupLocation(const std::wstring& location) {
    if (PathIsDirectoryW(location.c_str())) {
        RunProgram(L"explorer.exe", location, win::WindowStyle::Normal);
        return;
    }
    if (const Scope* scope = FindScope(location)) {
        programs::StoreLastKey(win::ReplaceAll(location, scope->tag, scope->root_name));
    }
    programs::StartRegistryEditor();
}

}  // namespace startup
