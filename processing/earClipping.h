// Internal: cutting the ears off one polygon. Entered by Triangulator
// (processing/triangulation.h).
#pragma once

#include "processing/cornerClasses.h"
#include "processing/cornerPositions.h"
#include "processing/keptRoom.h"
#include "processing/pointInTriangle.h"
#include "processing/vectors.h"

#include <obj_adapter/geometryRecords.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

namespace obj_adapter {

// The corners of a triangle, as places in the polygon.
struct CornerTriple {
    std::uint32_t corners[CORNERS_PER_FACE];
};

// Keeps its lists between polygons; up to MAX_CORNERS_WITHIN corners it never asks for
// memory.
class EarClipper {
public:
    // The classes of a whole polygon's corners; none where they are on one straight line.
    std::optional<CornerClasses> classify(std::span<const Vector3> positions);

    // Cuts off one ear in each pass, the first in corner order, until the last three
    // corners have gone as one triangle. Each pass has classes of its own, for the sum of
    // the normals changes; they are those of the whole polygon that is left.
    //
    // positions, firstClasses  of the polygon that was classified last
    // triangles                where the triangles go, two less than corners at most
    // mayAskHost               polygons of many corners take long: the host is told of
    //                          the work meanwhile, and may cancel it (ImportCancelled)
    //
    // Returns the number of triangles. It stops with fewer, and says nothing, when the
    // classes cannot be told any more. None when a pass found no ear.
    std::optional<std::size_t> clip(std::span<const Vector3> positions,
                                    const CornerClasses& firstClasses,
                                    std::span<CornerTriple> triangles, bool mayAskHost);

private:
    // Corners that the object has room for.
    static constexpr std::size_t MAX_CORNERS_WITHIN = EqualPositionSearch::MAX_CORNERS_WITHIN;

    template <typename Element>
    using Room = KeptRoom<Element, MAX_CORNERS_WITHIN>;

    // Of a corner that is left. 32 bits do, as no line has room for so many corners.
    struct Mark {
        std::uint32_t original;  // its place in the whole polygon
        std::uint32_t blocker;   // see isBlocked
    };

    void start(std::span<const Vector3> positions);
    std::size_t findEar(const CornerClasses& classes);
    bool isBlocked(std::size_t corner);
    std::size_t findCornerInside(const TriangleContainment& triangle, std::size_t corner,
                                 std::size_t first) const noexcept;
    void countTests(std::size_t tests);
    void removeCorner(std::size_t corner);
    void takeOut(std::size_t corner) noexcept;
    PointLists getPoints() const noexcept { return {x.data(), y.data(), z.data()}; }
    std::size_t previousOf(std::size_t corner) const noexcept;
    std::size_t nextOf(std::size_t corner) const noexcept;

    // What is left of the polygon: lists with an entry for each corner that remains, in
    // the polygon's order. Positions stand coordinate by coordinate, so that two corners
    // can be looked at in one go.
    std::span<double> x;
    std::span<double> y;
    std::span<double> z;
    std::span<Vector3> normals;
    std::span<Mark> marks;

    // By place in the whole polygon: 1 once the corner is cut off.
    std::span<unsigned char> isCutOff;

    CornerClassifier classifier;

    std::size_t uncountedTests = 0;
    bool hostMayBeAsked = true;

    Room<double> xRoom;
    Room<double> yRoom;
    Room<double> zRoom;
    Room<Vector3> normalRoom;
    Room<Mark> markRoom;
    Room<unsigned char> cutOffRoom;
};

}  // namespace obj_adapter
