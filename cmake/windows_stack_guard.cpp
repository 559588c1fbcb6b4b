// What the stack protector asks of a run-time library on Windows. That of the compiler takes the value of the
// guard from the cryptographic provider, which loads several DLLs at each start: 50 ms, where a report
// takes 1.
#include <cstdint>
#include <initializer_list>
#include <windows.h>

extern "C" {
std::uintptr_t __stack_chk_guard;

[[noreturn]] void __stack_chk_fail();
[[noreturn]] void __stack_chk_fail() {
    __builtin_trap();
}

// A fortified library call that would write past its object.
[[noreturn]] void __chk_fail();
[[noreturn]] void __chk_fail() {
    __builtin_trap();
}
}

namespace {

// A value that differs from start to start, from the clocks, the process and the place of its stack; made
// before main, whose own guard must not change under it. The lowest byte ends a string, so that no string can
// write the guard.
[[gnu::constructor, gnu::no_stack_protector]] void setGuard() {
    FILETIME time;
    LARGE_INTEGER counter;
    GetSystemTimeAsFileTime(&time);
    QueryPerformanceCounter(&counter);
    std::uintptr_t guard = reinterpret_cast<std::uintptr_t>(&time);
    for (const std::uintptr_t part :
         {std::uintptr_t{time.dwLowDateTime}, std::uintptr_t{time.dwHighDateTime},
          static_cast<std::uintptr_t>(counter.QuadPart), std::uintptr_t{GetCurrentProcessId()},
          std::uintptr_t{GetCurrentThreadId()}}) {
        guard = (guard ^ part) * 0x9E3779B97F4A7C15;
        guard ^= guard >> 32;
    }
    __stack_chk_guard = guard & ~std::uintptr_t{0xFF};
}

} // namespace
