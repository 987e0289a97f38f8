// The sample packages that lie beside the test programs, and their installers.
#pragma once

#include "support/stand_in.h"
#include "win/process.h"
#include "win/system_library.h"

#include <doctest/doctest.h>

#include <string>

namespace packages {

// The names of their uninstall keys.
inline const std::wstring kNsisKey = L"SampleNotes";
inline const std::wstring kMsiKey = L"{5D6C0E1A-7B1B-4F0B-9E57-2B6F3C1D0A11}";

inline void RunToItsEnd(const std::wstring& program, const std::wstring& command_line) {
    constexpr DWORD kPatience = 60000;
    const win::StartedProcess started = win::StartProcess(program, command_line, win::WindowStyle::Normal);
    REQUIRE(started.process);
    REQUIRE(WaitForSingleObject(started.process.get(), kPatience) == WAIT_OBJECT_0);
}

inline void RunMsiExec(const std::wstring& arguments) {
    RunToItsEnd(win::SystemDirectory() + L"\\msiexec.exe", L"msiexec.exe " + arguments);
}

inline void InstallNsis() {
    const std::wstring setup = StandIn::built(L"sample_nsis.exe");
    RunToItsEnd(setup, L"\"" + setup + L"\" /S");
}

inline void InstallMsi() { RunMsiExec(L"/i \"" + StandIn::built(L"sample.msi") + L"\" /qn"); }

}  // namespace packages
