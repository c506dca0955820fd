// Reading, beside other readers and floors.
#include "inputs/shapes.h"
#include "runner/suites.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <limits>
#include <map>
#include <stdexcept>

namespace obj_adapter::bench {

namespace {

constexpr double BYTES_PER_MEGABYTE = 1e6;

const char PART[] = "import";

using Results = std::map<std::string, Series>;

// One shape, run.
struct ShapeResult {
    std::string name;
    double megabytes = 0;
    bool hasQuads = false;
    bool hasPolygons = false;
    Results results;

    double megabytesPerSecond(const std::string& contender) const {
        const auto found = results.find(contender);
        return found == results.end() ? std::numeric_limits<double>::quiet_NaN()
                                      : megabytes / found->second.medianSeconds(PART);
    }

    // How many times as fast as the other we read.
    double speedBeside(const std::string& contender, const std::string& us = "read") const {
        const auto found = results.find(contender);
        return found == results.end()
                   ? std::numeric_limits<double>::quiet_NaN()
                   : medianRatio(found->second.seconds(PART), results.at(us).seconds(PART));
    }
};

std::vector<std::string> chosenShapes(const Session& session) {
    if (!session.shapes.empty())
        return session.shapes;
    std::vector<std::string> names;
    for (const Shape& shape : getShapes())
        names.emplace_back(shape.name);
    if (!session.inputs.modelFolder.empty())
        names.emplace_back(MODELS_SHAPE);
    return names;
}

// Where a fan is the whole triangulation, the plain reader's records must be ours.
void compareWithPlainReader(const ShapeResult& shape) {
    if (shape.hasPolygons)
        return;
    if (shape.results.at("read").answer() != shape.results.at("records").answer())
        throw std::runtime_error("the model of " + shape.name + " is not that of a plain reader");
}

ShapeResult runShape(const Session& session, const std::string& name) {
    std::fprintf(stderr, "reading: %s\n", name.c_str());
    const std::string file = session.inputs.provide(name, session.megabytes);
    ShapeResult shape;
    shape.name = name;
    shape.megabytes = static_cast<double>(std::filesystem::file_size(file)) / BYTES_PER_MEGABYTE;
    const Shape* kind = findShape(name);
    shape.hasPolygons = kind == nullptr || kind->hasPolygons;
    shape.hasQuads = kind == nullptr || kind->hasQuads;
    std::vector<Contender> contenders = {session.ours("read", {"import", file}),
                                         session.ours("compacted", {"import", file, "compacted"}),
                                         session.stage("bytes", {"bytes", file}),
                                         session.stage("lines", {"lines", file}),
                                         session.stage("numbers", {"numbers", file}),
                                         session.stage("records", {"records", file}),
                                         session.peer("tinyobjloader", {"tinyobjloader", file}),
                                         session.peer("assimp", {"assimp", file}),
                                         session.peer("assimp-join", {"assimp-join", file}),
                                         session.peer("OpenMesh", {"openmesh", file})};
    for (const std::string& absent : session.absent) {
        if (std::erase_if(contenders, [&](const Contender& contender) {
                return contender.mayFail && contender.name == absent;
            }) == 0)
            throw std::runtime_error("no other reader is called " + absent);
    }
    shape.results = Rounds(session.rounds).run(contenders);
    compareWithPlainReader(shape);
    return shape;
}

void addSpeeds(const std::vector<ShapeResult>& shapes, Report& report) {
    Table table;
    table.title = "Reading, compaction off: MB/s";
    table.note =
        "MB of 10^6 bytes for each second of CPU time. Floors: bytes: the file is read; lines: "
        "line feeds are found; numbers: every number is converted; records: and written into "
        "tables like ours, which nothing else is done for.";
    table.columns = {"shape",    "MB",      "ours",    "tinyobjloader", "assimp",
                     "OpenMesh", "records", "numbers", "lines",         "bytes"};
    for (const ShapeResult& shape : shapes) {
        std::vector<std::string> row = {shape.name, show(shape.megabytes)};
        for (const char* contender : {"read", "tinyobjloader", "assimp", "OpenMesh", "records",
                                      "numbers", "lines", "bytes"})
            row.push_back(show(shape.megabytesPerSecond(contender)));
        table.rows.push_back(row);
    }
    report.add(table);
}

void addRatios(const std::vector<ShapeResult>& shapes, Report& report) {
    Table table;
    table.title = "Reading, compaction off: how many times as fast";
    table.note = "Our speed divided by theirs; the floors are below 1.";
    table.columns = {"shape", "tinyobjloader", "assimp", "OpenMesh", "records", "numbers"};
    for (const ShapeResult& shape : shapes) {
        std::vector<std::string> row = {shape.name};
        for (const char* contender : {"tinyobjloader", "assimp", "OpenMesh", "records", "numbers"})
            row.push_back(show(shape.speedBeside(contender)));
        table.rows.push_back(row);
    }
    report.add(table);
}

void addRecords(const std::vector<ShapeResult>& shapes, Report& report) {
    Table table;
    table.title = "Whole imports";
    table.note =
        "Million records (v, vt, vn and triangles) read in a second; nanoseconds for each "
        "triangle left after compaction, reading included; reading and compacting beside assimp "
        "with its join of identical vertices; the stages' share of CPU time; and the peak of "
        "memory for each byte of the file, for each triangle and for each byte of the tables "
        "(as read or as finished, whichever is more).";
    table.columns = {"shape",        "M records/s",    "ns/triangle",   "x assimp joining",
                     "compact/read", "peak/file byte", "peak/triangle", "peak/table byte"};
    for (const ShapeResult& shape : shapes) {
        const Series& read = shape.results.at("read");
        const Series& compacted = shape.results.at("compacted");
        const double records = read.count("vertices") + read.count("texture points") +
                               read.count("normals") + read.count("faces");
        const double tables = std::max(read.count("table bytes"), compacted.count("table bytes"));
        constexpr double NANOSECONDS = 1e9;
        table.rows.push_back(
            {shape.name, show(records / read.medianSeconds(PART) / 1e6),
             show(NANOSECONDS * compacted.medianSeconds(PART) / compacted.count("faces")),
             show(shape.speedBeside("assimp-join", "compacted")),
             show(medianRatio(compacted.seconds("compact"), compacted.seconds("read"))),
             show(compacted.peakBytes() / (BYTES_PER_MEGABYTE * shape.megabytes)),
             show(compacted.peakBytes() / compacted.count("faces")),
             show(compacted.peakBytes() / tables)});
    }
    report.add(table);
}

double leastOf(const std::vector<double>& values) {
    return *std::min_element(values.begin(), values.end());
}

double geometricMean(const std::vector<double>& values) {
    double sum = 0;
    for (const double value : values)
        sum += std::log(value);
    return std::exp(sum / static_cast<double>(values.size()));
}

std::vector<double> speedsBeside(const std::vector<ShapeResult>& shapes,
                                 const std::string& contender, const std::string& us = "read") {
    std::vector<double> speeds;
    for (const ShapeResult& shape : shapes) {
        if (const double speed = shape.speedBeside(contender, us); !std::isnan(speed))
            speeds.push_back(speed);
    }
    return speeds;
}

void addPeerGoals(const std::vector<ShapeResult>& shapes, Report& report) {
    struct PeerGoal {
        const char* name;
        double mean;
        double least;
    };
    for (const PeerGoal& peer : {PeerGoal{"tinyobjloader", 8, 5.5}, PeerGoal{"assimp", 10, 6}}) {
        const std::vector<double> speeds = speedsBeside(shapes, peer.name);
        if (speeds.empty())
            continue;
        const std::string text = std::string("reading, times as fast as ") + peer.name;
        report.add(Goal{text + ", geometric mean over the shapes", peer.mean, false,
                        geometricMean(speeds)});
        report.add(Goal{text + ", the worst shape", peer.least, false, leastOf(speeds)});
    }
    if (const auto speeds = speedsBeside(shapes, "assimp-join", "compacted"); !speeds.empty())
        report.add(
            Goal{"reading and compacting, times as fast as assimp joining vertices, "
                 "geometric mean",
                 12, false, geometricMean(speeds)});
}

void addFloorGoals(const std::vector<ShapeResult>& shapes, Report& report) {
    for (const ShapeResult& shape : shapes) {
        if (shape.hasPolygons)
            continue;
        if (!shape.hasQuads)
            report.add(Goal{"reading " + shape.name + ", speed beside converting its numbers", 0.7,
                            false, shape.speedBeside("numbers")});
        report.add(Goal{"reading " + shape.name + ", speed beside writing its records",
                        shape.hasQuads ? 0.8 : 0.9, false, shape.speedBeside("records")});
    }
}

void addStageGoals(const std::vector<ShapeResult>& shapes, Report& report) {
    constexpr double FREE_BYTES = 8e6;
    double worstShare = 0;
    double worstPeak = 0;
    for (const ShapeResult& shape : shapes) {
        const Series& read = shape.results.at("read");
        const Series& compacted = shape.results.at("compacted");
        worstShare = std::max(worstShare,
                              medianRatio(compacted.seconds("compact"), compacted.seconds("read")));
        const double tables = std::max(read.count("table bytes"), compacted.count("table bytes"));
        worstPeak = std::max(worstPeak, (compacted.peakBytes() - FREE_BYTES) / tables);
    }
    report.add(Goal{"compacting, time beside reading the same file, the worst shape", 1, true,
                    worstShare});
    report.add(
        Goal{"peak of an import without 8 MB, beside the bytes of its tables, the worst "
             "shape",
             1.8, true, worstPeak});
}

}  // namespace

void runReadingSuite(const Session& session, Report& report) {
    std::vector<ShapeResult> shapes;
    for (const std::string& name : chosenShapes(session))
        shapes.push_back(runShape(session, name));
    addSpeeds(shapes, report);
    addRatios(shapes, report);
    addRecords(shapes, report);
    addPeerGoals(shapes, report);
    addFloorGoals(shapes, report);
    addStageGoals(shapes, report);
}

void runCostSuite(const Session& session, Report& report) {
    constexpr double MEGABYTES = 20;
    std::fprintf(stderr, "costs of materials, groups and switches\n");
    std::vector<Contender> contenders;
    std::map<std::string, double> bytes;
    for (const Shape& shape : getCostShapes()) {
        const std::string file = session.inputs.provide(shape.name, MEGABYTES);
        const std::filesystem::path library = std::filesystem::path(file).replace_extension("mtl");
        bytes[shape.name] = static_cast<double>(std::filesystem::file_size(file));
        if (shape.hasLibrary)
            bytes[shape.name] += static_cast<double>(std::filesystem::file_size(library));
        contenders.push_back(session.ours(shape.name, {"import", file, "compacted", "tree"}));
    }
    const Results results = Rounds(session.rounds).run(contenders);

    Table table;
    table.title = "Files of many materials, groups or switches";
    table.note =
        "Against a plain triangle grid of the same size, by CPU time for each byte of "
        "the file and its library: reading alone, the whole import with compaction, and "
        "the tree of groups (milliseconds).";
    table.columns = {"file", "MB", "MB/s", "reading, x plain", "import, x plain", "tree, ms"};
    const Series& plain = results.at(getCostShapes().front().name);
    for (const Shape& shape : getCostShapes()) {
        const Series& series = results.at(shape.name);
        const double size = bytes[shape.name] / bytes[getCostShapes().front().name];
        const double reading = medianRatio(series.seconds("read"), plain.seconds("read")) / size;
        const double whole = medianRatio(series.seconds(PART), plain.seconds(PART)) / size;
        constexpr double MILLISECONDS = 1e3;
        table.rows.push_back(
            {shape.description, show(bytes[shape.name] / BYTES_PER_MEGABYTE),
             show(bytes[shape.name] / BYTES_PER_MEGABYTE / series.medianSeconds("read")),
             show(reading), show(whole), show(MILLISECONDS * series.medianSeconds("tree"))});
        if (&series != &plain)
            report.add(Goal{std::string(shape.description) + ", reading, times a plain file", 1.5,
                            true, reading});
    }
    report.add(table);
}

}  // namespace obj_adapter::bench
