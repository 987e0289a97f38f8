// The controls of frmMain, in the order in which the Tab key walks them. A label stands directly in front of what it
// names, where screen readers look for it.
#pragma once

#include <cstddef>
#include <span>

namespace shell {

// Elements of control arrays carry their index.
enum class Control {
    tb,
    ListView1_0,
    ListView1_1,
    ListView2,
    lvStartUp,
    lvService,
    lvProcess,
    lvRestore,
    Label1_0,
    txtComment,
    Label1_2,
    Label1_1,
    Label1_3,
    Label1_6,
    Label1_11,
    cmdMenu_0,
    cmdMenu_1,
    lblReport,
    txtSys,
    lineMemory,
    lblMemory,
    lblMemCaption_0,
    lblMem_0,
    lblMemCaption_1,
    lblMem_1,
    lblMemCaption_2,
    lblMem_2,
    lblMemCaption_3,
    lblMem_3,
    lblMemCaption_4,
    lblMem_4,
    lineRelease,
    lblRelease,
    txtMemPath,
    cmdSys_1,
    cmdSys_0,
    lineRegistry,
    Label1_50,
    cb,
    st,
    Count
};

inline constexpr std::size_t kControlCount = static_cast<std::size_t>(Control::Count);
inline constexpr std::size_t IndexOf(Control control) { return static_cast<std::size_t>(control); }

// The control `index` places behind `first` of an array whose elements stand at even distances.
inline constexpr Control Element(Control first, int index, int distance = 1) {
    return static_cast<Control>(static_cast<int>(first) + index * distance);
}

// The id of a control in WM_COMMAND and WM_NOTIFY.
inline constexpr int kFirstControlId = 100;
inline constexpr int IdOf(Control control) { return kFirstControlId + static_cast<int>(control); }

// What the detail area shows on the tabs of programs and updates, and before any tab is clicked.
inline constexpr const wchar_t* kProgramCaptions[] = {L"サポート：", L"URL：", L"HelpTel："};
inline constexpr wchar_t kUninstallTip[] = L"プログラムのアンインストールを実施します";
inline constexpr wchar_t kForcedUninstallTip[] = L"プログラムの強制アンインストールを実施します";

// What a control is, for the option that names a font: it leaves tab strip, combo box and lines alone.
enum class ControlKind { TabStrip, ListView, Label, Link, TextBox, CommandButton, ComboBox, Line, StatusBar };

// The area that a control belongs to.
enum class Area { Window, List, Detail, Information };

// The frame comes first, because its heights say where the rest belongs. Controls that the first view does not need are
// made after it is painted.
enum class CreationPhase { Frame, FirstView, Later };

struct ControlRow {
    Control control;
    ControlKind kind;
    Area area;
    unsigned long style;  // added to what the kind has anyway
    const wchar_t* text;  // what it shows, or the name that a screen reader reads
    const wchar_t* tip;
};

// In the order of Control.
std::span<const ControlRow> AllControls();
inline const ControlRow& RowOf(Control control) { return AllControls()[IndexOf(control)]; }

CreationPhase PhaseOf(const ControlRow& row);

// Whether the option "Font" reaches the control.
bool TakesConfiguredFont(ControlKind kind);

}  // namespace shell
