// Internal: the order in which compaction sorts vertices. Covered by
// tests/processing/compactionTest.cpp.
#pragma once

#include "model/objModel.h"
#include "processing/bucketSort.h"

#include <obj_adapter/geometryRecords.h>

#include <algorithm>
#include <bit>
#include <cfloat>
#include <cmath>
#include <cstdint>
#include <limits>

namespace obj_adapter {

// Negative, 0 or positive as a comes before, with or after b. NaN comes after
// every number, and all NaN are alike; -0 equals 0.
inline int compareCoordinates(double a, double b) noexcept {
    if (a == b)
        return 0;
    if (a < b)
        return -1;
    if (a > b)
        return 1;
    return static_cast<int>(std::isnan(a)) - static_cast<int>(std::isnan(b));
}

// Takes a coordinate to a whole number: the same ones to the same, later ones
// (as compareCoordinates says) to a greater one.
inline std::uint64_t exactCoordinateKey(double coordinate) noexcept {
    constexpr std::uint64_t SIGN_BIT = std::uint64_t{1} << 63;
    if (std::isnan(coordinate))
        return std::numeric_limits<std::uint64_t>::max();
    const std::uint64_t bits = std::bit_cast<std::uint64_t>(coordinate == 0.0 ? 0.0 : coordinate);
    return (bits & SIGN_BIT) != 0 ? ~bits : bits | SIGN_BIT;
}

// A rougher key, which takes later coordinates to the same number or a greater
// one. Coordinates that lie evenly in their range get evenly spread keys, while
// the exact keys crowd at the highest exponents.
class CoarseCoordinateKey {
public:
    // Widens the range that is spread over the keys. Infinities stay outside.
    void addToRange(double coordinate) noexcept {
        if (std::isfinite(coordinate)) {
            lowest = std::min(lowest, coordinate);
            highest = std::max(highest, coordinate);
        }
    }

    // To be called when the range is complete.
    void setScale() noexcept {
        const double halfRange = 0.5 * highest - 0.5 * lowest;
        scale = FLT_EVAL_METHOD == 0 && halfRange > 0.0 ? HIGHEST_IN_RANGE / halfRange : 0.0;
        if (!std::isfinite(scale))
            scale = 0.0;
    }

    // Halves, because the range itself may exceed the greatest double. Each
    // step is monotone however it is rounded. That one coordinate always gives
    // one key is certain only where doubles are computed as doubles; elsewhere
    // the scale is 0.
    std::uint64_t operator()(double coordinate) const noexcept {
        if (coordinate < lowest)
            return 0;
        if (coordinate <= highest)
            return static_cast<std::uint64_t>(
                static_cast<std::int64_t>((0.5 * coordinate - 0.5 * lowest) * scale));
        return HIGHEST;
    }

    static KeyBounds getBounds() noexcept { return {0, HIGHEST}; }

private:
    static constexpr std::uint64_t HIGHEST = std::numeric_limits<std::uint32_t>::max();
    static constexpr double HIGHEST_IN_RANGE = 4294967294.0;  // 2^32 - 2

    double lowest = std::numeric_limits<double>::infinity();
    double highest = -std::numeric_limits<double>::infinity();
    double scale = 0.0;
};

// x, then y, then z, as compareCoordinates has it. Unlike Vertex::operator< an ordering for
// all coordinates. Has what BucketSorter needs.
class VertexOrder {
public:
    // To be told of every vertex before anything is asked, and then that these are all.
    void addToRange(const Vertex& vertex) noexcept {
        coarseX.addToRange(vertex.x);
        coarseY.addToRange(vertex.y);
        coarseZ.addToRange(vertex.z);
    }
    void setScale() noexcept {
        coarseX.setScale();
        coarseY.setScale();
        coarseZ.setScale();
    }

    static bool precedes(const Vertex& a, const Vertex& b) noexcept {
        if (const int order = compareCoordinates(a.x, b.x))
            return order < 0;
        if (const int order = compareCoordinates(a.y, b.y))
            return order < 0;
        return compareCoordinates(a.z, b.z) < 0;
    }

    // Whether vertices that Vertex::operator== calls equal come in any order.
    static bool areAlike(const Vertex& a, const Vertex& b) noexcept {
        return std::isnan(a.x) == std::isnan(b.x) && std::isnan(a.y) == std::isnan(b.y) &&
               std::isnan(a.z) == std::isnan(b.z);
    }

    static constexpr int NUMBER_OF_KEYS = 6;

    static KeyBounds getBounds() noexcept { return CoarseCoordinateKey::getBounds(); }

    template <int KEY>
    std::uint64_t getKey(const Vertex& vertex) const noexcept {
        if constexpr (KEY == 0)
            return coarseX(vertex.x);
        else if constexpr (KEY == 1)
            return exactCoordinateKey(vertex.x);
        else if constexpr (KEY == 2)
            return coarseY(vertex.y);
        else if constexpr (KEY == 3)
            return exactCoordinateKey(vertex.y);
        else if constexpr (KEY == 4)
            return coarseZ(vertex.z);
        else
            return exactCoordinateKey(vertex.z);
    }

private:
    CoarseCoordinateKey coarseX;
    CoarseCoordinateKey coarseY;
    CoarseCoordinateKey coarseZ;
};

}  // namespace obj_adapter
