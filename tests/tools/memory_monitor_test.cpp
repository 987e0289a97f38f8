#include "tools/memory_monitor.h"

#include "support/import_hook.h"
#include "support/recorder.h"
#include "support/show.h"
#include "support/test_folder.h"

#include <pdhmsg.h>

#include <tuple>

using namespace tools;

TEST_CASE("memory figures are whole megabytes, cut and never rounded, and this machine's") {
    constexpr DWORDLONG kMegabyte = 1048576;
    MEMORYSTATUSEX status = {};
    MemoryTexts texts;
    status.dwMemoryLoad = 75;
    status.ullTotalPhys = 2048 * kMegabyte - 1;
    status.ullAvailPhys = 513 * kMegabyte;
    status.ullTotalVirtual = 8192 * kMegabyte;  // more than 32 bits
    status.ullAvailVirtual = 9000 * kMegabyte;  // and more free than there is
    status.ullTotalPageFile = ~DWORDLONG{0};
    WriteMemoryTexts(status, texts);
    CHECK(texts == MemoryTexts{L"75 ％", L"1534/2047 MB", L"0/8192 MB", L"17592186044415/17592186044415 MB", {}});

    MemoryMonitor monitor;
    const MemoryTexts first = monitor.read();
    status.dwLength = sizeof status;
    REQUIRE(GlobalMemoryStatusEx(&status));
    CHECK(first[kPhysicalMemory].ends_with(L"/" + std::to_wstring(status.ullTotalPhys / kMegabyte) + L" MB"));
    CHECK(first[kProcessorLoad] == L"－ ％");
    const std::wstring load = monitor.read()[kProcessorLoad];
    CHECK(load == std::to_wstring(std::stoul(load)) + L" ％");
}

TEST_CASE("the processors' load comes from a localised counter, opened once and closed") {
    static const auto kQuery = reinterpret_cast<PDH_HQUERY>(0x1234);
    static const auto kCounter = reinterpret_cast<PDH_HCOUNTER>(0x5678);
    constexpr LONG kFailure = static_cast<LONG>(PDH_INVALID_DATA);
    constexpr auto kInvalid = static_cast<DWORD>(PDH_CSTATUS_INVALID_DATA);
    // The result of each reading, its state and its value.
    static const std::tuple<LONG, DWORD, LONG> readings[] = {
        {0, PDH_CSTATUS_VALID_DATA, 99},  // of one reading only, so that nobody may show it
        {0, PDH_CSTATUS_VALID_DATA, 37}, {kFailure, PDH_CSTATUS_VALID_DATA, 11},
        {0, PDH_CSTATUS_NEW_DATA, 250},  {0, kInvalid, 12},
        {0, PDH_CSTATUS_NEW_DATA, 0},    {kFailure, PDH_CSTATUS_VALID_DATA, 11},
        {0, PDH_CSTATUS_VALID_DATA, 99},  // of the time without readings
        {0, PDH_CSTATUS_VALID_DATA, 45}};
    static std::size_t taken = 0;
    static std::wstring calls;
    LookUpHook pdh;
    pdh.put(
        "PdhOpenQueryW", +[](LPCWSTR, DWORD_PTR, PDH_HQUERY* query) WINAPI -> LONG {
            calls += L"open ";
            *query = kQuery;
            return 0;
        });
    pdh.put(
        "PdhLookupPerfNameByIndexW", +[](LPCWSTR, DWORD index, LPWSTR name, LPDWORD length) WINAPI -> LONG {
            const std::wstring text = index == 238 ? L"プロセッサ" : index == 6 ? L"% 処理時間" : L"?";
            text.copy(name, *length);
            name[text.size()] = L'\0';
            return 0;
        });
    pdh.put(
        "PdhAddCounterW", +[](PDH_HQUERY query, LPCWSTR path, DWORD_PTR, PDH_HCOUNTER* counter) WINAPI -> LONG {
            calls += query == kQuery ? path : L"of no query";
            *counter = kCounter;
            return 0;
        });
    pdh.put(
        "PdhCollectQueryData", +[](PDH_HQUERY query) WINAPI -> LONG {
            ++taken;
            return query == kQuery ? 0 : kFailure;
        });
    pdh.put(
        "PdhGetFormattedCounterValue",
        +[](PDH_HCOUNTER counter, DWORD format, LPDWORD, PPDH_FMT_COUNTERVALUE value) WINAPI -> LONG {
            if (counter != kCounter || format != PDH_FMT_LONG || taken > std::size(readings)) return kFailure;
            LONG result = 0;
            std::tie(result, value->CStatus, value->longValue) = readings[taken - 1];
            return result;
        });
    pdh.put(
        "PdhCloseQuery", +[](PDH_HQUERY query) WINAPI -> LONG {
            calls += query == kQuery ? L" close" : L" close of no query";
            return 0;
        });
    static DWORD later = 0;
    const ImportHook clock(
        "GetTickCount", +[]() WINAPI -> DWORD { return later; });
    {
        MemoryMonitor monitor;
        CHECK(calls.empty());
        for (const wchar_t* const load : {L"－ ％", L"37 ％", L"37 ％", L"100 ％", L"100 ％", L"0 ％", L"0 ％"})
            CHECK(monitor.read()[kProcessorLoad] == load);
        later = 60000;  // after a time without readings the first one would be an average over all of it
        CHECK(monitor.read()[kProcessorLoad] == L"－ ％");
        CHECK(monitor.read()[kProcessorLoad] == L"45 ％");
        monitor.close();
        CHECK(monitor.read()[kProcessorLoad] == L"45 ％");
    }
    CHECK(calls == L"open \\プロセッサ(_Total)\\% 処理時間 close");
}

TEST_CASE("the memory-release program is started quoted and minimised, or nothing happens") {
    TestFolder folder(L"メモリ 開放");
    const std::wstring program = folder.own(L"release it.exe");
    Recorder recorder;
    REQUIRE(recorder.install(program));
    for (const std::wstring& path : {std::wstring(), L"\"" + program + L"\"", folder.path(),
                                     folder.path() + L"\\none.exe", folder.make_file(L"no program.exe", "text")}) {
        RunMemoryRelease(path);
    }
    RunMemoryRelease(program);
    recorder.starts(1);
    const auto starts = recorder.starts_after_a_while();
    REQUIRE(starts.size() == 1);
    CHECK(starts[0].command_line == L"\"" + program + L"\"");
    CHECK(starts[0].show == L"2");
}
