#include "startup/startup_scan.h"

#include "programs/modReg.h"
#include "startup/command_path.h"
#include "startup/path.h"
#include "startup/shell_files.h"
#include "win/edition.h"
#include "win/folders.h"
#include "win/handle.h"
#include "win/system_text.h"
#include "win/text.h"

namespace startup {
namespace {

// A value with a longer name or more data ends the listing of its key.
constexpr DWORD kValueNameLength = 1024;
constexpr DWORD kValueBytes = 1024;

// In the order of the list, by scope.
struct RunKey {
    std::size_t hive;
    const wchar_t* path;
    bool listed = true;
};

constexpr RunKey kRunKeys[] = {
    {0, kRunKey}, {0, kRunOnceKey}, {0, kRunKey32, win::kIs64Bit}, {0, kRunOnceKey32, win::kIs64Bit},
    {1, kRunKey}, {1, kRunOnceKey},
};

constexpr DWORD kNotListed = FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_HIDDEN;

// In a row's data the blanks before a name stand from this bit on, those behind it from the next one on. Names have at
// most 255 characters.
constexpr int kBlanksBeforeBit = 8;
constexpr int kBlanksBehindBit = 16;
constexpr LPARAM kBlanksMask = 0xFF;

// The file that shows what is at `target`, for which a shortcut may stand that is no 32-bit program's: what only the
// 64-bit system folder has, 64-bit Windows shows to a 32-bit program under another name.
std::wstring WhereItIs(const std::wstring& target, FileProbe& probe) {
    const std::wstring system = win::SystemDirectory() + L"\\";
    if (probe.exists(target) || !win::LowerCase(target).starts_with(win::LowerCase(system))) return target;
    std::wstring native = win::WindowsDirectory() + L"\\Sysnative\\" + target.substr(system.size());
    return probe.exists(native) ? native : target;
}

// One fill of the list, with what is remembered for its length.
class Fill {
public:
    Fill(const ui::ListView& list, ui::Host& host) : list_(list), pump_(host) {}

    void scan_startup_folder(const std::wstring& folder);
    void scan_run_key(const programs::Hive& hive, const wchar_t* key_path);
    // A close waits: nothing more is listed.
    bool stopped() const { return stopped_; }

private:
    void add_file(const std::wstring& folder, const std::wstring& whole_name);
    void add_value(std::wstring_view whole_name, const std::wstring& command_line, const std::wstring& location);
    void add_row(const std::wstring& name, const std::wstring& value, const std::wstring& location,
                 const std::wstring& description, const std::wstring& icon_path, LPARAM data = 0);

    ui::ListView list_;
    ui::PumpThrottle pump_;  // an icon or a description can take its time
    bool stopped_ = false;
    FileProbe probe_;
    FileDescriptions descriptions_;
};

void Fill::scan_startup_folder(const std::wstring& folder) {
    if (folder.empty()) return;
    WIN32_FIND_DATAW entry = {};
    const win::FindHandle search(FindFirstFileW((folder + L"\\*").c_str(), &entry));
    if (!search) return;
    do {
        if ((entry.dwFileAttributes & kNotListed) == 0) {
            add_file(folder, entry.cFileName);
        }
    } while (!stopped_ && FindNextFileW(search.get(), &entry));
}

void Fill::add_file(const std::wstring& folder, const std::wstring& whole_name) {
    const TrimmedName trimmed = TrimmedName::of(whole_name);
    const std::wstring name(trimmed.shown);
    const std::wstring path = folder + L"\\" + whole_name;
    if (win::LowerCase(ExtensionPart(whole_name)) != L"lnk") {
        return add_row(name, folder + L"\\" + name, folder, {}, path, trimmed.item_data());
    }
    const std::wstring target = GetShortcutTarget(path, probe_);
    const std::wstring file = WhereItIs(target, probe_);
    if (probe_.exists(file))
        return add_row(name, target, folder, descriptions_.describe(file), file, trimmed.item_data());
    const std::wstring broken = target + std::wstring(kBrokenLink);
    add_row(name, broken, folder, {}, broken, trimmed.item_data());
}

void Fill::scan_run_key(const programs::Hive& hive, const wchar_t* key_path) {
    win::RegKey key;
    if (RegOpenKeyW(hive.root, key_path, key.put()) != ERROR_SUCCESS) return;
    const std::wstring location = std::wstring(hive.tag) + key_path;
    std::wstring name(kValueNameLength, L'\0');
    wchar_t data[kValueBytes / sizeof(wchar_t)] = {};
    for (DWORD index = 0; !stopped_; ++index) {
        DWORD length = kValueNameLength;
        DWORD bytes = kValueBytes;
        if (RegEnumValueW(key.get(), index, name.data(), &length, nullptr, nullptr, reinterpret_cast<BYTE*>(data),
                          &bytes) != ERROR_SUCCESS) {
            return;
        }
        add_value(std::wstring_view(name).substr(0, length), std::wstring(programs::RegistryText(data, bytes)),
                  location);
    }
}

void Fill::add_value(std::wstring_view whole_name, const std::wstring& command_line, const std::wstring& location) {
    const std::wstring path = ResolveCommandPath(command_line, probe_);
    const std::wstring description = probe_.exists(path) ? descriptions_.describe(path) : std::wstring();
    const std::wstring name(win::CutAtNul(whole_name));
    add_row(name, command_line, location, description, path, name.size() < whole_name.size() ? kEmbeddedNul : 0);
}

void Fill::add_row(const std::wstring& name, const std::wstring& value, const std::wstring& location,
                   const std::wstring& description, const std::wstring& icon_path, LPARAM data) {
    const int row = list_.add_row(name, data, probe_.reachable(icon_path) ? GetSystemIconIndex(icon_path) : 0);
    list_.set_cell(row, StartupColumn::Value, value);
    list_.set_cell(row, StartupColumn::Location, location);
    list_.set_cell(row, StartupColumn::Description, description);
    stopped_ = !pump_();
}

}  // namespace

TrimmedName TrimmedName::of(std::wstring_view name) {
    const std::wstring_view without_leading = win::TrimLeadingBlanks(name);
    const std::wstring_view shown = win::TrimBlanks(name);
    return {shown, name.size() - without_leading.size(), without_leading.size() - shown.size()};
}

TrimmedName TrimmedName::of(std::wstring_view shown, LPARAM data) {
    return {shown, static_cast<std::size_t>(data >> kBlanksBeforeBit & kBlanksMask),
            static_cast<std::size_t>(data >> kBlanksBehindBit & kBlanksMask)};
}

LPARAM TrimmedName::item_data() const {
    return static_cast<LPARAM>(blanks_before << kBlanksBeforeBit | blanks_behind << kBlanksBehindBit);
}

std::wstring TrimmedName::whole() const {
    return std::wstring(blanks_before, L' ').append(shown).append(blanks_behind, L' ');
}

void ScanStartup(const ui::ListView& list, ui::Host& host) {
    const ui::RedrawSuspender painted_once(list);
    list.clear();
    Fill fill(list, host);
    for (const int folder : {CSIDL_STARTUP, CSIDL_COMMON_STARTUP}) {
        fill.scan_startup_folder(win::GetSpecialFolderPath(folder));
        if (fill.stopped() || !host.pump()) return;
    }
    for (const RunKey& key : kRunKeys) {
        if (!key.listed) continue;
        fill.scan_run_key(programs::Hives()[key.hive], key.path);
        if (fill.stopped() || !host.pump()) return;
    }
}

}  // namespace startup
