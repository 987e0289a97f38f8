#include "tools/memory_monitor.h"

#include "ui/modDialog.h"
#include "win/date_text.h"
#include "win/process.h"
#include "win/text.h"

#include <optional>
#include <utility>

namespace tools {
namespace {

constexpr wchar_t kPercent[] = L" ％";

constexpr wchar_t kTitleGap[] = L"     ";

constexpr wchar_t kReleaseTitle[] = L"メモリ開放プログラム選択";
constexpr ui::FileFilter kReleaseFilter = {L"実行ファイル(*.exe)", L"*.exe"};

constexpr DWORD kLongestPause = 4 * kTickInterval;

constexpr unsigned kMegabyteBits = 20;

// "1534/2047 MB". Memory can be handed back between the two counts, so more may be free than there is.
std::wstring UsedOfTotal(DWORDLONG total, DWORDLONG available) {
    const DWORDLONG used = total > available ? total - available : 0;
    return win::ToText(used >> kMegabyteBits) + L"/" + win::ToText(total >> kMegabyteBits) + L" MB";
}

}  // namespace

void WriteMemoryTexts(const MEMORYSTATUSEX& status, MemoryTexts& texts) {
    texts[kMemoryLoad] = win::ToText(status.dwMemoryLoad) + kPercent;
    texts[kPhysicalMemory] = UsedOfTotal(status.ullTotalPhys, status.ullAvailPhys);
    texts[kVirtualMemory] = UsedOfTotal(status.ullTotalVirtual, status.ullAvailVirtual);
    texts[kPageFile] = UsedOfTotal(status.ullTotalPageFile, status.ullAvailPageFile);
}

MemoryMonitor::MemoryMonitor() : texts_{kNoPercent, kNoMegabytes, kNoMegabytes, kNoMegabytes, kNoPercent} {}

const MemoryTexts& MemoryMonitor::read() {
    MEMORYSTATUSEX status = {};
    status.dwLength = sizeof status;
    if (GlobalMemoryStatusEx(&status)) WriteMemoryTexts(status, texts_);
    const DWORD now = GetTickCount();
    if (now - std::exchange(last_read_, now) > kLongestPause) {
        processor_.restart();
        texts_[kProcessorLoad] = kNoPercent;
    }
    if (const std::optional<unsigned> load = processor_.read()) {
        texts_[kProcessorLoad] = win::ToText(*load) + kPercent;
    }
    return texts_;
}

std::wstring TitleText(const SYSTEMTIME& time) { return ui::kProductName + (kTitleGap + win::DateTimeWithEra(time)); }

std::wstring ChooseMemoryRelease(HWND owner) { return ui::ChooseFileToOpen(owner, kReleaseTitle, kReleaseFilter); }

void RunMemoryRelease(const std::wstring& path) {
    if (!PathFileExistsW(path.c_str())) return;
    win::StartProcess(path, L"\"" + path + L"\"", win::WindowStyle::MinimisedWithFocus);
}

}  // namespace tools
