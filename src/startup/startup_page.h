// The page of startup items.
#pragma once

#include "startup/startup_menu.h"
#include "ui/page.h"

namespace startup {

class StartupPage final : public ui::Page {
public:
    // The folder for what is deleted is the window's.
    explicit StartupPage(const win::BackupFolder& backup);

    void attach(HWND list, ui::PageHost& host, int scale) override;
    void fill() override;

    std::span<const ui::MenuItem> menu() const override { return kStartMenu; }
    void menu_opens() override { mnuStart_Click(); }
    bool enabled(int item) const override { return menu_state_.is_enabled(item); }
    const wchar_t* caption(int item) const override;
    ui::Guard guard(int item) const override { return {.alone = item == StartItem::Delete}; }
    int item_of_button(int button) const override {
        return button == 0 ? static_cast<int>(StartItem::Delete) : kNoItem;
    }
    int item_of_key(WORD key, bool control, bool shift) const override;
    ui::Then drop(const std::wstring& path) override { return lvStartUp_OLEDragDrop(path); }

protected:
    void show(int row) override { lvStartUp_ItemClick(row); }
    void mouse_down(int row) override { lvStartUp_MouseDown(row); }
    void menu_key() override { menu_state_.key(list().selected() >= 0); }
    ui::Then command(int item) override { return mnuStartItem_Click(item); }
    const std::wstring& cell_to_copy() const override { return pointed_cell(); }
    bool every_cell_has_a_tip() const override { return true; }

private:
    void lvStartUp_MouseDown(int row);
    void lvStartUp_ItemClick(int row);
    ui::Then lvStartUp_OLEDragDrop(const std::wstring& path);
    void mnuStart_Click();
    ui::Then mnuStartItem_Click(int item);

    const win::BackupFolder& backup_;
    StartMenuState menu_state_;
};

}  // namespace startup
