// RAII owners of Windows handles. Each closes its handle in the destructor and leaves GetLastError as it was.
#pragma once

#include "win/platform.h"

#include <utility>

namespace win {

template <class Traits>
class Unique {
public:
    using Type = typename Traits::Type;

    Unique() = default;
    explicit Unique(Type value) : value_(value) {}
    Unique(Unique&& other) noexcept : value_(other.release()) {}
    Unique& operator=(Unique&& other) noexcept {
        if (this != &other) reset(other.release());
        return *this;
    }
    Unique(const Unique&) = delete;
    Unique& operator=(const Unique&) = delete;
    ~Unique() { reset(); }

    Type get() const { return value_; }
    explicit operator bool() const { return value_ != Traits::invalid(); }

    [[nodiscard]] Type release() { return std::exchange(value_, Traits::invalid()); }

    void reset(Type value = Traits::invalid()) {
        const Type old = std::exchange(value_, value);
        if (old == Traits::invalid()) return;
        const DWORD error = GetLastError();
        Traits::close(old);
        SetLastError(error);
    }

    // For functions that hand out a handle through a pointer. What was owned before is closed first.
    Type* put() {
        reset();
        return &value_;
    }

private:
    Type value_ = Traits::invalid();
};

// A handle whose "none" is the null pointer, closed by one function.
template <class Handle, auto Close>
struct NullTraits {
    using Type = Handle;
    static Handle invalid() { return nullptr; }
    static void close(Handle handle) { Close(handle); }
};

// A handle whose "none" is INVALID_HANDLE_VALUE.
template <auto Close>
struct FileTraits {
    using Type = HANDLE;
    static HANDLE invalid() { return INVALID_HANDLE_VALUE; }
    static void close(HANDLE handle) { Close(handle); }
};

using Handle = Unique<NullTraits<HANDLE, &::CloseHandle>>;  // process, token, event
using File = Unique<FileTraits<&::CloseHandle>>;
using FindHandle = Unique<FileTraits<&::FindClose>>;
using RegKey = Unique<NullTraits<HKEY, &::RegCloseKey>>;
using ServiceHandle = Unique<NullTraits<SC_HANDLE, &::CloseServiceHandle>>;
using Module = Unique<NullTraits<HMODULE, &::FreeLibrary>>;
using Icon = Unique<NullTraits<HICON, &::DestroyIcon>>;
using Menu = Unique<NullTraits<HMENU, &::DestroyMenu>>;
using Font = Unique<NullTraits<HFONT, &::DeleteObject>>;
using Brush = Unique<NullTraits<HBRUSH, &::DeleteObject>>;
using Bitmap = Unique<NullTraits<HBITMAP, &::DeleteObject>>;
using MemoryDc = Unique<NullTraits<HDC, &::DeleteDC>>;
using ImageList = Unique<NullTraits<HIMAGELIST, &::ImageList_Destroy>>;
using Window = Unique<NullTraits<HWND, &::DestroyWindow>>;
using GlobalMemory = Unique<NullTraits<HGLOBAL, &::GlobalFree>>;
using LocalMemory = Unique<NullTraits<HLOCAL, &::LocalFree>>;

// The device context of a window, given back when the scope ends.
class WindowDc {
public:
    explicit WindowDc(HWND window) : window_(window), dc_(GetDC(window)) {}
    WindowDc(const WindowDc&) = delete;
    WindowDc& operator=(const WindowDc&) = delete;
    ~WindowDc() {
        if (dc_) ReleaseDC(window_, dc_);
    }
    HDC get() const { return dc_; }

private:
    HWND window_;
    HDC dc_;
};

// A GDI object selected for the length of a scope.
class Selected {
public:
    Selected(HDC dc, HGDIOBJ object) : dc_(dc), old_(SelectObject(dc, object)) {}
    Selected(const Selected&) = delete;
    Selected& operator=(const Selected&) = delete;
    ~Selected() {
        if (old_) SelectObject(dc_, old_);
    }

private:
    HDC dc_;
    HGDIOBJ old_;
};

}  // namespace win
