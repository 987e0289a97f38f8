#include "programs/program_details.h"

#include "programs/current_user.h"
#include "support/show.h"
#include "support/test_key.h"

#include <doctest/doctest.h>

using namespace programs;

namespace {

const std::wstring kUninstall = L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\";

}  // namespace

TEST_CASE("Details come from the machine's key, and from the user's only where that is missing") {
    const std::wstring sid = CurrentUserSid();
    const TestKey users(HKEY_USERS, sid + L"\\" + kUninstall + L"Details Test");
    users.set_text(L"", L"HelpLink", L"user's");
    CHECK(ReadProgramDetails(UninstallPlace::Machine, L"Details Test", sid).help_link == L"user's");
    CHECK(ReadProgramDetails(UninstallPlace::Machine, L"Details Test", L"").help_link == L"");
    {
        const TestKey machine(HKEY_LOCAL_MACHINE, kUninstall + L"Details Test");
        CHECK(ReadProgramDetails(UninstallPlace::Machine, L"Details Test", sid).help_link == L"");
        machine.set_text(L"", L"HelpLink", L"https://example.com/サポート");
        machine.set_text(L"", L"URLInfoAbout", L"%windir%", REG_EXPAND_SZ);
        machine.set_text(L"", L"HelpTelephone", L"03-1234");
        const ProgramDetails details = ReadProgramDetails(UninstallPlace::Machine, L"Details Test", sid);
        CHECK(details.help_link == L"https://example.com/サポート");
        CHECK(details.url_info_about == L"%windir%");
        CHECK(details.help_telephone == L"03-1234");
    }
}

TEST_CASE("A detail has at most 255 bytes of the system's code page and nothing of the one before it") {
    const TestKey key(HKEY_LOCAL_MACHINE, kUninstall + L"Details Test");
    key.set_text(L"", L"HelpLink", std::wstring(255, L'a'));
    key.set_text(L"", L"URLInfoAbout", std::wstring(127, L'あ') + L"b");
    key.set_bytes(L"", L"HelpTelephone", REG_BINARY, std::as_bytes(std::span("12", 2)));
    ProgramDetails details = ReadProgramDetails(UninstallPlace::Machine, L"Details Test", L"");
    CHECK(details.help_link == std::wstring(255, L'a'));
    CHECK(details.url_info_about == std::wstring(127, L'あ') + L"b");
    CHECK(details.help_telephone == L"12");

    // What is too long or empty; and no key at all.
    key.set_text(L"", L"HelpLink", std::wstring(300, L'a'));
    key.set_text(L"", L"URLInfoAbout", std::wstring(128, L'あ'));
    key.set_bytes(L"", L"HelpTelephone", REG_SZ, {});
    for (const wchar_t* name : {L"Details Test", L"No such key"}) {
        details = ReadProgramDetails(UninstallPlace::Machine, name, CurrentUserSid());
        CHECK((details.help_link + details.url_info_about + details.help_telephone).empty());
    }
}
