// The page of services.
#pragma once

#include "services/service_control.h"
#include "ui/page.h"

namespace services {

class ServicePage final : public ui::Page {
public:
    ServicePage() : Page(kServiceColumns) {}

    void fill() override;
    bool appears_when_filled() const override { return true; }

    std::vector<std::wstring> comments() const override;

    std::span<const ui::MenuItem> menu() const override { return kServiceMenu; }
    bool enabled(int item) const override;
    ui::Guard guard(int item) const override;

protected:
    void show(int row) override { lvService_ItemClick(row); }
    ui::Then command(int item) override { return mnuServiceItem_Click(item); }
    const std::wstring& cell_to_copy() const override { return pointed_cell(); }
    bool every_cell_has_a_tip() const override { return true; }

private:
    void lvService_ItemClick(int row);
    ui::Then mnuServiceItem_Click(int item);
};

}  // namespace services
