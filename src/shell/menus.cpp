#include "shell/menus.h"

#include "programs/program_menu.h"
#include "services/service_control.h"
#include "startup/startup_menu.h"
#include "tools/cleanup.h"
#include "tools/shell_repairs.h"
#include "win/system_text.h"

#include <algorithm>
#include <iterator>
#include <string_view>

namespace shell {
namespace {

using ui::MenuItem;

constexpr MenuItem kFileMenu[] = {
    {FileItem::Save, L"リストをファイルに保存(&S)", L"表示中の一覧をCSVファイルに保存します"},
    {4, ui::kSeparator},
    {FileItem::Refresh, L"情報の更新(&U)", L"表示中の情報を最新の状態に更新します"},
    {98, ui::kSeparator},
    {FileItem::Exit, L"終了(&X)", L"Qorvenixを終了します"},
};

constexpr MenuItem kViewMenu[] = {
    {ViewItem::Icons, L"アイコンの表示(&I)", L"プログラムの一覧にアイコンを表示します"},
    {ViewItem::Stripes, L"リストのストライプ表示(&S)", L"一覧の行を1行おきに色分けします"},
    {3, ui::kSeparator},
    {ViewItem::SystemComponents, L"システムコンポーネントを表示(&C)",
     L"通常は隠されているシステムコンポーネントも一覧に表示します"},
};

constexpr MenuItem kHelpMenu[] = {
    {HelpItem::ReadMe, L"ReadMeを開く(&R)...", L"説明書を開きます"},
    {HelpItem::HomePage, L"作者のHPへ(&H)", L"作者のホームページをブラウザで開きます"},
    {HelpItem::Version, L"バージョン情報(&V)...", L"Qorvenixのバージョンを表示します"},
    {3, ui::kSeparator},
    {HelpItem::Update, L"自動更新(&U)...", L"更新プログラムを起動します"},
};

constexpr MenuRow kMenus[] = {
    {MenuArray::mnuFileItem, L"ファイル(&F)", true, kFileMenu},
    {MenuArray::mnuViewItem, L"表示(&V)", true, kViewMenu},
    {MenuArray::mnuDeleteItem, L"ファイル削除(&D)", true, tools::kCleanupMenu},
    {MenuArray::mnuSetItem, L"レジストリ操作(&R)", true, tools::kRepairMenu},
    {MenuArray::mnuHelpItem, L"ヘルプ(&H)", true, kHelpMenu},
    {MenuArray::mnuPopItem, L"ポップアップ", false, programs::kProgramMenu},
    {MenuArray::mnuStartItem, L"スタートアップ", false, startup::kStartMenu},
    {MenuArray::mnuServiceItem, L"サービス", false, services::kServiceMenu},
};

constexpr bool InOrder() {
    for (std::size_t i = 0; i < std::size(kMenus); ++i) {
        if (static_cast<int>(kMenus[i].array) !=
            CommandId(MenuArray::mnuFileItem, static_cast<int>(i) * kMenuArraySize))
            return false;
    }
    return static_cast<int>(MenuArray::mnuServiceItem) ==
           CommandId(MenuArray::mnuFileItem, (static_cast<int>(std::size(kMenus)) - 1) * kMenuArraySize);
}
static_assert(InOrder(), "one row for each array, in the order of the command ids");

UINT Id(MenuArray array, int index) { return static_cast<UINT>(CommandId(array, index)); }

}  // namespace

std::span<const MenuRow> AllMenus() { return kMenus; }

const MenuRow& RowOf(MenuArray array) {
    const int index = (static_cast<int>(array) - static_cast<int>(MenuArray::mnuFileItem)) / kMenuArraySize;
    return kMenus[index];
}

win::Menu MakePopup(MenuArray array) {
    win::Menu menu(CreatePopupMenu());
    for (const MenuItem& item : RowOf(array).items) {
        const bool is_separator = std::wstring_view(item.caption) == ui::kSeparator;
        const UINT flags = is_separator ? MF_SEPARATOR : MF_STRING;
        AppendMenuW(menu.get(), flags, Id(array, item.index), item.caption);
    }
    return menu;
}

win::Menu MakeMenuBar() {
    win::Menu bar(CreateMenu());
    for (const MenuRow& row : kMenus) {
        if (!row.on_bar) continue;
        win::Menu popup = MakePopup(row.array);
        // A menu destroys the menus it holds.
        if (AppendMenuW(bar.get(), MF_POPUP, reinterpret_cast<UINT_PTR>(popup.get()), row.caption)) {
            static_cast<void>(popup.release());
        }
    }
    return bar;
}

HMENU SubMenuOf(HMENU bar, MenuArray array) { return GetSubMenu(bar, static_cast<int>(&RowOf(array) - kMenus)); }

std::wstring_view HintOf(int command) {
    for (const MenuRow& row : kMenus) {
        for (const MenuItem& item : row.items) {
            if (item.hint && CommandId(row.array, item.index) == command) return item.hint;
        }
    }
    return {};
}

wchar_t MnemonicOf(std::wstring_view caption) {
    const std::size_t mark = caption.find(L'&');
    if (mark == caption.npos || mark + 1 == caption.size()) return L'\0';
    return win::LowerCase(caption.substr(mark + 1, 1))[0];
}

bool OpensMenu(wchar_t letter) {
    return std::any_of(std::begin(kMenus), std::end(kMenus),
                       [letter](const MenuRow& row) { return row.on_bar && MnemonicOf(row.caption) == letter; });
}

void EnableItem(HMENU menu, MenuArray array, int index, bool enabled) {
    EnableMenuItem(menu, Id(array, index), MF_BYCOMMAND | static_cast<UINT>(enabled ? MF_ENABLED : MF_GRAYED));
}

void CheckItem(HMENU menu, MenuArray array, int index, bool checked) {
    CheckMenuItem(menu, Id(array, index), MF_BYCOMMAND | static_cast<UINT>(checked ? MF_CHECKED : MF_UNCHECKED));
}

std::wstring ItemCaption(HMENU menu, MenuArray array, int index) {
    wchar_t caption[128] = {};
    GetMenuStringW(menu, Id(array, index), caption, static_cast<int>(std::size(caption)), MF_BYCOMMAND);
    return caption;
}

void SetItemCaption(HMENU menu, MenuArray array, int index, const std::wstring& caption) {
    MENUITEMINFOW info = {};
    info.cbSize = sizeof info;
    info.fMask = MIIM_STRING;
    info.dwTypeData = const_cast<wchar_t*>(caption.c_str());
    SetMenuItemInfoW(menu, Id(array, index), FALSE, &info);
}

}  // namespace shell
