// The lists of programs and updates: the scan of the Uninstall key, on lists that are not painted and on a painted one.
#include "bare_list.h"
#include "results.h"
#include "uninstall_entries.h"

#include "../tests/support/test_host.h"
#include "../tests/support/test_list.h"
#include "programs/file_icon.h"

namespace {

using programs::ProgramColumn;

constexpr DWORD kBytes = 512;

struct Text {
    Text(HKEY key, const wchar_t* name) {
        DWORD bytes = kBytes;
        DWORD type = 0;
        RegQueryValueExW(key, name, nullptr, &type, reinterpret_cast<BYTE*>(text), &bytes);
    }
    wchar_t text[kBytes / sizeof(wchar_t)];
};

std::vector<std::wstring> SubkeyNames() {
    win::RegKey key;
    RegOpenKeyExW(HKEY_LOCAL_MACHINE, bench::kUninstall, 0, KEY_ENUMERATE_SUB_KEYS, key.put());
    std::vector<std::wstring> names;
    for (DWORD index = 0;; ++index) {
        wchar_t name[kBytes];
        DWORD length = kBytes;
        FILETIME written = {};
        if (RegEnumKeyExW(key.get(), index, name, &length, nullptr, nullptr, nullptr, &written) != ERROR_SUCCESS) {
            return names;
        }
        names.emplace_back(name, length);
    }
}

// What the scan asks of the registry and says to the lists. Sizes are texts of the same length.
void BareLoop(const ui::ListView* programs, const ui::ListView* updates) {
    bench::BareList bare_programs(programs);
    bench::BareList bare_updates(updates);
    for (const std::wstring& name : SubkeyNames()) {
        win::RegKey key;
        RegOpenKeyExW(HKEY_LOCAL_MACHINE, (bench::kUninstall + name).c_str(), 0, KEY_QUERY_VALUE, key.put());
        const Text component(key.get(), L"SystemComponent");
        const Text command(key.get(), L"UninstallString");
        const Text display_name(key.get(), L"DisplayName");
        const Text publisher(key.get(), L"Publisher");
        const Text size(key.get(), L"EstimatedSize");
        const Text date(key.get(), L"InstallDate");
        const Text folder(key.get(), L"InstallLocation");
        bench::BareList& list = name[0] == L'K' ? bare_updates : bare_programs;
        list.add(display_name.text);
        list.set(ProgramColumn::Publisher, publisher.text);
        list.set(ProgramColumn::Size, L"1234.56MB");
        list.set(ProgramColumn::SizeKey, L"01234.56");
        list.set(ProgramColumn::InstallDate, date.text);
        list.set(ProgramColumn::InstallFolder, folder.text);
        list.set(ProgramColumn::UninstallCommand, command.text);
        list.set(ProgramColumn::RegistryKey, name.c_str());
    }
}

// Lists with what fills them.
class Lists {
public:
    void fill() { programs::ScanUninstallKeys({programs_.list, updates_.list, icons_.get()}, {}, L"", host_); }
    void bare() {
        BareLoop(&programs_.list, &updates_.list);
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
    win::ImageList icons_ = programs::CreateSmallIconList();
    TestHost host_;
};

void Measure(int count) {
    const bench::UninstallEntries entries(count);
    const RootOverride machine(HKEY_LOCAL_MACHINE, entries.root());
    Lists lists;
    lists.rows = count;
    const int rounds = count < 1000 ? 31 : count < 10000 ? 15 : 5;
    bench::Compare("programs and updates", count, rounds,
                   {[&] { lists.fill(); }, [&] { lists.bare(); }, [] { BareLoop(nullptr, nullptr); }},
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
