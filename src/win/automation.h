// Late-bound automation: the objects that scripts use (WMI, WScript.Shell, Shell.Application), by name.
// Every failure is a value: an HRESULT, an empty Object, an empty text.
#pragma once

#include "win/com_ptr.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>

namespace win {

// An owned VARIANT.
class Variant {
public:
    Variant() { VariantInit(&value_); }
    explicit Variant(std::wstring_view text);
    explicit Variant(const wchar_t* text) : Variant(std::wstring_view(text)) {}
    explicit Variant(std::int32_t number);
    explicit Variant(IDispatch* object);  // adds a reference
    Variant(const Variant& other) : Variant() { VariantCopy(&value_, const_cast<VARIANT*>(&other.value_)); }
    Variant(Variant&& other) noexcept : value_(other.value_) { VariantInit(&other.value_); }
    Variant& operator=(Variant other) noexcept {
        std::swap(value_, other.value_);
        return *this;
    }
    ~Variant() { VariantClear(&value_); }

    // An argument through which a method hands something out, as script engines pass it (VT_BYREF | VT_VARIANT).
    // `target` has to outlive the call.
    static Variant by_reference(Variant& target);

    const VARIANT& get() const { return value_; }
    // For functions that fill a VARIANT. What was held before is cleared first.
    VARIANT* put();

    bool is_empty() const { return value_.vt == VT_EMPTY || value_.vt == VT_NULL; }

    // The value as text, converted as a script would; empty for nothing, null and what has no text.
    std::wstring text() const;
    // The value as a whole number; nothing for empty, null and what is no number.
    std::optional<std::int32_t> number() const;

private:
    VARIANT value_;
};

// An automation object, or none.
class Object {
public:
    Object() = default;
    explicit Object(ComPtr<IDispatch> dispatch) : dispatch_(std::move(dispatch)) {}

    // CLSIDFromProgID and CoCreateInstance, for example "WbemScripting.SWbemLocator". Empty when either fails.
    static Object create(const wchar_t* prog_id);
    // CoGetObject, for example "winmgmts:\\.\root\default". Empty when binding fails.
    static Object bind(const wchar_t* moniker);
    // The object that a VARIANT holds; empty for every other type and for "Nothing".
    static Object from(const Variant& value);

    explicit operator bool() const { return static_cast<bool>(dispatch_); }
    IDispatch* get() const { return dispatch_.get(); }

    // A property read or a method call, with the flags that a script engine passes (both at once). `arguments` come
    // in the order of the call; `result` may be null.
    HRESULT invoke(const wchar_t* name, std::span<const Variant> arguments, Variant* result) const;

    // The property or method `name`; an empty Variant when it fails.
    template <class... Arguments>
    Variant get(const wchar_t* name, const Arguments&... arguments) const {
        const Variant list[] = {Variant(arguments)..., Variant()};
        Variant result;
        if (FAILED(invoke(name, {list, sizeof...(arguments)}, &result))) return {};
        return result;
    }
    // The same where the result is an object.
    template <class... Arguments>
    Object get_object(const wchar_t* name, const Arguments&... arguments) const {
        return from(get(name, arguments...));
    }

    // Sets a property.
    HRESULT put(const wchar_t* name, const Variant& value) const;

    // A method of a WMI object that takes no input: called by its name and, where the provider cannot do that, through
    // ExecMethod_. The result is the method's return value; nothing when neither way worked.
    std::optional<std::int32_t> call_wmi_method(const wchar_t* name) const;

    // Calls `visit(Object)` for each member of a collection, in its order, until `visit` returns false. A member that
    // is no object is passed over. False when the collection cannot be enumerated or breaks off with an error.
    template <class Visit>
    bool for_each(Visit&& visit) const {
        const ComPtr<IEnumVARIANT> members = enumerate();
        if (!members) return false;
        for (;;) {
            Variant member;
            ULONG fetched = 0;
            const HRESULT result = members->Next(1, member.put(), &fetched);
            if (result != S_OK || fetched == 0) return SUCCEEDED(result);
            const Object object = from(member);
            if (object && !visit(object)) return true;
        }
    }

private:
    ComPtr<IEnumVARIANT> enumerate() const;
    HRESULT invoke_name(const wchar_t* name, WORD flags, std::span<const Variant> arguments, Variant* result) const;
    HRESULT invoke_id(DISPID id, WORD flags, std::span<const Variant> arguments, Variant* result) const;

    ComPtr<IDispatch> dispatch_;
};

// Connects to this computer's WMI and runs a query: "WbemScripting.SWbemLocator", ConnectServer without arguments,
// ExecQuery. The collection of rows; empty when a step fails. Under Wine the rows of one class turn to garbage when
// another query of that class runs: read them whole first.
Object QueryWmi(std::wstring_view query);

// A text as WMI's query language writes it inside a condition. A name that holds an apostrophe goes into double
// quotes, which Windows and Wine both understand; backslashes are doubled.
std::wstring QuoteForWmi(std::wstring_view text);

}  // namespace win
