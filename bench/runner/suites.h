// The suites of measurements. Each adds its tables and goals to the report.
#pragma once

#include "inputs/inputFiles.h"
#include "runner/report.h"
#include "runner/rounds.h"

#include <string>
#include <vector>

namespace obj_adapter::bench {

// What all suites are told.
struct Session {
    std::string programFolder;  // where the contenders' programs are
    InputFolder inputs;
    double megabytes = 20;
    int rounds = 7;
    bool isQuick = false;             // fewer and smaller, to see that it works
    std::vector<std::string> shapes;  // for reading; empty: all

    Contender ours(const std::string& name, std::vector<std::string> arguments) const {
        return contender(name, "bench_import", std::move(arguments));
    }
    Contender stage(const std::string& name, std::vector<std::string> arguments) const {
        return contender(name, "bench_stages", std::move(arguments));
    }
    Contender peer(const std::string& name, std::vector<std::string> arguments) const {
        return contender(name, "bench_peers", std::move(arguments));
    }
    Contender contender(const std::string& name, const std::string& program,
                        std::vector<std::string> arguments) const {
        arguments.insert(arguments.begin(), programFolder + "/" + program);
        return {name, std::move(arguments)};
    }
};

// Reading each shape, compaction off, beside other readers and the floors; and
// whole imports with compaction.
void runReadingSuite(const Session& session, Report& report);

// Many materials, groups and switches beside a plain file of that size.
void runCostSuite(const Session& session, Report& report);

}  // namespace obj_adapter::bench
