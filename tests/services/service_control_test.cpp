#include "services/service_control.h"

#include "installed_service.h"
#include "service_row_double.h"
#include "services/modService.h"
#include "support/show.h"
#include "support/test_host.h"
#include "support/test_list.h"
#include "support/wmi_double.h"
#include "win/text.h"

#include <doctest/doctest.h>

#include <algorithm>

using namespace services;

namespace {

// The service list as a user has it before him.
struct Desk {
    win::ComApartment apartment;
    TestList window{kServiceColumns};
    const ui::ListView& list = window.list;
    TestHost host;
    std::wstring name;

    Desk() { host.owner = window.frame(); }
    ~Desk() { CHECK(doubles::alive == 0); }

    void refresh() { FillServiceList(list, host); }

    std::wstring cell(ServiceColumn::Index column) const {
        return list.cell(list.find(ServiceColumn::Name, name), column);
    }

    // A right press on the service's row and the choice of an item, which has to be enabled.
    void choose(ServiceItem::Index item) {
        const ServicePress press = lvService_MouseDown(list, list.find(ServiceColumn::Name, name));
        REQUIRE(press.cells.has_value());
        REQUIRE(IsServiceItemEnabled(item, press.cells));
        mnuServiceItem_Click(item, list, L"", host);
    }

    void show(const InstalledService& service) {
        name = service.name;
        refresh();
    }

    void add_row(const std::vector<std::wstring>& cells) {
        const int row = list.add_row(cells[0]);
        for (std::size_t column = 1; column < cells.size(); ++column) {
            list.set_cell(row, static_cast<int>(column), cells[column]);
        }
    }
};

using Items = std::vector<int>;

Items EnabledItems(const std::optional<ServiceCells>& row) {
    Items enabled;
    for (const ui::MenuItem& item : kServiceMenu) {
        if (IsServiceItemEnabled(item.index, row)) enabled.push_back(item.index);
    }
    return enabled;
}

}  // namespace

TEST_CASE("what the cells of a row enable") {
    const struct {
        std::wstring state, start_mode;
        Items items;
        bool can_pause;
    } table[] = {
        {L"開始", L"自動", {1, 7, 10, 11, 99}, true},
        {L"開始", L"手動", {1, 7, 9, 11, 99}, true},
        {L"開始", L"無効", {1, 7, 9, 10, 99}, true},
        {L"開始", L"", {1, 7, 9, 10, 11, 99}, true},
        {L"停止", L"自動", {1, 3, 10, 11, 99}, true},
        {L"停止", L"手動", {1, 3, 9, 11, 99}, true},
        {L"停止", L"無効", {1, 9, 10, 99}, true},
        {L"停止", L"", {1, 3, 9, 10, 11, 99}, true},
        {L"一時停止", L"自動", {1, 6, 7, 10, 11, 99}, false},
        {L"一時停止", L"手動", {1, 6, 7, 9, 11, 99}, false},
        {L"一時停止", L"無効", {1, 6, 7, 9, 10, 99}, false},
        {L"一時停止", L"", {1, 6, 7, 9, 10, 11, 99}, false},
        {L"", L"自動", {1, 7, 10, 11, 99}, true},
        {L"", L"手動", {1, 7, 9, 11, 99}, true},
        {L"", L"無効", {1, 7, 9, 10, 99}, true},
        {L"", L"", {1, 7, 9, 10, 11, 99}, true},
    };
    for (const auto& row : table) {
        for (const std::wstring pause : {L"-1", L"0", L""}) {
            for (const std::wstring stop : {L"-1", L"0", L""}) {
                Items items = row.items;
                if (stop == L"-1") items.push_back(4);
                if (pause == L"-1" && row.can_pause) items.push_back(5);
                std::ranges::sort(items);
                CHECK(EnabledItems(ServiceCells{row.state, row.start_mode, pause, stop}) == items);
            }
        }
    }
    CHECK(EnabledItems(std::nullopt) == Items{1, 99});
}

TEST_CASE_FIXTURE(Desk, "a press shows the row, a press on empty space nothing") {
    add_row({L"Print Spooler", L"開始", L"自動", L"一。二。", L"", L"0", L"-1", L"Spooler"});
    add_row({L"other", L"停止", L"手動", L"", L"", L"0", L"0", L"other"});
    const ServicePress press = lvService_MouseDown(list, 0);
    CHECK(list.selected() == 0);
    CHECK(press.detail.comment == L"一。\r\n二。");
    CHECK(press.detail.advice == L"判断基準：プリンタ未使用なら「無効」");
    CHECK(EnabledItems(press.cells) == Items{1, 4, 7, 10, 11, 99});
    CHECK(EnabledItems(lvService_MouseDown(list, 1).cells) == Items{1, 3, 9, 11, 99});
    const ServicePress nowhere = lvService_MouseDown(list, -1);
    CHECK_FALSE(nowhere.cells.has_value());
    CHECK(nowhere.detail.comment.empty());
    CHECK(nowhere.detail.advice.empty());
}

TEST_CASE_FIXTURE(Desk, "the cell under the pointer is copied, or else the name") {
    const auto clipboard = [this] {
        OpenClipboard(host.owner);
        const HANDLE memory = GetClipboardData(CF_UNICODETEXT);
        std::wstring text = memory ? static_cast<const wchar_t*>(GlobalLock(memory)) : L"";
        CloseClipboard();
        return text;
    };
    add_row({L"印刷", L"開始", L"自動", L"", L"", L"0", L"-1", L"Spooler"});
    list.select(0);
    mnuServiceItem_Click(ServiceItem::Copy, list, L"C:\\spool.exe", host);
    CHECK(clipboard() == L"C:\\spool.exe");
    mnuServiceItem_Click(ServiceItem::Copy, list, L"", host);
    CHECK(clipboard() == L"印刷");
}

TEST_CASE_FIXTURE(Desk, "a service that is starting has no state and can be restarted only") {
    const InstalledService service(L"begin=20000");
    show(service);
    choose(ServiceItem::Start);
    CHECK(cell(ServiceColumn::State) == L"開始");
    REQUIRE(service.state() == SERVICE_START_PENDING);
    refresh();
    CHECK(cell(ServiceColumn::State).empty());
    const ServicePress press = lvService_MouseDown(list, list.find(ServiceColumn::Name, name));
    CHECK(EnabledItems(press.cells) == Items{1, 4, 7, 9, 11, 99});
}

TEST_CASE_FIXTURE(Desk, "a restart waits alive as long as the check point advances, and finds its row again") {
    const InstalledService service(L"steps=3 step=600 hint=700");
    service.start();
    show(service);
    const DWORD process = service.process_id();
    bool hourglass = true;
    DWORD longest_silence = 0;
    DWORD last_pump = 0;
    host.on_pump = [&] {
        const DWORD now = GetTickCount();
        if (last_pump != 0) longest_silence = std::max(longest_silence, now - last_pump);
        last_pump = now;
        hourglass = hourglass && host.pointer_shows_hourglass;
        if (host.pumps % 2 == 0) list.sort(ServiceColumn::Name, ui::SortOrder::Descending);
        if (host.pumps % 2 == 1) list.sort(ServiceColumn::Name, ui::SortOrder::Ascending);
    };
    const DWORD start = GetTickCount();
    choose(ServiceItem::Restart);
    CHECK(GetTickCount() - start >= 1400);
    CHECK(longest_silence < 500);
    CHECK(hourglass);
    CHECK_FALSE(host.pointer_shows_hourglass);
    CHECK(service.wait_for(SERVICE_RUNNING));
    CHECK(service.process_id() != process);
    const auto rows = window.rows();
    CHECK(cell(ServiceColumn::State) == L"開始");
    host.on_pump = nullptr;
    refresh();
    const auto after = window.rows();
    for (const auto& row : rows)
        CHECK(std::ranges::find(after, row) != after.end());  // and no other row has changed
}

TEST_CASE_FIXTURE(Desk, "the wait ends after one wait hint when the check point stands still") {
    struct Wait {
        const wchar_t* arguments;
        DWORD at_least;
    };
    for (const Wait& wait : {Wait{L"steps=1 step=20000 hint=400 frozen", 400}, Wait{L"steps=1 step=20000 hint=0", 0}}) {
        const InstalledService service(wait.arguments);
        service.start();
        show(service);
        const DWORD start = GetTickCount();
        choose(ServiceItem::Restart);
        CHECK(GetTickCount() - start >= wait.at_least);
        CHECK(service.state() == SERVICE_STOP_PENDING);
        CHECK(cell(ServiceColumn::State) ==
              L"停止");  // the stop was accepted; the start was refused by a service still stopping
    }
}

TEST_CASE_FIXTURE(Desk, "the wait ends when the host says so, however long the service takes") {
    const InstalledService service(L"steps=1 step=20000 hint=20000");
    service.start();
    show(service);
    host.on_pump = [this] { host.closing = host.pumps > 10; };
    const DWORD start = GetTickCount();
    choose(ServiceItem::Restart);
    CHECK(GetTickCount() - start < 10000);
    CHECK(service.state() == SERVICE_STOP_PENDING);
}

TEST_CASE_FIXTURE(Desk, "a refused stop starts nothing") {
    const InstalledService service(L"nostop");
    service.start();
    show(service);
    const DWORD process = service.process_id();
    const auto rows = window.rows();
    const ServicePress press = lvService_MouseDown(list, list.find(ServiceColumn::Name, name));
    CHECK_FALSE(IsServiceItemEnabled(ServiceItem::Stop, press.cells));
    choose(ServiceItem::Restart);
    CHECK(window.rows() == rows);
    CHECK(service.state() == SERVICE_RUNNING);
    CHECK(service.process_id() == process);
    CHECK(ControlServiceAndWait(L"", L"no such service", host) == 0);
}

TEST_CASE_FIXTURE(Desk, "nothing happens to a service that has gone, or without a selection") {
    {
        const InstalledService service(L"");
        show(service);
    }
    const auto rows = window.rows();
    list.select(list.find(ServiceColumn::Name, name));
    for (const ui::MenuItem& item : kServiceMenu) {
        if (item.index != ServiceItem::Copy) mnuServiceItem_Click(item.index, list, L"", host);
    }
    CHECK(window.rows() == rows);
    list.clear();
    for (const ui::MenuItem& item : kServiceMenu)
        mnuServiceItem_Click(item.index, list, L"", host);
    CHECK(list.count() == 0);
}

TEST_CASE("a start type counts as given whether or not Windows takes it, but not for a service that is not there") {
    const InstalledService service(L"");
    CHECK(SetServiceStartMode(service.name, SERVICE_AUTO_START) == SERVICE_AUTO_START);
    CHECK(SetServiceStartMode(service.name, 77) == 77);  // refused: the caller reads back
    CHECK(service.start_type() == SERVICE_AUTO_START);
    CHECK(SetServiceStartMode(L"no such service", SERVICE_AUTO_START) == -1);
}

TEST_CASE_FIXTURE(Desk, "a request is believed only when it returns 0, and a start mode only when it has a word") {
    std::int32_t answer = 0;
    int calls = 0;
    const WmiDouble wmi([&](const std::wstring&) {
        auto service = MakeService({L"service", L"Running", L"Boot"});
        service->method(L"StartService", [&](const doubles::Arguments& arguments, win::Variant& result) {
            CHECK(arguments.empty());
            ++calls;
            result = win::Variant(answer);
            return answer < 0 ? E_FAIL : S_OK;
        });
        doubles::Members members;
        members.values.emplace_back(service.get());
        return members;
    });
    add_row({L"other", L"other", L"手動", L"", L"", L"0", L"0", L"other"});
    add_row({L"service", L"停止", L"手動", L"", L"", L"-1", L"-1", L"it's"});
    list.select(1);
    for (const std::int32_t refusal : {2, -1}) {  // access denied; the call itself fails
        answer = refusal;
        mnuServiceItem_Click(ServiceItem::Start, list, L"", host);
        CHECK(list.cell(1, ServiceColumn::State) == L"停止");
    }
    CHECK(calls == 2);
    mnuServiceItem_Click(ServiceItem::Restart, list, L"", host);  // the service manager does not know it: no start
    CHECK(calls == 2);
    answer = 0;
    mnuServiceItem_Click(ServiceItem::Start, list, L"", host);
    CHECK(list.cell(1, ServiceColumn::State) == L"開始");
    CHECK(list.cell(0, ServiceColumn::State) == L"other");
    CHECK(wmi.queries.back() == L"Select * From Win32_Service Where Name=\"it's\"");
    mnuServiceItem_Click(ServiceItem::Disabled, list, L"", host);
    CHECK(list.cell(1, ServiceColumn::StartMode) == L"手動");
}
