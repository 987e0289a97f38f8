// Owned COM interface pointers, and COM itself for the length of a scope.
#pragma once

#include "win/platform.h"

#include <utility>

namespace win {

template <class Interface>
class ComPtr {
public:
    ComPtr() = default;
    // Takes over the reference that the caller holds.
    explicit ComPtr(Interface* pointer) : pointer_(pointer) {}
    ComPtr(const ComPtr& other) : pointer_(other.pointer_) {
        if (pointer_) pointer_->AddRef();
    }
    ComPtr(ComPtr&& other) noexcept : pointer_(std::exchange(other.pointer_, nullptr)) {}
    ComPtr& operator=(ComPtr other) noexcept {
        std::swap(pointer_, other.pointer_);
        return *this;
    }
    ~ComPtr() {
        if (pointer_) pointer_->Release();
    }

    Interface* get() const { return pointer_; }
    Interface* operator->() const { return pointer_; }
    explicit operator bool() const { return pointer_ != nullptr; }

    void reset() { *this = ComPtr(); }

    // For functions that hand out a reference through a pointer.
    Interface** put() {
        reset();
        return &pointer_;
    }
    void** put_void() { return reinterpret_cast<void**>(put()); }

    // The same object under another interface; empty when it has none.
    template <class Other>
    ComPtr<Other> as(const IID& id) const {
        ComPtr<Other> other;
        if (pointer_ && FAILED(pointer_->QueryInterface(id, other.put_void()))) return {};
        return other;
    }

private:
    Interface* pointer_ = nullptr;
};

// COM for the length of a scope: undone only where it was really begun.
class ComApartment {
public:
    ComApartment() : result_(OleInitialize(nullptr)) {}
    ComApartment(const ComApartment&) = delete;
    ComApartment& operator=(const ComApartment&) = delete;
    ~ComApartment() {
        if (SUCCEEDED(result_)) OleUninitialize();
    }

private:
    HRESULT result_;
};

}  // namespace win
