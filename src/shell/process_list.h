// The list of running processes. Its tab is never on the strip, on purpose; the list is complete all the same.
#pragma once

#include "ui/host.h"
#include "ui/list_view.h"

namespace shell {

// The columns of `lvProcess`. The last three headers were made for services: the first of them shows the class of the
// process, the other two stay empty.
struct ProcessColumn {
    enum Index : int { Name, Id, UserName, Description, ExecutablePath, CreationClass };
};

inline constexpr ui::Column kProcessColumns[] = {
    {L"名前", 160}, {L"PID", 60},         {L"ユーザー名", 110}, {L"説明", 200},
    {L"パス", 300}, {L"一時停止可", 100}, {L"停止可", 68},      {L"サービス名", 150},
};

// Hides `lvProcess`, fills it in WMI's order and shows it again. A value that cannot be read costs its cell. A close
// that arrives meanwhile ends the fill early. The status bar keeps its text.
void FillProcessList(const ui::ListView& lvProcess, ui::Host& host);

}  // namespace shell
