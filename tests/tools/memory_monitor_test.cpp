#include "tools/memory_monitor.h"

#include "support/import_hook.h"
#include "support/recorder.h"
#include "support/show.h"
#include "support/stand_in.h"
#include "support/test_folder.h"
#include "win/system_text.h"

#include <doctest/doctest.h>

using namespace tools;

namespace {

constexpr DWORDLONG kMegabyte = 1048576;

constexpr wchar_t kCalls[] = L"C:\\pdh.txt";

std::wstring Calls() { return win::FromAnsi(ContentOf(kCalls)); }

}  // namespace

TEST_CASE("Memory figures are whole megabytes, cut and never rounded, up to 16 EB") {
    MEMORYSTATUSEX status = {};
    MemoryTexts texts;
    status.dwMemoryLoad = 75;
    status.ullTotalPhys = 2048 * kMegabyte - 1;
    status.ullAvailPhys = 513 * kMegabyte;
    status.ullTotalVirtual = 2048 * kMegabyte;
    status.ullAvailVirtual = 2048 * kMegabyte;
    status.ullTotalPageFile = ~DWORDLONG{0};
    status.ullAvailPageFile = 0;
    WriteMemoryTexts(status, texts);
    CHECK(texts == MemoryTexts{L"75 ％", L"1534/2047 MB", L"0/2048 MB", L"17592186044415/17592186044415 MB", {}});
    status.ullTotalPhys = 8192 * kMegabyte;  // more than 32 bits
    status.ullAvailPhys = 9000 * kMegabyte;  // and more free than there is
    status.ullAvailPageFile = ~DWORDLONG{0} - kMegabyte + 1;
    WriteMemoryTexts(status, texts);
    CHECK(texts[kPhysicalMemory] == L"0/8192 MB");
    CHECK(texts[kPageFile] == L"0/17592186044415 MB");
}

TEST_CASE("The monitor shows this machine's memory, and its load from the second reading on") {
    MemoryMonitor monitor;
    MEMORYSTATUSEX status = {};
    status.dwLength = sizeof status;
    REQUIRE(GlobalMemoryStatusEx(&status));
    const MemoryTexts first = monitor.read();
    CHECK(first[kPhysicalMemory].ends_with(L"/" + std::to_wstring(status.ullTotalPhys / kMegabyte) + L" MB"));
    CHECK(first[kVirtualMemory].ends_with(L"/" + std::to_wstring(status.ullTotalVirtual / kMegabyte) + L" MB"));
    CHECK(first[kProcessorLoad] == L"－ ％");
    const std::wstring load = monitor.read()[kProcessorLoad];
    CHECK(load == std::to_wstring(std::stoul(load)) + L" ％");
    monitor.close();
    CHECK(monitor.read()[kProcessorLoad] == load);
}

TEST_CASE("The processors' load comes from a localised counter, opened once and closed") {
    DeleteFileW(kCalls);
    const StandIn pdh(L"pdh.dll", StandIn::built(L"pdh_dll.dll"));
    REQUIRE(pdh.placed());
    {
        MemoryMonitor monitor;
        CHECK(Calls() == L"");
        for (const wchar_t* const load : {L"－ ％", L"37 ％", L"37 ％", L"100 ％", L"100 ％", L"0 ％", L"0 ％"}) {
            CHECK(monitor.read()[kProcessorLoad] == load);
        }
        // After a time without readings the first one would be an average over all of it.
        {
            static decltype(GetTickCount)* ticks = nullptr;
            const ImportHook later(
                "GetTickCount", +[]() WINAPI -> DWORD { return ticks() + 60000; });
            REQUIRE(later);
            ticks = later.original<decltype(GetTickCount)>();
            for (const wchar_t* const load : {L"－ ％", L"45 ％"})
                CHECK(monitor.read()[kProcessorLoad] == load);
        }
        CHECK(Calls() == L"open\n\\プロセッサ(_Total)\\% 処理時間\n");
        monitor.close();
        CHECK(Calls() == L"open\n\\プロセッサ(_Total)\\% 処理時間\nclose\n");
        monitor.read();
    }
    CHECK(Calls() == L"open\n\\プロセッサ(_Total)\\% 処理時間\nclose\n");
}

TEST_CASE("The memory-release program is started quoted and minimised, or nothing happens") {
    TestFolder folder(L"メモリ 開放");
    const std::wstring program = folder.own(L"release it.exe");
    Recorder recorder;
    REQUIRE(recorder.install(program));
    RunMemoryRelease(program);
    const auto starts = recorder.starts(1);
    REQUIRE(starts.size() == 1);
    CHECK(starts[0].command_line == L"\"" + program + L"\"");
    CHECK(starts[0].show == L"2");
    for (const std::wstring& path :
         {std::wstring(), L"\"" + program + L"\"", folder.path(), folder.path() + L"\\none.exe",
          folder.path() + L"\\" + std::wstring(5000, L'x') + L".exe", folder.make_file(L"no program.exe", "text")}) {
        RunMemoryRelease(path);
    }
    CHECK(recorder.starts_after_a_while().size() == 1);
}
