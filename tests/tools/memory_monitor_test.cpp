#include "tools/memory_monitor.h"

#include "support/import_hook.h"
#include "support/recorder.h"
#include "support/show.h"
#include "support/test_folder.h"
#include "win/system_text.h"

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
    constexpr wchar_t kCalls[] = L"C:\\pdh.txt";
    DeleteFileW(kCalls);
    const StandIn pdh(L"pdh.dll", StandIn::built(L"pdh_dll.dll"));
    REQUIRE(pdh.placed());
    static DWORD later = 0;
    const ImportHook clock(
        "GetTickCount", +[]() WINAPI -> DWORD { return later; });
    {
        MemoryMonitor monitor;
        CHECK(ContentOf(kCalls).empty());
        for (const wchar_t* const load : {L"－ ％", L"37 ％", L"37 ％", L"100 ％", L"100 ％", L"0 ％", L"0 ％"})
            CHECK(monitor.read()[kProcessorLoad] == load);
        later = 60000;  // after a time without readings the first one would be an average over all of it
        CHECK(monitor.read()[kProcessorLoad] == L"－ ％");
        CHECK(monitor.read()[kProcessorLoad] == L"45 ％");
        monitor.close();
        CHECK(monitor.read()[kProcessorLoad] == L"45 ％");
    }
    CHECK(win::FromAnsi(ContentOf(kCalls)) == L"open\n\\プロセッサ(_Total)\\% 処理時間\nclose\n");
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
