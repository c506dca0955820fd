// Internal: polygons to triangles. Entered by the reader of f statements.
#pragma once

#include "processing/cornerPositions.h"
#include "processing/earClipping.h"
#include "processing/keptRoom.h"
#include "processing/vectors.h"

#include <obj_adapter/geometryRecords.h>

#include <cstddef>
#include <span>
#include <vector>

namespace obj_adapter {

struct ObjModel;

// Splits polygons; keeps its lists between them. Up to 64 corners it never asks
// for memory, apart from what the list of triangles needs.
class Triangulator {
public:
    // Appends the triangles of a polygon of four or more corners, in the order
    // in which they are made; each keeps the polygon's winding and carries its
    // corners' texture and normal indices. triangles is empty on entry.
    //
    // A polygon with a corner that names no vertex read so far, or with two
    // corners at one position, is reported and gives no triangles.
    //
    // skipPolygonsWithoutEar  false: a polygon none of whose corners can be cut
    //                         off runs without end. True: std::runtime_error.
    //
    // Throws ImportCancelled when the host wants to stop, and std::runtime_error also for corners
    // on one straight line.
    //
    // n corners give n - 2 triangles; fewer if those that remain at some point
    // lie on one straight line, or in any other way have normals that add up to
    // nothing. Costs O(n log n) without reflex corners, otherwise O(n^2).
    void triangulate(const ObjModel& model, const std::vector<FaceElement>& corners,
                     std::vector<Face>& triangles, bool skipPolygonsWithoutEar);

    // The same without a word to the host, and with an end: the triangles, valid until
    // the next call, or none of a polygon that would be reported or has no ear.
    std::span<const CornerTriple> tryTriangulate(const ObjModel& model,
                                                 const std::vector<FaceElement>& corners);

private:
    // Corners that the object has room for.
    static constexpr std::size_t MAX_CORNERS_WITHIN = EqualPositionSearch::MAX_CORNERS_WITHIN;

    template <typename Element>
    using Room = KeptRoom<Element, MAX_CORNERS_WITHIN>;

    enum class Outcome { SPLIT, NOT_TRIANGULABLE, WITHOUT_EAR };

    Outcome split(const ObjModel& model, const std::vector<FaceElement>& corners);
    void splitIntoFan() noexcept;
    bool isTriangulable(const ObjModel& model, const std::vector<FaceElement>& corners);

    std::span<Vector3> positions;
    std::span<CornerTriple> pieces;
    EqualPositionSearch equalPositions;
    EarClipper earClipper;

    bool hostMayBeAsked = true;

    Room<Vector3> positionRoom;
    Room<CornerTriple> pieceRoom;
};

}  // namespace obj_adapter
