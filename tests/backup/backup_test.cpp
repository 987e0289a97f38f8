// What is deleted can be brought back from the copy that is kept of it.
#include "win/backup_folder.h"

#include "programs/modReg.h"
#include "programs/program_actions.h"
#include "startup/startup_actions.h"
#include "startup/startup_scan.h"
#include "support/host_link.h"
#include "support/hostile.h"
#include "support/import_hook.h"
#include "support/test_folder.h"
#include "support/test_host.h"
#include "support/test_key.h"
#include "tools/shell_repairs.h"
#include "win/folders.h"
#include "win/process.h"
#include "win/registry_export.h"

#include <map>

namespace {

using Texts = std::vector<std::wstring>;

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
        const auto all = NamesBelow(folder);
        REQUIRE(all.size() == 1);
        CHECK(all.begin()->size() == std::size("20261121-213005") + name.size());
        CHECK(all.begin()->ends_with(L" " + name));
        return folder + L"\\" + *all.begin();
    }
    // By the system's own registry editor, which is a 64-bit program on 64-bit Windows.
    void import(const std::wstring& name) const {
        const auto editor = win::StartProcess(win::WindowsDirectory() + L"\\regedit.exe",
                                              L"regedit.exe /S \"" + only(name) + L"\"", win::WindowStyle::Normal);
        REQUIRE(WaitForSingleObject(editor.process.get(), 60000) == WAIT_OBJECT_0);
    }

    std::wstring program;
    std::wstring folder;
    win::BackupFolder backup;
    TestHost host;
};

using Values = std::map<std::wstring, hostile::Value>;

// All values of a key and of its subkeys, by their paths.
Values ValuesOf(HKEY root, const std::wstring& path, const std::wstring& shown = {}) {
    Values values;
    win::RegKey key;
    if (RegOpenKeyExW(root, path.c_str(), 0, KEY_READ, key.put()) != ERROR_SUCCESS) return values;
    values[shown + L"\\"];
    std::wstring name(16384, L'\0');
    hostile::Bytes data(2 << 20);
    for (DWORD index = 0;; ++index) {
        auto length = static_cast<DWORD>(name.size());
        auto size = static_cast<DWORD>(data.size());
        DWORD type = REG_NONE;
        if (RegEnumValueW(key.get(), index, name.data(), &length, nullptr, &type, reinterpret_cast<BYTE*>(data.data()),
                          &size) != ERROR_SUCCESS)
            break;
        values[shown + L"\\" + name.substr(0, length)] = {type, {data.data(), data.data() + size}};
    }
    for (const std::wstring& subkey : programs::EnumerateSubkeyNames(key.get(), L""))
        values.merge(ValuesOf(key.get(), subkey, std::wstring(shown).append(L"\\").append(subkey)));
    return values;
}

bool IsText(DWORD type) { return type == REG_SZ || type == REG_EXPAND_SZ || type == REG_MULTI_SZ; }

void CheckSame(const Values& restored, const Values& kept) {
    REQUIRE(restored.size() == kept.size());
    for (const auto& each : kept) {
        const auto& [name, value] = each;
        CAPTURE(each.first);
        REQUIRE(restored.contains(name));
        const auto& [type, bytes] = restored.at(name);
        REQUIRE(type == value.type);
        if (bytes == value.bytes) continue;
        // Of a text without an end the editor makes one with an end, which takes the place of a last odd byte.
        REQUIRE((IsText(type) && bytes.size() == value.bytes.size() + sizeof(wchar_t)));
        const auto whole = static_cast<std::ptrdiff_t>(value.bytes.size() & ~std::size_t{1});
        REQUIRE(std::equal(value.bytes.begin(), value.bytes.begin() + whole, bytes.begin()));
    }
}

const std::wstring kProgram =
    L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\日本 ]\x2122[-a\"b=\xD83D\xDE00; ";
constexpr wchar_t kDownloads[] = L"{0002DF01-0000-0000-C000-000000000046}";

struct Entry : TestKey {
    Entry() : TestKey(HKEY_LOCAL_MACHINE, kProgram) { set_text({}, L"DisplayName", L"見本"); }
    // The program's own command.
    bool uninstall(Place& place, const std::wstring& name = L"見本") const {
        programs::ProgramRow row;
        row.name = name;
        row.key_name = kProgram.substr(kProgram.rfind(L'\\') + 1);
        return programs::ForcedUninstall(row, {}, place.backup, place.host);
    }
};

}  // namespace

TEST_CASE("a program that was forced out of the list comes back with its subkeys, value for value") {
    hostile::Run("forced uninstalls brought back", 2, [](hostile::Source& source, std::uint64_t round) {
        Place place;
        const Entry entry;
        std::uint64_t number = round * 1000;
        const auto set = [&](std::wstring_view name) {
            const hostile::Value value = hostile::ValueFor(source, number++);
            // A text of a single byte is an access violation in Wine's 64-bit editor, which ends there.
            const bool fatal = win::kIs64Bit && throw_away::OnWine() && IsText(value.type) && value.bytes.size() == 1;
            if (name.find(L'\0') == name.npos && !fatal) value.set(entry.get(), name);
        };
        for (const std::wstring_view name : hostile::NastyTexts())
            set(name);
        for (const wchar_t* name : {L"", L"@", L"a\r\n[HKEY_CURRENT_USER\\planted]\r\n\"b", L"C:\\\"q\"\\n\\"})
            set(name);
        while (number < round * 1000 + 1000)
            set(hostile::MakeName(source, 300));
        for (const wchar_t* subkey : {L"empty", L"]", L"-a;\"b\" = @", L"日本\\\xD83D\xDE00\\deep"})
            entry.make(subkey);
        entry.set_text(L"日本\\\xD83D\xDE00\\deep", L"", L"C:\\\"default\"");
        const Values kept = ValuesOf(HKEY_LOCAL_MACHINE, kProgram);
        REQUIRE(kept.size() > 500);
        // No registration file can name these, no usual function finds all of them, and one is enormous.
        entry.set_bytes({}, L"0 enormous", REG_BINARY, hostile::Bytes(9 << 20));
        REQUIRE(native::SetText(entry.get(), std::wstring(L"hid\0den", 7), L"lost"));
        entry.make(L"a\r\n[HKEY_CURRENT_USER\\planted]");
        {
            const native::Key hidden(entry.get(), std::wstring(L"]\0x", 3));
            CHECK(entry.uninstall(place, L" はがき/\"スタジオ\": 2026\xD800"));
        }
        SHDeleteKeyW(HKEY_LOCAL_MACHINE, kProgram.c_str());
        place.import(L"はがき__スタジオ__ 2026_.reg");
        CheckSame(ValuesOf(HKEY_LOCAL_MACHINE, kProgram), kept);
        CHECK_FALSE(KeyExists(HKEY_CURRENT_USER, L"planted"));
        CHECK(place.host.statuses.empty());
    });
}

TEST_CASE("what the editor itself may read in another way is written byte by byte") {
    const auto line = [](std::wstring_view name, DWORD type, std::string_view bytes) {
        return win::RegistrationValue(name, type, {reinterpret_cast<const BYTE*>(bytes.data()), bytes.size()});
    };
    CHECK(line(L"\"\r\n\\", REG_SZ, {"A\0B", 3}) == L"\"\\\"\\r\\n\\\\\"=hex(1):41,00,42\r\n");
    CHECK(line(L"", REG_SZ, {"A\0\n\0\0\0", 6}) == L"@=hex(1):41,00,0a,00,00,00\r\n");
}

TEST_CASE("start-up values and what the repairs take away come back, each where it was, and nothing beside it") {
    const auto check = [](const TestKey& key, const wchar_t* copy, const Texts& statuses, const auto& remove) {
        Place place;
        const Values kept = ValuesOf(key.get(), {});
        key.set_text({}, L"beside", L"x");
        remove(place);
        CHECK(place.host.statuses == statuses);
        RegDeleteValueW(key.get(), L"beside");
        place.import(copy);
        CheckSame(ValuesOf(key.get(), {}), kept);
    };
    const std::wstring name = L"a\"b\\c=]\x2122";
    for (const programs::Hive& hive : programs::Hives()) {
        const TestKey run(hive.root, startup::kRunKey);
        run.set_text({}, name, L"%windir%\\a.exe", REG_EXPAND_SZ);
        check(run, L"a_b_c=]\x2122.reg", {}, [&](Place& place) {
            const std::wstring location = std::wstring(hive.tag) + startup::kRunKey;
            CHECK(startup::DeleteStartupEntry({name, {}, location, {}}, place.backup, place.host));
            REQUIRE(RegQueryValueExW(run.get(), name.c_str(), {}, {}, {}, {}) == ERROR_FILE_NOT_FOUND);
        });
    }
    const TestKey handlers(HKEY_CLASSES_ROOT, L"AllFilesystemObjects\\shellex\\ContextMenuHandlers");
    const TestKey attachments(HKEY_CURRENT_USER, L"Software\\Microsoft\\Windows\\Shell\\AttachmentExecute");
    const auto repair = [&](const TestKey& key, const wchar_t* subkey, int item, const wchar_t* caption,
                            const wchar_t* copy, const wchar_t* status) {
        key.set_text(subkey, L"", L"mine");
        key.set_number(subkey, L"number", 0xFFFFFFFF);
        check(key, copy, {status}, [&](Place& place) { tools::RunRepair(item, caption, place.backup, place.host); });
    };
    using tools::RepairItem;
    const wchar_t* const send_to = L"コンテキストメニューの「送る」.reg";
    repair(handlers, L"Send To", RepairItem::SendTo, tools::kRemoveSendTo, send_to, L"削除完了");
    repair(handlers, L"Send To", RepairItem::SendTo, L"", send_to, L"復元完了");
    repair(attachments, kDownloads, RepairItem::DownloadLocation, L"", L"ダウンロードの保存先.reg", L"完了");
}

TEST_CASE("a start-up file is kept with its content, its attributes and its times") {
    Place place;
    const std::wstring folder = win::GetSpecialFolderPath(CSIDL_STARTUP);
    const std::wstring file = folder + L"\\a.b 見本.lnk";
    MakeFile(file, FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM, {"a\0b", 3});
    // Windows gives a copy the time of the copying, but for the last change.
    static const auto set_times = [](const std::wstring& path, FILETIME time, bool all) {
        const win::File open(CreateFileW(path.c_str(), FILE_WRITE_ATTRIBUTES, 0, nullptr, OPEN_EXISTING, 0, nullptr));
        SetFileTime(open.get(), &time, &time, all ? &time : nullptr);
    };
    static decltype(CopyFileW)* copy_file = nullptr;
    const ImportHook hook(
        "CopyFileW", +[](const wchar_t* from, const wchar_t* to, BOOL fails_if_there) WINAPI -> BOOL {
            const BOOL done = copy_file(from, to, fails_if_there);
            set_times(to, {0, 0x01D00000}, false);
            return done;
        });
    copy_file = hook.original<decltype(CopyFileW)>();
    set_times(file, {0x12345600, 0x01C00000}, true);
    WIN32_FILE_ATTRIBUTE_DATA before = {}, kept = {};
    GetFileAttributesExW(file.c_str(), GetFileExInfoStandard, &before);
    CHECK(startup::DeleteStartupEntry({L"a.b 見本.lnk", {}, folder, {}}, place.backup, place.host));
    REQUIRE_FALSE(win::IsFile(file));
    const std::wstring copy = place.only(L"a.b 見本.lnk");
    GetFileAttributesExW(copy.c_str(), GetFileExInfoStandard, &kept);
    CHECK(CompareFileTime(&kept.ftLastAccessTime, &before.ftLastAccessTime) == 0);
    CHECK(CompareFileTime(&kept.ftLastWriteTime, &before.ftLastWriteTime) == 0);
    CHECK(kept.dwFileAttributes == before.dwFileAttributes);
    CHECK((ContentOf(copy) == std::string("a\0b", 3) && place.host.statuses.empty()));
}

TEST_CASE("without room or rights the deletion goes on, and the status bar says that there is no copy") {
    Place place;
    const std::wstring startup_folder = win::GetSpecialFolderPath(CSIDL_STARTUP);
    const std::wstring file = startup_folder + L"\\見本.lnk";
    const std::wstring data = win::GetSpecialFolderPath(CSIDL_APPDATA) + L"\\Qorvenix";
    const std::wstring in_data = data + L"\\backup";
    const TestKey attachments(HKEY_CURRENT_USER, L"Software\\Microsoft\\Windows\\Shell\\AttachmentExecute");
    const auto delete_all = [&] {
        MakeFile(file);
        attachments.make(kDownloads);
        place.host.statuses.clear();
        CHECK(Entry().uninstall(place));
        CHECK(startup::DeleteStartupEntry({L"見本.lnk", {}, startup_folder, {}}, place.backup, place.host));
        tools::RunRepair(tools::RepairItem::DownloadLocation, {}, place.backup, place.host);
        CHECK_FALSE((KeyExists(HKEY_LOCAL_MACHINE, kProgram) || KeyExists(attachments.get(), kDownloads)));
        CHECK_FALSE(win::IsFile(file));
        return place.host.statuses;
    };
    const std::wstring sentence = L"バックアップを保存できませんでした。";
    const Texts nothing_kept = {sentence, sentence, L"完了", sentence};
    {
        // A disk on which there is room for a few bytes more.
        static decltype(WriteFile)* write_file = nullptr;
        const ImportHook write(
            "WriteFile", +[](HANDLE full, const void* bytes, DWORD, DWORD* written, OVERLAPPED*) WINAPI -> BOOL {
                write_file(full, bytes, 10, written, nullptr);
                return SetLastError(ERROR_DISK_FULL), FALSE;
            });
        const ImportHook copy(
            "CopyFileW", +[](const wchar_t*, const wchar_t* to, BOOL) WINAPI -> BOOL {
                MakeFile(to, FILE_ATTRIBUTE_READONLY);
                return SetLastError(ERROR_DISK_FULL), FALSE;
            });
        write_file = write.original<decltype(WriteFile)>();
        CHECK(delete_all() == nothing_kept);
        // Neither folder holds anything unfinished.
        CHECK((NamesBelow(place.folder).empty() && NamesBelow(in_data).empty()));
    }
    // No folder can be made where a file stands.
    RemoveDirectoryW(place.folder.c_str());
    MakeFile(place.folder);
    CHECK(delete_all() == Texts{L"完了"});
    CHECK(NamesBelow(in_data).size() == 3);
    MoveFileW(data.c_str(), (data + L" kept").c_str());
    MakeFile(data);
    CHECK(delete_all() == nothing_kept);
    DeleteFileW(data.c_str());
    DeleteFileW(place.folder.c_str());

    // Where nothing is, nothing has to be kept, as where the user does not want it.
    CHECK(place.backup.keep_key(HKEY_LOCAL_MACHINE, kProgram, L"gone"));
    for (const wchar_t* key : {startup::kRunKey, kProgram.c_str()})
        CHECK(place.backup.keep_value(HKEY_LOCAL_MACHINE, key, L"gone", L"gone"));
    CHECK(place.backup.keep_file(file));
    place.backup = {};
    CHECK(delete_all() == Texts{L"完了"});
    CHECK((NamesBelow(place.folder).empty() && NamesBelow(in_data).empty()));
}

TEST_CASE("the two hundred newest copies stay, files of others always, and all that a link leads to") {
    Place place;
    Place linked;
    const Entry entry;
    const std::wstring outside = linked.program + L"\\outside";
    const auto of_number = [](unsigned number) {
        return L"20990131-23" + win::PadZeros(number / 60, 2) + win::PadZeros(number % 60, 2) + L" a.lnk";
    };
    for (const std::wstring& folder : {place.folder, outside}) {
        CreateDirectoryW(folder.c_str(), nullptr);
        for (unsigned number = 0; number < 205; ++number)
            MakeFile(folder + L"\\" + of_number(number), number % 2 ? FILE_ATTRIBUTE_READONLY : FILE_ATTRIBUTE_NORMAL);
    }
    Texts others = {L"20260101-000000", L"20260101-000000.reg", L"20260101 000000 a.reg", L"20260101-006000 a.reg",
                    L"a 20260101-000000 a.reg"};
    for (const std::wstring& each : others)
        MakeFile(place.folder + L"\\" + each);
    others.emplace_back(L"20260101-000000 f\\");
    CreateDirectoryW((place.folder + L"\\" + others.back()).c_str(), nullptr);
    for (int copy = 0; copy < 2; ++copy)
        CHECK(place.backup.keep_key(HKEY_LOCAL_MACHINE, kProgram, std::wstring(300, L'長') + L"\xD83D\xDE00"));
    auto names = NamesBelow(place.folder);
    for (const std::wstring& each : others)
        CHECK(std::erase(names, each) == 1);
    CHECK(names.size() == 200);
    CHECK((std::ranges::count(names, of_number(204)) == 1 && std::ranges::count(names, of_number(5)) == 0));
    // The one just written is the oldest by its name.
    CHECK((names.begin()->starts_with(L"20") && win::Contains(*names.begin(), L"長")));

    REQUIRE(MakeHostLink(L"outside", linked.folder));
    CHECK(linked.backup.keep_key(HKEY_LOCAL_MACHINE, kProgram, L"a"));
    CHECK(NamesBelow(outside).size() == 206);
}
