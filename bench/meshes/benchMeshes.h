// The meshes that are subdivided, the same for us and for the others.
#pragma once

#include "support/testMeshes.h"

#include <cmath>
#include <stdexcept>
#include <string>

namespace obj_adapter::bench {

// About so many triangles.
//
// grid  an open square of points with 4 to 8 neighbours, moved at random
// fan   around point 0, closed
inline test::Mesh makeBenchMesh(const std::string& name, int triangles) {
    constexpr std::uint64_t SEED = 7;
    test::RandomSource random(SEED);
    if (name == "grid") {
        const int side = static_cast<int>(std::lround(std::sqrt(triangles / 2.0)));
        return test::roughGrid(side, side, random);
    }
    if (name == "fan")
        return test::fan(triangles, true);
    throw std::runtime_error("no such mesh: " + name);
}

// One number for all positions, which differs between libraries in its last bits
// only: they number the vertices in other orders.
inline double weighPosition(double x, double y, double z) {
    return x + 2 * y + 3 * z;
}

}  // namespace obj_adapter::bench
