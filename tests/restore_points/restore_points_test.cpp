#include "programs/restore_page.h"

#include "provider.h"

#include "support/show.h"
#include "support/stand_in.h"
#include "support/test_folder.h"
#include "support/test_host.h"
#include "support/test_list.h"

#include <string>
#include <vector>

using namespace programs;

namespace {

constexpr wchar_t kNamespace[] = L"winmgmts:\\\\.\\root\\default";
constexpr wchar_t kClass[] = L"winmgmts:\\\\.\\root\\default:Systemrestore";
constexpr wchar_t kPrompt[] = L"復元ポイントを識別するのに役立つ説明を入力してください。";
constexpr wchar_t kCreating[] = L"復元ポイント作成中...";
constexpr wchar_t kCreated[] =
    L"復元ポイント作成完了。リストを更新してください。表示されるのには数分かかる場合があります";

using Rows = std::vector<std::vector<std::wstring>>;

win::Variant Point(const win::Variant& time, const win::Variant& description, const win::Variant& number) {
    auto point = doubles::MakeObject();
    point->property(L"CreationTime", time);
    point->property(L"Description", description);
    point->property(L"SequenceNumber", number);
    return win::Variant(point.get());
}

struct Machine {
    win::ComApartment apartment;
    const TestList test{kRestoreColumns};
    Provider provider;
    TestHost host;
};

std::string Removed() { return ContentOf(L"C:\\removed.txt"); }

}  // namespace

TEST_CASE("Times move nine hours on; the minutes stand twice, the seconds not at all") {
    const auto shown = [](const wchar_t* time) { return RestorePointTime(time).value_or(L"(none)"); };
    CHECK(shown(L"20090301150405.000000-000") == L"2009/03/02 00:04:04");
    CHECK(shown(L"20090301145959.999999+540") == L"2009/03/01 23:59:59");
    CHECK(shown(L"20081231153012.") == L"2009/01/01 00:30:30");  // over the year
    CHECK(shown(L"20080228200700.") == L"2008/02/29 05:07:07");  // onto the leap day
    CHECK(shown(L"20090228200700.") == L"2009/03/01 05:07:07");
    CHECK(shown(L"21000228200700.") == L"2100/03/01 05:07:07");  // no leap year
    for (const wchar_t* broken :
         {L"", L"2009030115040", L"20091301150405.", L"20090001150405.", L"20090230150405.", L"20090229150405.",
          L"20090301240405.", L"20090301156005.", L"20090301150460.", L"2009030115040x.", L"-0090301150405.",
          L"２00903011504.", L"00000000000000.", L"**************.******+***"}) {
        CAPTURE(std::wstring(broken));
        CHECK(shown(broken) == L"(none)");
    }
}

TEST_CASE_FIXTURE(Machine, "Points are listed in the provider's order, those without a time not at all") {
    provider.points = {Point(win::Variant(L"20090301150405.000000-000"), win::Variant(L"二番"), win::Variant(12)),
                       Point(doubles::Null(), doubles::Null(), win::Variant(0)),
                       Point(win::Variant(L"broken"), win::Variant(L"broken"), win::Variant(13)),
                       Point(win::Variant(L"20080101000000."), win::Variant(L""), win::Variant(L"7")),
                       Point(win::Variant(L"20080101000000."), doubles::Null(), doubles::Null()),
                       win::Variant(L"no object")};
    test.list.add_row(L"a former row");
    CHECK(ListRestorePoints(test.list));
    CHECK(test.list.visible());
    CHECK(test.list.header(0) == L"日時");
    CHECK(test.list.header(1) == L"説明");
    CHECK(test.rows() ==
          Rows{{L"2009/03/02 00:04:04", L"二番"}, {L"2008/01/01 09:00:00", L""}, {L"2008/01/01 09:00:00", L""}});
    CHECK(test.list.item_data(0) == 12);
    CHECK(test.list.item_data(1) == 7);
    CHECK(test.list.item_data(2) == 0);
    CHECK(provider.calls == std::vector<std::wstring>{kNamespace, L"InstancesOf [systemrestore]"});

    provider.points.clear();
    test.list.show(false);
    CHECK(ListRestorePoints(test.list));
    CHECK(test.list.count() == 0);
    CHECK(test.list.visible());
}

TEST_CASE_FIXTURE(Machine, "A listing that fails leaves the list hidden, and creation and deletion off") {
    provider.points = {Point(win::Variant(L"20090301150405."), win::Variant(L"one"), win::Variant(1))};
    const auto fails = [&] {
        test.list.show(true);
        CHECK_FALSE(ListRestorePoints(test.list));
        CHECK_FALSE(test.list.visible());
        host.typed = L"described";
        test.list.select(0);
        CreateRestorePoint(test.list, host);
        CHECK_FALSE(DeleteRestorePoint(test.list, host));
        CHECK(host.questions.empty());
        CHECK(host.statuses.empty());
    };
    provider.end = E_FAIL;
    fails();
    provider.end = S_FALSE;
    provider.instances = E_ACCESSDENIED;
    fails();
    provider.instances = S_OK;
    provider.exists = false;
    fails();
    CHECK(test.list.count() == 0);
}

TEST_CASE_FIXTURE(Machine, "A point is created from a description, with the kind and the event of a beginning change") {
    host.set_status(L"12 個の項目");
    for (const std::optional<std::wstring>& nothing : {std::optional<std::wstring>(), std::optional(std::wstring())}) {
        host.typed = nothing;
        CreateRestorePoint(test.list, host);
    }
    CHECK(provider.calls.empty());
    CHECK(host.statuses.size() == 1);
    REQUIRE(host.questions.size() == 2);
    CHECK(host.questions[0].text == kPrompt);
    CHECK(host.questions[0].title == L"Qorvenix");

    host.typed = L"導入前 \"1\"";
    CreateRestorePoint(test.list, host);
    CHECK(provider.calls == std::vector<std::wstring>{kClass, L"createrestorepoint [導入前 \"1\"][0][100]"});
    CHECK(host.statuses == std::vector<std::wstring>{L"12 個の項目", kCreating, kCreated});
    CHECK_FALSE(host.pointer_shows_hourglass);

    provider.creation = E_ACCESSDENIED;
    host.statuses = {L"12 個の項目"};
    CreateRestorePoint(test.list, host);
    CHECK(host.statuses == std::vector<std::wstring>{L"12 個の項目", kCreating, L"12 個の項目"});
    provider.exists = false;
    CreateRestorePoint(test.list, host);
    CHECK(host.status_text() == L"12 個の項目");
    CHECK_FALSE(host.pointer_shows_hourglass);
}

TEST_CASE_FIXTURE(Machine, "The selected point is deleted by its number after a question") {
    const StandIn library(L"srclient.dll", StandIn::built(L"srclient_dll.dll"));
    REQUIRE(library.placed());
    DeleteFileW(L"C:\\removed.txt");
    provider.points = {Point(win::Variant(L"20090301150405."), win::Variant(L"b"), win::Variant(12)),
                       Point(win::Variant(L"20090401150405."), win::Variant(L"a"), win::Variant(345))};
    CHECK_FALSE(DeleteRestorePoint(test.list, host));
    REQUIRE(ListRestorePoints(test.list));
    CHECK_FALSE(DeleteRestorePoint(test.list, host));
    CHECK(host.questions.empty());

    test.list.sort(1, ui::SortOrder::Ascending);
    test.list.select(0);
    host.answer = ui::Answer::Cancel;
    CHECK_FALSE(DeleteRestorePoint(test.list, host));
    REQUIRE(host.questions.size() == 1);
    CHECK(host.questions[0].text == L"2009/04/02 00:04:04 の復元ポイントを削除します。\r\nよろしいですか？");
    CHECK(Removed().empty());

    host.answer = ui::Answer::Ok;
    host.on_question = [&] { test.list.clear(); };  // the rows may change while the question is open
    CHECK(DeleteRestorePoint(test.list, host));
    CHECK(Removed() == "345\n");

    // A point without a number cannot be meant; the list is read again all the same.
    host.on_question = nullptr;
    test.list.add_row(L"2009/01/01 00:00:00", 0);
    test.list.select(0);
    CHECK(DeleteRestorePoint(test.list, host));
    CHECK(Removed() == "345\n");
    CHECK(host.statuses.empty());
}

TEST_CASE("The Delete key is the first button") {
    const RestorePage page;
    CHECK(page.item_of_key(VK_DELETE, false, false) == page.item_of_button(0));
    CHECK(page.item_of_key(L'C', true, false) == ui::Page::kCopyItem);
}
