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
    std::string answerFile;     // the stored hashes
    InputFolder inputs;
    double megabytes = 20;
    int rounds = 7;
    bool isQuick = false;             // fewer and smaller, to see that it works
    std::vector<std::string> shapes;  // for reading; empty: all
    std::vector<std::string> absent;  // contenders that reading goes without

    Contender ours(const std::string& name, const std::vector<std::string>& arguments) const {
        return contender(name, "bench_import", arguments);
    }
    Contender stage(const std::string& name, const std::vector<std::string>& arguments) const {
        return contender(name, "bench_stages", arguments);
    }
    Contender peer(const std::string& name, const std::vector<std::string>& arguments) const {
        Contender peer = contender(name, "bench_peers", arguments);
        peer.mayFail = true;
        return peer;
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

// Checks before anything is timed: stages against their slow twins, and the models
// of small files of every shape against the hashes in expectedModels.txt, which
// storeAnswers writes anew. Throws std::runtime_error when one differs.
void checkAnswers(const Session& session);
void storeAnswers(const Session& session);

// Many materials, groups and switches beside a plain file of that size.
void runCostSuite(const Session& session, Report& report);

// Compaction of tables alone, beside std::sort on records and another merger.
void runCompactionSuite(const Session& session, Report& report);

// Rounds of subdivision, beside other libraries and the floor of writing tables.
void runSubdivisionSuite(const Session& session, Report& report);

// Triangulation, beside the literal method.
void runTriangulationSuite(const Session& session, Report& report);

// Loading the library, and the smallest import.
void runStartSuite(const Session& session, Report& report);

// The peak of memory of whole imports with subdivision.
void runMemorySuite(const Session& session, Report& report);

}  // namespace obj_adapter::bench
