// Gives back what the compiler's runtime inside the DLL holds, when the DLL is
// unloaded; mingw-w64 only. Covered by tests/installed/loadingTest.cpp.
//
// The runtime reserves some 70 KB when it is loaded, for exceptions that are
// thrown when memory has run out, and would keep it: meant for a program, which
// gives everything back by ending. A host that loads and unloads the library
// would lose as much each time.

// The runtime's own, for tools that look for leaks; no header declares it.
namespace __gnu_cxx {
void __freeres();  // NOLINT: its name
}

namespace obj_adapter::platform {

namespace {

struct ReserveOfTheRuntime {
    // Not constexpr: the order of construction is the point.
    ReserveOfTheRuntime() noexcept { isHeld = true; }
    ~ReserveOfTheRuntime() {
        if (isHeld)
            __gnu_cxx::__freeres();
    }
    ReserveOfTheRuntime(const ReserveOfTheRuntime&) = delete;
    ReserveOfTheRuntime& operator=(const ReserveOfTheRuntime&) = delete;

    bool isHeld = false;
};

// Made first and so destroyed last: behind it nothing of ours can throw.
constexpr int FIRST_PRIORITY = 101;
[[gnu::init_priority(FIRST_PRIORITY)]] ReserveOfTheRuntime reserveOfTheRuntime;

}  // namespace

}  // namespace obj_adapter::platform
