#include "programs/modReg.h"

#include "support/import_hook.h"
#include "support/show.h"
#include "support/test_key.h"
#include "win/folders.h"
#include "win/system_text.h"

#include <algorithm>
#include <array>
#include <set>

using namespace programs;

namespace {

constexpr wchar_t kPath[] = L"Software\\QorvenixTest\\modReg";

std::wstring TextOf(const RegistryValue& value) {
    const auto* text = std::get_if<std::wstring>(&value);
    return text ? *text : L"(number)";
}

}  // namespace

TEST_CASE("a registry value is a string, a number, or told to be neither") {
    const TestKey key(HKEY_CURRENT_USER, kPath);
    const auto read = [](const wchar_t* name) {
        return ReadRegistryValue(HKEY_CURRENT_USER, kPath, name, std::wstring(L"otherwise"));
    };
    const struct {
        const wchar_t* name;
        std::wstring stored;
        std::wstring text;
    } texts[] = {
        {L"text", L"版 5.50", L"版 5.50"},
        {L"longest", std::wstring(127, L'x'), std::wstring(127, L'x')},
        {L"too long", std::wstring(200, L'x'), L"otherwise"},
        {L"with NUL", std::wstring(L"ab\0cd", 5), L"ab"},
    };
    for (const auto& each : texts) {
        key.set_text(L"", each.name, each.stored);
        CHECK(TextOf(read(each.name)) == each.text);
    }
    CHECK(TextOf(read(L"missing")) == L"otherwise");
    key.set_bytes(L"", L"odd", REG_SZ, std::as_bytes(std::span<const char, 5>("a\0b\0", 5)));
    CHECK(TextOf(read(L"odd")) == L"ab");
    key.set_number(L"", L"number", 0xFFFFFFFF);
    CHECK(read(L"number") == RegistryValue(std::uint32_t{4294967295}));
    for (const DWORD type : {DWORD{REG_NONE}, DWORD{REG_EXPAND_SZ}, DWORD{REG_BINARY}, DWORD{REG_MULTI_SZ}}) {
        key.set_text(L"", L"other", L"%windir%", type);
        CHECK(TextOf(read(L"other")) == kUndefinedDataType);
    }
    CHECK(TextOf(ReadRegistryValue(HKEY_CURRENT_USER, L"Software\\QorvenixTest\\none", L"x", std::uint32_t{7})) ==
          kKeyOpenError);
}

TEST_CASE("subkey names come whole, in the registry's order, as many as there are") {
    const TestKey key(HKEY_CURRENT_USER, kPath);
    CHECK(EnumerateSubkeyNames(HKEY_CURRENT_USER, kPath).empty());
    const std::wstring longest(255, L'キ');
    for (const auto& name : {std::wstring(L"b"), std::wstring(L"A"), std::wstring(L" "), longest})
        key.make(name);
    const std::vector<std::wstring> expected = {L" ", L"A", L"b", longest};
    CHECK(EnumerateSubkeyNames(HKEY_CURRENT_USER, std::wstring(kPath) + L"\\") == expected);
    for (int number = 0; number < 1200; ++number)
        key.make(L"c" + std::to_wstring(number));
    CHECK(EnumerateSubkeyNames(HKEY_CURRENT_USER, kPath).size() == expected.size() + 1200);
    CHECK(EnumerateSubkeyNames(HKEY_CURRENT_USER, L"Software\\QorvenixTest\\none").empty());
}

TEST_CASE("subkeys that come and go meanwhile are told once or not at all, all others once") {
    const TestKey key(HKEY_CURRENT_USER, kPath);
    static const TestKey* changed = nullptr;
    static decltype(RegEnumKeyExW)* enumerate = nullptr;
    static int calls_with_changes = 0;
    static int calls = 0;
    changed = &key;
    std::set<std::wstring> lasting;
    for (int number = 0; number < 40; ++number) {
        key.make(L"m" + std::to_wstring(number));
        lasting.insert(L"m" + std::to_wstring(number));
    }
    const ImportHook hook(
        "RegEnumKeyExW",
        +[](HKEY opened, DWORD index, LPWSTR name, LPDWORD length, LPDWORD reserved, LPWSTR type, LPDWORD size,
            PFILETIME time) WINAPI -> LONG {
            // What lies before shifts all that follows, to and fro.
            if (++calls <= calls_with_changes && calls % 3 == 0) changed->make(L"a" + std::to_wstring(calls));
            if (calls <= calls_with_changes && calls % 7 == 0) SHDeleteKeyW(changed->get(), L"a3");
            return enumerate(opened, index, name, length, reserved, type, size, time);
        });
    REQUIRE(hook);
    enumerate = hook.original<decltype(RegEnumKeyExW)>();
    for (const int changes : {20, 60, 1000}) {
        CAPTURE(changes);
        calls = 0;
        calls_with_changes = changes;
        const std::vector<std::wstring> names = EnumerateSubkeyNames(HKEY_CURRENT_USER, kPath);
        const std::set<std::wstring> once(names.begin(), names.end());
        CHECK(once.size() == names.size());
        CHECK(std::ranges::includes(once, lasting));
        for (int call = 0; call <= 1000; ++call)
            SHDeleteKeyW(key.get(), (L"a" + std::to_wstring(call)).c_str());
    }
}

TEST_CASE("a key that may be read but not written is read") {
    const TestKey key(HKEY_CURRENT_USER, kPath);
    key.set_text(L"", L"Version", L"9.0");
    const ImportHook hook(
        "RegOpenKeyExA", +[](HKEY root, LPCSTR path, DWORD options, REGSAM access, PHKEY opened) WINAPI -> LONG {
            if ((access & KEY_SET_VALUE) != 0) return ERROR_ACCESS_DENIED;
            return RegOpenKeyExW(root, win::FromAnsi(path).c_str(), options, access, opened);
        });
    REQUIRE(hook);
    CHECK(TextOf(ReadRegistryValue(HKEY_CURRENT_USER, kPath, L"Version")) == L"9.0");
    CHECK(TextOf(ReadRegistryValue(HKEY_CURRENT_USER, kPath, L"missing")) == L"");
}

TEST_CASE("words and versions") {
    CHECK(HighWord(0x00050001) == 5);
    CHECK(HighWord(0xFFFF0001) == -1);
    CHECK(HighWord(0x9C400001) == -25536);
    CHECK(LowWord(0x0005FFFF) == 65535);
    const std::wstring& folder = win::SystemDirectory();
    const std::wstring version = GetFileVersionText(folder + L"\\comctl32.dll");
    int major = 0, minor = 0, third = 0, fourth = 0;
    REQUIRE(swscanf(version.c_str(), L"%d.%d.%d.%d", &major, &minor, &third, &fourth) == 4);
    CHECK(major >= 5);
    CHECK(GetFileVersionText(folder + L"\\gone.dll") == L"");
    CHECK(GetFileVersionText(L"") == L"");
}
