// Internal: does a corner of a polygon lie in a triangle of three others? In
// the header, since the answer is wanted for most pairs of corners of a large
// polygon.
#pragma once

#include "processing/vectors.h"

namespace obj_adapter {

// One triangle to be asked about many points; what depends on it alone is
// computed once, by the expressions that a single question would use.
class TriangleContainment {
public:
    TriangleContainment(const Vector3& cornerA, const Vector3& cornerB,
                        const Vector3& cornerC) noexcept
        : a(cornerA),
          b(cornerB),
          bc(cornerC - cornerB),
          ab(cornerB - cornerA),
          ac(cornerC - cornerA),
          abAb(dotProduct(ab, ab)),
          abAc(dotProduct(ab, ac)),
          acAc(dotProduct(ac, ac)),
          inverse(1.0 / (acAc * abAb - abAc * abAc)) {}

    // The volume spanned by the four points is exactly zero, or not a number.
    // There is no tolerance: only polygons whose coordinates put them exactly
    // into a plane count as flat. Deliberate.
    bool isCoplanarWith(const Vector3& point) const noexcept {
        return isZeroOrNan(dotProduct(b - point, crossProduct(a - point, bc)));
    }

    // In the triangle's plane and inside it by barycentric coordinates; edges
    // and corners count as inside. False when a weight is not a number.
    //
    // Asked in the order that tells most points soonest: nearly all points of a
    // flat polygon are in the plane and beyond an edge.
    bool contains(const Vector3& point) const noexcept {
        const Vector3 ap = point - a;
        const double apAb = dotProduct(ap, ab);
        const double apAc = dotProduct(ap, ac);
        const double weightOfB = (apAb * acAc - apAc * abAc) * inverse;
        if (!(weightOfB >= 0.0))
            return false;
        const double weightOfC = (apAc * abAb - apAb * abAc) * inverse;
        return weightOfC >= 0.0 && 1.0 - weightOfB - weightOfC >= 0.0 && isCoplanarWith(point);
    }

private:
    Vector3 a;
    Vector3 b;
    Vector3 bc;
    Vector3 ab;
    Vector3 ac;
    double abAb;
    double abAc;
    double acAc;
    double inverse;  // infinite or not a number for a triangle without area
};

inline bool isCoplanar(const Vector3& p0, const Vector3& p1, const Vector3& p2,
                       const Vector3& p3) noexcept {
    return TriangleContainment(p1, p2, p3).isCoplanarWith(p0);
}

inline bool isPointInTriangle(const Vector3& point, const Vector3& a, const Vector3& b,
                              const Vector3& c) noexcept {
    return TriangleContainment(a, b, c).contains(point);
}

}  // namespace obj_adapter
