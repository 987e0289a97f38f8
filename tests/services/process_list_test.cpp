#include "shell/process_list.h"

#include "support/show.h"
#include "support/test_host.h"
#include "support/test_list.h"
#include "support/wmi_double.h"
#include "win/text.h"

#include <doctest/doctest.h>

namespace {

struct Fixture {
    win::ComApartment apartment;
    TestList window{shell::kProcessColumns};
    TestHost host;

    ~Fixture() { CHECK(doubles::alive == 0); }

    // The rows, each with its cells joined by "|".
    std::vector<std::wstring> fill() {
        shell::FillProcessList(window.list, host);
        CHECK(window.list.visible());
        CHECK(host.statuses.empty());
        std::vector<std::wstring> rows;
        for (const auto& cells : window.rows()) {
            std::wstring& row = rows.emplace_back();
            for (const std::wstring& cell : cells)
                row += cell + L"|";
        }
        return rows;
    }
};

// A process as Windows' provider makes it: GetOwner writes into its two arguments.
win::ComPtr<doubles::Object> MakeProcess(const std::wstring& name, std::int32_t id, const win::Variant& user) {
    auto process = doubles::MakeObject();
    process->property(L"Name", win::Variant(name))
        .property(L"ProcessId", win::Variant(id))
        .property(L"Description", win::Variant(name + L" described"))
        .property(L"ExecutablePath", id == 4 ? doubles::Null() : win::Variant(L"C:\\" + name))
        .property(L"CreationClassName", win::Variant(L"Win32_Process"));
    process->method(L"GetOwner", [user](const doubles::Arguments& arguments, win::Variant& result) {
        if (arguments.size() != 2) return DISP_E_BADPARAMCOUNT;
        for (const VARIANT* argument : arguments) {
            if (argument->vt != (VT_BYREF | VT_VARIANT) || argument->pvarVal->vt != VT_BSTR) return DISP_E_TYPEMISMATCH;
        }
        doubles::CopyTo(arguments[0]->pvarVal, user);
        doubles::CopyTo(arguments[1]->pvarVal, win::Variant(L"DOMAIN"));
        result = win::Variant(std::int32_t{0});
        return S_OK;
    });
    return process;
}

}  // namespace

TEST_CASE_FIXTURE(Fixture, "this process is listed with its owner") {
    const auto rows = fill();
    const int own = window.list.find(shell::ProcessColumn::Id, win::ToText(GetCurrentProcessId()));
    REQUIRE(own >= 0);
    wchar_t user[256] = {};
    DWORD length = 256;
    GetUserNameW(user, &length);
    CHECK(window.list.cell(own, shell::ProcessColumn::Name) == L"test_services.exe");
    CHECK(window.list.cell(own, shell::ProcessColumn::UserName) == user);
    CHECK(window.list.find(shell::ProcessColumn::Name, L"services.exe") >= 0);
    CHECK(fill().size() == rows.size());
}

TEST_CASE_FIXTURE(Fixture, "processes are listed one by one, in WMI's order") {
    WmiDouble wmi([](const std::wstring&) {
        doubles::Members members;
        for (const auto& process :
             {MakeProcess(L"z.exe", 100, win::Variant(L"利用者")), MakeProcess(L"System", 4, doubles::Null()),
              MakeProcess(L"z.exe", 101, win::Variant(L"other"))}) {
            members.values.emplace_back(process.get());
        }
        members.end = E_FAIL;
        return members;
    });
    CHECK(fill() == std::vector<std::wstring>{
                        L"z.exe|100|利用者|z.exe described|C:\\z.exe|Win32_Process|||",
                        L"System|4||System described||Win32_Process|||",
                        L"z.exe|101|other|z.exe described|C:\\z.exe|Win32_Process|||",
                    });
    CHECK(wmi.queries == std::vector<std::wstring>{L"Select * From Win32_Process"});
    wmi.connects = false;
    CHECK(fill().empty());
}
