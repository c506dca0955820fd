// Internal: does a corner of a polygon lie in a triangle of three others? In
// the header, since the answer is wanted for most pairs of corners of a large
// polygon.
#pragma once

#include "platform/doublePair.h"
#include "processing/vectors.h"

#include <cstddef>

namespace obj_adapter {

// Points as a list for each coordinate, which are owned elsewhere.
struct PointLists {
    Vector3 at(std::size_t place) const noexcept { return {x[place], y[place], z[place]}; }

    const double* x = nullptr;
    const double* y = nullptr;
    const double* z = nullptr;
};

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
        const Weights<double> weights = weigh(point.x, point.y, point.z);
        return weights.ofB >= 0.0 && weights.ofC >= 0.0 && weights.ofA >= 0.0 &&
               isCoplanarWith(point);
    }

    // The first point from begin on that is contained; end if none before it is. Two at
    // once: with that and CornerClassifier, files of polygons of 5 to 40 corners are read
    // in 0.87 of the time, combs of 1,000 corners split in 0.4.
    std::size_t findContained(const PointLists& points, std::size_t begin,
                              std::size_t end) const noexcept {
        using platform::DoublePair;
        std::size_t place = begin;
        for (; place + 1 < end; place += 2) {
            const Weights<DoublePair> weights =
                weigh(DoublePair::load(points.x + place), DoublePair::load(points.y + place),
                      DoublePair::load(points.z + place));
            const unsigned candidates = areNotNegative(weights.ofA, weights.ofB, weights.ofC);
            if (candidates == 0)
                continue;
            if ((candidates & 1U) != 0 && isCoplanarWith(points.at(place)))
                return place;
            if ((candidates & 2U) != 0 && isCoplanarWith(points.at(place + 1)))
                return place + 1;
        }
        return place < end && contains(points.at(place)) ? place : end;
    }

private:
    // How much of each corner a point is; together 1.
    template <typename Real>
    struct Weights {
        Real ofA;
        Real ofB;
        Real ofC;
    };

    template <typename Real>
    Weights<Real> weigh(Real x, Real y, Real z) const noexcept {
        const Real apX = x - Real(a.x);
        const Real apY = y - Real(a.y);
        const Real apZ = z - Real(a.z);
        const Real apAb = (apY * Real(ab.y) + apX * Real(ab.x)) + apZ * Real(ab.z);
        const Real apAc = (apY * Real(ac.y) + apX * Real(ac.x)) + apZ * Real(ac.z);
        const Real ofB = (apAb * Real(acAc) - apAc * Real(abAc)) * Real(inverse);
        const Real ofC = (apAc * Real(abAb) - apAb * Real(abAc)) * Real(inverse);
        return {Real(1.0) - ofB - ofC, ofB, ofC};
    }

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
