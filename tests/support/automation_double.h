// Automation objects made by a test, registered for a class in this process as a stranger's server would be.
#pragma once

#include "win/automation.h"

#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace doubles {

// The objects that live.
inline long alive = 0;

inline HRESULT CopyTo(VARIANT* target, const win::Variant& value) {
    return VariantCopy(target, const_cast<VARIANT*>(&value.get()));
}

// The members of a collection; after the last of them the enumeration ends with `end` (S_FALSE, or an error).
struct Members {
    std::vector<win::Variant> values;
    HRESULT end = S_FALSE;
};

// The arguments of a call, in its order.
using Arguments = std::vector<VARIANT*>;

// COM's interfaces have no virtual destructor: an object is destroyed by its last Release alone.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"

// An object with late-bound members. As WMI's objects it wants a property read or a method call with both flags at
// once and, as Wine's do, it overwrites the caller's parameter record. It can be a collection or a factory as well.
class Object final : public IDispatch, public IEnumVARIANT, public IClassFactory, public IParseDisplayName {
public:
    using Member = std::function<HRESULT(const Arguments&, win::Variant&)>;
    // `moniker` is empty where a class is asked for an object. A null object is a failure.
    using Make = std::function<win::ComPtr<Object>(const std::wstring& moniker)>;

    explicit Object(Make make = {}) : make_(std::move(make)) { ++alive; }

    Object& method(std::wstring name, Member member) {
        members_.emplace_back(std::move(name), std::move(member));
        return *this;
    }
    Object& property(std::wstring name, win::Variant value) {
        return method(std::move(name), [value = std::move(value)](const Arguments&, win::Variant& result) {
            result = value;
            return S_OK;
        });
    }
    Object& collection(std::function<Members()> rows) {
        rows_ = std::move(rows);
        return *this;
    }

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID wanted, void** object) override {
        *object = nullptr;
        if (wanted == IID_IUnknown || wanted == IID_IDispatch) *object = static_cast<IDispatch*>(this);
        if (wanted == IID_IEnumVARIANT) *object = static_cast<IEnumVARIANT*>(this);
        if (wanted == IID_IClassFactory && make_) *object = static_cast<IClassFactory*>(this);
        if (wanted == IID_IParseDisplayName && make_) *object = static_cast<IParseDisplayName*>(this);
        if (*object) AddRef();
        return *object ? S_OK : E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
    ULONG STDMETHODCALLTYPE Release() override {
        const ULONG left = --references_;
        if (left == 0) delete this;
        return left;
    }

    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID, DISPID* ids) override {
        for (ids[0] = 1; static_cast<std::size_t>(ids[0]) <= members_.size(); ++ids[0]) {
            if (lstrcmpiW(at(ids[0]).first.c_str(), names[0]) == 0) return S_OK;
        }
        return DISP_E_UNKNOWNNAME;
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* parameters, VARIANT* result,
                                     EXCEPINFO*, UINT*) override {
        if (flags != DISPATCH_PROPERTYPUT && flags != (DISPATCH_METHOD | DISPATCH_PROPERTYGET)) return E_NOTIMPL;
        const DISPPARAMS given = std::exchange(*parameters, DISPPARAMS());
        Arguments arguments;
        for (UINT index = given.cArgs; index > 0; --index)
            arguments.push_back(&given.rgvarg[index - 1]);
        win::Variant answer;
        if (id == DISPID_NEWENUM && rows_) {
            left_ = rows_();
            next_ = 0;
            answer = win::Variant(this);
        } else if (id < 1 || static_cast<std::size_t>(id) > members_.size()) {
            return DISP_E_MEMBERNOTFOUND;
        } else if (const HRESULT code = at(id).second(arguments, answer); FAILED(code)) {
            return code;
        }
        return result ? CopyTo(result, answer) : S_OK;
    }

    HRESULT STDMETHODCALLTYPE Next(ULONG, VARIANT* out, ULONG* fetched) override {
        *fetched = next_ < left_.values.size() ? 1 : 0;
        return *fetched ? CopyTo(out, left_.values[next_++]) : left_.end;
    }
    HRESULT STDMETHODCALLTYPE Skip(ULONG) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reset() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Clone(IEnumVARIANT**) override { return E_NOTIMPL; }

    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown*, REFIID wanted, void** object) override {
        const win::ComPtr<Object> made = make_({});
        *object = nullptr;
        return made ? made->QueryInterface(wanted, object) : E_FAIL;
    }
    HRESULT STDMETHODCALLTYPE LockServer(BOOL) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE ParseDisplayName(IBindCtx*, LPOLESTR name, ULONG* eaten, IMoniker** moniker) override {
        const win::ComPtr<Object> made = make_(name);
        *moniker = nullptr;
        *eaten = static_cast<ULONG>(lstrlenW(name));
        return made ? CreatePointerMoniker(static_cast<IDispatch*>(made.get()), moniker) : E_ACCESSDENIED;
    }

private:
    friend class RegisteredClass;
    ~Object() { --alive; }

    const std::pair<std::wstring, Member>& at(DISPID id) const { return members_[static_cast<std::size_t>(id) - 1]; }

    ULONG references_ = 1;
    Make make_;
    std::vector<std::pair<std::wstring, Member>> members_;
    std::function<Members()> rows_;
    Members left_;  // of the enumeration, which is the collection itself
    std::size_t next_ = 0;
};

#pragma GCC diagnostic pop

inline win::ComPtr<Object> MakeObject(std::initializer_list<std::pair<const wchar_t*, win::Variant>> properties = {}) {
    win::ComPtr<Object> object(new Object);
    for (const auto& [name, value] : properties)
        object->property(name, value);
    return object;
}

// Of a type whose value is 0 (VT_NULL has none, an object of VT_DISPATCH is missing), or VT_BOOL with one of its
// values.
inline win::Variant OfType(VARTYPE type, VARIANT_BOOL value = VARIANT_FALSE) {
    win::Variant variant;
    variant.put()->llVal = 0;
    variant.put()->boolVal = value;
    variant.put()->vt = type;
    return variant;
}

// Makes the objects of the class `prog_id` in this process while it lives.
class RegisteredClass {
public:
    RegisteredClass(const wchar_t* prog_id, Object::Make make) : factory_(std::move(make)) {
        CLSID id = {};
        IUnknown* const factory = static_cast<IDispatch*>(&factory_);
        if (FAILED(CLSIDFromProgID(prog_id, &id))) return;
        CoRegisterClassObject(id, factory, CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE, &cookie_);
    }
    RegisteredClass(const RegisteredClass&) = delete;
    RegisteredClass& operator=(const RegisteredClass&) = delete;
    ~RegisteredClass() { CoRevokeClassObject(cookie_); }

private:
    Object factory_;  // its own reference is never released
    DWORD cookie_ = 0;
};

}  // namespace doubles

// This computer's WMI as a test wants it: while it lives, "WbemScripting.SWbemLocator" is made here.
class WmiDouble {
public:
    explicit WmiDouble(std::function<doubles::Members(const std::wstring& query)> answer)
        : answer_(std::move(answer)),
          locator_(L"WbemScripting.SWbemLocator", [this](const auto&) { return locator(); }) {}

    int steps = 3;  // that succeed: the locator is made, connects, takes queries
    std::vector<std::wstring> queries;

private:
    win::ComPtr<doubles::Object> locator() {
        if (steps < 1) return {};
        auto locator = doubles::MakeObject();
        locator->method(L"ConnectServer", [this](const doubles::Arguments& arguments, win::Variant& result) {
            result = win::Variant(&doubles::MakeObject()->method(
                L"ExecQuery", [this](const auto& query, auto& rows) { return execute(query, rows); }));
            return steps < 2 || !arguments.empty() ? E_ACCESSDENIED : S_OK;
        });
        return locator;
    }
    HRESULT execute(const doubles::Arguments& arguments, win::Variant& result) {
        if (steps < 3 || arguments.size() != 1 || arguments[0]->vt != VT_BSTR) return E_FAIL;
        queries.emplace_back(arguments[0]->bstrVal);
        result =
            win::Variant(&doubles::MakeObject()->collection([this, query = queries.back()] { return answer_(query); }));
        return S_OK;
    }

    std::function<doubles::Members(const std::wstring& query)> answer_;
    doubles::RegisteredClass locator_;
};

// A machine's restore points, and what was asked of their provider: names that begin with "winmgmts:" mean it.
class Provider {
public:
    std::vector<win::Variant> points;
    HRESULT end = S_FALSE;  // how their enumeration ends
    HRESULT answer = S_OK;  // of the methods
    bool exists = true;
    std::vector<std::wstring> calls;

private:
    win::ComPtr<doubles::Object> bind(const std::wstring& moniker) {
        calls.push_back(moniker);
        if (!exists) return {};
        auto object = doubles::MakeObject();
        for (const wchar_t* name : {L"InstancesOf", L"createrestorepoint"}) {
            object->method(name, [this, name](const doubles::Arguments& arguments, win::Variant& result) {
                std::wstring& call = calls.emplace_back(name);
                for (VARIANT* argument : arguments) {
                    win::Variant copy;
                    VariantCopy(copy.put(), argument);
                    call += L" [" + copy.text() + L"]";
                }
                result = win::Variant(&doubles::MakeObject()->collection([this] {
                    return doubles::Members{points, end};
                }));
                return answer;
            });
        }
        return object;
    }

    doubles::RegisteredClass parser_{L"winmgmts", [this](const std::wstring& moniker) { return bind(moniker); }};
};
