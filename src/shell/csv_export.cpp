#include "shell/csv_export.h"

#include "win/handle.h"
#include "win/system_text.h"

namespace shell {
namespace {

bool Write(const wchar_t* path, std::string_view bytes) {
    const win::File file(CreateFileW(path, GENERIC_WRITE, 0, nullptr, TRUNCATE_EXISTING, 0, nullptr));
    if (!file) return false;
    DWORD written = 0;
    return WriteFile(file.get(), bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr) &&
           written == bytes.size() && FlushFileBuffers(file.get());
}

}  // namespace

bool IsNumeric(const std::wstring& text) {
    double number = 0;
    return SUCCEEDED(VarR8FromStr(const_cast<wchar_t*>(text.c_str()), LOCALE_USER_DEFAULT, 0, &number));
}

std::string CsvOf(const ui::ListView& list, ui::Host& host) {
    ui::PumpThrottle pump(host);
    const int columns = list.column_count();
    std::wstring text;
    for (int column = 0; column < columns; ++column) {
        if (column > 0) text += L',';
        text += list.header(column);
    }
    text += L"\r\n";
    for (int row = 0, rows = list.count(); row < rows; ++row) {
        for (int column = 0; column < columns; ++column) {
            const std::wstring cell = list.cell(row, column);
            if (column > 0) text += L',';
            if (column > 0 && IsNumeric(cell)) {
                text += cell;
            } else {
                text.append(L"\"").append(cell).append(L"\"");
            }
        }
        text += L"\r\n";
        pump();
    }
    return win::ToAnsi(text);
}

bool WriteWholeFile(const std::wstring& path, std::string_view bytes) {
    const std::wstring folder = path.substr(0, path.rfind(L'\\') + 1);
    wchar_t unfinished[MAX_PATH] = {};
    // Makes an empty file of a name that nobody has.
    if (!GetTempFileNameW(folder.c_str(), L"csv", 0, unfinished)) return false;
    if (Write(unfinished, bytes) && MoveFileExW(unfinished, path.c_str(), MOVEFILE_REPLACE_EXISTING)) return true;
    DeleteFileW(unfinished);
    return false;
}

}  // namespace shell
