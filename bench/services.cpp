// The service list against bare loops over the same 2,000 automation objects, and over this computer's services.
#include "../tests/services/service_row_double.h"
#include "../tests/support/test_host.h"
#include "../tests/support/test_list.h"
#include "../tests/support/wmi_double.h"

#include "services/service_list.h"
#include "timing.h"
#include "win/text.h"

#include <cstdio>
#include <iterator>

namespace {

constexpr int kRows = 2000;
constexpr int kRounds = 15;

constexpr const wchar_t* kProperties[] = {L"Caption",  L"State",       L"StartMode",  L"Description",
                                          L"PathName", L"AcceptPause", L"AcceptStop", L"Name"};

doubles::Members MakeRows() {
    doubles::Members members;
    for (int index = 0; index < kRows; ++index) {
        const std::wstring number = win::ToText(index);
        members.values.emplace_back(
            MakeService({L"Service number " + number, L"Running", L"Manual",
                         L"サービスの説明です。" + std::wstring(80, L'説') + L"。",
                         L"C:\\WINDOWS\\system32\\svchost.exe -k " + number, false, true, L"service" + number})
                .get());
    }
    return members;
}

// Everything that has to be asked of WMI, and with a list everything that has to be told to it.
void BareLoop(const ui::ListView* list) {
    const win::Object rows = win::QueryWmi(L"Select * From Win32_Service");
    const HWND window = list ? list->window() : nullptr;
    if (list) SendMessageW(window, WM_SETREDRAW, FALSE, 0);
    if (list) SendMessageW(window, LVM_DELETEALLITEMS, 0, 0);
    int row = 0;
    rows.for_each([&](const win::Object& object) {
        for (int column = 0; column < static_cast<int>(std::size(kProperties)); ++column) {
            win::Variant value = object.get(kProperties[column]);
            if (!list) continue;
            if (value.get().vt == VT_BOOL) value = win::Variant(value.text());
            LVITEMW item = {};
            item.mask = LVIF_TEXT;
            item.iItem = row;
            item.iSubItem = column;
            item.pszText = value.get().bstrVal;
            SendMessageW(window, column == 0 ? LVM_INSERTITEMW : LVM_SETITEMW, 0, reinterpret_cast<LPARAM>(&item));
        }
        ++row;
        return true;
    });
    if (list) SendMessageW(window, WM_SETREDRAW, TRUE, 0);
}

void Compare(const char* what) {
    const TestList window(services::kServiceColumns);
    TestHost host;
    double read = 1e9, loop = 1e9, fill = 1e9;
    for (int round = 0; round < kRounds; ++round) {
        window.list.show(false);
        read = std::min(read, Once([] { BareLoop(nullptr); }));
        loop = std::min(loop, Once([&] { BareLoop(&window.list); }));
        window.list.show(false);
        fill = std::min(fill, Once([&] { services::FillServiceList(window.list, host); }));
    }
    std::printf("%s, %d rows: read %.1f ms, read and inserted %.1f ms, fill %.1f ms\n", what, window.list.count(), read,
                loop, fill);
    std::printf("fill / reading loop %.2f, fill / reading and inserting loop %.2f\n", fill / read, fill / loop);
}

}  // namespace

int wmain() {
    const win::ComApartment apartment;
    Compare("this computer's services");
    const doubles::Members rows = MakeRows();
    const WmiDouble wmi([&](const std::wstring&) { return rows; });
    Compare("automation objects of this process");
    return 0;
}
