// Ear clipping, with a fan where no corner is reflex. Covered by
// tests/processing/triangulationTest.cpp, which compares it with a literal
// rendering of the method.
#include "processing/triangulation.h"

#include "converter/messages.h"
#include "converter/progress.h"
#include "processing/cornerPositions.h"
#include "processing/pointInTriangle.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <limits>
#include <numeric>
#include <stdexcept>
#include <utility>

namespace obj_adapter {

namespace {

const std::size_t CORNERS_OF_LAST_TRIANGLE = CORNERS_PER_FACE;

// The search for a corner's blocker has not begun.
const std::size_t NOT_SEARCHED = std::numeric_limits<std::size_t>::max();

const std::size_t NO_EAR = std::numeric_limits<std::size_t>::max();

void appendTriangle(const FaceElement& first, const FaceElement& second, const FaceElement& third,
                    std::vector<Face>& triangles) {
    Face& triangle = triangles.emplace_back();
    triangle.elements[0] = first;
    triangle.elements[1] = second;
    triangle.elements[2] = third;
}

// True for most convex polygons of four and five corners, which need nothing but
// the fan: a quad takes 17 ns in place of 37, and files are made of quads.
//
// Their corners need not be searched for equal positions. Two at one place would
// be neighbours, with an edge of no length between them, or have one corner
// between them, whose edges run to and fro: either makes a normal that is zero or
// not a number, and a corner that is not convex.
template <std::size_t COUNT>
bool isPlainlyConvex(const ObjModel& model, const std::vector<FaceElement>& corners) noexcept {
    static_assert(COUNT == 4 || COUNT == 5);
    std::array<Vector3, COUNT> positions;
    std::array<Vector3, COUNT> normals;
    if (!gatherCornerPositions(model, corners, positions))
        return false;
    computeCornerNormals(positions, normals);
    return areCertainlyConvex(normals);
}

bool isPlainlyConvex(const ObjModel& model, const std::vector<FaceElement>& corners) noexcept {
    return (corners.size() == 4 && isPlainlyConvex<4>(model, corners)) ||
           (corners.size() == 5 && isPlainlyConvex<5>(model, corners));
}

// Those on the shorter side move up: ears are found near the beginning most often.
template <typename Element>
void takeOut(std::span<Element>& list, std::size_t place) noexcept {
    const auto position = list.begin() + static_cast<std::ptrdiff_t>(place);
    if (place < list.size() / 2) {
        std::move_backward(list.begin(), position, position + 1);
        list = list.last(list.size() - 1);
    } else {
        std::move(position + 1, list.end(), position);
        list = list.first(list.size() - 1);
    }
}

// A pass without an ear changes nothing, so every further pass is the same: the
// import stays here, as hosts have known it, unless it is told to skip such
// polygons, or the host cancels it. The volatile read keeps the loop in the program.
[[noreturn]] void repeatPassWithoutEnd() {
    const volatile bool isPolygonUnchanged = true;
    for (;;) {
        for (std::size_t test = 0; test < WORK_BETWEEN_CALLS && isPolygonUnchanged; ++test) {
        }
        countWork(WORK_BETWEEN_CALLS);
    }
}

}  // namespace

void fanTriangulate(const std::vector<FaceElement>& corners, std::vector<Face>& triangles) {
    for (std::size_t corner = 1; corner + 1 < corners.size(); ++corner)
        appendTriangle(corners[0], corners[corner], corners[corner + 1], triangles);
}

void Triangulator::triangulate(const ObjModel& model, const std::vector<FaceElement>& corners,
                               std::vector<Face>& triangles, bool skipPolygonsWithoutEar) {
    hostMayBeAsked = true;
    switch (split(model, corners, triangles)) {
        case Outcome::SPLIT:
            break;
        case Outcome::NOT_TRIANGULABLE:
            reportError(
                "Polygonal face has elements that cannot be processed. It will be skipped.");
            break;
        case Outcome::WITHOUT_EAR:
            if (!skipPolygonsWithoutEar)
                repeatPassWithoutEnd();
            triangles.clear();
            throw std::runtime_error("Polygon without an ear");
    }
}

bool Triangulator::tryTriangulate(const ObjModel& model, const std::vector<FaceElement>& corners,
                                  std::vector<Face>& triangles) {
    hostMayBeAsked = false;
    return split(model, corners, triangles) == Outcome::SPLIT;
}

Triangulator::Outcome Triangulator::split(const ObjModel& model,
                                          const std::vector<FaceElement>& corners,
                                          std::vector<Face>& triangles) {
    if (isPlainlyConvex(model, corners)) {
        fanTriangulate(corners, triangles);
        return Outcome::SPLIT;
    }
    if (!isTriangulable(model, corners))
        return Outcome::NOT_TRIANGULABLE;
    normals = normalRoom.take(corners.size());
    computeCornerNormals(positions, normals);
    const std::optional<CornerClasses> classes = classifyCorners(normals);
    if (!classes) {
        throw std::runtime_error(
            "Cannot calculate convexity/reflexivity of vertices in a straight line");
    }

    if (classes->reflexCorners == 0) {
        fanTriangulate(corners, triangles);
        return Outcome::SPLIT;
    }
    return clipEars(*classes, corners, triangles) ? Outcome::SPLIT : Outcome::WITHOUT_EAR;
}

// Indices of all corners first, then positions.
bool Triangulator::isTriangulable(const ObjModel& model, const std::vector<FaceElement>& corners) {
    positions = positionRoom.take(corners.size());
    return gatherCornerPositions(model, corners, positions) &&
           !equalPositions.hasEqualPositions(positions);
}

// Cuts off one ear in each pass, the first in corner order, until the last
// three corners have gone as one triangle. Each pass classifies anew, for the
// sum of the normals changes; classes are those of the whole polygon.
//
// Stops with fewer triangles, and says nothing, when the classes cannot be told
// any more. False when a pass found no ear.
bool Triangulator::clipEars(CornerClasses classes, const std::vector<FaceElement>& corners,
                            std::vector<Face>& triangles) {
    startClipping();
    for (;;) {
        const std::size_t ear = findEar(classes);
        if (ear == NO_EAR)
            return false;
        appendTriangle(corners[originals[previousOf(ear)]], corners[originals[ear]],
                       corners[originals[nextOf(ear)]], triangles);
        if (originals.size() == CORNERS_OF_LAST_TRIANGLE)
            return true;

        countTests(positions.size());
        removeCorner(ear);
        const std::optional<CornerClasses> newClasses = classifyCorners(normals);
        if (!newClasses)
            return true;
        classes = *newClasses;
    }
}

// positions and normals are there already.
void Triangulator::startClipping() {
    const std::size_t count = positions.size();
    originals = originalRoom.take(count);
    std::iota(originals.begin(), originals.end(), std::size_t{0});
    blockers = blockerRoom.take(count);
    std::fill(blockers.begin(), blockers.end(), NOT_SEARCHED);
    isCutOff = cutOffRoom.take(count);
    std::fill(isCutOff.begin(), isCutOff.end(), static_cast<unsigned char>(0));
}

std::size_t Triangulator::findEar(const CornerClasses& classes) {
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
bool Triangulator::isBlocked(std::size_t corner) {
    const std::size_t blocker = blockers[corner];
    std::size_t other = 0;
    if (blocker != NOT_SEARCHED) {
        if (isCutOff[blocker] == 0)
            return true;
        const auto behind = std::upper_bound(originals.begin(), originals.end(), blocker);
        other = static_cast<std::size_t>(behind - originals.begin());
    }

    const std::size_t previous = previousOf(corner);
    const std::size_t next = nextOf(corner);
    countTests(positions.size() - other);
    const TriangleContainment triangle(positions[previous], positions[corner], positions[next]);
    for (; other < positions.size(); ++other) {
        if (other == previous || other == corner || other == next)
            continue;
        if (triangle.contains(positions[other])) {
            blockers[corner] = originals[other];
            return true;
        }
    }
    return false;
}

// Large polygons take long: the host is asked meanwhile.
void Triangulator::countTests(std::size_t tests) {
    uncountedTests += tests;
    if (hostMayBeAsked && uncountedTests >= WORK_COUNTED_AT_ONCE)
        countWork(std::exchange(uncountedTests, 0));
}

// What depends on neighbours is renewed for those of the corner.
void Triangulator::removeCorner(std::size_t corner) {
    isCutOff[originals[corner]] = 1;
    takeOut(positions, corner);
    takeOut(normals, corner);
    takeOut(originals, corner);
    takeOut(blockers, corner);

    const std::size_t next = corner == positions.size() ? 0 : corner;
    const std::size_t previous = previousOf(next);
    for (const std::size_t neighbour : {previous, next}) {
        recomputeNormal(neighbour);
        blockers[neighbour] = NOT_SEARCHED;
    }
}

void Triangulator::recomputeNormal(std::size_t corner) {
    normals[corner] =
        cornerNormal(positions[previousOf(corner)], positions[corner], positions[nextOf(corner)]);
}

std::size_t Triangulator::previousOf(std::size_t corner) const noexcept {
    return corner == 0 ? positions.size() - 1 : corner - 1;
}

std::size_t Triangulator::nextOf(std::size_t corner) const noexcept {
    return corner + 1 == positions.size() ? 0 : corner + 1;
}

}  // namespace obj_adapter
