// Three coordinates and what is computed with them: additions, products and
// square roots in a fixed order, so that the same mesh gives the same bits
// everywhere.
#pragma once

#include <algorithm>
#include <cmath>

namespace obj_adapter::tool {

struct Vector3 {
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;

    friend bool operator==(const Vector3& a, const Vector3& b) = default;
};

inline Vector3 operator+(const Vector3& a, const Vector3& b) {
    return {a.x + b.x, a.y + b.y, a.z + b.z};
}

inline Vector3 operator-(const Vector3& a, const Vector3& b) {
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}

inline Vector3 operator*(const Vector3& a, double factor) {
    return {a.x * factor, a.y * factor, a.z * factor};
}

inline Vector3 operator-(const Vector3& a) {
    return {-a.x, -a.y, -a.z};
}

inline double dotProduct(const Vector3& a, const Vector3& b) {
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

inline Vector3 crossProduct(const Vector3& a, const Vector3& b) {
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

inline bool isFinite(const Vector3& a) {
    return std::isfinite(a.x) && std::isfinite(a.y) && std::isfinite(a.z);
}

// The largest absolute coordinate.
inline double largestCoordinate(const Vector3& a) {
    return std::max({std::fabs(a.x), std::fabs(a.y), std::fabs(a.z)});
}

// Of length 1, whatever the length was; the zero vector for one that has no
// direction: of no length, or not finite.
inline Vector3 unitVector(const Vector3& a) {
    const double largest = largestCoordinate(a);
    if (!isFinite(a) || largest == 0.0)
        return {};
    const Vector3 scaled{a.x / largest, a.y / largest, a.z / largest};
    const double length = std::sqrt(dotProduct(scaled, scaled));
    return {scaled.x / length, scaled.y / length, scaled.z / length};
}

}  // namespace obj_adapter::tool
