// Stands in for pdh.dll: one counter whose readings follow a script, on a system whose counter names are Japanese.
// What is opened and closed is noted in C:\pdh.txt, one line of ANSI text each time.
#include <windows.h>

#include <pdh.h>
#include <pdhmsg.h>

#include <cwchar>
#include <iterator>
#include <string>

namespace {

const PDH_HQUERY kQuery = reinterpret_cast<PDH_HQUERY>(0x1234);
const PDH_HCOUNTER kCounter = reinterpret_cast<PDH_HCOUNTER>(0x5678);

struct Reading {
    PDH_STATUS result;
    DWORD status;
    LONG value;
};
constexpr LONG kFailure = static_cast<LONG>(PDH_INVALID_DATA);
constexpr Reading kReadings[] = {
    {ERROR_SUCCESS, PDH_CSTATUS_VALID_DATA, 99},  // of one reading only, so that nobody may show it
    {ERROR_SUCCESS, PDH_CSTATUS_VALID_DATA, 37}, {kFailure, PDH_CSTATUS_VALID_DATA, 11},
    {ERROR_SUCCESS, PDH_CSTATUS_NEW_DATA, 250},  {ERROR_SUCCESS, static_cast<DWORD>(PDH_CSTATUS_INVALID_DATA), 12},
    {ERROR_SUCCESS, PDH_CSTATUS_NEW_DATA, 0},    {kFailure, PDH_CSTATUS_VALID_DATA, 11},
    {ERROR_SUCCESS, PDH_CSTATUS_VALID_DATA, 99},  // of the time without readings
    {ERROR_SUCCESS, PDH_CSTATUS_VALID_DATA, 45},
};
std::size_t readings = 0;

void Note(const std::wstring& line) {
    char text[512] = {};
    const int length = WideCharToMultiByte(CP_ACP, 0, line.c_str(), -1, text, sizeof text - 1, nullptr, nullptr);
    const HANDLE file =
        CreateFileW(L"C:\\pdh.txt", FILE_APPEND_DATA, FILE_SHARE_READ, nullptr, OPEN_ALWAYS, 0, nullptr);
    text[length - 1] = '\n';
    DWORD written = 0;
    WriteFile(file, text, static_cast<DWORD>(length), &written, nullptr);
    CloseHandle(file);
}

}  // namespace

#define EXPORTED extern "C" __declspec(dllexport)

EXPORTED PDH_STATUS WINAPI PdhOpenQueryW(LPCWSTR, DWORD_PTR, PDH_HQUERY* query) {
    Note(L"open");
    *query = kQuery;
    return ERROR_SUCCESS;
}

EXPORTED PDH_STATUS WINAPI PdhLookupPerfNameByIndexW(LPCWSTR, DWORD index, LPWSTR name, LPDWORD length) {
    const wchar_t* const text = index == 238 ? L"プロセッサ" : index == 6 ? L"% 処理時間" : L"?";
    if (*length <= std::wcslen(text)) return kFailure;
    std::wcscpy(name, text);
    return ERROR_SUCCESS;
}

EXPORTED PDH_STATUS WINAPI PdhAddCounterW(PDH_HQUERY query, LPCWSTR path, DWORD_PTR, PDH_HCOUNTER* counter) {
    Note(query == kQuery ? path : L"no query");
    *counter = kCounter;
    return ERROR_SUCCESS;
}

EXPORTED PDH_STATUS WINAPI PdhCollectQueryData(PDH_HQUERY query) {
    ++readings;
    return query == kQuery ? ERROR_SUCCESS : kFailure;
}

EXPORTED PDH_STATUS WINAPI PdhGetFormattedCounterValue(PDH_HCOUNTER counter, DWORD format, LPDWORD,
                                                       PPDH_FMT_COUNTERVALUE value) {
    if (counter != kCounter || format != PDH_FMT_LONG || readings > std::size(kReadings)) return kFailure;
    const Reading& reading = kReadings[readings - 1];
    value->CStatus = reading.status;
    value->longValue = reading.value;
    return reading.result;
}

EXPORTED PDH_STATUS WINAPI PdhCloseQuery(PDH_HQUERY query) {
    Note(query == kQuery ? L"close" : L"close of no query");
    return ERROR_SUCCESS;
}
