#include "win/automation.h"

#include "win/text.h"

#include <array>

namespace win {
namespace {

// What a script engine passes for every call: it cannot know whether a name is a property or a method.
constexpr WORD kGetOrCall = DISPATCH_METHOD | DISPATCH_PROPERTYGET;

constexpr std::size_t kMostArguments = 8;

// An interface of the object that a VARIANT holds; empty where it holds none.
template <class Interface>
ComPtr<Interface> InterfaceOf(const Variant& value, const IID& id) {
    const VARIANT& held = value.get();
    IUnknown* unknown = nullptr;
    if (held.vt == VT_DISPATCH) unknown = held.pdispVal;
    if (held.vt == VT_UNKNOWN) unknown = held.punkVal;
    ComPtr<Interface> found;
    if (!unknown || FAILED(unknown->QueryInterface(id, found.put_void()))) return {};
    return found;
}

}  // namespace

Variant::Variant(std::wstring_view text) {
    VariantInit(&value_);
    value_.vt = VT_BSTR;
    value_.bstrVal = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
}

Variant::Variant(std::int32_t number) {
    VariantInit(&value_);
    value_.vt = VT_I4;
    value_.lVal = number;
}

Variant::Variant(IDispatch* object) {
    VariantInit(&value_);
    value_.vt = VT_DISPATCH;
    value_.pdispVal = object;
    if (object) object->AddRef();
}

Variant Variant::by_reference(Variant& target) {
    Variant reference;
    reference.value_.vt = VT_BYREF | VT_VARIANT;
    reference.value_.pvarVal = &target.value_;
    return reference;
}

VARIANT* Variant::put() {
    VariantClear(&value_);
    return &value_;
}

std::wstring Variant::text() const {
    if (is_empty()) return {};
    if (value_.vt == VT_BSTR) return {value_.bstrVal, SysStringLen(value_.bstrVal)};
    Variant copy;
    if (FAILED(VariantChangeType(copy.put(), const_cast<VARIANT*>(&value_), 0, VT_BSTR))) return {};
    return copy.text();
}

std::optional<std::int32_t> Variant::number() const {
    if (is_empty()) return {};
    Variant copy;
    if (FAILED(VariantChangeType(copy.put(), const_cast<VARIANT*>(&value_), 0, VT_I4))) return {};
    return copy.value_.lVal;
}

Object Object::create(const wchar_t* prog_id) {
    CLSID id = {};
    ComPtr<IDispatch> dispatch;
    if (FAILED(CLSIDFromProgID(prog_id, &id))) return {};
    if (FAILED(CoCreateInstance(id, nullptr, CLSCTX_INPROC_SERVER | CLSCTX_LOCAL_SERVER, IID_IDispatch,
                                dispatch.put_void()))) {
        return {};
    }
    return Object(std::move(dispatch));
}

Object Object::bind(const wchar_t* moniker) {
    ComPtr<IDispatch> dispatch;
    if (FAILED(CoGetObject(moniker, nullptr, IID_IDispatch, dispatch.put_void()))) return {};
    return Object(std::move(dispatch));
}

Object Object::from(const Variant& value) { return Object(InterfaceOf<IDispatch>(value, IID_IDispatch)); }

HRESULT Object::invoke_id(DISPID id, WORD flags, std::span<const Variant> arguments, Variant* result) const {
    if (!dispatch_) return E_POINTER;
    if (arguments.size() > kMostArguments) return E_INVALIDARG;
    // Wine's objects overwrite the parameter record, so the arguments stay in an array of ours; they are in reverse
    // order there, as automation wants them.
    std::array<VARIANTARG, kMostArguments> reversed;
    for (std::size_t i = 0; i < arguments.size(); ++i)
        reversed[i] = arguments[arguments.size() - 1 - i].get();
    DISPID property = DISPID_PROPERTYPUT;
    const bool puts = flags == DISPATCH_PROPERTYPUT;
    DISPPARAMS parameters = {reversed.data(), puts ? &property : nullptr, static_cast<UINT>(arguments.size()),
                             puts ? 1U : 0U};
    EXCEPINFO exception = {};
    Variant ignored;
    VARIANT* target = puts ? nullptr : (result ? result : &ignored)->put();
    const HRESULT code =
        dispatch_->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, flags, &parameters, target, &exception, nullptr);
    SysFreeString(exception.bstrSource);
    SysFreeString(exception.bstrDescription);
    SysFreeString(exception.bstrHelpFile);
    return code;
}

HRESULT Object::invoke_name(const wchar_t* name, WORD flags, std::span<const Variant> arguments,
                            Variant* result) const {
    if (!dispatch_) return E_POINTER;
    DISPID id = DISPID_UNKNOWN;
    LPOLESTR names[] = {const_cast<LPOLESTR>(name)};
    const HRESULT found = dispatch_->GetIDsOfNames(IID_NULL, names, 1, LOCALE_USER_DEFAULT, &id);
    return FAILED(found) ? found : invoke_id(id, flags, arguments, result);
}

HRESULT Object::invoke(const wchar_t* name, std::span<const Variant> arguments, Variant* result) const {
    return invoke_name(name, kGetOrCall, arguments, result);
}

HRESULT Object::put(const wchar_t* name, const Variant& value) const {
    return invoke_name(name, DISPATCH_PROPERTYPUT, {&value, 1}, nullptr);
}

std::optional<std::int32_t> Object::call_wmi_method(const wchar_t* name) const {
    Variant result;
    if (SUCCEEDED(invoke(name, {}, &result))) return result.number();
    return get_object(L"ExecMethod_", name).get(L"ReturnValue").number();
}

ComPtr<IEnumVARIANT> Object::enumerate() const {
    Variant members;
    if (FAILED(invoke_id(DISPID_NEWENUM, kGetOrCall, {}, &members))) return {};
    return InterfaceOf<IEnumVARIANT>(members, IID_IEnumVARIANT);
}

Object QueryWmi(std::wstring_view query) {
    const Object locator = Object::create(L"WbemScripting.SWbemLocator");
    return locator.get_object(L"ConnectServer").get_object(L"ExecQuery", query);
}

std::wstring QuoteForWmi(std::wstring_view text) {
    const std::wstring escaped = ReplaceAll(text, L"\\", L"\\\\");
    if (!Contains(text, L"'")) return L"'" + escaped + L"'";
    return L"\"" + ReplaceAll(escaped, L"\"", L"\\\"") + L"\"";
}

}  // namespace win
