// The lists of installed programs and updates, filled from the Uninstall registry keys.
#pragma once

#include "programs/uninstall_entry.h"
#include "programs/uninstall_key.h"
#include "ui/host.h"
#include "ui/list_view.h"

#include <string_view>

namespace programs {

struct ProgramColumn {
    enum Index : int {
        Name,
        Publisher,
        Size,  // "12.35MB"
        InstallDate,
        InstallFolder,
        UninstallCommand,
        RegistryKey,  // the subkey's name, not its path
        SizeKey,      // sorts the sizes as numbers
    };
};

// Of both lists, in the order of ProgramColumn.
inline constexpr ui::Column kProgramColumns[] = {
    {L"プログラム名", 260},         {L"発行元", 150},
    {L"サイズ", 84, LVCFMT_RIGHT},  {L"導入日", 84},
    {L"インストールフォルダ", 200}, {L"アンインストール コマンド", 240},
    {L"レジストリキー", 180},       {L"計算用", 0},
};

// What a row's tag remembers: where the program is registered, and that its InstallLocation exists but is empty.
struct ProgramTag {
    UninstallPlace place = UninstallPlace::Machine;
    bool empty_install_folder = false;

    static ProgramTag of(LPARAM tag) { return {static_cast<UninstallPlace>(tag / 2), tag % 2 != 0}; }
    LPARAM number() const { return static_cast<LPARAM>(place) * 2 + (empty_install_folder ? 1 : 0); }
};

// What the scan fills. The image list is attached to both lists with the first icon of a scan.
struct ProgramLists {
    ui::ListView programs;
    ui::ListView updates;
    HIMAGELIST icons;  // win::CreateSmallIconList
};

// Empties both lists and the image list and fills them from the keys of UninstallPlaces(): those of the whole machine,
// then those of the user whose security identifier is `user_sid`. Messages are processed after each enumeration of the
// subkeys. `options` may change meanwhile.
void ScanUninstallKeys(const ProgramLists& lists, const ScanOptions& options, std::wstring_view user_sid,
                       ui::Host& host);

}  // namespace programs
