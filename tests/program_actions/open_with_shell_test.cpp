#include "programs/open_with_shell.h"

#include "support/recorder.h"
#include "support/show.h"
#include "support/test_folder.h"
#include "win/com_ptr.h"

#include <doctest/doctest.h>

using programs::OpenWithShell;

TEST_CASE("Programs are opened by path and, without a folder, from the system's folders only") {
    const win::ComApartment apartment;
    TestFolder folder(L"opened here");
    const std::wstring program = folder.own(L"some program.exe");
    Recorder recorder;
    REQUIRE(recorder.install(program));
    REQUIRE(recorder.install(folder.own(L"planted.exe")));
    REQUIRE(recorder.install_in_system(L"only in system.exe"));
    SetCurrentDirectoryW(folder.path().c_str());

    CHECK(OpenWithShell(nullptr, program, L"first second", L""));
    CHECK(recorder.starts(1).size() == 1);
    CHECK(OpenWithShell(nullptr, L"only in system.exe", std::wstring_view(L"\0", 1), std::wstring_view(L"\0", 1)));
    const auto starts = recorder.starts(2);
    REQUIRE(starts.size() == 2);
    CHECK((starts[0].program.ends_with(L"some program.exe") && starts[0].command_line.ends_with(L" first second")));
    CHECK(starts[0].show == L"5");
    CHECK(Recorder::is_in_system(starts[1].program, L"only in system.exe"));

    CHECK_FALSE(OpenWithShell(nullptr, L"planted.exe", L"", L""));
    CHECK_FALSE(OpenWithShell(nullptr, L"", L"", L""));
    CHECK_FALSE(OpenWithShell(nullptr, folder.path() + L"\\missing.exe", L"", L""));
    CHECK(recorder.starts_after_a_while().size() == 2);
    SetCurrentDirectoryW(L"C:\\");
}
