#include "shell/tabs.h"

#include <iterator>

namespace shell {
namespace {

// Without the mnemonic that the designed caption has.
constexpr ButtonText kForced = {L"強制削除", kForcedUninstallTip};
constexpr ButtonText kCreate = {kCreateCaption, L"復元ポイントを作成します"};

constexpr TabRow kTabs[] = {
    {Tab::Programs,
     TabPresence::Always,
     L"プログラムの追加と削除",
     L"プログラムの情報を一覧表示し、アンインストール等を行います",
     Control::ListView1_0,
     true,
     RefreshKind::Fill,
     DetailKind::Values,
     {kProgramCaptions[0], kProgramCaptions[1], kProgramCaptions[2]},
     2,
     kUninstallTip,
     kForced},
    {Tab::Updates,
     TabPresence::Always,
     L"更新プログラム",
     L"更新プログラムの情報を一覧表示し、アンインストール等を行います",
     Control::ListView1_1,
     true,
     RefreshKind::Fill,
     DetailKind::Values,
     {kProgramCaptions[0], kProgramCaptions[1], kProgramCaptions[2]},
     2,
     kUninstallTip,
     kForced},
    {Tab::Startup,
     TabPresence::Always,
     L"スタートアップ",
     L"スタートアップ情報を一覧表示し、追加・削除等を行います",
     Control::lvStartUp,
     true,
     RefreshKind::Fill,
     DetailKind::Values,
     {L"名前：", L"値：", L"場所："},
     1,
     L"スタートアップを削除します",
     kForced},
    // Off the strip on purpose; its page is complete all the same.
    {Tab::Processes,
     TabPresence::Never,
     L"プロセス",
     nullptr,
     Control::lvProcess,
     false,
     RefreshKind::Nothing,
     DetailKind::Buttons,
     {L"", L"", L""},
     1,
     nullptr,
     kForced},
    {Tab::Services,
     TabPresence::Always,
     L"サービス",
     L"Windowsサービスの情報を一覧表示し、開始・停止等を行います",
     Control::lvService,
     true,
     RefreshKind::TabClick,
     DetailKind::Comment,
     {L"説明：", L"", L""},
     0,
     nullptr,
     kForced},
    {Tab::ControlPanel,
     TabPresence::Always,
     L"コントロールパネル",
     L"コントロールパネルの情報を一覧表示し、機能を開きます",
     Control::ListView2,
     true,
     RefreshKind::Nothing,
     DetailKind::None,
     {L"", L"", L""},
     0,
     nullptr,
     kForced},
    {Tab::Restore,
     TabPresence::WithSystemRestore,
     L"システムの復元",
     nullptr,
     Control::lvRestore,
     true,
     RefreshKind::TabClick,
     DetailKind::Buttons,
     {L"", L"", L""},
     2,
     L"復元ポイントを削除します",
     kCreate},
    {Tab::SystemInformation,
     TabPresence::Always,
     L"システム情報",
     L"システム情報を表示します",
     Control::txtSys,
     false,
     RefreshKind::Nothing,
     DetailKind::None,
     {L"", L"", L""},
     0,
     nullptr,
     kForced},
};

constexpr bool InOrder() {
    for (std::size_t i = 0; i < std::size(kTabs); ++i) {
        if (static_cast<std::size_t>(kTabs[i].tab) != i) return false;
    }
    return static_cast<std::size_t>(Tab::SystemInformation) + 1 == std::size(kTabs);
}
static_assert(InOrder(), "one row for each tab, in the order of the enumeration");

}  // namespace

std::span<const TabRow> AllTabs() { return kTabs; }

const TabRow& RowOf(Tab tab) { return kTabs[static_cast<std::size_t>(tab)]; }

bool IsOnStrip(const TabRow& row, const win::OsVersion& os) {
    switch (row.presence) {
        case TabPresence::Always:
            return true;
        case TabPresence::WithSystemRestore:
            return win::HasSystemRestore(os);
        case TabPresence::Never:
            break;
    }
    return false;
}

}  // namespace shell
