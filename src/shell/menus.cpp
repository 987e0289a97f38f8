#include "shell/menus.h"

#include "programs/program_menu.h"
#include "services/service_control.h"
#include "startup/startup_menu.h"

#include <string_view>

namespace shell {
namespace {

using ui::MenuItem;

constexpr MenuItem Separator(int index) { return {index, ui::kSeparator}; }

constexpr MenuItem kFile[] = {
    {3, L"リストをファイルに保存(&S)", L"表示中の一覧をCSVファイルに保存します"},
    Separator(4),
    {5, L"情報の更新(&U)", L"表示中の情報を最新の状態に更新します"},
    Separator(98),
    {99, L"終了(&X)", L"Qorvenixを終了します"},
};

constexpr MenuItem kView[] = {
    {1, L"アイコンの表示(&I)", L"プログラムの一覧にアイコンを表示します"},
    {2, L"リストのストライプ表示(&S)", L"一覧の行を1行おきに色分けします"},
    Separator(3),
    {6, L"システムコンポーネントを表示(&C)", L"通常は隠されているシステムコンポーネントも一覧に表示します"},
};

constexpr MenuItem kDelete[] = {
    {0, L"ごみ箱を空にする(&E)", L"すべてのドライブのごみ箱を空にします"},
    {1, L"一時ファイルの削除(&T)", L"一時フォルダの中のファイルを削除します"},
    {2, L"最近使ったファイル一覧のクリア(&R)", L"最近使ったファイルの一覧を消去します"},
    {3, L"IEキャッシュファイルの削除(&I)", L"Internet Explorerのキャッシュファイルを削除します"},
    {4, L"Cookieの削除(&C)", L"Internet ExplorerのCookieを削除します"},
    {5, L"IEのURL履歴を削除(&U)", L"Internet ExplorerのURL履歴を削除します"},
};

constexpr MenuItem kSet[] = {
    {5, L"コンテキストメニューの「送る」を削除 (XP/Vista)",
     L"ファイルの右クリックメニューの「送る」を削除または復元します"},
    Separator(6),
    {9, L"ダウンロードの保存先が指定できなくなった際の対処 (Vista)",
     L"ダウンロードの保存先を選べなくなった設定を元に戻します"},
};

constexpr MenuItem kHelp[] = {
    {0, L"ReadMeを開く(&R)...", L"説明書を開きます"},
    {1, L"作者のHPへ(&H)", L"作者のホームページをブラウザで開きます"},
    {2, L"バージョン情報(&V)...", L"Qorvenixのバージョンを表示します"},
    Separator(3),
    {99, L"自動更新(&U)...", L"更新プログラムを起動します"},
};

constexpr MenuRow kMenus[] = {
    {MenuArray::mnuFileItem, L"ファイル(&F)", true, kFile},
    {MenuArray::mnuViewItem, L"表示(&V)", true, kView},
    {MenuArray::mnuDeleteItem, L"ファイル削除(&D)", true, kDelete},
    {MenuArray::mnuSetItem, L"レジストリ操作(&R)", true, kSet},
    {MenuArray::mnuHelpItem, L"ヘルプ(&H)", true, kHelp},
    {MenuArray::mnuPopItem, L"ポップアップ", false, programs::kProgramMenu},
    {MenuArray::mnuStartItem, L"スタートアップ", false, startup::kStartMenu},
    {MenuArray::mnuServiceItem, L"サービス", false, services::kServiceMenu},
};

UINT Id(MenuArray array, int index) { return static_cast<UINT>(CommandId(array, index)); }

}  // namespace

std::span<const MenuRow> AllMenus() { return kMenus; }

const MenuRow& RowOf(MenuArray array) {
    const int place = (static_cast<int>(array) - static_cast<int>(MenuArray::mnuFileItem)) / kMenuArraySize;
    return kMenus[place];
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

void EnableItem(HMENU menu, MenuArray array, int index, bool enabled) {
    EnableMenuItem(menu, Id(array, index), MF_BYCOMMAND | static_cast<UINT>(enabled ? MF_ENABLED : MF_GRAYED));
}

bool IsItemEnabled(HMENU menu, MenuArray array, int index) {
    const UINT state = GetMenuState(menu, Id(array, index), MF_BYCOMMAND);
    return (state & (MF_GRAYED | MF_DISABLED)) == 0;
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
