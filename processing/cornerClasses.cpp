// Convex and reflex corners. Covered by tests/processing/triangulationTest.cpp.
#include "processing/cornerClasses.h"

#include <cmath>

namespace obj_adapter {

void computeCornerNormals(const std::vector<Vector3>& positions, std::vector<Vector3>& normals) {
    const std::size_t count = positions.size();
    normals.resize(count);
    if (count == 0)
        return;
    Vector3 previous = positions[count - 1];
    for (std::size_t corner = 0; corner + 1 < count; ++corner) {
        normals[corner] = cornerNormal(previous, positions[corner], positions[corner + 1]);
        previous = positions[corner];
    }
    normals[count - 1] = cornerNormal(previous, positions[count - 1], positions[0]);
}

std::optional<CornerClasses> classifyCorners(const std::vector<Vector3>& normals) noexcept {
    Vector3 sum;
    for (const Vector3& normal : normals) {
        sum.x += normal.x;
        sum.y += normal.y;
        sum.z += normal.z;
    }
    if (isZeroOrNan(sum.x) && isZeroOrNan(sum.y) && isZeroOrNan(sum.z))
        return std::nullopt;

    CornerClasses classes;
    const double scale = 1.0 / std::sqrt(sum.x * sum.x + sum.y * sum.y + sum.z * sum.z);
    classes.polygonNormal = {sum.x * scale, sum.y * scale, sum.z * scale};

    std::size_t convexCorners = 0;
    for (const Vector3& normal : normals)
        convexCorners += dotProduct(normal, classes.polygonNormal) > 0.0 ? 1U : 0U;
    classes.reflexCorners = normals.size() - convexCorners;
    classes.areExchanged = convexCorners < classes.reflexCorners;
    if (classes.areExchanged)
        classes.reflexCorners = convexCorners;
    return classes;
}

}  // namespace obj_adapter
