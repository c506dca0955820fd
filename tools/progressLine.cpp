// Shows progress on a terminal. Covered by tests/tools/terminalOutput.cmake.
#include "progressLine.h"

#include "terminal.h"

#include <cstdio>
#include <cstdlib>

namespace obj_adapter::tool {

namespace {

using Milliseconds = std::chrono::milliseconds;

// Short imports are done before a person could read the line. The environment may
// shorten the wait, so that a test need not import for long.
Milliseconds waitBeforeFirst() {
    constexpr Milliseconds WAIT(500);
    const char* wait = std::getenv("OBJ_ADAPTER_PROGRESS_WAIT");
    return wait == nullptr ? WAIT : Milliseconds(std::atoi(wait));
}

constexpr Milliseconds BETWEEN_UPDATES(100);

}  // namespace

ProgressLine::ProgressLine()
    : isWanted(isTerminal(Stream::ERROR_OUTPUT)), nextUpdate(Clock::now() + waitBeforeFirst()) {}

ProgressLine::~ProgressLine() {
    erase();
}

void ProgressLine::show(const char* stage, double fraction) {
    const Clock::time_point now = Clock::now();
    if (!isWanted || now < nextUpdate)
        return;
    nextUpdate = now + BETWEEN_UPDATES;
    std::string line = std::string(stage) + "...";
    if (fraction > 0.0)
        line += " " + std::to_string(static_cast<int>(fraction * 100.0)) + " %";
    erase();
    std::fputs(line.c_str(), stderr);
    std::fflush(stderr);
    shownLength = line.size();
}

// With blanks, which every terminal understands.
void ProgressLine::erase() {
    if (shownLength == 0)
        return;
    std::fputs(("\r" + std::string(shownLength, ' ') + "\r").c_str(), stderr);
    std::fflush(stderr);
    shownLength = 0;
}

}  // namespace obj_adapter::tool
