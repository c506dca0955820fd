// Internal: which corners of a polygon turn with it (convex) and which against
// it or not at all (reflex).
#pragma once

#include "processing/vectors.h"

#include <cmath>
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

    // classifyCorners gives it the length 1, as far as that can be computed. That of
    // CornerClassifier has any length and another direction, but tells the same of every
    // corner.
    Vector3 polygonNormal;
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

// Tells what classifyCorners would find, mostly without a square root and a division, and
// while ears are cut off without going over all corners again.
//
// A corner's class is told by the sign of normal * direction, computed, where the
// direction is that of the sum of all normals. Here, the direction is the sum that the
// normals had in the beginning. It serves while it is within 8 degrees of today's (a
// cosine of 0.99) and no corner's normal more than 75.6 degrees from it or from its
// opposite (a cosine of 0.25, or more where lengths are taken as sums of absolute values):
// then the angle between the normal and today's direction is below 84 degrees, or the
// opposite's is, and the sign the same. The six degrees left are far more than rounding
// needs, if nothing comes near the ends of the range of numbers. So it is with flat
// polygons of any shape.
//
// Today's sum is the first one with what has changed subtracted and added: not to the
// bit what adding all normals in order gives. But each of at most seven additions for
// each corner, in both together, rounds by 2^-53 of all the lengths ever added at most:
// the two are within 7 * corners * 2^-53 of these lengths. That is less than 2^-30 with
// the greatest number of corners, and an angle below a tenth of a degree while the sum is
// 2^-20 of the lengths.
class CornerClassifier {
public:
    // As classifyCorners.
    std::optional<CornerClasses> classify(std::span<const Vector3> normals) noexcept;

    // A corner is cut off, with the normals of its neighbours before and after that.
    struct Cut {
        Vector3 corner;
        Vector3 previous;
        Vector3 next;
        Vector3 newPrevious;
        Vector3 newNext;
    };
    void follow(const Cut& cut) noexcept {
        const Turn corner = turnOf(cut.corner);
        const Turn previous = turnOf(cut.previous);
        const Turn next = turnOf(cut.next);
        const Turn newPrevious = turnOf(cut.newPrevious);
        const Turn newNext = turnOf(cut.newNext);
        sum = (sum - cut.corner) + ((cut.newPrevious - cut.previous) + (cut.newNext - cut.next));
        lengthsAdded += newPrevious.length + newNext.length;
        --corners;
        convexCorners += newPrevious.convex + newNext.convex;
        convexCorners -= corner.convex + previous.convex + next.convex;
        uncertainCorners += newPrevious.uncertain + newNext.uncertain;
        uncertainCorners -= corner.uncertain + previous.uncertain + next.uncertain;
    }

    // As classifyCorners of the normals left, after every cut so far was followed.
    std::optional<CornerClasses> classifyLeft(std::span<const Vector3> normals) noexcept {
        const std::optional<CornerClasses> classes = tell();
        return classes ? classes : classify(normals);
    }

private:
    struct Turn {
        unsigned convex;     // 1 or 0, before any exchange
        unsigned uncertain;  // 1 if another direction near by may have it otherwise
        double length;       // as a sum of absolute values
    };

    // A corner on a straight edge, with a normal of zeros, is not convex whatever the
    // direction.
    Turn turnOf(const Vector3& normal) const noexcept {
        constexpr double LEAST_LENGTH = 1e-200;
        const double length = sumOfAbsolutes(normal);
        const double along = dotProduct(normal, direction);
        const unsigned certain = static_cast<unsigned>(std::fabs(along) >= length * leastAlong) &
                                 static_cast<unsigned>(length >= LEAST_LENGTH);
        return {static_cast<unsigned>(along > 0.0),
                (certain | static_cast<unsigned>(length == 0.0)) ^ 1U, length};
    }

    void begin(std::span<const Vector3> normals) noexcept;
    std::optional<CornerClasses> tell() const noexcept;

    Vector3 direction;
    double directionSquare = 0.0;  // of its length
    double leastAlong = 0.0;       // of a normal of length 1, times the direction
    Vector3 sum;                   // of the normals, nearly
    double lengthsAdded = 0.0;
    std::size_t firstCorners = 0;
    unsigned corners = 0;
    unsigned convexCorners = 0;
    unsigned uncertainCorners = 0;
};

}  // namespace obj_adapter
