// How far a long import is, on a terminal: one line that overwrites itself and is
// gone in the end.
#pragma once

#include <chrono>
#include <string>

namespace obj_adapter::tool {

class ProgressLine {
public:
    // Shows nothing when the error output is no terminal, nor before the import
    // has taken a while.
    ProgressLine();
    ~ProgressLine();
    ProgressLine(const ProgressLine&) = delete;
    ProgressLine& operator=(const ProgressLine&) = delete;

    // fraction  of the stage, from 0 to 1; 0 also stands for unknown
    void show(const char* stage, double fraction);

    // Before anything else is printed.
    void erase();

private:
    using Clock = std::chrono::steady_clock;

    bool isWanted;
    Clock::time_point nextUpdate;
    std::size_t shownLength = 0;
};

}  // namespace obj_adapter::tool
