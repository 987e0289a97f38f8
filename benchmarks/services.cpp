// The list of services: this computer's, and automation objects of this process, which answer faster than any WMI.
#include "bare_list.h"
#include "results.h"

#include "../tests/support/automation_double.h"
#include "../tests/support/test_host.h"
#include "../tests/support/test_list.h"
#include "services/service_list.h"
#include "win/text.h"

namespace {

using services::ServiceColumn;

doubles::Members MakeRows(int count) {
    doubles::Members members;
    for (int index = 0; index < count; ++index) {
        const std::wstring number = win::ToText(index);
        const auto service = doubles::MakeObject({
            {L"Caption", win::Variant(L"Service number " + number)},
            {L"State", win::Variant(L"Running")},
            {L"StartMode", win::Variant(L"Manual")},
            {L"Description", win::Variant(L"サービスの説明です。" + std::wstring(80, L'説') + L"。")},
            {L"PathName", win::Variant(L"C:\\WINDOWS\\system32\\svchost.exe -k " + number)},
            {L"AcceptPause", doubles::OfType(VT_BOOL, VARIANT_FALSE)},
            {L"AcceptStop", doubles::OfType(VT_BOOL, VARIANT_TRUE)},
            {L"Name", win::Variant(L"service" + number)},
        });
        members.values.emplace_back(service.get());
    }
    return members;
}

// A property as it comes, without a wrapper.
class Property {
public:
    Property(IDispatch* object, const wchar_t* name) {
        LPOLESTR names[] = {const_cast<LPOLESTR>(name)};
        DISPID id = 0;
        VariantInit(&value_);
        found_ = SUCCEEDED(object->GetIDsOfNames(IID_NULL, names, 1, LOCALE_USER_DEFAULT, &id));
        if (!found_) return;
        DISPPARAMS none = {};
        object->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD | DISPATCH_PROPERTYGET, &none, &value_,
                       nullptr, nullptr);
    }
    Property(const Property&) = delete;
    Property& operator=(const Property&) = delete;
    ~Property() { VariantClear(&value_); }

    explicit operator bool() const { return found_; }
    const wchar_t* text() const { return value_.vt == VT_BSTR && value_.bstrVal ? value_.bstrVal : L""; }

private:
    VARIANT value_;
    bool found_;
};

// What a fill asks of WMI and says to the list. Words that the fill translates are written as they come.
void BareLoop(const ui::ListView* window) {
    bench::BareList list(window);
    win::QueryWmi(L"Select * From Win32_Service").for_each([&](const win::Object& service) {
        const Property caption(service.get(), L"Caption");
        list.add(caption ? caption.text() : Property(service.get(), L"DisplayName").text());
        list.set(ServiceColumn::State, Property(service.get(), L"State").text());
        list.set(ServiceColumn::StartMode, Property(service.get(), L"StartMode").text());
        list.set(ServiceColumn::Description, Property(service.get(), L"Description").text());
        list.set(ServiceColumn::Path, Property(service.get(), L"PathName").text());
        for (const auto& [column, name] : {std::pair{ServiceColumn::AcceptsPause, L"AcceptPause"},
                                           std::pair{ServiceColumn::AcceptsStop, L"AcceptStop"}}) {
            const Property flag(service.get(), name);
            list.set(column, L"-1");
        }
        list.set(ServiceColumn::Name, Property(service.get(), L"Name").text());
        return true;
    });
}

void Measure(const char* what, int expected, int rounds) {
    const TestList window(services::kServiceColumns);
    TestHost host;
    services::FillServiceList(window.list, host);
    const int rows = window.list.count();
    bench::Expect(expected ? rows == expected : rows > 0, "the rows of the services");
    bench::Compare(what, rows, rounds,
                   {[&] { services::FillServiceList(window.list, host); }, [&] { BareLoop(&window.list); },
                    [] { BareLoop(nullptr); }, [&] { window.list.show(false); }},
                   expected ? bench::FillGoal(expected) : 1.2);
    BareLoop(&window.list);
    bench::Expect(window.list.count() == rows, "the rows of the bare loop over services");
}

}  // namespace

int wmain(int count, wchar_t** arguments) {
    bench::Begin(count, arguments);
    const win::ComApartment apartment;
    Measure("services of this computer", 0, 21);
    for (const int size : bench::Sizes()) {
        doubles::Members rows = MakeRows(size);
        const WmiDouble wmi([&](const std::wstring&) { return rows; });
        Measure("services that answer at once", size, size < 10000 ? 21 : 7);
    }
    return bench::End();
}
