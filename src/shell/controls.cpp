#include "shell/controls.h"

#include "tools/memory_monitor.h"
#include "win/platform.h"

namespace shell {
namespace {

constexpr DWORD kReadOnlyText = ES_MULTILINE | ES_READONLY | WS_VSCROLL | ES_AUTOVSCROLL;

constexpr ControlRow kControls[] = {
    {Control::tb, Kind::TabStrip, Area::Window, 0, L"表示の切り替え", nullptr},
    {Control::ListView1_0, Kind::ListView, Area::List, 0, L"プログラムの一覧", nullptr},
    {Control::ListView1_1, Kind::ListView, Area::List, 0, L"更新プログラムの一覧", nullptr},
    {Control::ListView2, Kind::ListView, Area::List, 0, L"コントロールパネルの一覧", nullptr},
    {Control::lvStartUp, Kind::ListView, Area::List, 0, L"スタートアップの一覧", nullptr},
    {Control::lvService, Kind::ListView, Area::List, 0, L"サービスの一覧", nullptr},
    {Control::lvProcess, Kind::ListView, Area::List, 0, L"プロセスの一覧", nullptr},
    {Control::lvRestore, Kind::ListView, Area::List, 0, L"復元ポイントの一覧", nullptr},
    {Control::Label1_0, Kind::Label, Area::Detail, 0, kProgramCaptions[0], nullptr},
    {Control::txtComment, Kind::TextBox, Area::Detail, kReadOnlyText, L"", nullptr},
    {Control::Label1_2, Kind::Link, Area::Detail, 0, L"", nullptr},
    {Control::Label1_1, Kind::Label, Area::Detail, 0, kProgramCaptions[1], nullptr},
    {Control::Label1_3, Kind::Link, Area::Detail, 0, L"", nullptr},
    {Control::Label1_6, Kind::Label, Area::Detail, 0, kProgramCaptions[2], nullptr},
    {Control::Label1_11, Kind::Link, Area::Detail, 0, L"", nullptr},
    {Control::cmdMenu_0, Kind::CommandButton, Area::Detail, 0, L"削除(&D)", kUninstallTip},
    {Control::cmdMenu_1, Kind::CommandButton, Area::Detail, 0, L"強制削除(&F)", kForcedUninstallTip},
    {Control::lblReport, Kind::Label, Area::Information, 0, L"システム情報", nullptr},
    {Control::txtSys, Kind::TextBox, Area::Information, kReadOnlyText, L"", nullptr},
    {Control::lineMemory, Kind::Line, Area::Information, 0, L"", nullptr},
    {Control::lblMemory, Kind::Label, Area::Information, 0, L"メモリとCPU", nullptr},
    {Control::lblMemCaption_0, Kind::Label, Area::Information, 0, L"使用率", nullptr},
    {Control::lblMem_0, Kind::Label, Area::Information, SS_RIGHT, tools::kNoPercent, nullptr},
    {Control::lblMemCaption_1, Kind::Label, Area::Information, 0, L"物理メモリ", nullptr},
    {Control::lblMem_1, Kind::Label, Area::Information, SS_RIGHT, tools::kNoMegabytes, nullptr},
    {Control::lblMemCaption_2, Kind::Label, Area::Information, 0, L"仮想メモリ", nullptr},
    {Control::lblMem_2, Kind::Label, Area::Information, SS_RIGHT, tools::kNoMegabytes, nullptr},
    {Control::lblMemCaption_3, Kind::Label, Area::Information, 0, L"ページメモリ", nullptr},
    {Control::lblMem_3, Kind::Label, Area::Information, SS_RIGHT, tools::kNoMegabytes, nullptr},
    {Control::lblMemCaption_4, Kind::Label, Area::Information, 0, L"CPU使用率", nullptr},
    {Control::lblMem_4, Kind::Label, Area::Information, SS_RIGHT, tools::kNoPercent, nullptr},
    {Control::lineRelease, Kind::Line, Area::Information, 0, L"", nullptr},
    {Control::lblRelease, Kind::Label, Area::Information, 0, L"メモリ開放プログラム", nullptr},
    {Control::txtMemPath, Kind::TextBox, Area::Information, ES_AUTOHSCROLL, L"",
     L"メモリ開放プログラムのパスを入力してください"},
    {Control::cmdSys_1, Kind::CommandButton, Area::Information, 0, L"...", L"メモリ開放プログラムの選択"},
    {Control::cmdSys_0, Kind::CommandButton, Area::Information, 0, L"開放",
     L"指定したメモリ開放プログラムを実行します"},
    {Control::lineRegistry, Kind::Line, Area::Information, 0, L"", nullptr},
    {Control::Label1_50, Kind::Label, Area::Information, SS_NOTIFY, L"レジストリエディタを指定パスで起動", nullptr},
    {Control::cb, Kind::ComboBox, Area::Information, 0, L"", L"レジストリのパスを入力し、Enterキーを押してください"},
    {Control::st, Kind::StatusBar, Area::Window, 0, L"", nullptr},
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

Moment MomentOf(const ControlRow& row) {
    if (row.area == Area::Window) return Moment::Frame;
    if (row.area == Area::Information || row.control == Control::txtComment) return Moment::Later;
    const bool scanned = row.control == Control::ListView1_0 || row.control == Control::ListView1_1;
    return row.area == Area::List && !scanned ? Moment::Later : Moment::AtOnce;
}

bool TakesConfiguredFont(Kind kind) {
    switch (kind) {
        case Kind::CommandButton:
        case Kind::Label:
        case Kind::Link:
        case Kind::ListView:
        case Kind::TextBox:
        case Kind::StatusBar:
            return true;
        default:
            return false;
    }
}

}  // namespace shell
