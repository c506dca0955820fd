// Triangulation, beside the literal method.
#include "runner/suites.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <map>
#include <stdexcept>

namespace obj_adapter::bench {

namespace {

constexpr char PART[] = "triangulate";
constexpr double NANOSECONDS = 1e9;
constexpr double MICROSECONDS = 1e6;

using Results = std::map<std::string, Series>;

// Large polygons: ours against the slow twin.
void runLargePolygons(const Session& session, Report& report) {
    struct Kind {
        const char* name;
        double goal;
        int ourPolygons;
        int slowPolygons;
    };
    Table table;
    const std::string corners = session.isQuick ? "300" : "1000";
    table.title = "Triangulation of one polygon of " + corners + " corners: microseconds";
    table.note =
        "literal method: every list computed anew in every pass "
        "(tests/support/slowTriangulation.cpp).";
    table.columns = {"polygon", "ours", "literal method", "x literal"};
    for (const Kind kind : {Kind{"comb", 2, 20, 5}, Kind{"saw", 2, 20, 5},
                            Kind{"spiral", 10, 20, 1}, Kind{"blocked", 100, 20, 1}}) {
        std::fprintf(stderr, "triangulation: %s\n", kind.name);
        const Results results =
            Rounds(session.rounds)
                .run({session.stage("ours", {"triangulate", kind.name, corners,
                                             std::to_string(kind.ourPolygons)}),
                      session.stage("slow", {"triangulate-slowly", kind.name, corners,
                                             std::to_string(kind.slowPolygons)})});
        if (results.at("ours").answer() != results.at("slow").answer())
            throw std::runtime_error(std::string(kind.name) + " is split in another way");
        const double ratio =
            medianRatio(results.at("slow").seconds(PART), results.at("ours").seconds(PART)) *
            kind.ourPolygons / kind.slowPolygons;
        table.rows.push_back(
            {kind.name,
             show(MICROSECONDS * results.at("ours").medianSeconds(PART) / kind.ourPolygons),
             show(MICROSECONDS * results.at("slow").medianSeconds(PART) / kind.slowPolygons),
             show(ratio)});
        report.add(Goal{std::string("triangulation of a ") + kind.name +
                            ", times as fast as the literal method",
                        kind.goal, false, ratio});
    }
    report.add(table);
}

// Convex ones of any size: n log n.
void runConvexPolygons(const Session& session, Report& report) {
    Table table;
    table.title = "Triangulation of convex polygons";
    table.note = "n corners; the search for equal positions included.";
    table.columns = {"corners", "microseconds", "ns / (n log2 n)"};
    double least = INFINITY;
    double most = 0;
    for (const int corners : {1000, 10000, 100000, 1000000}) {
        const int polygons = 1000000 / corners;
        const Results results =
            Rounds(session.rounds)
                .run({session.stage("ours", {"triangulate", "convex", std::to_string(corners),
                                             std::to_string(polygons)})});
        const double seconds = results.at("ours").medianSeconds(PART) / polygons;
        const double each = NANOSECONDS * seconds / (corners * std::log2(corners));
        table.rows.push_back({std::to_string(corners), show(MICROSECONDS * seconds), show(each)});
        // The largest leaves the caches, which is memory's doing.
        if (corners < 1000000) {
            least = std::min(least, each);
            most = std::max(most, each);
        }
    }
    report.add(table);
    report.add(Goal{"convex polygons of 1,000 to 100,000 corners, growth beyond n log n", 2, true,
                    most / least});
}

void runSmallPolygons(const Session& session, Report& report) {
    struct Kind {
        const char* name;
        const char* corners;
        double goal;
    };
    constexpr double POLYGONS = 2e6;
    Table table;
    table.title = "Triangulation of small polygons";
    table.columns = {"polygon", "ns"};
    for (const Kind kind :
         {Kind{"quad", "4", 80}, Kind{"dart", "4", 200}, Kind{"pentagon", "5", 0}}) {
        const Results results =
            Rounds(session.rounds)
                .run({session.stage("ours", {"triangulate", kind.name, kind.corners, "2000000"})});
        const double each = NANOSECONDS * results.at("ours").medianSeconds(PART) / POLYGONS;
        table.rows.push_back({kind.name, show(each)});
        if (kind.goal > 0)
            report.add(Goal{std::string("triangulation of a ") + kind.name + ", ns", kind.goal,
                            true, each});
    }
    report.add(table);
}

// Below 64 corners nothing is asked of the heap.
void runAllocations(const Session& session, Report& report) {
    double most = 0;
    for (const char* kind : {"convex", "comb", "saw", "spiral", "blocked"}) {
        for (const char* corners : {"4", "5", "8", "16", "32", "63"}) {
            // An arc and its tips need some corners.
            if (std::string(kind) == "blocked" && std::stoi(corners) < 16)
                continue;
            const Sample sample = runContenderProcess(session.contender(
                "allocations", "bench_allocations", {"triangulate", kind, corners}));
            most = std::max({most, sample.counts.at("first"), sample.counts.at("next")});
        }
    }
    report.add(Goal{"triangulation below 64 corners, allocations of one polygon", 0, true, most});
}

// What polygons add to the reading of ordinary files.
void runFiles(const Session& session, Report& report) {
    Table table;
    table.title = "Triangulation in ordinary files";
    table.note = "All polygons of the file, triangulated by themselves, beside reading the file.";
    table.columns = {"file", "triangulation/reading"};
    for (const std::string shape : {"quads", "pentagons"}) {
        const std::string file = session.inputs.provide(shape, session.megabytes);
        const Results results =
            Rounds(session.rounds)
                .run({session.ours("read", {"import", file}),
                      session.stage("triangulate", {"triangulate-file", file})});
        const double share = medianRatio(results.at("triangulate").seconds(PART),
                                         results.at("read").seconds("read"));
        table.rows.push_back({shape, show(share)});
        report.add(
            Goal{"triangulation in a file of " + shape + ", beside reading it", 0.15, true, share});
    }
    report.add(table);
}

}  // namespace

void runTriangulationSuite(const Session& session, Report& report) {
    runLargePolygons(session, report);
    runConvexPolygons(session, report);
    runSmallPolygons(session, report);
    runAllocations(session, report);
    runFiles(session, report);
}

}  // namespace obj_adapter::bench
