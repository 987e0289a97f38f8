// The page of restore points.
#pragma once

#include "programs/restore_points.h"
#include "ui/page.h"

namespace programs {

class RestorePage final : public ui::Page {
public:
    RestorePage() : Page(kRestoreColumns) {}

    void fill() override;
    bool appears_when_filled() const override { return true; }

    ui::Guard guard(int) const override { return {.alone = true}; }
    int item_of_button(int button) const override { return button == 0 ? kDelete : kCreate; }
    int item_of_key(WORD key, bool control, bool shift) const override;

protected:
    ui::Then command(int item) override;

private:
    enum Command : int { kDelete = 3, kCreate = 4 };
};

}  // namespace programs
