// What a user does with a long list: sorting it, and writing it to a file.
#include "results.h"

#include "../tests/support/test_folder.h"
#include "../tests/support/test_host.h"
#include "../tests/support/test_list.h"
#include "programs/uninstall_scan.h"
#include "shell/csv_export.h"
#include "win/text.h"

#include <numeric>

namespace {

constexpr int kTextLength = 260;

struct Cell {
    Cell(HWND list, int row, int column) {
        LVITEMW item = {};
        item.iSubItem = column;
        item.pszText = text;
        item.cchTextMax = kTextLength;
        length = SendMessageW(list, LVM_GETITEMTEXTW, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&item));
    }
    wchar_t text[kTextLength];
    LRESULT length;
};

void FillRows(const ui::ListView& list, int count) {
    const ui::RedrawSuspender fill(list, count);
    for (int number = 0; number < count; ++number) {
        // Steps of a prime number: no two neighbours are in order.
        const std::wstring mixed = win::ToText(number * 7919 % count);
        const int row = list.add_row(L"日本語のプログラム " + mixed);
        list.set_cell(row, programs::ProgramColumn::Publisher, L"株式会社プログラム");
        list.set_cell(row, programs::ProgramColumn::Size, mixed + L".50MB");
        list.set_cell(row, programs::ProgramColumn::InstallDate, L"20100401");
        list.set_cell(row, programs::ProgramColumn::InstallFolder, L"C:\\Program Files\\Program " + mixed);
        list.set_cell(row, programs::ProgramColumn::UninstallCommand, L"MsiExec.exe /X" + mixed);
        list.set_cell(row, programs::ProgramColumn::RegistryKey, L"{8A0C6A00-0000-4000-8000-" + mixed + L"}");
        list.set_cell(row, programs::ProgramColumn::SizeKey, mixed + L".50");
    }
}

int CALLBACK CompareRanks(LPARAM left, LPARAM right, LPARAM) { return left < right ? -1 : 1; }

// Reads the column, has Windows compare its texts, and lets the control order its rows by their ranks.
void BareSort(const ui::ListView& list, bool ascending) {
    const HWND window = list.window();
    const int count = list.count();
    std::vector<Cell> cells;
    cells.reserve(static_cast<std::size_t>(count));
    for (int row = 0; row < count; ++row)
        cells.emplace_back(window, row, 0);
    std::vector<int> order(cells.size());
    std::iota(order.begin(), order.end(), 0);
    const int before = ascending ? CSTR_LESS_THAN : CSTR_GREATER_THAN;
    std::stable_sort(order.begin(), order.end(), [&](int left, int right) {
        return CompareStringW(LOCALE_USER_DEFAULT, NORM_IGNORECASE, cells[static_cast<std::size_t>(left)].text, -1,
                              cells[static_cast<std::size_t>(right)].text, -1) == before;
    });
    LVITEMW item = {};
    item.mask = LVIF_PARAM;
    for (int rank = 0; rank < count; ++rank) {
        item.iItem = order[static_cast<std::size_t>(rank)];
        item.lParam = rank;
        SendMessageW(window, LVM_SETITEMW, 0, reinterpret_cast<LPARAM>(&item));
    }
    SendMessageW(window, LVM_SORTITEMS, 0, reinterpret_cast<LPARAM>(&CompareRanks));
}

// Reads every cell, asks whether it is a number, converts and writes all of it.
void BareCsv(const ui::ListView& list, const std::wstring& path) {
    const HWND window = list.window();
    std::wstring text;
    for (int row = 0, rows = list.count(); row < rows; ++row) {
        for (int column = 0; column <= programs::ProgramColumn::SizeKey; ++column) {
            const Cell cell(window, row, column);
            double number = 0;
            if (column > 0) VarR8FromStr(const_cast<wchar_t*>(cell.text), LOCALE_USER_DEFAULT, 0, &number);
            text.append(cell.text, static_cast<std::size_t>(cell.length)).append(L"\",\"");
        }
    }
    std::string bytes(text.size() * 2, '\0');
    const int size = WideCharToMultiByte(CP_ACP, 0, text.data(), static_cast<int>(text.size()), bytes.data(),
                                         static_cast<int>(bytes.size()), nullptr, nullptr);
    const win::File file(CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr));
    DWORD written = 0;
    WriteFile(file.get(), bytes.data(), static_cast<DWORD>(size), &written, nullptr);
    FlushFileBuffers(file.get());
}

bool IsSorted(const ui::ListView& list) {
    const Cell first(list.window(), 0, 0);
    const Cell last(list.window(), list.count() - 1, 0);
    return CompareStringW(LOCALE_USER_DEFAULT, NORM_IGNORECASE, first.text, -1, last.text, -1) == CSTR_LESS_THAN;
}

void Measure(int count) {
    const TestList shown(programs::kProgramColumns);
    const ui::ListView& list = shown.list;
    FillRows(list, count);
    TestHost host;
    TestFolder folder(L"QorvenixBench");
    const std::wstring file = folder.own(L"list.csv");
    bench::Compare("CSV file", count, 7,
                   {[&] { bench::Expect(shell::WriteWholeFile(file, shell::CsvOf(list, host)), "the CSV file"); },
                    [&] { BareCsv(list, file); }});
    // Each turns the order that it finds round.
    bench::Compare("sort", count, 7, {[&] { list.sort(0, ui::SortOrder::Descending); }, [&] { BareSort(list, true); }});
    list.sort(0, ui::SortOrder::Ascending);
    bench::Expect(IsSorted(list), "the order of the rows");
}

}  // namespace

int wmain(int count, wchar_t** arguments) {
    bench::Begin(count, arguments);
    Measure(bench::small ? 30 : 10000);
    return bench::End();
}
