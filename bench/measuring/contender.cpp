// Measuring in a contender's process. Linux: CPU time by clock_gettime, memory by
// /proc/self.
#include "measuring/contender.h"

#include <nlohmann/json.hpp>

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <fstream>
#include <ios>
#include <stdexcept>

#include <time.h>

namespace obj_adapter::bench {

namespace {

// A line of /proc/self/status such as "VmHWM:   1234 kB".
std::uint64_t statusBytes(const std::string& field) {
    constexpr std::uint64_t BYTES_PER_KILOBYTE = 1024;
    std::ifstream status("/proc/self/status");
    for (std::string word; status >> word;) {
        std::uint64_t kilobytes = 0;
        if (word == field && status >> kilobytes)
            return BYTES_PER_KILOBYTE * kilobytes;
    }
    throw std::runtime_error("no " + field + " in /proc/self/status");
}

std::string hexadecimal(std::uint64_t value) {
    char digits[32];
    std::snprintf(digits, sizeof digits, "%016llx", static_cast<unsigned long long>(value));
    return digits;
}

}  // namespace

double cpuSeconds() noexcept {
    constexpr double SECONDS_PER_NANOSECOND = 1e-9;
    timespec now{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) +
           SECONDS_PER_NANOSECOND * static_cast<double>(now.tv_nsec);
}

std::uint64_t residentBytes() {
    return statusBytes("VmRSS:");
}

std::uint64_t peakResidentBytes() {
    return statusBytes("VmHWM:");
}

void resetPeakMemory() {
    // 5: the peak starts anew from what is resident (proc(5)).
    std::ofstream("/proc/self/clear_refs") << "5";
}

Measured::Measured() : bytesAtStart(residentBytes()) {}

void Measured::print() const {
    const nlohmann::json line = {{"seconds", seconds},
                                 {"counts", counts},
                                 {"peak", peakBytes},
                                 {"answer", hexadecimal(answer)}};
    std::printf("%s\n", line.dump().c_str());
}

int runContender(int argc, char** argv, std::span<const Command> commands) {
    const std::string name = argc > 1 ? argv[1] : "";
    for (const Command& command : commands) {
        if (name != command.name)
            continue;
        try {
            Measured measured;
            command.run(Arguments(argv + 2, argv + argc), measured);
            measured.print();
            std::fflush(stdout);
            // Taking the results apart is nobody's subject.
            std::_Exit(0);
        } catch (const std::exception& failure) {
            std::fprintf(stderr, "%s: %s\n", argv[0], failure.what());
            return 1;
        }
    }
    std::fprintf(stderr, "usage:\n");
    for (const Command& command : commands)
        std::fprintf(stderr, "  %s %s %s\n", argv[0], command.name, command.arguments);
    return 2;
}

}  // namespace obj_adapter::bench
