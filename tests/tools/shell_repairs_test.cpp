#include "tools/shell_repairs.h"

#include "support/show.h"
#include "support/test_host.h"
#include "support/test_key.h"

#include <string>

using namespace tools;

namespace {

constexpr wchar_t kRemove[] = L"コンテキストメニューの「送る」を削除 (XP/Vista)";
constexpr wchar_t kRestore[] = L"コンテキストメニューの「送る」を復元 (XP/Vista)";
constexpr wchar_t kHandlers[] = L"AllFilesystemObjects\\shellex\\ContextMenuHandlers";
constexpr wchar_t kAttachments[] = L"Software\\Microsoft\\Windows\\Shell\\AttachmentExecute";
constexpr wchar_t kDownloads[] = L"{0002DF01-0000-0000-C000-000000000046}";
constexpr wchar_t kQuestion[] =
    L"本機能は Vista の IE でダウンロードする時、\r\n保存先が選べなくなったものを元に戻す機能です\r\n"
    L"実行してもよろしいですか？";

std::wstring Caption() { return QueryRepairItems({2, 6, 1}).send_to_caption; }

// The type and the bytes of a key's default value.
std::wstring DefaultValue(HKEY parent, const wchar_t* subkey) {
    win::RegKey key;
    RegOpenKeyExW(parent, subkey, 0, KEY_QUERY_VALUE, key.put());
    wchar_t text[100] = {};
    DWORD type = REG_NONE;
    DWORD size = sizeof text;
    RegQueryValueExW(key.get(), L"", nullptr, &type, reinterpret_cast<BYTE*>(text), &size);
    return std::to_wstring(type) + L":" + std::to_wstring(size) + L":" + text;
}

std::wstring Run(int repair, std::wstring_view caption, ui::Answer answer = ui::Answer::Ok) {
    TestHost host;
    host.answer = answer;
    RunRepair(repair, caption, {}, host);
    const std::size_t questions = repair == RepairItem::DownloadLocation ? 1 : 0;
    REQUIRE(host.questions.size() == questions);
    if (questions == 1) {
        CHECK(host.questions[0].text == kQuestion);
        CHECK(host.questions[0].icon == 0);
    }
    CHECK(host.statuses.size() <= 1);
    return host.status_text();
}

}  // namespace

TEST_CASE("The captions follow the registry, the second repair the version of Windows") {
    CHECK(RepairItemsFor(true, {2, 5, 1}).send_to_caption == std::wstring(kRemove));
    CHECK(RepairItemsFor(false, {2, 5, 1}).send_to_caption == std::wstring(kRestore));
    for (const win::OsVersion& version : {win::OsVersion{}, {2, 4, 10}, {2, 5, 0}})
        CHECK_FALSE(RepairItemsFor(true, version).download_location_enabled);
    for (const win::OsVersion& version : {win::OsVersion{2, 5, 1}, {2, 5, 2}, {2, 6, 0}, {2, 10, 0}}) {
        CHECK(RepairItemsFor(false, version).download_location_enabled);
    }
}

TEST_CASE("Send To is removed and restored by the caption") {
    REQUIRE_FALSE(KeyExists(HKEY_CLASSES_ROOT, kHandlers));
    CHECK(Caption() == kRestore);
    // Without the parent key neither does anything.
    CHECK(Run(RepairItem::SendTo, kRestore) == L"");
    CHECK(Run(RepairItem::SendTo, kRemove) == L"");
    CHECK_FALSE(KeyExists(HKEY_CLASSES_ROOT, kHandlers));

    const TestKey handlers(HKEY_CLASSES_ROOT, kHandlers);
    handlers.make(L"Open With");
    CHECK(Caption() == kRestore);
    CHECK(Run(RepairItem::SendTo, Caption()) == L"復元完了");
    CHECK(DefaultValue(handlers.get(), L"Send To") == L"1:78:{7BA4C740-9E81-11CF-99D3-00AA004AE837}");
    CHECK(Caption() == kRemove);
    CHECK(Run(RepairItem::SendTo, Caption()) == L"削除完了");
    CHECK(Caption() == kRestore);
    CHECK_FALSE(KeyExists(handlers.get(), L"Send To"));
    CHECK(KeyExists(handlers.get(), L"Open With"));

    // The caption decides, not what is there: a removal that finds nothing is not noticed, a restoration overwrites.
    CHECK(Run(RepairItem::SendTo, kRemove) == L"削除完了");
    handlers.set_text(L"Send To", L"", L"something else");
    CHECK(Run(RepairItem::SendTo, kRestore) == L"復元完了");
    CHECK(DefaultValue(handlers.get(), L"Send To") == L"1:78:{7BA4C740-9E81-11CF-99D3-00AA004AE837}");
    // A key with subkeys stays, and that is not noticed either.
    handlers.make(L"Send To\\below");
    CHECK(Run(RepairItem::SendTo, kRemove) == L"削除完了");
    CHECK(Caption() == kRemove);
}

TEST_CASE("The download location is repaired after OK and after Cancel") {
    REQUIRE_FALSE(KeyExists(HKEY_CURRENT_USER, kAttachments));
    CHECK(Run(RepairItem::DownloadLocation, kRemove) == L"");
    CHECK_FALSE(KeyExists(HKEY_CURRENT_USER, kAttachments));

    const TestKey attachments(HKEY_CURRENT_USER, kAttachments);
    for (const ui::Answer answer : {ui::Answer::Ok, ui::Answer::Cancel}) {
        attachments.set_text(kDownloads, L"value", L"text");
        attachments.make(L"{another}");
        CHECK(Run(RepairItem::DownloadLocation, L"", answer) == L"完了");
        CHECK_FALSE(KeyExists(attachments.get(), kDownloads));
        CHECK(KeyExists(attachments.get(), L"{another}"));
    }
    CHECK(Run(RepairItem::DownloadLocation, L"") == L"完了");
}
