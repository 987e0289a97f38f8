// The program is built without exceptions, but the standard library still throws where memory or
// a length runs out. These take the place of its functions: the program ends with a message. They
// also keep the unwinder and its texts out of the executable, which would double it. A "multiple
// definition" error of one of them at link time says that something needs real exceptions after
// all (iostream, filesystem, regex).
#include <windows.h>

#include <cstdlib>
#include <new>

[[noreturn]] static void Die() {
    FatalAppExitW(0, L"メモリが不足しているため、Qorvenix を終了します。");
    ExitProcess(3);
}

namespace std {
// NOLINTBEGIN(bugprone-reserved-identifier): the names are the standard library's
const nothrow_t nothrow{};
void __throw_length_error(const char*) { Die(); }
void __throw_logic_error(const char*) { Die(); }
void __throw_out_of_range(const char*) { Die(); }
void __throw_out_of_range_fmt(const char*, ...) { Die(); }
void __throw_invalid_argument(const char*) { Die(); }
void __throw_bad_alloc() { Die(); }
void __throw_bad_array_new_length() { Die(); }
void __throw_bad_function_call() { Die(); }
// NOLINTEND(bugprone-reserved-identifier)
}  // namespace std

void* operator new(size_t bytes) {
    void* memory = malloc(bytes != 0 ? bytes : 1);
    if (memory == nullptr) {
        Die();
    }
    return memory;
}
// The temporary buffers of the standard sorts ask this way; they can do without.
void* operator new(size_t bytes, const std::nothrow_t&) noexcept { return malloc(bytes != 0 ? bytes : 1); }
void operator delete(void* memory, const std::nothrow_t&) noexcept { free(memory); }
void operator delete(void* memory) noexcept { free(memory); }
void operator delete(void* memory, size_t) noexcept { free(memory); }
