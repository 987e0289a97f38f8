#include "programs/restore_page.h"

#include "support/automation_double.h"
#include "support/import_hook.h"
#include "support/show.h"
#include "support/test_host.h"
#include "support/test_list.h"

using namespace programs;

namespace {

using Texts = std::vector<std::wstring>;

win::Variant Point(const win::Variant& time, const win::Variant& description, const win::Variant& number) {
    const auto point =
        doubles::MakeObject({{L"CreationTime", time}, {L"Description", description}, {L"SequenceNumber", number}});
    return win::Variant(point.get());
}

struct Machine {
    win::ComApartment apartment;
    const TestList test{kRestoreColumns};
    const ui::ListView& list = test.list;
    Provider provider;
    TestHost host;
};

}  // namespace

TEST_CASE("a point's time moves nine hours on, with the minutes in the place of the seconds, or it is none") {
    const std::pair<const wchar_t*, const wchar_t*> times[] = {
        {L"20090301150405.000000-000", L"2009/03/02 00:04:04"},
        {L"20081231153012.", L"2009/01/01 00:30:30"},  // over the year
        {L"20080228200700.", L"2008/02/29 05:07:07"},  // onto the leap day
        {L"21000228200700.", L"2100/03/01 05:07:07"},  // no leap year
    };
    for (const auto& [time, shown] : times)
        CHECK(RestorePointTime(time) == shown);
    for (const wchar_t* broken : {L"", L"2009030115040", L"20091301150405.", L"20090229150405.", L"20090301240405.",
                                  L"2009030115040x.", L"-0090301150405.", L"00000000000000."}) {
        CHECK(RestorePointTime(broken) == std::nullopt);
    }
}

TEST_CASE_FIXTURE(Machine, "points are listed in the provider's order, or the list is hidden and nothing can be done") {
    const win::Variant null = doubles::OfType(VT_NULL);
    provider.points = {Point(win::Variant(L"20090301150405.000000-000"), win::Variant(L"二番"), win::Variant(12)),
                       Point(null, null, win::Variant(0)),
                       Point(win::Variant(L"20080101000000."), null, win::Variant(L"7")),
                       Point(win::Variant(L"20080101000000."), win::Variant(L"b"), null), win::Variant(L"no object")};
    list.add_row(L"a former row");
    list.show(false);
    CHECK((ListRestorePoints(list) && list.visible()));
    CHECK(test.rows() == std::vector<Texts>{{L"2009/03/02 00:04:04", L"二番"},
                                            {L"2008/01/01 09:00:00", {}},
                                            {L"2008/01/01 09:00:00", L"b"}});
    CHECK((list.item_data(0) == 12 && list.item_data(1) == 7 && list.item_data(2) == 0));
    CHECK(provider.calls == Texts{L"winmgmts:\\\\.\\root\\default", L"InstancesOf [systemrestore]"});

    host.typed = L"described";
    for (int fault = 0; fault < 3; ++fault) {
        CAPTURE(fault);
        provider.end = fault == 0 ? E_FAIL : S_FALSE;
        provider.answer = fault == 1 ? E_ACCESSDENIED : S_OK;
        provider.exists = fault != 2;
        list.show(true);
        CHECK_FALSE((ListRestorePoints(list) || list.visible()));
        list.select(0);
        CreateRestorePoint(list, host);
        CHECK_FALSE(DeleteRestorePoint(list, host));
        CHECK((host.questions.empty() && host.statuses.empty()));
    }
}

TEST_CASE_FIXTURE(Machine, "a point is created from a description, and one that fails leaves the status as it was") {
    host.set_status(L"12 個の項目");
    for (const std::optional<std::wstring>& nothing : {std::optional<std::wstring>(), std::optional(std::wstring())}) {
        host.typed = nothing;
        CreateRestorePoint(list, host);
    }
    CHECK(provider.calls.empty());
    REQUIRE(host.questions.size() == 2);
    CHECK(host.questions[0].text == L"復元ポイントを識別するのに役立つ説明を入力してください。");
    host.typed = L"導入前 \"1\"";
    provider.answer = E_ACCESSDENIED;
    CreateRestorePoint(list, host);
    provider.answer = S_OK;
    CreateRestorePoint(list, host);
    CHECK(provider.calls.back() == L"createrestorepoint [導入前 \"1\"] [0] [100]");
    CHECK(provider.calls.front() == L"winmgmts:\\\\.\\root\\default:Systemrestore");
    CHECK(host.statuses ==
          Texts{L"12 個の項目", L"復元ポイント作成中...", L"12 個の項目", L"復元ポイント作成中...",
                L"復元ポイント作成完了。リストを更新してください。表示されるのには数分かかる場合があります"});
    CHECK_FALSE(host.pointer_shows_hourglass);
}

TEST_CASE_FIXTURE(Machine, "the selected point is deleted by its number, after a question and no other") {
    static std::vector<DWORD> removed;
    LookUpHook library;
    library.put(
        "SRRemoveRestorePoint", +[](DWORD number) WINAPI -> DWORD {
            removed.push_back(number);
            return ERROR_INVALID_DATA;
        });
    provider.points = {Point(win::Variant(L"20090301150405."), win::Variant(L"b"), win::Variant(12)),
                       Point(win::Variant(L"20090401150405."), win::Variant(L"a"), win::Variant(345))};
    REQUIRE(ListRestorePoints(list));
    CHECK_FALSE(DeleteRestorePoint(list, host));
    CHECK(host.questions.empty());

    list.sort(RestoreColumn::Description, ui::SortOrder::Ascending);
    list.select(0);
    host.answer = ui::Answer::Cancel;
    CHECK_FALSE(DeleteRestorePoint(list, host));
    REQUIRE(host.questions.size() == 1);
    CHECK(host.questions[0].text == L"2009/04/02 00:04:04 の復元ポイントを削除します。\r\nよろしいですか？");
    CHECK(removed.empty());
    host.answer = ui::Answer::Ok;
    host.on_question = [&] { list.clear(); };  // the rows may change while the question is open
    CHECK(DeleteRestorePoint(list, host));
    CHECK(removed == std::vector<DWORD>{345});
    // A point without a number cannot be meant; the list is read again all the same.
    list.add_row(L"2009/01/01 00:00:00", 0);
    list.select(0);
    CHECK(DeleteRestorePoint(list, host));
    CHECK(removed == std::vector<DWORD>{345});

    CHECK(RestorePage().item_of_key(VK_DELETE, false, false) == RestorePage().item_of_button(0));
}
