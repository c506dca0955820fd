// Positions of a polygon's corners. Covered by
// tests/processing/triangulationTest.cpp.
#include "processing/cornerPositions.h"

#include "platform/doublePair.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <span>

namespace obj_adapter {

namespace {

// Up to here comparing every pair is fastest.
const std::size_t MAX_CORNERS_COMPARED_IN_PAIRS = 8;

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

// Does one of the first values equal the value at their end?
bool isValueRepeated(const double* values, std::size_t count) noexcept {
    using platform::DoublePair;
    const DoublePair value(values[count]);
    unsigned equal = count % 2 == 1 && values[count - 1] == values[count] ? 1U : 0U;
    for (std::size_t place = 0; place + 1 < count; place += 2)
        equal |= areEqual(value, DoublePair::load(values + place));
    return equal != 0;
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

// scratch is working memory for as many positions.
bool hasEqualPositionsBySorting(std::span<const Vector3> positions,
                                std::span<Vector3> scratch) noexcept {
    std::array<std::size_t, NAN_CLASSES> classSizes{};
    for (const Vector3& position : positions)
        ++classSizes[nanClass(position)];
    if (classSizes[0] != positions.size())
        return hasEqualPositionsAmongNans(positions, classSizes, scratch);

    const auto end = std::copy(positions.begin(), positions.end(), scratch.begin());
    return hasNeighboursAtOnePlace(scratch.begin(), end);
}

// The same for equal positions, so -0.0 counts as 0.0; no coordinate may be NaN. Which
// value comes out decides nothing but the time that a search takes.
std::uint64_t hashOf(const Vector3& position) noexcept {
    constexpr std::uint64_t FACTOR_X = 0x9E3779B97F4A7C15U;
    constexpr std::uint64_t FACTOR_Y = 0xC2B2AE3D27D4EB4FU;
    constexpr std::uint64_t FACTOR_Z = 0x165667B19E3779F9U;
    constexpr int HALF = 32;
    const auto bitsOf = [](double value) { return std::bit_cast<std::uint64_t>(value + 0.0); };
    const std::uint64_t mixed = bitsOf(position.x) * FACTOR_X ^
                                std::rotl(bitsOf(position.y) * FACTOR_Y, HALF) ^
                                bitsOf(position.z) * FACTOR_Z;
    return (mixed ^ mixed >> HALF) * FACTOR_X;
}

}  // namespace

bool EqualPositionSearch::hasEqualPositions(std::span<const Vector3> positions) {
    if (positions.size() <= MAX_CORNERS_COMPARED_IN_PAIRS)
        return hasEqualPair(positions);
    if (positions.size() <= MAX_CORNERS_WITHIN) {
        if (const std::optional<bool> answer = searchByX(positions))
            return *answer;
    }
    if (const std::optional<bool> answer = searchByHash(positions))
        return *answer;
    return hasEqualPositionsBySorting(positions, scratchRoom.take(positions.size()));
}

// Every pair of corners, but by x alone, two corners at once: of the few that share their
// x the rest is compared. No answer where a coordinate is not a number, or where many
// corners share their x with others. Takes 0.7 of the time of the hash table.
std::optional<bool> EqualPositionSearch::searchByX(std::span<const Vector3> positions) noexcept {
    constexpr std::size_t MOST_SHARING = 8;
    std::array<double, MAX_CORNERS_WITHIN> x;
    std::size_t sharing = 0;
    for (std::size_t place = 0; place < positions.size(); ++place) {
        const Vector3& position = positions[place];
        if (isNan(position.x + position.y + position.z))
            return std::nullopt;
        x[place] = position.x;
        if (!isValueRepeated(x.data(), place))
            continue;
        if (++sharing > MOST_SHARING)
            return std::nullopt;
        for (const Vector3& earlier : positions.first(place)) {
            if (isSamePosition(earlier, position))
                return true;
        }
    }
    return false;
}

// A hash table of places in the polygon. No answer where a coordinate is not a number,
// or too many positions want the same slots.
std::optional<bool> EqualPositionSearch::searchByHash(std::span<const Vector3> positions) {
    constexpr std::uint32_t FREE = 0;
    constexpr std::size_t PROBES_PER_POSITION = 8;
    constexpr int HASH_BITS = 64;
    if (positions.size() >= std::numeric_limits<std::uint32_t>::max())
        return std::nullopt;
    const std::size_t slotCount = std::bit_ceil(SLOTS_PER_POSITION * positions.size());
    const int shift = HASH_BITS - static_cast<int>(std::bit_width(slotCount - 1));
    const std::span<std::uint32_t> slots = slotRoom.take(slotCount);
    std::fill(slots.begin(), slots.end(), FREE);

    std::size_t probesLeft = PROBES_PER_POSITION * positions.size();
    for (std::size_t place = 0; place < positions.size(); ++place) {
        const Vector3& position = positions[place];
        if (isNan(position.x + position.y + position.z))
            return std::nullopt;
        std::size_t slot = static_cast<std::size_t>(hashOf(position) >> shift);
        for (; slots[slot] != FREE; slot = (slot + 1) & (slotCount - 1)) {
            if (isSamePosition(positions[slots[slot] - 1], position))
                return true;
            if (--probesLeft == 0)
                return std::nullopt;
        }
        slots[slot] = static_cast<std::uint32_t>(place + 1);
    }
    return false;
}

}  // namespace obj_adapter
