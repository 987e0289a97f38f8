// The uninstall scan against a bare loop that makes the same registry calls, and its growth with the number of entries.
#include "programs/uninstall_scan.h"
#include "programs/file_icon.h"
#include "programs/modReg.h"
#include "win/text.h"

#include "../tests/support/root_override.h"
#include "../tests/support/test_host.h"
#include "../tests/support/test_key.h"
#include "../tests/support/test_list.h"
#include "timing.h"

#include <cstdio>

namespace {

constexpr wchar_t kUninstall[] = L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\";

// An Uninstall key with programs as installers write them, every fourth of them an update.
class Entries {
public:
    explicit Entries(int count)
        : root_path_(L"Software\\QorvenixBench\\" + win::ToText(count)),
          key_(HKEY_CURRENT_USER, root_path_ + L"\\" + kUninstall) {
        for (int number = 0; number < count; ++number) {
            const bool update = number % 4 == 0;
            const std::wstring digits = win::PadZeros(static_cast<unsigned>(number), 12);
            const std::wstring name = update ? L"KB" + digits : L"{8A0C6A00-0000-4000-8000-" + digits + L"}";
            key_.set_text(name, L"DisplayName", L"日本語のプログラム " + win::ToText(number));
            key_.set_text(name, L"Publisher", update ? L"Microsoft Corporation" : L"株式会社プログラム");
            key_.set_text(name, L"UninstallString", L"MsiExec.exe /X" + name);
            key_.set_text(name, L"InstallDate", L"20100401");
            key_.set_text(name, L"InstallLocation", L"C:\\Program Files\\Program " + win::ToText(number));
            key_.set_text(name, L"DisplayIcon", L"C:\\windows\\regedit.exe,0");
            key_.set_number(name, L"EstimatedSize", static_cast<DWORD>(number) * 1000);
        }
        RegOpenKeyExW(HKEY_CURRENT_USER, root_path_.c_str(), 0, KEY_ALL_ACCESS, root_.put());
    }
    HKEY root() const { return root_.get(); }

private:
    std::wstring root_path_;
    TestKey key_;
    win::RegKey root_;
};

// What the scan asks of the registry, and nothing else.
void BareLoop() {
    win::RegKey key;
    if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, kUninstall, 0, KEY_ENUMERATE_SUB_KEYS, key.put()) != ERROR_SUCCESS) return;
    std::vector<std::wstring> names;
    for (DWORD index = 0;; ++index) {
        wchar_t name[512];
        DWORD length = 512;
        FILETIME written = {};
        if (RegEnumKeyExW(key.get(), index, name, &length, nullptr, nullptr, nullptr, &written) != ERROR_SUCCESS) break;
        names.emplace_back(name, length);
    }
    for (const std::wstring& name : names) {
        win::RegKey entry;
        RegOpenKeyExW(HKEY_LOCAL_MACHINE, (kUninstall + name).c_str(), 0, KEY_QUERY_VALUE, entry.put());
        for (const wchar_t* value : {L"SystemComponent", L"UninstallString", L"DisplayName", L"Publisher",
                                     L"EstimatedSize", L"InstallDate", L"InstallLocation"}) {
            BYTE buffer[512];
            DWORD bytes = sizeof buffer;
            DWORD type = 0;
            RegQueryValueExW(entry.get(), value, nullptr, &type, buffer, &bytes);
        }
    }
}

// One number of entries, measured again and again beside the others, because other programs disturb all alike. The
// best time counts: a disturbance only ever adds.
class Measurement {
public:
    explicit Measurement(int count) : entries_(count), count_(count) {}

    void run() {
        const RootOverride machine(HKEY_LOCAL_MACHINE, entries_.root());
        loop_ = std::min(loop_, Once(&BareLoop));
        fill_ = std::min(fill_, Once([this] {
                             programs::ScanUninstallKeys({programs_.list, updates_.list, icons_.get()}, {}, L"", host_);
                         }));
    }
    void print() const {
        std::printf("%5d entries: fill %8.1f ms, bare loop %8.1f ms, ratio %.2f (%d rows)\n", count_, fill_, loop_,
                    fill_ / loop_, programs_.list.count() + updates_.list.count());
    }
    double fill() const { return fill_; }

private:
    Entries entries_;
    TestList programs_{programs::kProgramColumns};
    TestList updates_{programs::kProgramColumns};
    win::ImageList icons_ = programs::CreateSmallIconList();
    TestHost host_;
    int count_;
    double loop_ = 1e9;
    double fill_ = 1e9;
};

}  // namespace

int wmain() {
    constexpr int kRounds = 15;
    Measurement hundred(100);
    Measurement thousand(1000);
    Measurement ten_thousand(10000);
    for (int round = 0; round < kRounds; ++round) {
        for (int times = 0; times < 10; ++times)
            hundred.run();
        for (int times = 0; times < 3; ++times)
            thousand.run();
        ten_thousand.run();
    }
    for (const Measurement* each : {&hundred, &thousand, &ten_thousand})
        each->print();
    std::printf("1,000 to 100: %.1f, 10,000 to 1,000: %.1f\n", thousand.fill() / hundred.fill(),
                ten_thousand.fill() / thousand.fill());
    Measurement twenty_thousand(20000);
    twenty_thousand.run();
    twenty_thousand.print();
    return 0;
}
