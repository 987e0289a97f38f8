// mnuPop, the pop-up menu of the lists of programs and updates.
#pragma once

#include "ui/menu.h"

namespace programs {

struct ProgramItem {
    enum Index : int { Copy = 1, Uninstall = 3, ForcedUninstall = 4, OpenFolder = 9, Refresh = 99 };
};

inline constexpr ui::MenuItem kProgramMenu[] = {
    {ProgramItem::Copy, L"項目コピー(&C)"},
    {2, ui::kSeparator},
    {ProgramItem::Uninstall, L"削除(&D)"},
    {ProgramItem::ForcedUninstall, L"強制削除(&F)..."},
    {8, ui::kSeparator},
    {ProgramItem::OpenFolder, L"インストールフォルダを開く(&O)"},
    {98, ui::kSeparator},
    {ProgramItem::Refresh, L"情報の更新(&U)"},
};

bool IsProgramItemEnabled(int index, bool row_selected);

}  // namespace programs
