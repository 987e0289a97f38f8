#include "shell/controls.h"

#include "tools/memory_monitor.h"
#include "win/platform.h"

namespace shell {
namespace {

constexpr DWORD kReadOnlyText = ES_MULTILINE | ES_READONLY | WS_VSCROLL | ES_AUTOVSCROLL;

constexpr ControlRow kControls[] = {
    {Control::tb, ControlKind::TabStrip, Area::Window, 0, L"表示の切り替え", nullptr},
    {Control::ListView1_0, ControlKind::ListView, Area::List, 0, L"プログラムの一覧", nullptr},
    {Control::ListView1_1, ControlKind::ListView, Area::List, 0, L"更新プログラムの一覧", nullptr},
    {Control::ListView2, ControlKind::ListView, Area::List, 0, L"コントロールパネルの一覧", nullptr},
    {Control::lvStartUp, ControlKind::ListView, Area::List, 0, L"スタートアップの一覧", nullptr},
    {Control::lvService, ControlKind::ListView, Area::List, 0, L"サービスの一覧", nullptr},
    {Control::lvProcess, ControlKind::ListView, Area::List, 0, L"プロセスの一覧", nullptr},
    {Control::lvRestore, ControlKind::ListView, Area::List, 0, L"復元ポイントの一覧", nullptr},
    {Control::Label1_0, ControlKind::Label, Area::Detail, 0, kProgramCaptions[0], nullptr},
    {Control::txtComment, ControlKind::TextBox, Area::Detail, kReadOnlyText, L"", nullptr},
    {Control::Label1_2, ControlKind::Link, Area::Detail, 0, L"", nullptr},
    {Control::Label1_1, ControlKind::Label, Area::Detail, 0, kProgramCaptions[1], nullptr},
    {Control::Label1_3, ControlKind::Link, Area::Detail, 0, L"", nullptr},
    {Control::Label1_6, ControlKind::Label, Area::Detail, 0, kProgramCaptions[2], nullptr},
    {Control::Label1_11, ControlKind::Link, Area::Detail, 0, L"", nullptr},
    {Control::cmdMenu_0, ControlKind::CommandButton, Area::Detail, 0, L"削除(&D)", kUninstallTip},
    {Control::cmdMenu_1, ControlKind::CommandButton, Area::Detail, 0, L"強制削除(&F)", kForcedUninstallTip},
    {Control::lblReport, ControlKind::Label, Area::Information, 0, L"システム情報", nullptr},
    {Control::txtSys, ControlKind::TextBox, Area::Information, kReadOnlyText, L"", nullptr},
    {Control::lineMemory, ControlKind::Line, Area::Information, 0, L"", nullptr},
    {Control::lblMemory, ControlKind::Label, Area::Information, 0, L"メモリとCPU", nullptr},
    {Control::lblMemCaption_0, ControlKind::Label, Area::Information, 0, L"使用率", nullptr},
    {Control::lblMem_0, ControlKind::Label, Area::Information, SS_RIGHT, tools::kNoPercent, nullptr},
    {Control::lblMemCaption_1, ControlKind::Label, Area::Information, 0, L"物理メモリ", nullptr},
    {Control::lblMem_1, ControlKind::Label, Area::Information, SS_RIGHT, tools::kNoMegabytes, nullptr},
    {Control::lblMemCaption_2, ControlKind::Label, Area::Information, 0, L"仮想メモリ", nullptr},
    {Control::lblMem_2, ControlKind::Label, Area::Information, SS_RIGHT, tools::kNoMegabytes, nullptr},
    {Control::lblMemCaption_3, ControlKind::Label, Area::Information, 0, L"ページメモリ", nullptr},
    {Control::lblMem_3, ControlKind::Label, Area::Information, SS_RIGHT, tools::kNoMegabytes, nullptr},
    {Control::lblMemCaption_4, ControlKind::Label, Area::Information, 0, L"CPU使用率", nullptr},
    {Control::lblMem_4, ControlKind::Label, Area::Information, SS_RIGHT, tools::kNoPercent, nullptr},
    {Control::lineRelease, ControlKind::Line, Area::Information, 0, L"", nullptr},
    {Control::lblRelease, ControlKind::Label, Area::Information, 0, L"メモリ開放プログラム", nullptr},
    {Control::txtMemPath, ControlKind::TextBox, Area::Information, ES_AUTOHSCROLL, L"",
     L"メモリ開放プログラムのパスを入力してください"},
    {Control::cmdSys_1, ControlKind::CommandButton, Area::Information, 0, L"...", L"メモリ開放プログラムの選択"},
    {Control::cmdSys_0, ControlKind::CommandButton, Area::Information, 0, L"開放",
     L"指定したメモリ開放プログラムを実行します"},
    {Control::lineRegistry, ControlKind::Line, Area::Information, 0, L"", nullptr},
    {Control::Label1_50, ControlKind::Label, Area::Information, 0, L"レジストリエディタを指定パスで起動", nullptr},
    {Control::cb, ControlKind::ComboBox, Area::Information, 0, L"",
     L"レジストリのパスを入力し、Enterキーを押してください"},
    {Control::st, ControlKind::StatusBar, Area::Window, 0, L"", nullptr},
};

constexpr bool InOrder() {
    for (std::size_t i = 0; i < kControlCount; ++i) {
        if (IndexOf(kControls[i].control) != i) return false;
    }
    return std::size(kControls) == kControlCount;
}
static_assert(InOrder(), "one row for each control, in the order of the enumeration");

}  // namespace

std::span<const ControlRow> AllControls() { return kControls; }

CreationPhase PhaseOf(const ControlRow& row) {
    if (row.area == Area::Window) return CreationPhase::Frame;
    if (row.area == Area::Information || row.control == Control::txtComment) return CreationPhase::Later;
    const bool scanned = row.control == Control::ListView1_0 || row.control == Control::ListView1_1;
    return row.area == Area::List && !scanned ? CreationPhase::Later : CreationPhase::FirstView;
}

bool TakesConfiguredFont(ControlKind kind) {
    switch (kind) {
        case ControlKind::CommandButton:
        case ControlKind::Label:
        case ControlKind::Link:
        case ControlKind::ListView:
        case ControlKind::TextBox:
        case ControlKind::StatusBar:
            return true;
        default:
            return false;
    }
}

}  // namespace shell
