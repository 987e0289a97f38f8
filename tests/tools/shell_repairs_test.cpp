#include "tools/shell_repairs.h"

#include "support/show.h"
#include "support/test_host.h"
#include "support/test_key.h"

using namespace tools;

namespace {

constexpr wchar_t kRemove[] = L"コンテキストメニューの「送る」を削除 (XP/Vista)";
constexpr wchar_t kRestore[] = L"コンテキストメニューの「送る」を復元 (XP/Vista)";
constexpr wchar_t kHandlers[] = L"AllFilesystemObjects\\shellex\\ContextMenuHandlers";
constexpr wchar_t kAttachments[] = L"Software\\Microsoft\\Windows\\Shell\\AttachmentExecute";
constexpr wchar_t kDownloads[] = L"{0002DF01-0000-0000-C000-000000000046}";

std::wstring Caption() { return QueryRepairItems({2, 6, 1}).send_to_caption; }

// What is told.
std::wstring Run(int repair, std::wstring_view caption, ui::Answer answer = ui::Answer::Ok) {
    TestHost host;
    host.answer = answer;
    RunRepair(repair, caption, {}, host);
    CHECK(host.questions.size() == (repair == RepairItem::DownloadLocation ? 1 : 0));
    for (const TestHost::Question& question : host.questions)
        CHECK(question.text.ends_with(L"保存先が選べなくなったものを元に戻す機能です\r\n実行してもよろしいですか？"));
    return host.statuses.size() <= 1 ? host.status_text() : L"?";
}

}  // namespace

TEST_CASE("Send To is removed and restored by the caption, which follows the registry, and nothing beside it") {
    // Without the parent key neither does anything.
    REQUIRE_FALSE(KeyExists(HKEY_CLASSES_ROOT, kHandlers));
    CHECK(Caption() == kRestore);
    for (const wchar_t* caption : {kRestore, kRemove})
        CHECK(Run(RepairItem::SendTo, caption) == L"");
    CHECK_FALSE(KeyExists(HKEY_CLASSES_ROOT, kHandlers));

    const TestKey handlers(HKEY_CLASSES_ROOT, kHandlers);
    handlers.make(L"Open With");
    for (const wchar_t* former : {L"", L"something else"}) {
        if (*former) handlers.set_text(L"Send To", L"", former);
        CHECK(Run(RepairItem::SendTo, kRestore) == L"復元完了");
        CHECK(Caption() == kRemove);
        wchar_t text[100] = {};
        DWORD type = REG_NONE;
        DWORD size = sizeof text;
        SHGetValueW(handlers.get(), L"Send To", L"", &type, text, &size);
        CHECK((type == REG_SZ && size == 78 && text == std::wstring(L"{7BA4C740-9E81-11CF-99D3-00AA004AE837}")));
    }
    // The caption decides, not what is there: a removal that finds nothing is not noticed.
    for (int time = 0; time < 2; ++time)
        CHECK(Run(RepairItem::SendTo, kRemove) == L"削除完了");
    CHECK(Caption() == kRestore);
    handlers.make(L"Send To\\below");
    CHECK(Run(RepairItem::SendTo, kRemove) == L"削除完了");
    CHECK((KeyExists(handlers.get(), L"Send To\\below") && KeyExists(handlers.get(), L"Open With")));
}

TEST_CASE("the download location is repaired after OK and after Cancel, from Windows XP on") {
    for (const unsigned minor : {0U, 1U})
        CHECK(QueryRepairItems({2, 5, minor}).download_location_enabled == (minor == 1));
    REQUIRE_FALSE(KeyExists(HKEY_CURRENT_USER, kAttachments));
    CHECK(Run(RepairItem::DownloadLocation, kRemove) == L"");
    CHECK_FALSE(KeyExists(HKEY_CURRENT_USER, kAttachments));

    const TestKey attachments(HKEY_CURRENT_USER, kAttachments);
    attachments.make(L"{another}");
    for (const ui::Answer answer : {ui::Answer::Ok, ui::Answer::Cancel}) {
        attachments.set_text(kDownloads, L"value", L"text");
        CHECK(Run(RepairItem::DownloadLocation, L"", answer) == L"完了");
        CHECK_FALSE(KeyExists(attachments.get(), kDownloads));
    }
    CHECK(KeyExists(attachments.get(), L"{another}"));
}
