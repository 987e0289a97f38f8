// Automation objects made by a test and registered for a class as a stranger's server would be.
#pragma once

#include "win/automation.h"

#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace doubles {

// Reference counting and QueryInterface of an object with one interface. `alive` counts the objects of all kinds.
inline long alive = 0;

// COM's interfaces have no virtual destructor: an object is destroyed by its last Release alone.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"

template <class Interface, const IID& id>
class Counted : public Interface {
public:
    Counted() { ++alive; }
    Counted(const Counted&) = delete;
    Counted& operator=(const Counted&) = delete;
    virtual ~Counted() { --alive; }

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID wanted, void** object) override {
        const bool known = wanted == id || wanted == IID_IUnknown;
        *object = known ? static_cast<Interface*>(this) : nullptr;
        if (known) this->AddRef();
        return known ? S_OK : E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
    ULONG STDMETHODCALLTYPE Release() override {
        const ULONG left = --references_;
        if (left == 0) delete this;
        return left;
    }

private:
    ULONG references_ = 1;
};

#pragma GCC diagnostic pop

inline HRESULT CopyTo(VARIANT* target, const win::Variant& value) {
    return VariantCopy(target, const_cast<VARIANT*>(&value.get()));
}

// The members of a collection; after the last of them the enumeration ends with `end` (S_FALSE, or an error).
struct Members {
    std::vector<win::Variant> values;
    HRESULT end = S_FALSE;
};

class Enumeration final : public Counted<IEnumVARIANT, IID_IEnumVARIANT> {
public:
    explicit Enumeration(Members members) : members_(std::move(members)) {}

    HRESULT STDMETHODCALLTYPE Next(ULONG count, VARIANT* out, ULONG* fetched) override {
        ULONG done = 0;
        while (done < count && next_ < members_.values.size())
            CopyTo(&out[done++], members_.values[next_++]);
        if (fetched) *fetched = done;
        return done == count ? S_OK : members_.end;
    }
    HRESULT STDMETHODCALLTYPE Skip(ULONG) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reset() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Clone(IEnumVARIANT**) override { return E_NOTIMPL; }

private:
    Members members_;
    std::size_t next_ = 0;
};

// The arguments of a call, in its order.
using Arguments = std::vector<VARIANT*>;

// An object with late-bound members. As WMI's objects it wants a property read or a method call with both flags at
// once and, as Wine's do, it overwrites the caller's parameter record.
class Object final : public Counted<IDispatch, IID_IDispatch> {
public:
    using Member = std::function<HRESULT(const Arguments&, win::Variant&)>;

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
    Object& collection(std::function<Members()> members) {
        members_of_collection_ = std::move(members);
        return *this;
    }

    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override {
        *count = 0;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }

    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID, DISPID* ids) override {
        for (std::size_t index = 0; index < members_.size(); ++index) {
            if (lstrcmpiW(members_[index].first.c_str(), names[0]) != 0) continue;
            ids[0] = static_cast<DISPID>(index + 1);
            return S_OK;
        }
        return DISP_E_UNKNOWNNAME;
    }

    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* parameters, VARIANT* result,
                                     EXCEPINFO*, UINT*) override {
        const bool puts = flags == DISPATCH_PROPERTYPUT;
        if (!puts && flags != (DISPATCH_METHOD | DISPATCH_PROPERTYGET)) return E_NOTIMPL;
        const DISPPARAMS given = std::exchange(*parameters, DISPPARAMS());
        Arguments arguments;
        for (UINT index = given.cArgs; index > 0; --index)
            arguments.push_back(&given.rgvarg[index - 1]);
        win::Variant answer;
        if (id == DISPID_NEWENUM && members_of_collection_) {
            VARIANT* members = answer.put();
            members->vt = VT_UNKNOWN;
            members->punkVal = new Enumeration(members_of_collection_());
        } else {
            if (id < 1 || static_cast<std::size_t>(id) > members_.size()) return DISP_E_MEMBERNOTFOUND;
            const HRESULT code = members_[static_cast<std::size_t>(id) - 1].second(arguments, answer);
            if (FAILED(code)) return code;
        }
        return result ? CopyTo(result, answer) : S_OK;
    }

private:
    std::vector<std::pair<std::wstring, Member>> members_;
    std::function<Members()> members_of_collection_;
};

inline win::ComPtr<Object> MakeObject() { return win::ComPtr<Object>(new Object); }

inline win::Variant Boolean(bool value) {
    win::Variant variant;
    VARIANT* target = variant.put();
    target->vt = VT_BOOL;
    target->boolVal = value ? VARIANT_TRUE : VARIANT_FALSE;
    return variant;
}

inline win::Variant Null() {
    win::Variant variant;
    variant.put()->vt = VT_NULL;
    return variant;
}

// Gives out a factory for the class `prog_id` in this process while it lives.
class Registration {
public:
    Registration(const wchar_t* prog_id, win::ComPtr<IClassFactory> factory) : factory_(std::move(factory)) {
        CLSID id = {};
        if (FAILED(CLSIDFromProgID(prog_id, &id))) return;
        CoRegisterClassObject(id, factory_.get(), CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE, &cookie_);
    }
    Registration(const Registration&) = delete;
    Registration& operator=(const Registration&) = delete;
    ~Registration() { CoRevokeClassObject(cookie_); }

private:
    win::ComPtr<IClassFactory> factory_;
    DWORD cookie_ = 0;
};

// Makes the objects of the class `prog_id`; a null object fails the creation.
class RegisteredClass {
public:
    using Make = std::function<win::ComPtr<Object>()>;

    RegisteredClass(const wchar_t* prog_id, Make make)
        // The factory counts its references. NOLINTNEXTLINE(clang-analyzer-cplusplus.NewDeleteLeaks)
        : registration_(prog_id, win::ComPtr<IClassFactory>(new Factory(std::move(make)))) {}

private:
    class Factory final : public Counted<IClassFactory, IID_IClassFactory> {
    public:
        explicit Factory(Make make) : make_(std::move(make)) {}
        HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown*, REFIID wanted, void** object) override {
            const win::ComPtr<Object> made = make_();
            *object = nullptr;
            return made ? made->QueryInterface(wanted, object) : E_FAIL;
        }
        HRESULT STDMETHODCALLTYPE LockServer(BOOL) override { return S_OK; }

    private:
        Make make_;
    };

    Registration registration_;
};

}  // namespace doubles
