// Interleaved rounds of contenders, each in a process of its own.
#include "runner/rounds.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstddef>
#include <cstdio>
#include <fstream>
#include <stdexcept>

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

namespace obj_adapter::bench {

namespace {

// A contender that takes longer is stopped.
constexpr unsigned MOST_SECONDS = 600;

std::string join(const std::vector<std::string>& words) {
    std::string text;
    for (const std::string& word : words)
        text += (text.empty() ? "" : " ") + word;
    return text;
}

// Becomes the program, its output into the pipe. Never returns.
[[noreturn]] void becomeProgram(const std::vector<std::string>& command, int output) {
    dup2(output, STDOUT_FILENO);
    std::vector<char*> arguments;
    for (const std::string& word : command)
        arguments.push_back(const_cast<char*>(word.c_str()));
    arguments.push_back(nullptr);
    alarm(MOST_SECONDS);
    execv(arguments.front(), arguments.data());
    std::perror(arguments.front());
    _exit(127);
}

std::string readAll(int file) {
    std::string text;
    std::array<char, 4096> block{};
    for (;;) {
        const ssize_t count = read(file, block.data(), block.size());
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            return text;
        text.append(block.data(), static_cast<std::size_t>(count));
    }
}

// Gives the system's memory to this machine and back to the system: a virtual
// machine may have to fetch it from its host first, at the cost of whoever comes
// first. Huge pages come from other stretches of memory than small ones do, so both
// kinds are touched.
void touchMemory(std::size_t bytes) {
    constexpr std::size_t PAGE = 4096;
    for (const int advice : {MADV_NOHUGEPAGE, MADV_HUGEPAGE}) {
        void* memory = mmap(nullptr, bytes, PROT_READ | PROT_WRITE,
                            MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
        if (memory == MAP_FAILED)
            return;
        madvise(memory, bytes, advice);
        for (std::size_t place = 0; place < bytes; place += PAGE)
            static_cast<volatile char*>(memory)[place] = 1;
        munmap(memory, bytes);
    }
}

// Half of what is free, at most: others work on this machine too.
std::size_t mostBytesToTouch() {
    constexpr std::size_t BYTES_PER_KILOBYTE = 1024;
    std::ifstream information("/proc/meminfo");
    for (std::string word; information >> word;) {
        std::size_t kilobytes = 0;
        if (word == "MemAvailable:" && information >> kilobytes)
            return kilobytes * BYTES_PER_KILOBYTE / 2;
    }
    return 0;
}

}  // namespace

Sample runContenderProcess(const Contender& contender) {
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0)
        throw std::runtime_error("cannot make a pipe");
    const pid_t process = fork();
    if (process == 0)
        becomeProgram(contender.command, ends[1]);
    close(ends[1]);
    const std::string output = readAll(ends[0]);
    close(ends[0]);
    int status = 0;
    waitpid(process, &status, 0);
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0)
        throw std::runtime_error("failed: " + join(contender.command));

    // The last line: a library may have printed something before.
    const std::size_t lastLine = output.rfind("\n{");
    const auto json =
        nlohmann::json::parse(lastLine == std::string::npos ? output : output.substr(lastLine + 1));
    Sample sample;
    json.at("seconds").get_to(sample.seconds);
    json.at("counts").get_to(sample.counts);
    json.at("peak").get_to(sample.peakBytes);
    json.at("answer").get_to(sample.answer);
    return sample;
}

void Series::add(const std::string& name, Sample sample) {
    if (!samples.empty() &&
        (sample.answer != samples.front().answer || sample.counts != samples.front().counts))
        throw std::runtime_error(name + " came to another result than the time before");
    samples.push_back(std::move(sample));
}

std::vector<double> Series::seconds(const std::string& part) const {
    std::vector<double> values;
    for (const Sample& sample : samples)
        values.push_back(sample.seconds.at(part));
    return values;
}

double Series::medianSeconds(const std::string& part) const {
    return median(seconds(part));
}

double Series::peakBytes() const {
    std::vector<double> values;
    for (const Sample& sample : samples)
        values.push_back(sample.peakBytes);
    return median(std::move(values));
}

double median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    const std::size_t middle = values.size() / 2;
    return values.size() % 2 == 1 ? values[middle] : (values[middle - 1] + values[middle]) / 2;
}

double medianRatio(const std::vector<double>& slower, const std::vector<double>& faster) {
    std::vector<double> ratios;
    for (std::size_t round = 0; round < std::min(slower.size(), faster.size()); ++round)
        ratios.push_back(slower[round] / faster[round]);
    return median(std::move(ratios));
}

std::map<std::string, Series> Rounds::run(const std::vector<Contender>& contenders) const {
    std::vector<Contender> able;
    std::vector<double> peaks;
    for (const Contender& contender : contenders) {
        try {
            peaks.push_back(runContenderProcess(contender).peakBytes);
            able.push_back(contender);
        } catch (const std::exception& failure) {
            if (!contender.mayFail)
                throw;
            std::fprintf(stderr, "left out: %s: %s\n", contender.name.c_str(), failure.what());
        }
    }
    std::map<std::string, Series> results;
    for (int round = 0; round < roundCount; ++round) {
        for (std::size_t place = 0; place < able.size(); ++place) {
            const std::size_t turn = (place + static_cast<std::size_t>(round)) % able.size();
            const Contender& contender = able[turn];
            const auto peak = static_cast<std::size_t>(peaks[turn]);
            touchMemory(std::min(2 * peak, mostBytesToTouch()));
            results[contender.name].add(contender.name, runContenderProcess(contender));
        }
    }
    return results;
}

}  // namespace obj_adapter::bench
