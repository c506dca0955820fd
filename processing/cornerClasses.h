// Internal: which corners of a polygon turn with it (convex) and which against
// it or not at all (reflex).
#pragma once

#include "processing/vectors.h"

#include <cstddef>
#include <optional>
#include <span>

namespace obj_adapter {

// The cross product of the two edges that meet in a corner, not normalised.
inline Vector3 cornerNormal(const Vector3& previous, const Vector3& corner,
                            const Vector3& next) noexcept {
    return crossProduct(corner - previous, next - corner);
}

// One normal for each corner of a closed polygon; there are as many of either, and
// one at least. Each edge serves the corners at both its ends.
inline void computeCornerNormals(std::span<const Vector3> positions,
                                 std::span<Vector3> normals) noexcept {
    const std::size_t last = positions.size() - 1;
    const Vector3 closingEdge = positions[0] - positions[last];
    Vector3 edge = closingEdge;
    for (std::size_t corner = 0; corner < last; ++corner) {
        const Vector3 nextEdge = positions[corner + 1] - positions[corner];
        normals[corner] = crossProduct(edge, nextEdge);
        edge = nextEdge;
    }
    normals[last] = crossProduct(edge, closingEdge);
}

// The sum in corner order. The order is part of the result.
inline Vector3 sumOfNormals(std::span<const Vector3> normals) noexcept {
    Vector3 sum;
    for (const Vector3& normal : normals) {
        sum.x += normal.x;
        sum.y += normal.y;
        sum.z += normal.z;
    }
    return sum;
}

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
// normals (which cannot be carried over when a corner is gone, for its order).
//
// The larger class always counts as the convex one, so the two are exchanged if
// need be; on a tie they are not. Deliberate, and so too for a polygon that
// really has more reflex corners.
//
// None when the sum is zero: corners on one straight line.
std::optional<CornerClasses> classifyCorners(std::span<const Vector3> normals) noexcept;

// True only if classifyCorners finds every corner convex and exchanges nothing.
// False also where that cannot be told so cheaply, without a square root and a
// division.
//
// Classes are told by the sign of normal * (sum * scale), computed. That is scale *
// (normal * sum) but for rounding, which does not amount to ten times 2^-53 of
// scale * |normal| * |sum|, the lengths taken as sums of absolute values. So the
// sign is certain where normal * sum exceeds a far greater share of |normal| *
// |sum|, and nothing comes near the ends of the range of numbers. (If every normal
// passes, the square of the sum, which is the sum of all normal * sum, is not small
// either.) What is not a number fails every comparison.
inline bool areCertainlyConvex(std::span<const Vector3> normals) noexcept {
    constexpr double CERTAIN_SHARE = 0x1p-40;
    constexpr double LEAST_PRODUCT = 1e-200;
    constexpr double GREATEST_SQUARE = 1e150;

    const Vector3 sum = sumOfNormals(normals);
    const double square = dotProduct(sum, sum);
    const double share = sumOfAbsolutes(sum) * CERTAIN_SHARE;
    bool areConvex = square < GREATEST_SQUARE;
    for (const Vector3& normal : normals)
        areConvex &= dotProduct(normal, sum) > sumOfAbsolutes(normal) * share + LEAST_PRODUCT;
    return areConvex;
}

}  // namespace obj_adapter
