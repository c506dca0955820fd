// The peak of memory of whole imports, and the smallest import.
#include "inputs/shapes.h"
#include "runner/suites.h"

#include <algorithm>
#include <cstdio>
#include <map>

namespace obj_adapter::bench {

namespace {

using Results = std::map<std::string, Series>;

}  // namespace

void runMemorySuite(const Session& session, Report& report) {
    constexpr double FREE_BYTES = 8e6;
    constexpr double BYTES_PER_MEGABYTE = 1e6;
    constexpr int SUBDIVISION_ROUNDS = 2;
    const double megabytes = session.isQuick ? 0.5 : 4;
    Table table;
    table.title = "Peak of memory of whole imports, with two rounds of subdivision";
    table.note = "Tables: as read or as finished, whichever is more.";
    table.columns = {"shape", "faces", "tables, MB", "peak, MB", "peak/tables"};
    double worst = 0;
    for (const Shape& shape : getShapes()) {
        std::fprintf(stderr, "memory: %s\n", shape.name);
        const std::string file = session.inputs.provide(shape.name, megabytes);
        const std::string rounds = "rounds=" + std::to_string(SUBDIVISION_ROUNDS);
        const Results results = Rounds(1).run({session.ours("read", {"import", file}),
                                               session.ours("all", {"import", file, rounds})});
        const Series& all = results.at("all");
        const double tables =
            std::max(results.at("read").count("table bytes"), all.count("table bytes"));
        worst = std::max(worst, (all.peakBytes() - FREE_BYTES) / tables);
        table.rows.push_back(
            {shape.name, show(all.count("faces")), show(tables / BYTES_PER_MEGABYTE),
             show(all.peakBytes() / BYTES_PER_MEGABYTE), show(all.peakBytes() / tables)});
    }
    report.add(table);
    report.add(
        Goal{"peak of an import with subdivision without 8 MB, beside the bytes of its "
             "tables, the worst shape",
             1.8, true, worst});
}

void runStartSuite(const Session& session, Report& report) {
    constexpr double SMALLEST_MEGABYTES = 0.001;
    constexpr double MICROSECONDS = 1e6;
    constexpr int MANY_ROUNDS = 51;
    std::fprintf(stderr, "start\n");
    const std::string file = session.inputs.provide("grid", SMALLEST_MEGABYTES);
    const Results results = Rounds(session.isQuick ? session.rounds : MANY_ROUNDS)
                                .run({session.contender("start", "bench_start", {"start", file})});
    const Series& start = results.at("start");
    const double load = MICROSECONDS * start.medianSeconds("load");
    const double first = MICROSECONDS * start.medianSeconds("first import");
    const double second = MICROSECONDS * start.medianSeconds("second import");
    Table table;
    table.title = "The smallest import: microseconds";
    table.note =
        "A file of 1 KB. Loading: dlopen of the library in a process that has the C++ library "
        "already; all symbols are bound.";
    table.columns = {"load", "first import", "second import"};
    table.rows.push_back({show(load), show(first), show(second)});
    report.add(table);
    report.add(Goal{"first import of 1 KB in a process, microseconds", 100, true, first});
    report.add(Goal{"loading the library and that import, microseconds", 100, true, load + first});
}

}  // namespace obj_adapter::bench
