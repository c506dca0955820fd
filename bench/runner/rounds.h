// Running contenders in turn, and what came of it.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace obj_adapter::bench {

struct Contender {
    std::string name;
    std::vector<std::string> command;  // program and arguments
    bool mayFail = false;              // then it is left out; so with other libraries
};

// What one process reported (see measuring/contender.h).
struct Sample {
    std::map<std::string, double> seconds;
    std::map<std::string, double> counts;
    double peakBytes = 0;
    std::string answer;
};

// Starts the program, waits, reads what it printed.
//
// Throws std::runtime_error, with what it said, when it fails or takes longer than
// some minutes.
Sample runContenderProcess(const Contender& contender);

// The samples of one contender, round by round.
class Series {
public:
    // Adds a round; its answer and counts must be those of the rounds before.
    void add(const std::string& name, Sample sample);

    // CPU seconds of a part, or the sum of several, round by round.
    std::vector<double> seconds(const std::string& part) const;

    double medianSeconds(const std::string& part) const;
    double count(const std::string& name) const { return samples.front().counts.at(name); }
    double peakBytes() const;  // the median
    const std::string& answer() const { return samples.front().answer; }

private:
    std::vector<Sample> samples;
};

double median(std::vector<double> values);

// How many times as long the slower takes: the median of the rounds' ratios, in
// each of which both ran one after the other.
double medianRatio(const std::vector<double>& slower, const std::vector<double>& faster);

class Rounds {
public:
    explicit Rounds(int numberOfRounds) : roundCount(numberOfRounds) {}

    // Runs every contender once in each round, beginning with another one each
    // time, after one round that is not counted. Before each run, twice the memory
    // that it is going to need is touched.
    std::map<std::string, Series> run(const std::vector<Contender>& contenders) const;

private:
    int roundCount;
};

}  // namespace obj_adapter::bench
