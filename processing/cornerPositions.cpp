// Positions of a polygon's corners. Covered by
// tests/processing/triangulationTest.cpp.
#include "processing/cornerPositions.h"

#include "model/objModel.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace obj_adapter {

namespace {

// Up to here comparing every pair is faster than sorting.
const std::size_t MAX_CORNERS_COMPARED_IN_PAIRS = 32;

using PositionIterator = std::vector<Vector3>::iterator;

bool differs(double a, double b) noexcept {
    return a < b || a > b;
}

// Vertex::operator==.
bool isSamePosition(const Vector3& a, const Vector3& b) noexcept {
    return !differs(a.x, b.x) && !differs(a.y, b.y) && !differs(a.z, b.z);
}

// An ordering only where no coordinate is NaN.
bool isBefore(const Vector3& a, const Vector3& b) noexcept {
    if (differs(a.x, b.x))
        return a.x < b.x;
    if (differs(a.y, b.y))
        return a.y < b.y;
    return a.z < b.z;
}

bool hasEqualPair(const std::vector<Vector3>& positions) noexcept {
    for (std::size_t first = 0; first < positions.size(); ++first) {
        for (std::size_t second = first + 1; second < positions.size(); ++second) {
            if (isSamePosition(positions[first], positions[second]))
                return true;
        }
    }
    return false;
}

// Which coordinates are NaN, one bit for each.
constexpr unsigned NAN_X = 1;
constexpr unsigned NAN_Y = 2;
constexpr unsigned NAN_Z = 4;
constexpr unsigned NAN_CLASSES = 8;

bool isNan(double value) noexcept {
    return value != value;
}

unsigned nanClass(const Vector3& position) noexcept {
    return (isNan(position.x) ? NAN_X : 0U) | (isNan(position.y) ? NAN_Y : 0U) |
           (isNan(position.z) ? NAN_Z : 0U);
}

// The coordinates outside the mask; 0 stands for those in it.
Vector3 withoutCoordinates(const Vector3& position, unsigned mask) noexcept {
    return {(mask & NAN_X) != 0 ? 0.0 : position.x, (mask & NAN_Y) != 0 ? 0.0 : position.y,
            (mask & NAN_Z) != 0 ? 0.0 : position.z};
}

// Sorts; no coordinate may be NaN.
bool hasNeighboursAtOnePlace(PositionIterator begin, PositionIterator end) {
    std::sort(begin, end, isBefore);
    return std::adjacent_find(begin, end, isSamePosition) != end;
}

// Sorts both; no coordinate may be NaN.
bool haveCommonPlace(PositionIterator first, PositionIterator firstEnd, PositionIterator second,
                     PositionIterator secondEnd) {
    std::sort(first, firstEnd, isBefore);
    std::sort(second, secondEnd, isBefore);
    while (first != firstEnd && second != secondEnd) {
        if (isBefore(*first, *second))
            ++first;
        else if (isBefore(*second, *first))
            ++second;
        else
            return true;
    }
    return false;
}

void appendClass(const std::vector<Vector3>& positions, unsigned wantedClass, unsigned mask,
                 std::vector<Vector3>& scratch) {
    for (const Vector3& position : positions) {
        if (nanClass(position) == wantedClass)
            scratch.push_back(withoutCoordinates(position, mask));
    }
}

// Two positions are equal if the coordinates are that are a number in both. So
// positions are compared class by class, on the coordinates that neither class
// lacks; within those, equality is transitive and sorting finds it.
bool hasEqualPositionsAmongNans(const std::vector<Vector3>& positions,
                                const std::array<std::size_t, NAN_CLASSES>& classSizes,
                                std::vector<Vector3>& scratch) {
    for (unsigned first = 0; first < NAN_CLASSES; ++first) {
        for (unsigned second = first; second < NAN_CLASSES; ++second) {
            if (classSizes[first] == 0 || classSizes[second] == 0)
                continue;
            scratch.clear();
            appendClass(positions, first, first | second, scratch);
            if (first == second) {
                if (hasNeighboursAtOnePlace(scratch.begin(), scratch.end()))
                    return true;
                continue;
            }
            appendClass(positions, second, first | second, scratch);
            const auto middle = scratch.begin() + static_cast<std::ptrdiff_t>(classSizes[first]);
            if (haveCommonPlace(scratch.begin(), middle, middle, scratch.end()))
                return true;
        }
    }
    return false;
}

}  // namespace

bool gatherCornerPositions(const ObjModel& model, const std::vector<FaceElement>& corners,
                           std::vector<Vector3>& positions) {
    const int vertexCount = model.getNumberOfVertices();
    const Vertex* vertices = model.vertices.data();
    positions.resize(corners.size());
    Vector3* position = positions.data();
    for (const FaceElement& corner : corners) {
        if (corner.vertexIndex < 0 || corner.vertexIndex >= vertexCount)
            return false;
        const Vertex& vertex = vertices[corner.vertexIndex];
        *position++ = {vertex.x, vertex.y, vertex.z};
    }
    return true;
}

bool hasEqualPositions(const std::vector<Vector3>& positions, std::vector<Vector3>& scratch) {
    if (positions.size() <= MAX_CORNERS_COMPARED_IN_PAIRS)
        return hasEqualPair(positions);

    std::array<std::size_t, NAN_CLASSES> classSizes{};
    for (const Vector3& position : positions)
        ++classSizes[nanClass(position)];
    if (classSizes[0] != positions.size())
        return hasEqualPositionsAmongNans(positions, classSizes, scratch);

    scratch.assign(positions.begin(), positions.end());
    return hasNeighboursAtOnePlace(scratch.begin(), scratch.end());
}

}  // namespace obj_adapter
