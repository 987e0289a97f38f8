// The lists of programs and updates: the scan of the Uninstall key, on lists that are not painted and on a painted one.
#include "bare_programs.h"
#include "results.h"

#include "../tests/support/test_host.h"
#include "../tests/support/test_list.h"
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
    void show() { ShowWindow(programs_.frame(), SW_SHOWNOACTIVATE); }
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

}  // namespace

int wmain(int count, wchar_t** arguments) {
    bench::Begin(count, arguments);
    for (const int size : bench::Sizes())
        Measure(size);
    return bench::End();
}
