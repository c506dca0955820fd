// Convex and reflex corners. Covered by tests/processing/triangulationTest.cpp.
#include "processing/cornerClasses.h"

#include <cmath>

namespace obj_adapter {

namespace {

// Far from both ends of the range of numbers.
bool isOrdinarySquare(double square) noexcept {
    constexpr double LEAST_SQUARE = 1e-150;
    constexpr double GREATEST_SQUARE = 1e150;
    return square > LEAST_SQUARE && square < GREATEST_SQUARE;
}

// convexCorners: before any exchange.
CornerClasses classesOf(const Vector3& polygonNormal, std::size_t corners,
                        std::size_t convexCorners) noexcept {
    CornerClasses classes;
    classes.polygonNormal = polygonNormal;
    classes.reflexCorners = corners - convexCorners;
    classes.areExchanged = convexCorners < classes.reflexCorners;
    if (classes.areExchanged)
        classes.reflexCorners = convexCorners;
    return classes;
}

}  // namespace

std::optional<CornerClasses> classifyCorners(std::span<const Vector3> normals) noexcept {
    const Vector3 sum = sumOfNormals(normals);
    if (isZeroOrNan(sum.x) && isZeroOrNan(sum.y) && isZeroOrNan(sum.z))
        return std::nullopt;

    const double scale = 1.0 / std::sqrt(sum.x * sum.x + sum.y * sum.y + sum.z * sum.z);
    const Vector3 polygonNormal = {sum.x * scale, sum.y * scale, sum.z * scale};

    std::size_t convexCorners = 0;
    for (const Vector3& normal : normals)
        convexCorners += dotProduct(normal, polygonNormal) > 0.0 ? 1U : 0U;
    return classesOf(polygonNormal, normals.size(), convexCorners);
}

std::optional<CornerClasses> CornerClassifier::classify(std::span<const Vector3> normals) noexcept {
    begin(normals);
    const std::optional<CornerClasses> classes = tell();
    return classes ? classes : classifyCorners(normals);
}

void CornerClassifier::begin(std::span<const Vector3> normals) noexcept {
    constexpr double LEAST_COSINE = 0.25;
    sum = sumOfNormals(normals);
    direction = sum;
    directionSquare = dotProduct(sum, sum);
    leastAlong = LEAST_COSINE * sumOfAbsolutes(sum);
    firstCorners = normals.size();
    lengthsAdded = 0.0;
    corners = static_cast<unsigned>(normals.size());
    convexCorners = 0;
    uncertainCorners = 0;
    for (const Vector3& normal : normals) {
        const Turn turn = turnOf(normal);
        lengthsAdded += turn.length;
        convexCorners += turn.convex;
        uncertainCorners += turn.uncertain;
    }
}

// What is not a number fails every comparison.
std::optional<CornerClasses> CornerClassifier::tell() const noexcept {
    constexpr std::size_t MOST_CORNERS = std::size_t{1} << 20;
    constexpr double LEAST_COSINE = 0.99;
    constexpr double LEAST_SHARE = 0x1p-20;
    const double square = dotProduct(sum, sum);
    const double along = dotProduct(sum, direction);
    const double leastSum = LEAST_SHARE * lengthsAdded;
    if (uncertainCorners != 0 || firstCorners > MOST_CORNERS || !isOrdinarySquare(square) ||
        !isOrdinarySquare(directionSquare) || !(square >= leastSum * leastSum) || !(along > 0.0) ||
        !(along * along >= LEAST_COSINE * LEAST_COSINE * directionSquare * square))
        return std::nullopt;
    return classesOf(direction, corners, convexCorners);
}

}  // namespace obj_adapter
