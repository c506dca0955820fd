// What runs in a contender's process: one of the programs that are measured, ours
// or a peer's. Each measurement is a process of its own, so that memory is as
// fresh for one as for the other and the peak of memory is its own.
#pragma once

#include <cstdint>
#include <map>
#include <span>
#include <string>
#include <vector>

namespace obj_adapter::bench {

// CPU time of the process so far, system time included, in seconds.
double cpuSeconds() noexcept;

// Resident memory in bytes: now, and the most since the last resetPeakMemory.
std::uint64_t residentBytes();
std::uint64_t peakResidentBytes();
void resetPeakMemory();

// The measurements of one process, printed as one line of JSON.
class Measured {
public:
    Measured();

    // Runs the work and adds its CPU seconds to the part of that name. The peak
    // of memory is that of the last work, over what the program had at its start.
    template <typename Work>
    void time(const std::string& part, Work&& work) {
        resetPeakMemory();
        const double start = cpuSeconds();
        work();
        seconds[part] += cpuSeconds() - start;
        peakBytes = peakResidentBytes() - bytesAtStart;
    }

    // For time that was taken elsewhere.
    void addTime(const std::string& part, double value) { seconds[part] += value; }

    void setCount(const std::string& name, double value) { counts[name] = value; }

    // By this the runner sees whether two contenders, or two runs, came to the
    // same result.
    void setAnswer(std::uint64_t value) { answer = value; }

    void print() const;

private:
    std::uint64_t bytesAtStart;
    std::uint64_t peakBytes = 0;
    std::map<std::string, double> seconds;
    std::map<std::string, double> counts;
    std::uint64_t answer = 0;
};

using Arguments = std::vector<std::string>;

// The command behind the program's name, and what does it.
struct Command {
    const char* name;
    const char* arguments;  // for the usage text
    void (*run)(const Arguments& arguments, Measured& measured);
};

// The main function of a contender's program.
int runContender(int argc, char** argv, std::span<const Command> commands);

}  // namespace obj_adapter::bench
