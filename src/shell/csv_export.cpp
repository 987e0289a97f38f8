#include "shell/csv_export.h"

#include "win/handle.h"
#include "win/text.h"

namespace shell {
namespace {

constexpr wchar_t kUnfinished[] = L".unfinished";

bool Write(const std::wstring& path, std::string_view bytes) {
    const win::File file(
        CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
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

std::string CsvOf(const ui::ListView& list) {
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
    }
    return win::ToAnsi(text);
}

bool WriteWholeFile(const std::wstring& path, std::string_view bytes) {
    const std::wstring unfinished = path + kUnfinished;
    if (Write(unfinished, bytes) && MoveFileExW(unfinished.c_str(), path.c_str(), MOVEFILE_REPLACE_EXISTING)) {
        return true;
    }
    DeleteFileW(unfinished.c_str());
    return false;
}

}  // namespace shell
