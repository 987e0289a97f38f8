// The list of the Services tab: every Windows service as WMI tells it.
#pragma once

#include "ui/host.h"
#include "ui/list_view.h"

#include <string>
#include <string_view>

namespace services {

// The columns of `lvService`.
struct ServiceColumn {
    enum Index : int { Caption, State, StartMode, Description, Path, AcceptsPause, AcceptsStop, Name };
};

// In the order of ServiceColumn. The last three are the program's own memory of the row, whose widths are not stored.
inline constexpr ui::Column kServiceColumns[] = {
    {L"名前", 230}, {L"現在の状態", 92}, {L"ｽﾀｰﾄｱｯﾌﾟ", 84}, {L"説明", 330},
    {L"パス", 260}, {L"一時停止可", 92}, {L"停止可", 68},   {L"サービス名", 150},
};

// The words of the state and the start-mode column. The pop-up menu compares and writes them as well.
inline constexpr std::wstring_view kStarted = L"開始";
inline constexpr std::wstring_view kStopped = L"停止";
inline constexpr std::wstring_view kPaused = L"一時停止";
inline constexpr std::wstring_view kAutomatic = L"自動";
inline constexpr std::wstring_view kManual = L"手動";
inline constexpr std::wstring_view kDisabled = L"無効";

// The words for `State` and `StartMode` of WMI, compared without regard to case; empty for any other value.
std::wstring_view StateText(std::wstring_view state);
std::wstring_view StartModeText(std::wstring_view start_mode);

// Clears `lvService`, fills it in WMI's order and makes it visible. A value that cannot be read costs its cell, a
// query that fails the rows that would have followed. A close that arrives meanwhile ends the fill early.
void FillServiceList(const ui::ListView& lvService, ui::Host& host);

// What the selection of a row shows: `comment` in `txtComment`, `advice` in the status bar.
struct ServiceDetail {
    std::wstring comment;
    std::wstring advice;
};
ServiceDetail ServiceDetailOf(const ui::ListView& lvService, int row);

// A description with one sentence a line: a line break behind every "。" but the last character.
std::wstring CommentText(std::wstring_view description);

}  // namespace services
