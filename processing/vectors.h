// Internal: vectors of three doubles, for polygons.
//
// The order of every sum is fixed: the same coordinates give the same bits on
// every platform.
#pragma once

#include <cmath>

namespace obj_adapter {

struct Vector3 {
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
};

inline Vector3 operator+(const Vector3& a, const Vector3& b) noexcept {
    return {a.x + b.x, a.y + b.y, a.z + b.z};
}

inline Vector3 operator-(const Vector3& a, const Vector3& b) noexcept {
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}

inline Vector3 crossProduct(const Vector3& a, const Vector3& b) noexcept {
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

inline double dotProduct(const Vector3& a, const Vector3& b) noexcept {
    return (a.y * b.y + a.x * b.x) + a.z * b.z;
}

inline double sumOfAbsolutes(const Vector3& vector) noexcept {
    return (std::fabs(vector.x) + std::fabs(vector.y)) + std::fabs(vector.z);
}

// Exactly zero, or not a number.
inline bool isZeroOrNan(double value) noexcept {
    return !(value < 0.0 || value > 0.0);
}

}  // namespace obj_adapter
