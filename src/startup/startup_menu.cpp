#include "startup/startup_menu.h"

#include "win/folders.h"

namespace startup {
namespace {

constexpr wchar_t kOpenFolder[] = L"スタートアップフォルダを開く(&O)";
constexpr wchar_t kOpenRegistryPath[] = L"レジストリパスを開く(&O)";

}  // namespace

void StartMenuState::press(bool over_row) { copy_ = delete_ = open_ = over_row; }

void StartMenuState::key(bool row_selected) { press(row_selected); }

void StartMenuState::open(const std::optional<StartupEntry>& selected) {
    if (!selected || selected->location.empty()) {
        open_ = false;
    } else {
        open_caption_ = PathIsDirectoryW(selected->location.c_str()) ? kOpenFolder : kOpenRegistryPath;
    }
    properties_ = selected && !IsRegistryEntry(selected->location) && win::IsFile(EntryFile(*selected));
}

bool StartMenuState::is_enabled(int index) const {
    switch (index) {
        case StartItem::Copy:
            return copy_;
        case StartItem::Delete:
            return delete_;
        case StartItem::Open:
            return open_;
        case StartItem::Properties:
            return properties_;
        default:
            return true;
    }
}

}  // namespace startup
