// Compaction of tables alone.
#include "runner/suites.h"

#include <algorithm>
#include <cstdio>
#include <limits>
#include <map>
#include <stdexcept>

namespace obj_adapter::bench {

namespace {

constexpr char PART[] = "sort";
constexpr double NANOSECONDS = 1e9;

using Results = std::map<std::string, Series>;

void requireSameCount(const Results& results, const std::string& count) {
    for (const auto& [name, series] : results) {
        if (series.count(count) != results.at("ours").count(count))
            throw std::runtime_error(name + " finds another number of different " + count);
    }
}

std::string nanosecondsEach(const Results& results, const std::string& name, double records) {
    const auto found = results.find(name);
    return found == results.end() ? "-"
                                  : show(NANOSECONDS * found->second.medianSeconds(PART) / records);
}

void runVertices(const Session& session, Report& report) {
    const std::string count = session.isQuick ? "300000" : "10000000";
    Table table;
    table.title = "Merging " + count + " vertices: ns each";
    table.note =
        "ours: compaction of a model without faces. std::sort: whole records, nothing merged. "
        "meshoptimizer: a hash table finds equal ones; nothing is sorted.";
    table.columns = {"vertices", "ours", "std::sort", "meshoptimizer", "x std::sort"};
    for (const std::string input : {"random", "sixfold", "file", "equal-x"}) {
        std::fprintf(stderr, "compaction: %s vertices\n", input.c_str());
        const Results results =
            Rounds(session.rounds)
                .run({session.stage("ours", {"compact-vertices", input, count}),
                      session.stage("std::sort", {"sort-vertices", input, count}),
                      session.peer("meshoptimizer", {"merge-meshoptimizer", input, count})});
        requireSameCount(results, "vertices");
        const double ratio =
            medianRatio(results.at("std::sort").seconds(PART), results.at("ours").seconds(PART));
        const double records = std::stod(count);
        table.rows.push_back({input, nanosecondsEach(results, "ours", records),
                              nanosecondsEach(results, "std::sort", records),
                              nanosecondsEach(results, "meshoptimizer", records), show(ratio)});
        report.add(
            Goal{"merging vertices, " + input + ", times as fast as std::sort", 1.5, false, ratio});
    }
    report.add(table);
}

void runFaces(const Session& session, Report& report) {
    struct Input {
        const char* name;
        double goal;
    };
    const std::string count = session.isQuick ? "600000" : "20000000";
    Table table;
    table.title = "Sorting " + count + " faces: ns each";
    table.note =
        "ours: the sort of compaction by itself, as std::sort on whole records is. compaction: "
        "of a model whose vertices are in order: faces renumbered, sorted, duplicates removed, "
        "groups listed anew.";
    table.columns = {"faces",      "ours",        "std::sort",
                     "compaction", "x std::sort", "compaction x std::sort"};
    for (const Input input : {Input{"shuffled", 2}, Input{"file", 3}, Input{"sixfold", 2}}) {
        std::fprintf(stderr, "compaction: %s faces\n", input.name);
        const Results results =
            Rounds(session.rounds)
                .run({session.stage("ours", {"bucket-sort-faces", input.name, count}),
                      session.stage("compaction", {"compact-faces", input.name, count}),
                      session.stage("std::sort", {"sort-faces", input.name, count})});
        requireSameCount(results, "faces");
        const double ratio =
            medianRatio(results.at("std::sort").seconds(PART), results.at("ours").seconds(PART));
        const double records = std::stod(count);
        const double stageRatio = medianRatio(results.at("std::sort").seconds(PART),
                                              results.at("compaction").seconds(PART));
        table.rows.push_back({input.name, nanosecondsEach(results, "ours", records),
                              nanosecondsEach(results, "std::sort", records),
                              nanosecondsEach(results, "compaction", records), show(ratio),
                              show(stageRatio)});
        report.add(
            Goal{std::string("sorting faces, ") + input.name + ", times as fast as std::sort",
                 input.goal, false, ratio});
    }
    report.add(table);
}

}  // namespace

void runCompactionSuite(const Session& session, Report& report) {
    runVertices(session, report);
    runFaces(session, report);
}

}  // namespace obj_adapter::bench
