// Convex and reflex corners. Covered by tests/processing/triangulationTest.cpp.
#include "processing/cornerClasses.h"

#include <cmath>

namespace obj_adapter {

std::optional<CornerClasses> classifyCorners(std::span<const Vector3> normals) noexcept {
    const Vector3 sum = sumOfNormals(normals);
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
