// The measured polygons. That ours and the slow twin split them alike is checked
// before they are timed.
#include "stages/polygons.h"

#include "meshes/benchPoints.h"

#include <cmath>
#include <numbers>
#include <stdexcept>

namespace obj_adapter::bench {

namespace {

constexpr int SMALL_POLYGONS = 4096;

// Adds corners of a polygon in the plane z = 0 to the model.
class PolygonWriter {
public:
    explicit PolygonWriter(PolygonSet& ownSet) : set(ownSet) { set.polygons.emplace_back(); }

    void add(double x, double y) {
        Vertex vertex(x, y, 0);
        FaceElement corner;
        corner.vertexIndex = set.model.addVertex(vertex);
        set.polygons.back().push_back(corner);
    }

    // By angle, in full turns, and distance from the origin.
    void addPolar(double turn, double distance) {
        const double angle = 2 * std::numbers::pi * turn;
        add(distance * std::cos(angle), distance * std::sin(angle));
    }

private:
    PolygonSet& set;
};

void makeConvex(int corners, PolygonSet& set) {
    constexpr double RADIUS = 100;
    PolygonWriter polygon(set);
    for (int corner = 0; corner < corners; ++corner)
        polygon.addPolar(static_cast<double>(corner) / corners, RADIUS);
}

void makeComb(int corners, PolygonSet& set) {
    PolygonWriter polygon(set);
    const int teeth = (corners - 2) / 2;
    polygon.add(0, 0);
    polygon.add(2.0 * teeth, 0);
    for (int tooth = teeth; tooth > 0; --tooth) {
        const double height = 20 + 8 * fractionOf(static_cast<std::uint64_t>(tooth));
        polygon.add(2.0 * tooth - 1, height);
        polygon.add(2.0 * tooth - 2, 1 + 18 * fractionOf(static_cast<std::uint64_t>(-tooth)));
    }
}

void makeSaw(int corners, PolygonSet& set) {
    constexpr double LEAN = 3;
    PolygonWriter polygon(set);
    const int teeth = (corners - 2) / 2;
    polygon.add(0, -1);
    polygon.add(2.0 * teeth, -1);
    for (int tooth = teeth; tooth > 0; --tooth) {
        polygon.add(2.0 * tooth + LEAN, 2);
        polygon.add(2.0 * tooth - 2 + LEAN / 4, 0.5);
    }
}

// Out along one side of the band and back along the other.
void makeSpiral(int corners, PolygonSet& set) {
    constexpr double CORNERS_PER_TURN = 24;
    constexpr double WIDTH = 0.4;
    PolygonWriter polygon(set);
    const int length = corners / 2;
    for (int corner = 0; corner < length; ++corner) {
        const double turn = corner / CORNERS_PER_TURN;
        polygon.addPolar(turn, 1 + turn + WIDTH);
    }
    for (int corner = length - 1; corner >= 0; --corner) {
        const double turn = corner / CORNERS_PER_TURN;
        polygon.addPolar(turn, 1 + turn);
    }
}

// An outer arc, and back along an inner one whose tips reach into the triangle
// that each outer corner forms with its neighbours.
void makeBlocked(int corners, PolygonSet& set) {
    constexpr double RADIUS = 100;
    constexpr double ARC = 0.25;  // of a full turn
    constexpr double VALLEY = 0.8;
    PolygonWriter polygon(set);
    const int arcs = corners / 3;
    const double step = ARC / arcs;
    const double tip = RADIUS * (1 + std::cos(2 * std::numbers::pi * step)) / 2;
    for (int corner = 0; corner <= arcs; ++corner)
        polygon.addPolar(corner * step, RADIUS);
    for (int corner = arcs - 1; corner > 0; --corner) {
        polygon.addPolar((corner + 0.5) * step, VALLEY * RADIUS);
        polygon.addPolar(corner * step, tip);
    }
    polygon.addPolar(0.5 * step, VALLEY * RADIUS);
}

// Corners around a centre; one of a dart is drawn in beyond it.
void makeSmallPolygons(int corners, bool isDart, PolygonSet& set) {
    for (int number = 0; number < SMALL_POLYGONS; ++number) {
        PolygonWriter polygon(set);
        const auto seed = static_cast<std::uint64_t>(4 * number);
        const double start = fractionOf(seed);
        const int drawnIn = static_cast<int>(mixed(seed + 1) % static_cast<unsigned>(corners));
        for (int corner = 0; corner < corners; ++corner)
            polygon.addPolar(start + static_cast<double>(corner) / corners,
                             isDart && corner == drawnIn ? -0.2 : 1 + 0.1 * fractionOf(seed + 2));
    }
}

}  // namespace

void makePolygons(const std::string& kind, int corners, PolygonSet& set) {
    if (kind == "convex")
        makeConvex(corners, set);
    else if (kind == "comb")
        makeComb(corners, set);
    else if (kind == "saw")
        makeSaw(corners, set);
    else if (kind == "spiral")
        makeSpiral(corners, set);
    else if (kind == "blocked")
        makeBlocked(corners, set);
    else if (kind == "quad" || kind == "pentagon")
        makeSmallPolygons(corners, false, set);
    else if (kind == "dart")
        makeSmallPolygons(corners, true, set);
    else
        throw std::runtime_error("no such polygon: " + kind);
}

}  // namespace obj_adapter::bench
