// Internal: the weights of Loop subdivision and the positions that they give,
// apart from any mesh.
//
// Charles Loop, Smooth Subdivision Surfaces Based on Triangles, 1987. The order
// of every sum and product below belongs to the result: do not tidy it.
#pragma once

#include <obj_adapter/geometryRecords.h>

#include <array>
#include <cmath>
#include <cstddef>

namespace obj_adapter {

constexpr double EDGE_END_WEIGHT = 0.375;       // 3/8, each end of the edge
constexpr double EDGE_OPPOSITE_WEIGHT = 0.125;  // 1/8, each corner across the edge
constexpr double MIDPOINT_WEIGHT = 0.5;         // 1/2, each end of a boundary edge

constexpr double BOUNDARY_OWN_WEIGHT = 0.75;         // 3/4, the boundary vertex itself
constexpr double BOUNDARY_NEIGHBOUR_WEIGHT = 0.125;  // 1/8, each neighbour along the boundary

constexpr int LOW_VALENCE_LIMIT = 4;         // fewer neighbours share one weight
constexpr double LOW_VALENCE_BETA = 0.1875;  // 3/16
constexpr double TWO_PI = 6.283185307179586;

// Share of each of n neighbours in a moved interior vertex, which keeps
// 1 - n * beta of itself.
inline double loopBeta(int n) {
    if (n < LOW_VALENCE_LIMIT)
        return LOW_VALENCE_BETA;
    const double reach = 0.375 + 0.25 * std::cos(TWO_PI / n);
    return (1.0 / n) * (0.625 - reach * reach);
}

// loopBeta, with the weights of common neighbour counts at hand.
class BetaTable {
public:
    BetaTable() {
        for (std::size_t n = 0; n < betas.size(); ++n)
            betas[n] = loopBeta(static_cast<int>(n));
    }

    double get(int neighbourCount) const {
        const auto n = static_cast<std::size_t>(neighbourCount);
        return n < betas.size() ? betas[n] : loopBeta(neighbourCount);
    }

private:
    std::array<double, 16> betas;
};

// The coordinates of a vertex that the scheme computes with.
struct Position {
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
};

inline Position positionOf(const Vertex& vertex) {
    return {vertex.x, vertex.y, vertex.z};
}

inline Position operator+(const Position& a, const Position& b) {
    return {a.x + b.x, a.y + b.y, a.z + b.z};
}

inline Position operator*(const Position& a, double factor) {
    return {a.x * factor, a.y * factor, a.z * factor};
}

// The new vertex on the edge pq between the corners r and s.
inline Position interiorEdgePosition(const Position& p, const Position& q, const Position& r,
                                     const Position& s) {
    return (r + s) * EDGE_OPPOSITE_WEIGHT + (p + q) * EDGE_END_WEIGHT;
}

// The new vertex on the edge pq of one face only.
inline Position boundaryEdgePosition(const Position& p, const Position& q) {
    return (p + q) * MIDPOINT_WEIGHT;
}

// Where an old vertex goes that lies on the boundary between two others, of which
// it takes the sum.
inline Position movedBoundaryPosition(const Position& own, const Position& neighbourSum) {
    return own * BOUNDARY_OWN_WEIGHT + neighbourSum * BOUNDARY_NEIGHBOUR_WEIGHT;
}

// Where any other old vertex goes; beta is loopBeta(neighbourCount).
inline Position movedInteriorPosition(const Position& own, const Position& neighbourSum,
                                      int neighbourCount, double beta) {
    return own * (1.0 - neighbourCount * beta) + neighbourSum * beta;
}

}  // namespace obj_adapter
