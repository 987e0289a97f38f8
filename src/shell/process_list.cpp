#include "shell/process_list.h"

#include "win/automation.h"

#include <optional>
#include <string>
#include <vector>

namespace shell {
namespace {

struct Process {
    std::wstring name;
    std::wstring id;
    std::optional<std::wstring> owner;  // nothing where the object itself could not be asked
    std::wstring description;
    std::wstring path;
    std::wstring creation_class;
};

std::optional<std::wstring> OwnerOf(const win::Object& process) {
    win::Variant user(L"");
    win::Variant domain(L"");
    const win::Variant arguments[] = {win::Variant::by_reference(user), win::Variant::by_reference(domain)};
    if (FAILED(process.invoke(L"GetOwner", arguments, nullptr))) return {};
    return user.text();
}

Process Read(const win::Object& process) {
    return {process.get(L"Name").text(),
            process.get(L"ProcessID").text(),
            OwnerOf(process),
            process.get(L"Description").text(),
            process.get(L"ExecutablePath").text(),
            process.get(L"CreationClassName").text()};
}

std::vector<Process> ReadAll(ui::Host& host) {
    std::vector<Process> all;
    ui::PumpThrottle pump(host);
    win::QueryWmi(L"Select * From Win32_Process").for_each([&](const win::Object& process) {
        all.push_back(Read(process));
        return pump();
    });
    return all;
}

// Wine's provider has methods only behind ExecMethod_, which makes every other object of the class invalid: so one
// process at a time, after all of them are read.
std::wstring OwnerById(const std::wstring& id) {
    std::wstring user;
    win::QueryWmi(L"Select * From Win32_Process Where ProcessId=" + id).for_each([&](const win::Object& process) {
        user = process.get_object(L"ExecMethod_", L"GetOwner").get(L"User").text();
        return true;
    });
    return user;
}

void Add(const ui::ListView& list, const Process& process) {
    const int row = list.add_row(process.name);
    list.set_cell(row, ProcessColumn::Id, process.id);
    list.set_cell(row, ProcessColumn::UserName, process.owner.value_or(std::wstring()));
    list.set_cell(row, ProcessColumn::Description, process.description);
    list.set_cell(row, ProcessColumn::ExecutablePath, process.path);
    list.set_cell(row, ProcessColumn::CreationClass, process.creation_class);
}

}  // namespace

void FillProcessList(const ui::ListView& lvProcess, ui::Host& host) {
    lvProcess.show(false);
    lvProcess.clear();
    std::vector<Process> processes = ReadAll(host);
    for (Process& process : processes) {
        if (process.owner || process.id.empty()) continue;
        process.owner = OwnerById(process.id);
        if (!host.pump()) break;
    }
    {
        const ui::RedrawSuspender fill(lvProcess, static_cast<int>(processes.size()));
        for (const Process& process : processes)
            Add(lvProcess, process);
    }
    lvProcess.show(true);
}

}  // namespace shell
