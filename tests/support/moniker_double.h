// Names that begin with "winmgmts:" mean what a test says while this lives.
#pragma once

#include "support/automation_double.h"

#include <functional>
#include <string>
#include <utility>

class MonikerDouble {
public:
    // Gives the object that a whole name stands for; a null one fails the binding.
    using Bind = std::function<win::ComPtr<doubles::Object>(const std::wstring& name)>;

    explicit MonikerDouble(Bind bind)
        : registration_(L"winmgmts", win::ComPtr<IClassFactory>(new Factory(std::move(bind)))) {}

private:
    class Parser final : public doubles::Counted<IParseDisplayName, IID_IParseDisplayName> {
    public:
        explicit Parser(Bind bind) : bind_(std::move(bind)) {}
        HRESULT STDMETHODCALLTYPE ParseDisplayName(IBindCtx*, LPOLESTR name, ULONG* eaten,
                                                   IMoniker** moniker) override {
            const win::ComPtr<doubles::Object> object = bind_(name);
            *moniker = nullptr;
            if (!object) return E_ACCESSDENIED;
            *eaten = static_cast<ULONG>(lstrlenW(name));
            return CreatePointerMoniker(object.get(), moniker);
        }

    private:
        Bind bind_;
    };

    // COM asks the factory itself, or an object of it, for the parser.
    class Factory final : public doubles::Counted<IClassFactory, IID_IClassFactory> {
    public:
        explicit Factory(Bind bind) : bind_(std::move(bind)) {}
        HRESULT STDMETHODCALLTYPE QueryInterface(REFIID wanted, void** object) override {
            if (wanted == IID_IParseDisplayName) return CreateInstance(nullptr, wanted, object);
            return Counted::QueryInterface(wanted, object);
        }
        HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown*, REFIID wanted, void** object) override {
            return win::ComPtr<Parser>(new Parser(bind_))->QueryInterface(wanted, object);
        }
        HRESULT STDMETHODCALLTYPE LockServer(BOOL) override { return S_OK; }

    private:
        Bind bind_;
    };

    doubles::Registration registration_;
};
