// The page of processes, behind a tab that is on no strip.
#pragma once

#include "shell/process_list.h"
#include "ui/page.h"

namespace shell {

class ProcessPage final : public ui::Page {
public:
    ProcessPage() : Page(kProcessColumns) {}

    void fill() override { FillProcessList(list(), host()); }
    bool appears_when_filled() const override { return true; }
};

}  // namespace shell
