// A program that writes past the end of its own stack frame, for
// tests/windows/stackGuard.cmake: it has to be stopped before it prints the second
// line. Compiled and linked as the DLL is.
#include <cstdint>
#include <cstdio>

extern "C" std::uintptr_t __stack_chk_guard;  // NOLINT(bugprone-reserved-identifier)

namespace {

constexpr int FRAME_SIZE = 16;

// The count is read at run time, or the compiler would see through this.
[[gnu::noinline]] char fill(volatile int& count) {
    char text[FRAME_SIZE] = {};
    volatile char* place = text;
    for (int at = 0; at < count; ++at)
        place[at] = 'x';
    return place[0];
}

}  // namespace

int main() {
    std::printf("guard %016llx\n", static_cast<unsigned long long>(__stack_chk_guard));
    std::fflush(stdout);
    volatile int withinFrame = FRAME_SIZE;
    volatile int beyondFrame = FRAME_SIZE + 16;
    if (fill(withinFrame) == 'x')
        std::printf("written %c\n", fill(beyondFrame));
    return 0;
}
