// Stands in for a function that this program imports, for calls whose effect Wine does not show.
#pragma once

#include "win/platform.h"

#include <doctest/doctest.h>

#include <map>
#include <string_view>
#include <utility>

class ImportHook {
public:
    // Every call of the function `name` goes to `replacement` from now on, until the hook's end.
    template <class Function>
    ImportHook(std::string_view name, Function* replacement) : slot_(find(name)) {
        REQUIRE(slot_);
        original_ = write(reinterpret_cast<ULONG_PTR>(replacement));
    }
    ImportHook(const ImportHook&) = delete;
    ImportHook& operator=(const ImportHook&) = delete;
    ~ImportHook() { write(original_); }

    template <class Function>
    Function* original() const {
        return reinterpret_cast<Function*>(original_);
    }

private:
    ULONG_PTR write(ULONG_PTR function) const {
        DWORD protection = 0;
        VirtualProtect(slot_, sizeof *slot_, PAGE_READWRITE, &protection);
        return std::exchange(*slot_, function);
    }

    // The place in the import table through which the program calls `name`; null when it never does.
    static ULONG_PTR* find(std::string_view name) {
        auto* const base = reinterpret_cast<char*>(GetModuleHandleW(nullptr));
        const auto* dos = reinterpret_cast<const IMAGE_DOS_HEADER*>(base);
        const auto* nt = reinterpret_cast<const IMAGE_NT_HEADERS*>(base + dos->e_lfanew);
        const auto& directory = nt->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
        const auto* library = reinterpret_cast<const IMAGE_IMPORT_DESCRIPTOR*>(base + directory.VirtualAddress);
        for (; library->Name != 0; ++library) {
            const auto* names = reinterpret_cast<const ULONG_PTR*>(base + library->OriginalFirstThunk);
            auto* const slots = reinterpret_cast<ULONG_PTR*>(base + library->FirstThunk);
            for (int index = 0; names[index] != 0; ++index) {
                if (IMAGE_SNAP_BY_ORDINAL(names[index])) continue;
                const auto* import = reinterpret_cast<const IMAGE_IMPORT_BY_NAME*>(base + names[index]);
                if (name == reinterpret_cast<const char*>(import->Name)) return &slots[index];
            }
        }
        return nullptr;
    }

    ULONG_PTR* slot_;
    ULONG_PTR original_ = 0;
};

// The same for functions that the program looks up while it runs. One at a time.
class LookUpHook {
public:
    LookUpHook() {
        functions_.clear();
        real_ = hook_.original<decltype(GetProcAddress)>();
    }

    // A null `replacement`: the function is missing.
    template <class Function>
    void put(std::string_view name, Function* replacement) {
        functions_[name] = Cast<std::remove_pointer_t<FARPROC>>(replacement);
    }
    // The real function, for its replacement.
    template <class Function>
    static Function* original(const wchar_t* library, const char* name) {
        return Cast<Function>(real_(GetModuleHandleW(library), name));
    }

private:
    template <class To, class From>
    static To* Cast(From* function) {
        return reinterpret_cast<To*>(reinterpret_cast<void*>(function));
    }
    static FARPROC WINAPI Find(HMODULE library, LPCSTR name) {
        const auto found = functions_.find(name);
        return found == functions_.end() ? real_(library, name) : found->second;
    }

    static inline std::map<std::string_view, FARPROC> functions_;
    static inline decltype(GetProcAddress)* real_;
    const ImportHook hook_{"GetProcAddress", &Find};
};
