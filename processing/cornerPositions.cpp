// Positions of a polygon's corners. Covered by
// tests/processing/triangulationTest.cpp.
#include "processing/cornerPositions.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <span>

namespace obj_adapter {

namespace {

// Up to here comparing every pair is faster than sorting.
const std::size_t MAX_CORNERS_COMPARED_IN_PAIRS = 24;

using PositionIterator = std::span<Vector3>::iterator;

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

bool hasEqualPair(std::span<const Vector3> positions) noexcept {
    for (std::size_t second = 1; second < positions.size(); ++second) {
        const Vector3 position = positions[second];
        for (const Vector3& earlier : positions.first(second)) {
            if (isSamePosition(earlier, position))
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
bool hasNeighboursAtOnePlace(PositionIterator begin, PositionIterator end) noexcept {
    std::sort(begin, end, isBefore);
    return std::adjacent_find(begin, end, isSamePosition) != end;
}

// Sorts both; no coordinate may be NaN.
bool haveCommonPlace(PositionIterator first, PositionIterator firstEnd, PositionIterator second,
                     PositionIterator secondEnd) noexcept {
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

// Returns the end of what was written.
PositionIterator writeClass(std::span<const Vector3> positions, unsigned wantedClass, unsigned mask,
                            PositionIterator place) noexcept {
    for (const Vector3& position : positions) {
        if (nanClass(position) == wantedClass)
            *place++ = withoutCoordinates(position, mask);
    }
    return place;
}

// Two positions are equal if the coordinates are that are a number in both. So
// positions are compared class by class, on the coordinates that neither class
// lacks; within those, equality is transitive and sorting finds it.
bool hasEqualPositionsAmongNans(std::span<const Vector3> positions,
                                const std::array<std::size_t, NAN_CLASSES>& classSizes,
                                std::span<Vector3> scratch) noexcept {
    for (unsigned first = 0; first < NAN_CLASSES; ++first) {
        for (unsigned second = first; second < NAN_CLASSES; ++second) {
            if (classSizes[first] == 0 || classSizes[second] == 0)
                continue;
            const auto middle = writeClass(positions, first, first | second, scratch.begin());
            if (first == second) {
                if (hasNeighboursAtOnePlace(scratch.begin(), middle))
                    return true;
                continue;
            }
            const auto end = writeClass(positions, second, first | second, middle);
            if (haveCommonPlace(scratch.begin(), middle, middle, end))
                return true;
        }
    }
    return false;
}

}  // namespace

bool hasEqualPositions(std::span<const Vector3> positions, std::span<Vector3> scratch) noexcept {
    if (positions.size() <= MAX_CORNERS_COMPARED_IN_PAIRS)
        return hasEqualPair(positions);

    std::array<std::size_t, NAN_CLASSES> classSizes{};
    for (const Vector3& position : positions)
        ++classSizes[nanClass(position)];
    if (classSizes[0] != positions.size())
        return hasEqualPositionsAmongNans(positions, classSizes, scratch);

    const auto end = std::copy(positions.begin(), positions.end(), scratch.begin());
    return hasNeighboursAtOnePlace(scratch.begin(), end);
}

}  // namespace obj_adapter
