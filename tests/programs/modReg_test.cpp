#include "programs/modReg.h"

#include "support/show.h"
#include "support/test_key.h"

#include <array>

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
    key.set_text(L"", L"text", L"版 5.50");
    CHECK(TextOf(read(L"text")) == L"版 5.50");
    key.set_text(L"", L"longest", std::wstring(127, L'x'));
    CHECK(TextOf(read(L"longest")) == std::wstring(127, L'x'));
    key.set_text(L"", L"too long", std::wstring(200, L'x'));
    CHECK(TextOf(read(L"too long")) == L"otherwise");
    CHECK(TextOf(read(L"missing")) == L"otherwise");
    key.set_text(L"", L"with NUL", std::wstring(L"ab\0cd", 5));
    CHECK(TextOf(read(L"with NUL")) == L"ab");
    key.set_bytes(L"", L"odd", REG_SZ, std::as_bytes(std::span<const char, 5>("a\0b\0", 5)));
    CHECK(TextOf(read(L"odd")) == L"ab");
    key.set_bytes(L"", L"empty", REG_SZ, {});
    CHECK(TextOf(read(L"empty")) == L"");
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

TEST_CASE("a key of the 64-bit view stays invisible") {
    win::RegKey key;
    if (RegCreateKeyExW(HKEY_LOCAL_MACHINE, L"SOFTWARE\\QorvenixWide", 0, nullptr, 0, KEY_ALL_ACCESS | KEY_WOW64_64KEY,
                        nullptr, key.put(), nullptr) != ERROR_SUCCESS) {
        return;
    }
    BOOL wide = FALSE;
    IsWow64Process(GetCurrentProcess(), &wide);
    const bool opened = TextOf(ReadRegistryValue(HKEY_LOCAL_MACHINE, L"SOFTWARE\\QorvenixWide", L"x")) == L"";
    CHECK(opened == !wide);
    key.reset();
    RegOpenKeyExW(HKEY_LOCAL_MACHINE, L"SOFTWARE", 0, KEY_ALL_ACCESS | KEY_WOW64_64KEY, key.put());
    RegDeleteKeyW(key.get(), L"QorvenixWide");
}

TEST_CASE("words and versions") {
    CHECK(HighWord(0x00050001) == 5);
    CHECK(HighWord(0xFFFF0001) == -1);
    CHECK(HighWord(0x9C400001) == -25536);
    CHECK(LowWord(0x0005FFFF) == 65535);
    CHECK(MakeLong(5, 5) == 0x00050005);
    wchar_t system[MAX_PATH] = {};
    GetSystemDirectoryW(system, MAX_PATH);
    const std::wstring folder = system;
    const std::wstring version = GetFileVersionText(folder + L"\\comctl32.dll");
    int numbers[4] = {};
    REQUIRE(swscanf(version.c_str(), L"%d.%d.%d.%d", &numbers[0], &numbers[1], &numbers[2], &numbers[3]) == 4);
    CHECK(numbers[0] >= 5);
    CHECK(numbers[1] > 0);
    CHECK(GetFileVersionText(folder + L"\\gone.dll") == L"");
    CHECK(GetFileVersionText(L"") == L"");
}
