// Ear clipping. Covered by tests/processing/triangulationTest.cpp, which compares it
// with a literal rendering of the method.
#include "processing/earClipping.h"

#include "converter/progress.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <span>
#include <utility>

namespace obj_adapter {

namespace {

const std::size_t CORNERS_OF_LAST_TRIANGLE = CORNERS_PER_FACE;

// The search for a corner's blocker has not begun.
const std::uint32_t NOT_SEARCHED = std::numeric_limits<std::uint32_t>::max();

const std::size_t NO_EAR = std::numeric_limits<std::size_t>::max();

}  // namespace

std::optional<CornerClasses> EarClipper::classify(std::span<const Vector3> positions) {
    normals = normalRoom.take(positions.size());
    computeCornerNormals(positions, normals);
    return classifier.classify(normals);
}

std::optional<std::size_t> EarClipper::clip(std::span<const Vector3> positions,
                                            const CornerClasses& firstClasses,
                                            std::span<CornerTriple> triangles, bool mayAskHost) {
    hostMayBeAsked = mayAskHost;
    start(positions);
    CornerClasses classes = firstClasses;
    for (std::size_t count = 0;;) {
        const std::size_t ear = findEar(classes);
        if (ear == NO_EAR)
            return std::nullopt;
        triangles[count++] = {
            {marks[previousOf(ear)].original, marks[ear].original, marks[nextOf(ear)].original}};
        if (marks.size() == CORNERS_OF_LAST_TRIANGLE)
            return count;

        countTests(marks.size());
        removeCorner(ear);
        const std::optional<CornerClasses> newClasses = classifier.classifyLeft(normals);
        if (!newClasses)
            return count;
        classes = *newClasses;
    }
}

void EarClipper::start(std::span<const Vector3> positions) {
    const std::size_t count = positions.size();
    x = xRoom.take(count);
    y = yRoom.take(count);
    z = zRoom.take(count);
    marks = markRoom.take(count);
    for (std::size_t corner = 0; corner < count; ++corner) {
        x[corner] = positions[corner].x;
        y[corner] = positions[corner].y;
        z[corner] = positions[corner].z;
        marks[corner] = {static_cast<std::uint32_t>(corner), NOT_SEARCHED};
    }
    isCutOff = cutOffRoom.take(count);
    std::fill(isCutOff.begin(), isCutOff.end(), static_cast<unsigned char>(0));
}

std::size_t EarClipper::findEar(const CornerClasses& classes) {
    for (std::size_t corner = 0; corner < normals.size(); ++corner) {
        if (classes.isConvex(normals[corner]) && !isBlocked(corner))
            return corner;
    }
    return NO_EAR;
}

// Does another corner lie in the triangle that the corner forms with its two
// neighbours?
//
// While the neighbours stay, the triangle does, so no answer about a corner in
// it can change: the blocker found (by its place in the whole polygon) blocks
// until it is cut off, and then the search goes on behind it. So all passes
// together ask once about each corner and triangle.
bool EarClipper::isBlocked(std::size_t corner) {
    const std::uint32_t blocker = marks[corner].blocker;
    std::size_t first = 0;
    if (blocker != NOT_SEARCHED) {
        if (isCutOff[blocker] == 0)
            return true;
        const auto behind = std::upper_bound(
            marks.begin(), marks.end(), blocker,
            [](std::uint32_t place, const Mark& mark) { return place < mark.original; });
        first = static_cast<std::size_t>(behind - marks.begin());
    }

    countTests(marks.size() - first);
    const PointLists points = getPoints();
    const TriangleContainment triangle(points.at(previousOf(corner)), points.at(corner),
                                       points.at(nextOf(corner)));
    const std::size_t found = findCornerInside(triangle, corner, first);
    if (found == marks.size())
        return false;
    marks[corner].blocker = marks[found].original;
    return true;
}

// The first of all corners but the triangle's own, from first on; their number if there
// is none.
std::size_t EarClipper::findCornerInside(const TriangleContainment& triangle, std::size_t corner,
                                         std::size_t first) const noexcept {
    const PointLists points = getPoints();
    const std::size_t count = marks.size();
    const std::size_t last = count - 1;

    // Those before the three, then those behind: with the first corner or the last one
    // the three stand at both ends.
    const std::size_t begin = std::max(first, corner == last ? std::size_t{1} : std::size_t{0});
    const std::size_t end = corner == 0 ? 0 : corner - 1;
    if (begin < end) {
        const std::size_t found = triangle.findContained(points, begin, end);
        if (found != end)
            return found;
    }
    const std::size_t beginBehind = std::max(first, corner + 2);
    const std::size_t endBehind = corner == 0 ? last : count;
    if (beginBehind < endBehind) {
        const std::size_t found = triangle.findContained(points, beginBehind, endBehind);
        if (found != endBehind)
            return found;
    }
    return count;
}

// Large polygons take long: the host is asked meanwhile.
void EarClipper::countTests(std::size_t tests) {
    uncountedTests += tests;
    if (hostMayBeAsked && uncountedTests >= WORK_COUNTED_AT_ONCE)
        countWork(std::exchange(uncountedTests, 0));
}

// What depends on neighbours is renewed for those of the corner.
void EarClipper::removeCorner(std::size_t corner) {
    const PointLists points = getPoints();
    const std::size_t previous = previousOf(corner);
    const std::size_t next = nextOf(corner);
    const Vector3 previousPoint = points.at(previous);
    const Vector3 nextPoint = points.at(next);
    const Vector3 newPrevious =
        cornerNormal(points.at(previousOf(previous)), previousPoint, nextPoint);
    const Vector3 newNext = cornerNormal(previousPoint, nextPoint, points.at(nextOf(next)));
    classifier.follow({normals[corner], normals[previous], normals[next], newPrevious, newNext});
    normals[previous] = newPrevious;
    normals[next] = newNext;
    marks[previous].blocker = NOT_SEARCHED;
    marks[next].blocker = NOT_SEARCHED;
    isCutOff[marks[corner].original] = 1;
    takeOut(corner);
}

// Those on the shorter side move up: ears are found near the beginning most often.
void EarClipper::takeOut(std::size_t corner) noexcept {
    const auto takeOutOf = [&](auto& list) {
        const auto position = list.begin() + static_cast<std::ptrdiff_t>(corner);
        if (corner < list.size() / 2) {
            std::move_backward(list.begin(), position, position + 1);
            list = list.last(list.size() - 1);
        } else {
            std::move(position + 1, list.end(), position);
            list = list.first(list.size() - 1);
        }
    };
    takeOutOf(x);
    takeOutOf(y);
    takeOutOf(z);
    takeOutOf(normals);
    takeOutOf(marks);
}

std::size_t EarClipper::previousOf(std::size_t corner) const noexcept {
    return corner == 0 ? marks.size() - 1 : corner - 1;
}

std::size_t EarClipper::nextOf(std::size_t corner) const noexcept {
    return corner + 1 == marks.size() ? 0 : corner + 1;
}

}  // namespace obj_adapter
