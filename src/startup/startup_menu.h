// mnuStart, the pop-up menu of the startup list.
#pragma once

#include "startup/startup_actions.h"
#include "ui/menu.h"

#include <optional>

namespace startup {

struct StartItem {
    enum Index : int { Copy = 1, Delete = 3, Open = 5, Properties = 10, Refresh = 99 };
};

// clang-format off
inline constexpr ui::MenuItem kStartMenu[] = {
    {StartItem::Copy, L"項目コピー(&C)"},
    {2, ui::kSeparator},
    {StartItem::Delete, L"削除(&D)..."},
    {StartItem::Open, L"開く(&O)"},
    {StartItem::Properties, L"プロパティ(&P)..."},
    {98, ui::kSeparator},
    {StartItem::Refresh, L"情報の更新(&U)"},
};
// clang-format on

// What the menu's items look like. It lives as long as the menu: each step below changes only its own part, so that
// an item disabled at one opening can still be disabled at the next.
class StartMenuState {
public:
    // A mouse button pressed on the list, over a row or over none.
    void press(bool over_row);

    // The context-menu key.
    void key(bool row_selected);

    // The menu is about to open. Asks the file system about the selected row.
    void open(const std::optional<StartupEntry>& selected);

    bool is_enabled(int index) const;
    const wchar_t* open_caption() const { return open_caption_; }

private:
    bool copy_ = true;
    bool delete_ = true;
    bool open_ = true;
    bool properties_ = true;
    const wchar_t* open_caption_ = L"開く(&O)";
};

}  // namespace startup
