// What -fstack-protector asks of the runtime, for the DLL; mingw-w64 only. Covered
// by tests/windows/hardening.cmake.
//
// The compiler's own libssp would take its random number from a system service that
// loads further DLLs, which a DLL must not do while it is loaded itself. This one
// is mixed from what differs between processes, as other compilers' guards are.
#define WIN32_LEAN_AND_MEAN
#define NOMINMAX
#include <windows.h>

#include <cstdint>
#include <cstdlib>

// Both names are the compiler's.
extern "C" {
extern std::uintptr_t __stack_chk_guard;  // NOLINT(bugprone-reserved-identifier)
[[noreturn]] void __stack_chk_fail();     // NOLINT(bugprone-reserved-identifier)
}

namespace {

// Spreads every bit over all higher ones.
std::uint64_t mixed(std::uint64_t bits) noexcept {
    // 2^64 divided by the golden ratio, odd.
    constexpr std::uint64_t MULTIPLIER = 0x9E3779B97F4A7C15U;
    constexpr unsigned HALF = 32;
    bits *= MULTIPLIER;
    return (bits ^ (bits >> HALF)) * MULTIPLIER;
}

std::uintptr_t makeGuard() noexcept {
    LARGE_INTEGER counter = {};
    QueryPerformanceCounter(&counter);
    FILETIME time = {};
    GetSystemTimeAsFileTime(&time);

    std::uint64_t bits = reinterpret_cast<std::uintptr_t>(&__stack_chk_guard);
    bits = mixed(bits) ^ reinterpret_cast<std::uintptr_t>(&counter);
    bits = mixed(bits) ^ static_cast<std::uint64_t>(counter.QuadPart);
    bits = mixed(bits) ^ time.dwLowDateTime;
    bits = mixed(bits) ^ GetCurrentProcessId();
    bits = mixed(bits) ^ GetCurrentThreadId();
    // The byte that a text written too far meets first is its end.
    constexpr std::uint64_t FIRST_BYTE = 0xFF;
    return mixed(bits) & ~FIRST_BYTE;
}

}  // namespace

// Made while the library is loaded, when none of its functions is running that
// has put an earlier value aside. This file itself is compiled without guards.
std::uintptr_t __stack_chk_guard = makeGuard();

// At once: nothing that a spoilt stack leads to may run any more.
void __stack_chk_fail() {
    constexpr UINT STACK_BUFFER_OVERRUN = 0xC0000409;  // as the system's own checks say it
    TerminateProcess(GetCurrentProcess(), STACK_BUFFER_OVERRUN);
    std::abort();
}
