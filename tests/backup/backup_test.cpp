// What is deleted can be brought back from the copy that is kept of it.
#include "win/backup_folder.h"

#include "hostile/hostile_registry.h"
#include "programs/modReg.h"
#include "programs/program_actions.h"
#include "startup/startup_actions.h"
#include "startup/startup_scan.h"
#include "support/host_link.h"
#include "support/import_hook.h"
#include "support/test_folder.h"
#include "support/test_host.h"
#include "support/test_key.h"
#include "tools/shell_repairs.h"
#include "win/edition.h"
#include "win/folders.h"
#include "win/process.h"
#include "win/registry_export.h"
#include "win/system_library.h"

#include <map>
#include <set>

namespace {

std::set<std::wstring> Names(const std::wstring& folder) {
    std::set<std::wstring> names;
    WIN32_FIND_DATAW entry = {};
    const win::FindHandle find(FindFirstFileW((folder + L"\\*").c_str(), &entry));
    for (bool more = static_cast<bool>(find); more; more = FindNextFileW(find.get(), &entry) != FALSE) {
        if (entry.cFileName[0] != L'.') names.insert(entry.cFileName);
    }
    return names;
}

// A program's folder, and what is kept in it. All of it goes with the prefix.
struct Place {
    Place() {
        REQUIRE_THROW_AWAY();
        static int cases = 0;
        program = L"C:\\backup test " + win::ToText(GetCurrentProcessId()) + L"." + win::ToText(++cases);
        folder = program + L"\\backup";
        REQUIRE(CreateDirectoryW(program.c_str(), nullptr));
        backup = win::BackupFolder(program);
    }
    // The path of the only copy, whose name is a time and `name`.
    std::wstring only(const std::wstring& name) const {
        const auto all = Names(folder);
        REQUIRE(all.size() == 1);
        CHECK(all.begin()->size() == std::size("20261121-213005") + name.size());
        CHECK(all.begin()->ends_with(L" " + name));
        return folder + L"\\" + *all.begin();
    }

    std::wstring program;
    std::wstring folder;
    win::BackupFolder backup;
    TestHost host;
};

// By the system's own registry editor, which is a 64-bit program on 64-bit Windows.
void Import(const std::wstring& file) {
    const std::wstring editor = L"C:\\windows\\regedit.exe";
    const auto started = win::StartProcess(editor, L"regedit.exe /S \"" + file + L"\"", win::WindowStyle::Normal);
    REQUIRE(WaitForSingleObject(started.process.get(), 60000) == WAIT_OBJECT_0);
}

// Where the editor finds what this program sees below the machine's SOFTWARE key.
std::wstring MachineSoftware() {
    BOOL led_elsewhere = FALSE;
    const auto is_led =
        win::FindFunction<BOOL(WINAPI*)(HANDLE, BOOL*)>(GetModuleHandleW(L"kernel32.dll"), "IsWow64Process");
    is_led(GetCurrentProcess(), &led_elsewhere);
    return std::wstring(L"[HKEY_LOCAL_MACHINE\\Software\\") + (led_elsewhere ? L"Wow6432Node\\" : L"");
}

using Values = std::map<std::wstring, hostile::Value>;

// All values of an open key and of its subkeys, by their paths.
void Collect(HKEY key, const std::wstring& path, Values& values) {
    const std::wstring below = path + L"\\";
    values[below];
    std::wstring name(16384, L'\0');
    hostile::Bytes data(2 << 20);
    for (DWORD index = 0;; ++index) {
        auto length = static_cast<DWORD>(name.size());
        auto size = static_cast<DWORD>(data.size());
        DWORD type = REG_NONE;
        if (RegEnumValueW(key, index, name.data(), &length, nullptr, &type, reinterpret_cast<BYTE*>(data.data()),
                          &size) != ERROR_SUCCESS) {
            break;
        }
        const auto bytes = std::span(data).first(size);
        values[below + name.substr(0, length)] = {type, {bytes.begin(), bytes.end()}};
    }
    for (DWORD index = 0;; ++index) {
        auto length = static_cast<DWORD>(name.size());
        if (RegEnumKeyExW(key, index, name.data(), &length, nullptr, nullptr, nullptr, nullptr) != ERROR_SUCCESS) break;
        win::RegKey subkey;
        RegOpenKeyExW(key, name.substr(0, length).c_str(), 0, KEY_READ, subkey.put());
        Collect(subkey.get(), below + name.substr(0, length), values);
    }
}

Values ValuesOf(HKEY root, const std::wstring& path) {
    win::RegKey key;
    Values values;
    if (RegOpenKeyExW(root, path.c_str(), 0, KEY_READ, key.put()) == ERROR_SUCCESS) Collect(key.get(), {}, values);
    return values;
}

// The same type and bytes. Of a text without an end the editor makes one with an end, which takes the place of a last
// odd byte.
bool IsSame(const hostile::Value& restored, const hostile::Value& kept) {
    if (restored.type != kept.type || restored.bytes == kept.bytes) return restored.type == kept.type;
    const bool text = kept.type == REG_SZ || kept.type == REG_EXPAND_SZ || kept.type == REG_MULTI_SZ;
    const auto whole = static_cast<std::ptrdiff_t>(kept.bytes.size() & ~std::size_t{1});
    return text && restored.bytes.size() == kept.bytes.size() + sizeof(wchar_t) &&
           std::equal(kept.bytes.begin(), kept.bytes.begin() + whole, restored.bytes.begin());
}

void CheckSame(const Values& restored, const Values& kept) {
    REQUIRE(restored.size() == kept.size());
    for (const auto& each : kept) {
        CAPTURE(each.first);
        REQUIRE(restored.contains(each.first));
        REQUIRE(IsSame(restored.at(each.first), each.second));
    }
}

const std::wstring kProgram =
    L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\日本 ]\x2122[-a\"b=\xD83D\xDE00; ";

struct Entry : TestKey {
    Entry() : TestKey(HKEY_LOCAL_MACHINE, kProgram) { set_text(L"", L"DisplayName", L"見本"); }
    // The program's own command.
    bool uninstall(Place& place, const std::wstring& name = L"見本") const {
        const programs::ProgramRow row = {
            name, {}, false, {}, programs::UninstallPlace::Machine, kProgram.substr(kProgram.rfind(L'\\') + 1)};
        return programs::ForcedUninstall(row, {}, place.backup, place.host);
    }
    bool exists() const { return KeyExists(HKEY_LOCAL_MACHINE, path()); }
};

bool HasNul(std::wstring_view text) { return text.find(L'\0') != text.npos; }

void MakeFile(const std::wstring& path, DWORD attributes = FILE_ATTRIBUTE_NORMAL) {
    const win::File made(CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, attributes, nullptr));
}

void MakeFolder(const std::wstring& path) { CreateDirectoryW(path.c_str(), nullptr); }

// A disk on which there is room for a few bytes more.
decltype(WriteFile)* write_file = nullptr;
BOOL WINAPI WriteUntilFull(HANDLE file, const void* data, DWORD, DWORD* written, OVERLAPPED*) {
    write_file(file, data, 10, written, nullptr);
    SetLastError(ERROR_DISK_FULL);
    return FALSE;
}
BOOL WINAPI CopyUntilFull(const wchar_t*, const wchar_t* copy, BOOL) {
    MakeFile(copy, FILE_ATTRIBUTE_READONLY);
    SetLastError(ERROR_DISK_FULL);
    return FALSE;
}

// Windows gives a copy the time of the copying, but for the last change.
decltype(CopyFileW)* copy_file = nullptr;
BOOL WINAPI CopyAsWindows(const wchar_t* file, const wchar_t* copy, BOOL fails_if_there) {
    const BOOL done = copy_file(file, copy, fails_if_there);
    const win::File made(CreateFileW(copy, FILE_WRITE_ATTRIBUTES, 0, nullptr, OPEN_EXISTING, 0, nullptr));
    FILETIME now = {};
    GetSystemTimeAsFileTime(&now);
    SetFileTime(made.get(), &now, &now, nullptr);
    return done;
}

// Somebody else deletes the key before its seventh value is read.
decltype(RegEnumValueW)* enum_value = nullptr;
LONG WINAPI DeletedMeanwhile(HKEY key, DWORD index, wchar_t* name, DWORD* length, DWORD* reserved, DWORD* type,
                             BYTE* data, DWORD* size) {
    if (index == 6) RegDeleteKeyW(HKEY_LOCAL_MACHINE, kProgram.c_str());
    return enum_value(key, index, name, length, reserved, type, data, size);
}

}  // namespace

TEST_CASE("A program that was forced out of the list comes back value for value") {
    hostile::Run("forced uninstalls brought back", 2, [](hostile::Source& source, std::uint64_t round) {
        Place place;
        const Entry entry;
        auto names = hostile::NastyTexts();
        names.insert(names.end(), {L"", L"@", L"a\r\n[HKEY_CURRENT_USER\\planted]\r\n\"b", L"C:\\\"q\"\\n\\"});
        std::uint64_t number = round * 1000;
        for (const std::wstring_view name : names) {
            if (!HasNul(name)) hostile::Set(entry.get(), name, hostile::ValueFor(source, number++));
        }
        while (number < round * 1000 + 1000) {
            const std::wstring name = hostile::MakeName(source, 300);
            if (!HasNul(name)) hostile::Set(entry.get(), name, hostile::ValueFor(source, number++));
        }
        const Values kept = ValuesOf(HKEY_LOCAL_MACHINE, kProgram);
        REQUIRE(kept.size() > 500);
        // No registration file can name it, and no usual function finds it.
        REQUIRE(native::SetText(entry.get(), std::wstring(L"hid\0den", 7), L"lost"));
        CHECK(entry.uninstall(place, L" はがき/\"スタジオ\": 2026\xD800"));
        REQUIRE_FALSE(entry.exists());
        const std::wstring copy = place.only(L"はがき__スタジオ__ 2026_.reg");
        CHECK(
            WideContentOf(copy).starts_with(L"\xFEFFWindows Registry Editor Version 5.00\r\n\r\n" + MachineSoftware()));
        // Wine's 64-bit editor ends in the middle of such a file; what stands in it is the same in both editions.
        if (win::kIs64Bit && throw_away::OnWine()) return;
        Import(copy);
        CheckSame(ValuesOf(HKEY_LOCAL_MACHINE, kProgram), kept);
        CHECK_FALSE(KeyExists(HKEY_CURRENT_USER, L"planted"));
        CHECK(place.host.statuses.empty());
    });
}

TEST_CASE("What the editor itself may read in another way is written byte by byte") {
    const auto line = [](std::wstring_view name, DWORD type, std::string_view bytes) {
        return win::RegistrationValue(name, type, {reinterpret_cast<const BYTE*>(bytes.data()), bytes.size()});
    };
    CHECK(line(L"\"\r\n\\", REG_SZ, {"A\0B", 3}) == L"\"\\\"\\r\\n\\\\\"=hex(1):41,00,42\r\n");
    CHECK(line(L"", REG_SZ, {"A\0\n\0\0\0", 6}) == L"@=hex(1):41,00,0a,00,00,00\r\n");
    CHECK(line(L"a", REG_BINARY, std::string(26, 'A')).ends_with(L",41,\\\r\n  41\r\n"));
}

TEST_CASE("A key with its subkeys comes back, as far as their names fit on a line") {
    Place place;
    const Entry entry;
    for (const wchar_t* subkey : {L"empty", L"]", L"-a;\"b\" = @", L"日本\\\xD83D\xDE00\\deep"})
        entry.make(subkey);
    entry.set_text(L"日本\\\xD83D\xDE00\\deep", L"", L"C:\\\"default\"");
    const Values kept = ValuesOf(HKEY_LOCAL_MACHINE, kProgram);
    REQUIRE(kept.size() == 8);
    entry.make(L"a\r\n[HKEY_CURRENT_USER\\planted]");
    {
        const native::Key hidden(entry.get(), std::wstring(L"]\0x", 3));
        CHECK(place.backup.keep_key(HKEY_LOCAL_MACHINE, kProgram, {}));
    }
    SHDeleteKeyW(HKEY_LOCAL_MACHINE, kProgram.c_str());
    Import(place.only(L"(名前なし).reg"));
    CheckSame(ValuesOf(HKEY_LOCAL_MACHINE, kProgram), kept);
    CHECK_FALSE(KeyExists(HKEY_CURRENT_USER, L"planted"));
}

TEST_CASE("Start-up values and what the repairs take away come back, each where it was") {
    const std::wstring name = L"a\"b\\c=]\x2122";
    for (const programs::Hive& hive : programs::Hives()) {
        Place place;
        const TestKey run(hive.root, startup::kRunKey);
        run.set_text(L"", name, L"%windir%\\a.exe", REG_EXPAND_SZ);
        run.set_text(L"", L"other", L"first");
        const Values kept = ValuesOf(hive.root, run.path());
        CHECK(startup::DeleteStartupEntry({name, {}, std::wstring(hive.tag) + startup::kRunKey, {}}, place.backup,
                                          place.host));
        REQUIRE_FALSE(ValueExists(run.get(), name));
        RegDeleteValueW(run.get(), L"other");
        Import(place.only(L"a_b_c=]\x2122.reg"));
        REQUIRE_FALSE(ValueExists(run.get(), L"other"));
        run.set_text(L"", L"other", L"first");
        CheckSame(ValuesOf(hive.root, run.path()), kept);
        CHECK(place.host.statuses.empty());
    }

    const TestKey handlers(HKEY_CLASSES_ROOT, L"AllFilesystemObjects\\shellex\\ContextMenuHandlers");
    const TestKey attachments(HKEY_CURRENT_USER, L"Software\\Microsoft\\Windows\\Shell\\AttachmentExecute");
    const struct {
        const TestKey& key;
        const wchar_t* subkey;
        int repair;
        const wchar_t* caption;
        const wchar_t* name;
        const wchar_t* done;
    } repairs[] = {
        {handlers, L"Send To", tools::RepairItem::SendTo, tools::kRemoveSendTo, L"コンテキストメニューの「送る」.reg",
         L"削除完了"},
        {handlers, L"Send To", tools::RepairItem::SendTo, L"", L"コンテキストメニューの「送る」.reg", L"復元完了"},
        {attachments, L"{0002DF01-0000-0000-C000-000000000046}", tools::RepairItem::DownloadLocation, L"",
         L"ダウンロードの保存先.reg", L"完了"},
    };
    for (const auto& each : repairs) {
        Place place;
        each.key.set_text(each.subkey, L"", L"mine");
        each.key.set_number(each.subkey, L"number", 0xFFFFFFFF);
        const Values kept = ValuesOf(each.key.get(), L"");
        tools::RunRepair(each.repair, each.caption, place.backup, place.host);
        CHECK(place.host.statuses == std::vector<std::wstring>{each.done});
        const std::wstring copy = place.only(each.name);
        // Both kinds of programs share the classes.
        CHECK_FALSE(win::Contains(WideContentOf(copy), L"Wow6432Node"));
        Import(copy);
        CheckSame(ValuesOf(each.key.get(), L""), kept);
    }
}

TEST_CASE("A start-up file comes back by copying") {
    Place place;
    const std::wstring folder = win::GetSpecialFolderPath(CSIDL_STARTUP);
    const std::wstring file = folder + L"\\a.b 見本.lnk";
    {
        const win::File made(CreateFileW(file.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr));
        DWORD written = 0;
        WriteFile(made.get(), "a\0b", 3, &written, nullptr);
        const FILETIME time = {0x12345600, 0x01C00000};
        SetFileTime(made.get(), &time, &time, &time);
    }
    SetFileAttributesW(file.c_str(), FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM);
    WIN32_FILE_ATTRIBUTE_DATA before = {}, kept = {}, after = {};
    GetFileAttributesExW(file.c_str(), GetFileExInfoStandard, &before);
    {
        const ImportHook copy("CopyFileW", &CopyAsWindows);
        REQUIRE(copy);
        copy_file = copy.original<decltype(CopyFileW)>();
        CHECK(startup::DeleteStartupEntry({L"a.b 見本.lnk", {}, folder, {}}, place.backup, place.host));
    }
    REQUIRE_FALSE(win::IsFile(file));

    const std::wstring copy = place.only(L"a.b 見本.lnk");
    GetFileAttributesExW(copy.c_str(), GetFileExInfoStandard, &kept);
    CHECK(CompareFileTime(&kept.ftLastAccessTime, &before.ftLastAccessTime) == 0);
    REQUIRE(CopyFileW(copy.c_str(), file.c_str(), TRUE));
    GetFileAttributesExW(file.c_str(), GetFileExInfoStandard, &after);
    CHECK(ContentOf(file) == std::string("a\0b", 3));
    CHECK(after.dwFileAttributes == before.dwFileAttributes);
    CHECK(CompareFileTime(&after.ftLastWriteTime, &before.ftLastWriteTime) == 0);
    DeleteFileW(file.c_str());
    CHECK(place.host.statuses.empty());
}

TEST_CASE("Without room or rights the deletion goes on, and the status bar says that there is no copy") {
    Place place;
    const std::wstring startup_folder = win::GetSpecialFolderPath(CSIDL_STARTUP);
    const std::wstring file = startup_folder + L"\\見本.lnk";
    const std::wstring data = win::GetSpecialFolderPath(CSIDL_APPDATA) + L"\\Qorvenix";
    const std::wstring in_data = data + L"\\backup";
    const std::wstring below_data = in_data + L"\\";
    const TestKey attachments(HKEY_CURRENT_USER, L"Software\\Microsoft\\Windows\\Shell\\AttachmentExecute");
    using Texts = std::vector<std::wstring>;
    const auto delete_all = [&] {
        MakeFile(file);
        attachments.make(L"{0002DF01-0000-0000-C000-000000000046}");
        place.host.statuses.clear();
        CHECK(Entry().uninstall(place));
        CHECK(startup::DeleteStartupEntry({L"見本.lnk", {}, startup_folder, {}}, place.backup, place.host));
        tools::RunRepair(tools::RepairItem::DownloadLocation, {}, place.backup, place.host);
        CHECK_FALSE(KeyExists(HKEY_LOCAL_MACHINE, kProgram));
        CHECK_FALSE(win::IsFile(file));
        CHECK_FALSE(KeyExists(attachments.get(), L"{0002DF01-0000-0000-C000-000000000046}"));
        return place.host.statuses;
    };
    const std::wstring sentence = L"バックアップを保存できませんでした。";
    const Texts nothing_kept = {sentence, sentence, L"完了", sentence};

    {
        const ImportHook write("WriteFile", &WriteUntilFull);
        const ImportHook copy("CopyFileW", &CopyUntilFull);
        REQUIRE(write);
        REQUIRE(copy);
        write_file = write.original<decltype(WriteFile)>();
        CHECK(delete_all() == nothing_kept);
        // Neither folder holds anything unfinished.
        CHECK(Names(place.folder).empty());
        CHECK(Names(in_data).empty());
    }
    RemoveDirectoryW(place.folder.c_str());
    MakeFile(place.folder);
    CHECK(delete_all() == Texts{L"完了"});
    CHECK(Names(in_data).size() == 3);
    for (const std::wstring& name : Names(in_data))
        DeleteFileW((below_data + name).c_str());
    RemoveDirectoryW(in_data.c_str());
    RemoveDirectoryW(data.c_str());
    MakeFile(data);
    CHECK(delete_all() == nothing_kept);
    DeleteFileW(data.c_str());

    // Where nothing is, nothing has to be kept, as where the user does not want it.
    DeleteFileW(place.folder.c_str());
    place.host.statuses.clear();
    CHECK(place.backup.keep_key(HKEY_LOCAL_MACHINE, kProgram, L"gone"));
    CHECK(place.backup.keep_value(HKEY_LOCAL_MACHINE, startup::kRunKey, L"gone", L"gone"));
    CHECK(place.backup.keep_value(HKEY_LOCAL_MACHINE, kProgram, L"gone", L"gone"));
    CHECK(place.backup.keep_file(file));
    place.backup = {};
    CHECK(delete_all() == Texts{L"完了"});
    CHECK(Names(place.folder).empty());
    CHECK(Names(in_data).empty());
}

TEST_CASE("Of a key that is deleted while it is read, what was read is kept") {
    Place place;
    const Entry entry;
    for (int number = 1; number <= 9; ++number)
        entry.set_text(L"", L"v" + win::ToText(number), L"text");
    entry.set_bytes(L"", L"enormous", REG_BINARY, hostile::Bytes(9 << 20));
    const ImportHook enumerate("RegEnumValueW", &DeletedMeanwhile);
    REQUIRE(enumerate);
    enum_value = enumerate.original<decltype(RegEnumValueW)>();
    CHECK(place.backup.keep_key(HKEY_LOCAL_MACHINE, kProgram, L"v"));
    const std::wstring text = WideContentOf(place.only(L"v.reg"));
    CHECK(win::Contains(text, L"\"v3\"=\"text\"\r\n"));
    CHECK(text.size() < 1000);
}

TEST_CASE("The two hundred newest copies stay, files of others always, and all that a link leads to") {
    Place place;
    const auto keep = [&] {
        const Entry entry;
        CHECK(place.backup.keep_key(HKEY_LOCAL_MACHINE, kProgram, std::wstring(300, L'長') + L"\xD83D\xDE00"));
    };
    const auto of_number = [](unsigned number) {
        return L"20990131-23" + win::PadZeros(number / 60, 2) + win::PadZeros(number % 60, 2) + L" a.lnk";
    };
    const auto fill = [&](const std::wstring& folder) {
        CreateDirectoryW(folder.c_str(), nullptr);
        for (unsigned number = 0; number < 205; ++number)
            MakeFile(folder + L"\\" + of_number(number), number % 2 ? FILE_ATTRIBUTE_READONLY : FILE_ATTRIBUTE_NORMAL);
    };
    const std::set<std::wstring> others = {L"20260101-000000",         L"20260101-000000.reg",
                                           L"20260101 000000 a.reg",   L"20260101-006000 a.reg",
                                           L"a 20260101-000000 a.reg", L"20260101-000000 f"};
    REQUIRE(CreateDirectoryW(place.folder.c_str(), nullptr));
    for (const std::wstring& each : others)
        each.ends_with(L'f') ? MakeFolder(place.folder + L"\\" + each) : MakeFile(place.folder + L"\\" + each);
    keep();
    fill(place.folder);
    keep();
    auto names = Names(place.folder);
    for (const std::wstring& each : others)
        CHECK(names.erase(each) == 1);
    CHECK(names.size() == 200);
    CHECK(names.contains(of_number(204)));
    CHECK_FALSE(names.contains(of_number(5)));
    // The one just written is the oldest by its name.
    CHECK(names.begin()->starts_with(L"20"));
    CHECK(win::Contains(*names.begin(), L"長"));

    Place linked;
    const std::wstring outside = linked.program + L"\\outside";
    fill(outside);
    REQUIRE(MakeHostLink(L"outside", linked.folder));
    const Entry entry;
    CHECK(linked.backup.keep_key(HKEY_LOCAL_MACHINE, kProgram, L"a"));
    CHECK(Names(outside).size() == 206);
}
