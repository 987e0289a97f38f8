#include "programs/restore_points.h"

#include "win/automation.h"
#include "win/system_library.h"
#include "win/text.h"

namespace programs {
namespace {

constexpr wchar_t kNamespace[] = L"winmgmts:\\\\.\\root\\default";
constexpr wchar_t kProviderClass[] = L"winmgmts:\\\\.\\root\\default:Systemrestore";

constexpr wchar_t kDescriptionPrompt[] = L"復元ポイントを識別するのに役立つ説明を入力してください。";
constexpr wchar_t kCreating[] = L"復元ポイント作成中...";
constexpr wchar_t kCreated[] =
    L"復元ポイント作成完了。リストを更新してください。表示されるのには数分かかる場合があります";
constexpr wchar_t kDeleteQuestion[] = L" の復元ポイントを削除します。\r\nよろしいですか？";

constexpr std::int32_t kApplicationInstall = 0;   // the kind of restore point
constexpr std::int32_t kBeginSystemChange = 100;  // no call with the ending event follows

// Users know the times of this list as Japan's whatever the machine's time zone is.
constexpr std::uint64_t kNineHours = 9ULL * 60 * 60 * 10'000'000;  // in units of 100 ns

// The number that `length` characters from `start` on write; nothing when one of them is no digit.
std::optional<WORD> Digits(std::wstring_view text, std::size_t start, std::size_t length) {
    unsigned number = 0;
    for (const wchar_t digit : text.substr(start, length)) {
        if (digit < L'0' || digit > L'9') return {};
        number = number * 10 + static_cast<unsigned>(digit - L'0');
    }
    return static_cast<WORD>(number);
}

std::optional<SYSTEMTIME> ParseTime(std::wstring_view text) {
    if (text.size() < 14) return {};
    const auto year = Digits(text, 0, 4), month = Digits(text, 4, 2), day = Digits(text, 6, 2);
    const auto hour = Digits(text, 8, 2), minute = Digits(text, 10, 2), second = Digits(text, 12, 2);
    if (!year || !month || !day || !hour || !minute || !second) return {};
    return SYSTEMTIME{*year, *month, 0, *day, *hour, *minute, *second, 0};
}

void RemovePoint(DWORD number) {
    using RemoveRestorePoint = DWORD(WINAPI*)(DWORD);
    const win::Module library = win::LoadSystemLibrary(L"srclient.dll");
    const auto remove = win::FindFunction<RemoveRestorePoint>(library.get(), "SRRemoveRestorePoint");
    if (remove) remove(number);
}

}  // namespace

std::optional<std::wstring> RestorePointTime(std::wstring_view creation_time) {
    const std::optional<SYSTEMTIME> utc = ParseTime(creation_time);
    FILETIME packed = {};
    SYSTEMTIME time = {};
    if (!utc || !SystemTimeToFileTime(&*utc, &packed) || !FileTimeToSystemTime(&packed, &time)) return {};
    if (time.wDay != utc->wDay) return {};  // Wine takes February 29 of any year
    const std::uint64_t shifted =
        (static_cast<std::uint64_t>(packed.dwHighDateTime) << 32 | packed.dwLowDateTime) + kNineHours;
    packed = {static_cast<DWORD>(shifted), static_cast<DWORD>(shifted >> 32)};
    if (!FileTimeToSystemTime(&packed, &time)) return {};
    const std::wstring minute = win::PadZeros(time.wMinute, 2);
    return win::PadZeros(time.wYear, 4) + L"/" + win::PadZeros(time.wMonth, 2) + L"/" + win::PadZeros(time.wDay, 2) +
           L" " + win::PadZeros(time.wHour, 2) + L":" + minute + L":" + minute;
}

bool ListRestorePoints(const ui::ListView& list) {
    list.show(false);
    list.clear();
    const win::Object points = win::Object::bind(kNamespace).get_object(L"InstancesOf", L"systemrestore");
    const bool complete = points.for_each([&list](const win::Object& point) {
        // Wine's provider answers with one point that has no time: it stands for none.
        const auto time = RestorePointTime(point.get(L"creationtime").text());
        if (!time) return true;
        const int row = list.add_row(*time, point.get(L"sequencenumber").number().value_or(0));
        list.set_cell(row, RestoreColumn::Description, point.get(L"Description").text());
        return true;
    });
    if (complete) list.show(true);
    return complete;
}

void CreateRestorePoint(const ui::ListView& list, ui::Host& host) {
    if (!list.visible()) return;
    const std::optional<std::wstring> description = host.input(kDescriptionPrompt);
    if (!description || description->empty()) return;
    const std::wstring former_status = host.status_text();
    host.set_status(kCreating);
    host.hourglass(true);
    const win::Variant arguments[] = {win::Variant(*description), win::Variant(kApplicationInstall),
                                      win::Variant(kBeginSystemChange)};
    // What the method returns says nothing to the user: only a call that cannot be made counts as failed.
    const HRESULT result = win::Object::bind(kProviderClass).invoke(L"createrestorepoint", arguments, nullptr);
    host.hourglass(false);
    host.set_status(SUCCEEDED(result) ? kCreated : former_status);
}

bool DeleteRestorePoint(const ui::ListView& list, ui::Host& host) {
    const int row = list.selected();
    if (row < 0 || !list.visible()) return false;
    const auto number = static_cast<DWORD>(list.item_data(row));
    const std::wstring question = list.cell(row, RestoreColumn::Date) + kDeleteQuestion;
    if (host.confirm(question) != ui::Answer::Ok) return false;
    if (number != 0) RemovePoint(number);
    return true;
}

}  // namespace programs
