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

using programs::Hive;

// Null for the location of a file.
const Hive* FindHive(std::wstring_view location) {
    for (const Hive& hive : programs::Hives()) {
        if (win::Contains(location, hive.tag)) return &hive;
    }
    return nullptr;
}

std::wstring DeletionQuestion(const std::wstring& name) {
    return L"「" + name + L"」を削除します。\r\nよろしいですか？";
}

}  // namespace

std::optional<StartupEntry> StartupEntryAt(const ui::ListView& list, int row) {
    if (row < 0) return {};
    const LPARAM tag = list.item_data(row);
    const std::wstring name = list.cell(row, StartupColumn::Name);
    return StartupEntry{
        .name = name,
        .value = list.cell(row, StartupColumn::Value),
        .location = list.cell(row, StartupColumn::Location),
        .description = list.cell(row, StartupColumn::Description),
        .has_embedded_nul = (tag & kEmbeddedNul) != 0,
        .file_name = TrimmedName::of(name, tag).whole(),
    };
}

bool IsRegistryEntry(std::wstring_view location) { return FindHive(location) != nullptr; }

std::wstring EntryFile(const StartupEntry& entry) {
    const std::wstring folder = win::ExtendedPath(entry.location);
    const bool ends = folder.ends_with(L"\\");
    return folder + (ends ? L"" : L"\\") + (entry.file_name.empty() ? entry.name : entry.file_name);
}

bool DeleteStartupEntry(const StartupEntry& entry, const win::BackupFolder& backup, ui::Host& host) {
    if (host.confirm(DeletionQuestion(entry.name)) != ui::Answer::Ok) return false;
    bool kept = true;
    if (const Hive* hive = FindHive(entry.location)) {
        // The tag is taken to stand at the beginning, wherever it was found.
        const std::wstring key_path = entry.location.substr(hive->tag.size());
        win::RegKey key;
        if (RegOpenKeyExW(hive->root, key_path.c_str(), 0, KEY_SET_VALUE, key.put()) != ERROR_SUCCESS) return false;
        if (!entry.has_embedded_nul) {
            kept = backup.keep_value(hive->root, key_path, entry.name, entry.name);
            RegDeleteValueW(key.get(), entry.name.c_str());
        }
    } else {
        const std::wstring file = EntryFile(entry);
        kept = backup.keep_file(file);
        DeleteFileW(file.c_str());
    }
    if (!kept) host.set_status(win::kNothingKept);
    return true;
}

void OpenStartupLocation(const std::wstring& location) {
    if (PathIsDirectoryW(location.c_str())) {
        RunProgram(L"explorer.exe", location, win::WindowStyle::Normal);
        return;
    }
    if (const Hive* hive = FindHive(location)) {
        programs::StoreLastKey(win::ReplaceAll(location, hive->tag, hive->root_name));
    }
    programs::StartRegistryEditor();
}

}  // namespace startup
