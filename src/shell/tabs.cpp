#include "shell/tabs.h"

namespace shell {
namespace {

constexpr TabRow kTabs[] = {
    {Tab::Programs,
     L"プログラムの追加と削除",
     L"プログラムの情報を一覧表示し、アンインストール等を行います",
     Control::ListView1_0,
     true,
     true,
     {kProgramCaptions[0], kProgramCaptions[1], kProgramCaptions[2]},
     kUninstallTip},
    {Tab::Updates,
     L"更新プログラム",
     L"更新プログラムの情報を一覧表示し、アンインストール等を行います",
     Control::ListView1_1,
     true,
     true,
     {kProgramCaptions[0], kProgramCaptions[1], kProgramCaptions[2]},
     kUninstallTip},
    {Tab::Startup,
     L"スタートアップ",
     L"スタートアップ情報を一覧表示し、追加・削除等を行います",
     Control::lvStartUp,
     true,
     true,
     {L"名前：", L"値：", L"場所："},
     L"スタートアップを削除します"},
    // Taken off the strip at every start, on purpose; its filler is complete all the same.
    {Tab::Processes, L"プロセス", nullptr, Control::lvProcess, true, false, {L"", L"", L""}, nullptr},
    {Tab::Services,
     L"サービス",
     L"Windowsサービスの情報を一覧表示し、開始・停止等を行います",
     Control::lvService,
     true,
     true,
     {L"説明：", L"", L""},
     nullptr},
    {Tab::ControlPanel,
     L"コントロールパネル",
     L"コントロールパネルの情報を一覧表示し、機能を開きます",
     Control::ListView2,
     false,
     true,
     {L"", L"", L""},
     nullptr},
    {Tab::Restore,
     L"システムの復元",
     nullptr,
     Control::lvRestore,
     true,
     true,
     {L"", L"", L""},
     L"復元ポイントを削除します"},
    {Tab::SystemInformation,
     L"システム情報",
     L"システム情報を表示します",
     Control::txtSys,
     false,
     false,
     {L"", L"", L""},
     nullptr},
};

}  // namespace

std::span<const TabRow> AllTabs() { return kTabs; }

const TabRow& RowOf(Tab tab) { return kTabs[static_cast<std::size_t>(tab)]; }

}  // namespace shell
