// Notes that the user interrupts. Covered by tests/tools/interrupt.py.
#include "interrupt.h"

#include "exitCodes.h"

#include <csignal>

namespace obj_adapter::tool {

namespace {

volatile std::sig_atomic_t interrupted = 0;

extern "C" void noteInterrupt(int signal) {
    interrupted = 1;
    std::signal(signal, SIG_DFL);
}

}  // namespace

InterruptWatch::InterruptWatch() : earlier(std::signal(SIGINT, noteInterrupt)) {
    if (earlier == SIG_IGN)
        std::signal(SIGINT, SIG_IGN);
}

InterruptWatch::~InterruptWatch() {
    if (earlier != SIG_ERR)
        std::signal(SIGINT, earlier);
}

bool InterruptWatch::wasInterrupted() {
    return interrupted != 0;
}

int endInterrupted() {
    std::signal(SIGINT, SIG_DFL);
#if !defined(_WIN32)
    std::raise(SIGINT);
#endif
    return EXIT_CODE_INTERRUPTED;
}

}  // namespace obj_adapter::tool
