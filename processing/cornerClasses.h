// Internal: which corners of a polygon turn with it (convex) and which against
// it or not at all (reflex).
#pragma once

#include "processing/vectors.h"

#include <cstddef>
#include <optional>
#include <vector>

namespace obj_adapter {

// The cross product of the two edges that meet in a corner, not normalised.
inline Vector3 cornerNormal(const Vector3& previous, const Vector3& corner,
                            const Vector3& next) noexcept {
    return crossProduct(corner - previous, next - corner);
}

// One normal for each corner of a closed polygon.
void computeCornerNormals(const std::vector<Vector3>& positions, std::vector<Vector3>& normals);

struct CornerClasses {
    // A corner's normal decides its class; one on a straight edge has none and
    // so counts with the reflex ones.
    bool isConvex(const Vector3& normal) const noexcept {
        return (dotProduct(normal, polygonNormal) > 0.0) != areExchanged;
    }

    Vector3 polygonNormal;          // of length 1, where that could be computed
    bool areExchanged = false;      // see classifyCorners
    std::size_t reflexCorners = 0;  // never more than the convex ones
};

// Classes by the direction that the corners have together: the sum of their
// normals, in corner order (the order is part of the result, so a sum cannot be
// carried over when a corner is gone).
//
// The larger class always counts as the convex one, so the two are exchanged if
// need be; on a tie they are not. Deliberate, and so too for a polygon that
// really has more reflex corners.
//
// None when the sum is zero: corners on one straight line.
std::optional<CornerClasses> classifyCorners(const std::vector<Vector3>& normals) noexcept;

}  // namespace obj_adapter
