#include "services/service_control.h"

#include "installed_service.h"
#include "service_row_double.h"
#include "services/modService.h"
#include "support/import_hook.h"
#include "support/show.h"
#include "support/test_host.h"
#include "support/test_list.h"
#include "support/wmi_double.h"
#include "win/text.h"

#include <doctest/doctest.h>

#include <algorithm>
#include <map>

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
        const std::wstring text = memory ? static_cast<const wchar_t*>(GlobalLock(memory)) : L"";
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

TEST_CASE_FIXTURE(Desk, "a real service is started, paused, resumed and stopped") {
    const InstalledService service(L"pause", L"Qorvenix's");
    show(service);
    CHECK(cell(ServiceColumn::State) == L"停止");
    CHECK(cell(ServiceColumn::StartMode) == L"手動");
    choose(ServiceItem::Start);
    CHECK(cell(ServiceColumn::State) == L"開始");
    CHECK(cell(ServiceColumn::AcceptsPause) == L"0");  // told by the next refresh only
    CHECK(cell(ServiceColumn::AcceptsStop) == L"0");
    REQUIRE(service.wait_for(SERVICE_RUNNING));

    refresh();
    CHECK(cell(ServiceColumn::State) == L"開始");
    CHECK(cell(ServiceColumn::AcceptsPause) == L"-1");
    CHECK(cell(ServiceColumn::AcceptsStop) == L"-1");
    choose(ServiceItem::Pause);
    CHECK(cell(ServiceColumn::State) == L"一時停止");
    CHECK(service.wait_for(SERVICE_PAUSED));
    choose(ServiceItem::Resume);
    CHECK(cell(ServiceColumn::State) == L"開始");
    CHECK(service.wait_for(SERVICE_RUNNING));
    choose(ServiceItem::Stop);
    CHECK(cell(ServiceColumn::State) == L"停止");
    CHECK(service.wait_for(SERVICE_STOPPED));
    CHECK_FALSE(host.pointer_shows_hourglass);
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

TEST_CASE_FIXTURE(Desk, "a real service is set to automatic, manual and disabled") {
    const InstalledService service(L"");
    show(service);
    choose(ServiceItem::Automatic);
    CHECK(cell(ServiceColumn::StartMode) == L"自動");
    CHECK(service.start_type() == SERVICE_AUTO_START);
    choose(ServiceItem::Disabled);
    CHECK(cell(ServiceColumn::StartMode) == L"無効");
    CHECK(service.start_type() == SERVICE_DISABLED);
    const ServicePress press = lvService_MouseDown(list, list.find(ServiceColumn::Name, name));
    CHECK_FALSE(IsServiceItemEnabled(ServiceItem::Start, press.cells));
    choose(ServiceItem::Manual);
    CHECK(cell(ServiceColumn::StartMode) == L"手動");
    CHECK(service.start_type() == SERVICE_DEMAND_START);
    CHECK(host.hourglasses == 0);

    CHECK(SetServiceStartMode(service.name, SERVICE_AUTO_START) == SERVICE_AUTO_START);
    CHECK(SetServiceStartMode(service.name, 77) == 77);  // refused: the caller reads back
    CHECK(service.start_type() == SERVICE_AUTO_START);
    CHECK(SetServiceStartMode(L"no such service", SERVICE_AUTO_START) == -1);
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

TEST_CASE_FIXTURE(Desk, "without the right to control services nothing changes") {
    const InstalledService service(L"");
    service.start();
    show(service);
    const auto rows = window.rows();
    static DWORD access_wanted = 0;
    const ImportHook hook(
        "OpenServiceW", +[](SC_HANDLE, LPCWSTR, DWORD access) WINAPI -> SC_HANDLE {
            access_wanted = access;
            SetLastError(ERROR_ACCESS_DENIED);
            return nullptr;
        });
    choose(ServiceItem::Restart);
    choose(ServiceItem::Automatic);
    CHECK(access_wanted == SERVICE_ALL_ACCESS);
    CHECK(window.rows() == rows);
    CHECK(service.state() == SERVICE_RUNNING);
    CHECK(service.start_type() == SERVICE_DEMAND_START);
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

TEST_CASE_FIXTURE(Desk, "a request is sent to the one service and believed only when it returns 0") {
    std::int32_t answer = 0;
    std::vector<std::wstring> called;
    const WmiDouble wmi([&](const std::wstring&) {
        auto service = MakeService({L"service", L"Running", L"Boot"});
        for (const wchar_t* method : {L"StartService", L"StopService", L"PauseService", L"ResumeService"}) {
            service->method(method, [&, method](const doubles::Arguments& arguments, win::Variant& result) {
                CHECK(arguments.empty());
                called.emplace_back(method);
                result = win::Variant(answer);
                return answer < 0 ? E_FAIL : S_OK;
            });
        }
        doubles::Members members;
        members.values.emplace_back(service.get());
        return members;
    });
    add_row({L"other", L"other", L"手動", L"", L"", L"0", L"0", L"other"});
    add_row({L"service", L"unchanged", L"手動", L"", L"", L"-1", L"-1", L"it's"});
    const auto state_after = [&](int index, std::int32_t returned) {
        answer = returned;
        called.clear();
        list.set_cell(1, ServiceColumn::State, L"unchanged");
        list.select(1);
        mnuServiceItem_Click(index, list, L"", host);
        CHECK(list.cell(0, ServiceColumn::State) == L"other");
        return list.cell(1, ServiceColumn::State);
    };
    const std::map<int, std::pair<std::wstring, std::wstring>> accepted = {
        {ServiceItem::Start, {L"StartService", L"開始"}},
        {ServiceItem::Stop, {L"StopService", L"停止"}},
        {ServiceItem::Pause, {L"PauseService", L"一時停止"}},
        {ServiceItem::Resume, {L"ResumeService", L"開始"}},
    };
    for (const auto& [index, expected] : accepted) {
        CHECK(state_after(index, 0) == expected.second);
        CHECK(called == std::vector<std::wstring>{expected.first});
        CHECK(state_after(index, 2) == L"unchanged");   // access denied
        CHECK(state_after(index, -1) == L"unchanged");  // the call itself fails
    }
    CHECK(wmi.queries.back() == L"Select * From Win32_Service Where Name=\"it's\"");
    CHECK(state_after(ServiceItem::Restart, 0) == L"unchanged");  // the service manager does not know it: no start
    CHECK(called.empty());
    mnuServiceItem_Click(ServiceItem::Disabled, list, L"", host);
    CHECK(list.cell(1, ServiceColumn::StartMode) == L"手動");  // "Boot" has no word
}
