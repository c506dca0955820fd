// Rounds of subdivision.
#include "runner/suites.h"

#include <cmath>
#include <cstdio>
#include <map>
#include <stdexcept>

namespace obj_adapter::bench {

namespace {

constexpr int ROUNDS = 3;
constexpr double NANOSECONDS = 1e9;

using Results = std::map<std::string, Series>;
using Seconds = std::vector<double>;

std::string partOf(int round) {
    return "round " + std::to_string(round);
}

Seconds operator+(const Seconds& a, const Seconds& b) {
    Seconds sum;
    for (std::size_t round = 0; round < a.size(); ++round)
        sum.push_back(a[round] + b[round]);
    return sum;
}

Seconds operator-(const Seconds& a, const Seconds& b) {
    Seconds difference;
    for (std::size_t round = 0; round < a.size(); ++round)
        difference.push_back(a[round] - b[round]);
    return difference;
}

// All subdivide the same mesh: as many records, and the same positions but for
// rounding.
void requireSameResult(const Results& results, const std::string& peer) {
    constexpr double TOLERANCE = 1e-11;
    const auto found = results.find(peer);
    if (found == results.end())
        return;
    const Series& ours = results.at("ours");
    const double sum = ours.count("sum");
    if (found->second.count("faces") != ours.count("faces") ||
        found->second.count("vertices") != ours.count("vertices") ||
        std::abs(found->second.count("sum") - sum) > TOLERANCE * std::abs(sum))
        throw std::runtime_error(peer + " comes to another mesh");
}

// The other libraries' rounds; OpenSubdiv's differ by what one more round adds.
class PeerTimes {
public:
    explicit PeerTimes(const Results& ownResults) : results(ownResults) {}

    bool has(const std::string& peer) const {
        return results.count(peer == "OpenSubdiv" ? openSubdivName(ROUNDS) : peer) > 0;
    }

    // The first round includes building the mesh.
    Seconds seconds(const std::string& peer, int round) const {
        if (peer == "OpenSubdiv") {
            const Seconds all = results.at(openSubdivName(round)).seconds("rounds");
            return round == 1 ? all : all - results.at(openSubdivName(round - 1)).seconds("rounds");
        }
        const Series& series = results.at(peer);
        const Seconds own = series.seconds(partOf(round));
        return round == 1 ? own + series.seconds("build") : own;
    }

    static std::string openSubdivName(int rounds) { return "OpenSubdiv " + std::to_string(rounds); }

private:
    const Results& results;
};

std::vector<Contender> makeContenders(const Session& session, const std::string& triangles) {
    const std::string rounds = std::to_string(ROUNDS);
    std::vector<Contender> contenders = {
        session.stage("ours", {"subdivide", "grid", triangles, rounds}),
        session.stage("textured", {"subdivide", "grid", triangles, rounds, "textured"}),
        session.peer("CGAL", {"subdivide-cgal", "grid", triangles, rounds}),
        session.peer("OpenMesh", {"subdivide-openmesh", "grid", triangles, rounds})};
    for (int count = 1; count <= ROUNDS; ++count)
        contenders.push_back(
            session.peer(PeerTimes::openSubdivName(count),
                         {"subdivide-opensubdiv", "grid", triangles, std::to_string(count)}));
    // The tables of every round of a grid of squares: side s has 2 s^2 faces and
    // (s + 1)^2 vertices.
    int side = static_cast<int>(std::lround(std::sqrt(std::stod(triangles) / 2)));
    for (int round = 1; round <= ROUNDS; ++round) {
        side *= 2;
        for (const std::string pages : {"small", "huge"})
            contenders.push_back(
                session.stage(pages + std::to_string(round),
                              {"tables", std::to_string(2 * side * side),
                               std::to_string((side + 1) * (side + 1)), "0", pages}));
    }
    return contenders;
}

void addRoundTable(const Results& results, Report& report) {
    const PeerTimes peers(results);
    Table table;
    table.title = "Subdivision: ns for each face that a round makes";
    table.note =
        "A square grid of triangles, points moved at random. The first round of the others "
        "includes building their mesh. Floors: tables of the round's size written in order on "
        "fresh pages of 4 KB, and on huge ones.";
    table.columns = {"round",  "faces made", "ours",        "textured",   "OpenSubdiv",
                     "CGAL",   "OpenMesh",   "4 KB pages",  "huge pages", "x OpenSubdiv",
                     "x CGAL", "x OpenMesh", "x 4 KB pages"};
    const double lastFaces = results.at("ours").count("faces");
    for (int round = 1; round <= ROUNDS; ++round) {
        const double faces = lastFaces / std::pow(4, ROUNDS - round);
        const Seconds ours = results.at("ours").seconds(partOf(round));
        const auto each = [&](const Seconds& seconds) {
            return show(NANOSECONDS * median(seconds) / faces);
        };
        std::vector<std::string> row = {std::to_string(round), std::to_string(std::lround(faces)),
                                        each(ours),
                                        each(results.at("textured").seconds(partOf(round)))};
        std::vector<std::string> ratios;
        for (const std::string peer : {"OpenSubdiv", "CGAL", "OpenMesh"}) {
            const bool isThere = peers.has(peer);
            row.push_back(isThere ? each(peers.seconds(peer, round)) : "-");
            ratios.push_back(isThere ? show(medianRatio(peers.seconds(peer, round), ours)) : "-");
        }
        const Seconds floor = results.at("small" + std::to_string(round)).seconds("write");
        row.push_back(each(floor));
        row.push_back(each(results.at("huge" + std::to_string(round)).seconds("write")));
        ratios.push_back(show(medianRatio(floor, ours)));
        row.insert(row.end(), ratios.begin(), ratios.end());
        table.rows.push_back(row);
    }
    report.add(table);
}

void addRoundGoals(const Results& results, Report& report) {
    const PeerTimes peers(results);
    const auto add = [&](const std::string& peer, int round, double wanted) {
        if (peers.has(peer))
            report.add(Goal{"subdivision, " + partOf(round) + ", times as fast as " + peer, wanted,
                            false,
                            medianRatio(peers.seconds(peer, round),
                                        results.at("ours").seconds(partOf(round)))});
    };
    add("OpenSubdiv", 2, 2.5);
    add("OpenSubdiv", 3, 2.5);
    add("CGAL", 1, 1.8);
    for (int round = 1; round <= ROUNDS; ++round)
        add("OpenMesh", round, 4);
    const Seconds ours = results.at("ours").seconds(partOf(ROUNDS));
    const Seconds floor = results.at("small" + std::to_string(ROUNDS)).seconds("write");
    report.add(Goal{"subdivision, the last round, time beside writing its tables on 4 KB pages",
                    1.2, true, medianRatio(ours, floor)});
    const Series& plain = results.at("ours");
    const Series& textured = results.at("textured");
    report.add(Goal{"subdivision, peak bytes for each face made, without textures", 100, true,
                    plain.peakBytes() / plain.count("faces")});
    report.add(Goal{"subdivision, peak bytes for each face made, with textures", 130, true,
                    textured.peakBytes() / textured.count("faces")});
}

// Fifty thousand faces around one vertex.
void runFan(const Session& session, Report& report) {
    const std::string triangles = "50000";
    const Results results = Rounds(session.rounds)
                                .run({session.stage("grid", {"subdivide", "grid", triangles, "2"}),
                                      session.stage("fan", {"subdivide", "fan", triangles, "2"})});
    Table table;
    table.title = "Subdivision of a fan around one vertex: ns for each face that a round makes";
    table.columns = {"round", "grid", "fan", "fan/grid"};
    for (int round = 1; round <= 2; ++round) {
        std::vector<double> each[2];
        int place = 0;
        for (const char* mesh : {"grid", "fan"}) {
            const Series& series = results.at(mesh);
            const double faces = series.count("faces") / std::pow(4, 2 - round);
            for (const double seconds : series.seconds(partOf(round)))
                each[place].push_back(NANOSECONDS * seconds / faces);
            ++place;
        }
        const double ratio = medianRatio(each[1], each[0]);
        table.rows.push_back(
            {std::to_string(round), show(median(each[0])), show(median(each[1])), show(ratio)});
        if (round == 1)
            report.add(Goal{"subdivision of a fan of 50,000 faces, time for each beside a grid", 1,
                            true, ratio});
    }
    report.add(table);
}

}  // namespace

void runSubdivisionSuite(const Session& session, Report& report) {
    std::fprintf(stderr, "subdivision\n");
    const std::string triangles = session.isQuick ? "5000" : "80000";
    const Results results = Rounds(session.rounds).run(makeContenders(session, triangles));
    for (const std::string& peer :
         {std::string("CGAL"), std::string("OpenMesh"), PeerTimes::openSubdivName(ROUNDS)})
        requireSameResult(results, peer);
    addRoundTable(results, report);
    addRoundGoals(results, report);
    runFan(session, report);
}

}  // namespace obj_adapter::bench
