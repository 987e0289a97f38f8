// The lists of programs and updates: the scan of the Uninstall key, on lists that are not painted and on a painted one.
#include "bare_programs.h"
#include "results.h"

#include "../tests/support/test_host.h"
#include "../tests/support/test_list.h"
#include "programs/program_actions.h"
#include "win/file_icon.h"

namespace {

// Lists with what fills them.
class Lists {
public:
    void fill() { programs::ScanUninstallKeys({programs_.list, updates_.list, icons_.get()}, {}, L"", host_); }
    void bare() {
        bench::ScanBare(&programs_.list, &updates_.list);
        expect_rows();
    }
    void expect_rows() const {
        bench::Expect(programs_.list.count() + updates_.list.count() == rows, "the rows of the programs");
    }
    void show() { ShowWindow(GetParent(programs_.list.window()), SW_SHOWNOACTIVATE); }
    void paint() { UpdateWindow(programs_.list.window()); }

    int rows = 0;

private:
    TestList programs_{programs::kProgramColumns};
    TestList updates_{programs::kProgramColumns};
    win::ImageList icons_ = win::CreateSmallIconList();
    TestHost host_;
};

void Measure(int count) {
    const bench::UninstallEntries entries(count);
    const RootOverride machine(HKEY_LOCAL_MACHINE, entries.root());
    Lists lists;
    lists.rows = count;
    const int rounds = count < 1000 ? 31 : count < 10000 ? 11 : 3;
    bench::Compare("programs and updates", count, rounds,
                   {[&] { lists.fill(); }, [&] { lists.bare(); }, [] { bench::ScanBare(nullptr, nullptr); }},
                   bench::FillGoal(count));
    lists.fill();
    lists.expect_rows();
    lists.show();
    const auto painted = [&](void (Lists::*way)()) {
        (lists.*way)();
        lists.paint();
    };
    bench::Compare("refresh of the painted programs", count, rounds,
                   {[&] { painted(&Lists::fill); }, [&] { painted(&Lists::bare); }}, bench::FillGoal(count));
}

// An entry forced out of the list, with a copy kept of it and without.
void MeasureForcedUninstall() {
    const bench::UninstallEntries entries(1);
    const RootOverride machine(HKEY_LOCAL_MACHINE, entries.root());
    programs::ProgramRow row;
    row.key_name = L"forced";
    int rounds = 0;
    const std::wstring key = bench::kUninstall + row.key_name;
    const std::wstring text = L"C:\\Program Files\\Program";
    const win::BackupFolder backup(L"C:");
    TestHost host;
    const auto force = [&](const win::BackupFolder& kept) { programs::ForcedUninstall(row, {}, kept, host); };
    const auto make_entry = [&] {
        row.name = L"日本語のプログラム " + win::ToText(++rounds);
        for (const wchar_t* name : {L"DisplayName", L"Publisher", L"UninstallString", L"InstallDate", L"DisplayIcon"}) {
            SHSetValueW(HKEY_LOCAL_MACHINE, key.c_str(), name, REG_SZ, text.c_str(),
                        static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t)));
        }
    };
    bench::Compare("forced uninstall, with a copy", 1, 101,
                   {[&] { force(backup); }, [&] { force({}); }, {}, make_entry}, 0, "more");
    bench::Expect(host.statuses.empty(), "a copy of each entry");
    bench::Expect(!KeyExists(HKEY_LOCAL_MACHINE, key), "the end of each entry");
}

}  // namespace

int wmain(int count, wchar_t** arguments) {
    bench::Begin(count, arguments);
    for (const int size : bench::Sizes())
        Measure(size);
    MeasureForcedUninstall();
    return bench::End();
}
