// The list of start-up items: a Run key with many values. Nothing else is in the startup folders and keys.
#include "bare_list.h"
#include "results.h"

#include "../tests/support/test_host.h"
#include "../tests/support/test_key.h"
#include "../tests/support/test_list.h"
#include "startup/startup_scan.h"
#include "win/automation.h"
#include "win/text.h"

namespace {

using startup::StartupColumn;

constexpr wchar_t kPlace[] = L"(全ユーザー)SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Run";
constexpr wchar_t kProgram[] = L"C:\\windows\\regedit.exe";
constexpr DWORD kBytes = 1024;
constexpr int kDetailColumns = 41;

// Both roots as this process sees them; only the machine's Run key has values, `count` of them.
class RunKey {
public:
    explicit RunKey(int count) {
        for (int number = 0; number < count; ++number) {
            run_.set_text(L"", L"Program " + win::ToText(number), L"\"" + std::wstring(kProgram) + L"\" /background");
        }
    }

private:
    static win::RegKey Open(const wchar_t* path) {
        win::RegKey key;
        RegCreateKeyExW(HKEY_CURRENT_USER, path, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, key.put(), nullptr);
        return key;
    }

    TestKey sandbox_{HKEY_CURRENT_USER, L"Software\\QorvenixBench"};
    TestKey run_{HKEY_CURRENT_USER, std::wstring(L"Software\\QorvenixBench\\machine\\") + startup::kRunKey};
    win::RegKey machine_ = Open(L"Software\\QorvenixBench\\machine");
    win::RegKey user_ = Open(L"Software\\QorvenixBench\\user");
    RootOverride machine_override_{HKEY_LOCAL_MACHINE, machine_.get()};
    RootOverride user_override_{HKEY_CURRENT_USER, user_.get()};
};

// The folder's columns that may be named "description".
void ReadHeaders() {
    const win::Object folder = win::Object::create(L"Shell.Application").get_object(L"Namespace", L"C:\\windows");
    for (int column = 0; column < kDetailColumns; ++column)
        folder.get(L"GetDetailsOf", win::Variant(), column);
}

void LookIntoFolders() {
    for (const int folder : {CSIDL_STARTUP, CSIDL_COMMON_STARTUP}) {
        wchar_t path[MAX_PATH] = {};
        SHGetSpecialFolderPathW(nullptr, path, folder, FALSE);
        WIN32_FIND_DATAW entry = {};
        const win::FindHandle search(FindFirstFileW((std::wstring(path) + L"\\*").c_str(), &entry));
        while (FindNextFileW(search.get(), &entry)) {
        }
    }
}

// What a fill asks of the registry and the shell and says to the list. Every program is the same.
void BareLoop(const ui::ListView& window) {
    bench::BareList list(&window);
    LookIntoFolders();
    ReadHeaders();
    const DWORD drive = GetDriveTypeW(L"c:\\");
    win::RegKey key;
    RegOpenKeyW(HKEY_LOCAL_MACHINE, startup::kRunKey, key.put());
    for (DWORD index = 0; drive == DRIVE_FIXED; ++index) {
        wchar_t name[kBytes];
        wchar_t data[kBytes / sizeof(wchar_t)];
        DWORD length = kBytes;
        DWORD bytes = kBytes;
        if (RegEnumValueW(key.get(), index, name, &length, nullptr, nullptr, reinterpret_cast<BYTE*>(data), &bytes) !=
            ERROR_SUCCESS) {
            break;
        }
        PathFileExistsW(kProgram);
        SHFILEINFOW info = {};
        SHGetFileInfoW(kProgram, 0, &info, sizeof info, SHGFI_SYSICONINDEX | SHGFI_DISPLAYNAME | SHGFI_SMALLICON);
        list.add(name, info.iIcon);
        list.set(StartupColumn::Value, data);
        list.set(StartupColumn::Location, kPlace);
        list.set(StartupColumn::Description, L"");
    }
}

void Measure(int count) {
    const RunKey run_key(count);
    const TestList window(startup::kStartupColumns);
    TestHost host;
    const auto expect_rows = [&] { bench::Expect(window.list.count() == count, "the rows of the start-up items"); };
    const auto bare = [&] {
        BareLoop(window.list);
        expect_rows();
    };
    bench::Compare("start-up items", count,
                   count < 1000    ? 21
                   : count < 10000 ? 7
                                   : 3,
                   {[&] { startup::ScanStartup(window.list, host); }, bare}, bench::FillGoal(count));
    startup::ScanStartup(window.list, host);
    expect_rows();
}

}  // namespace

int wmain(int count, wchar_t** arguments) {
    bench::Begin(count, arguments);
    const win::ComApartment apartment;
    // Each costs more of the shell's time than of anybody else's, and ten thousand of them are in no Run key.
    for (const int size : bench::Sizes()) {
        if (size <= 1000) Measure(size);
    }
    return bench::End();
}
