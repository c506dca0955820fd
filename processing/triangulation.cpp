// Polygons to triangles: a fan where no corner is reflex, else ear clipping. Covered by
// tests/processing/triangulationTest.cpp, which compares it with a literal
// rendering of the method.
#include "processing/triangulation.h"

#include "converter/messages.h"
#include "converter/progress.h"
#include "processing/cornerPositions.h"
#include "processing/earClipping.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <stdexcept>

namespace obj_adapter {

namespace {

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

void Triangulator::triangulate(const ObjModel& model, const std::vector<FaceElement>& corners,
                               std::vector<Face>& triangles, bool skipPolygonsWithoutEar) {
    hostMayBeAsked = true;
    switch (split(model, corners)) {
        case Outcome::SPLIT:
            break;
        case Outcome::NOT_TRIANGULABLE:
            reportError(
                "Polygonal face has elements that cannot be processed. It will be skipped.");
            return;
        case Outcome::WITHOUT_EAR:
            if (!skipPolygonsWithoutEar)
                repeatPassWithoutEnd();
            throw std::runtime_error("Polygon without an ear");
    }
    for (const CornerTriple& places : pieces) {
        Face& triangle = triangles.emplace_back();
        for (std::size_t i = 0; i < CORNERS_PER_FACE; ++i)
            triangle.elements[i] = corners[places.corners[i]];
    }
}

std::span<const CornerTriple> Triangulator::tryTriangulate(
    const ObjModel& model, const std::vector<FaceElement>& corners) {
    hostMayBeAsked = false;
    return split(model, corners) == Outcome::SPLIT ? pieces : std::span<const CornerTriple>();
}

// The triangles become the pieces.
Triangulator::Outcome Triangulator::split(const ObjModel& model,
                                          const std::vector<FaceElement>& corners) {
    pieces = pieceRoom.take(corners.size() - 2);
    if (isPlainlyConvex(model, corners)) {
        splitIntoFan();
        return Outcome::SPLIT;
    }
    if (!isTriangulable(model, corners))
        return Outcome::NOT_TRIANGULABLE;
    const std::optional<CornerClasses> classes = earClipper.classify(positions);
    if (!classes) {
        throw std::runtime_error(
            "Cannot calculate convexity/reflexivity of vertices in a straight line");
    }

    if (classes->reflexCorners == 0) {
        splitIntoFan();
        return Outcome::SPLIT;
    }
    const std::optional<std::size_t> ears =
        earClipper.clip(positions, *classes, pieces, hostMayBeAsked);
    pieces = pieces.first(ears.value_or(0));
    return ears ? Outcome::SPLIT : Outcome::WITHOUT_EAR;
}

// The triangles (0, k, k + 1): right for polygons without a reflex corner.
void Triangulator::splitIntoFan() noexcept {
    for (std::uint32_t corner = 1; corner <= pieces.size(); ++corner)
        pieces[corner - 1] = {{0, corner, corner + 1}};
}

// Indices of all corners first, then positions.
bool Triangulator::isTriangulable(const ObjModel& model, const std::vector<FaceElement>& corners) {
    positions = positionRoom.take(corners.size());
    return gatherCornerPositions(model, corners, positions) &&
           !equalPositions.hasEqualPositions(positions);
}

}  // namespace obj_adapter
