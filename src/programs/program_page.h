// The pages of installed programs and of updates: one scan, two lists.
#pragma once

#include "programs/program_actions.h"
#include "programs/uninstall_scan.h"
#include "ui/page.h"
#include "win/com_ptr.h"
#include "win/handle.h"

#include <array>
#include <optional>

namespace programs {

class ProgramPage;

// What the two pages share. Options, security identifier and backup folder are the window's.
struct ProgramScan {
    const ScanOptions& options;
    const std::wstring& user_sid;  // strSID
    const win::BackupFolder& backup;
    win::ImageList icons;                        // ImageList1(0)
    std::optional<win::ComApartment> apartment;  // the shell's icons need it; the list without icons does not
    std::array<ProgramPage*, 2> pages = {};      // programs, updates
};

class ProgramPage final : public ui::Page {
public:
    // `updates`: the list of updates, the second of the two.
    ProgramPage(ProgramScan& scan, bool updates);

    void fill() override;
    Page* filled_with() override { return scan_.pages[updates_ ? 0 : 1]; }

    std::span<const ui::MenuItem> menu() const override;
    bool enabled(int item) const override;
    ui::Guard guard(int item) const override;
    int item_of_button(int button) const override;
    int item_of_key(WORD key, bool control, bool shift) const override;

protected:
    void show(int row) override;
    int sort_column(int column) const override;
    int closed_column() const override { return ProgramColumn::SizeKey; }
    ui::Then command(int item) override { return mnuPopItem_Click(item); }

private:
    ui::Then mnuPopItem_Click(int item);

    ProgramScan& scan_;
    bool updates_;
};

}  // namespace programs
