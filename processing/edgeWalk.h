// Internal: what the ways to find a mesh's edges have in common.
#pragma once

#include "model/objModel.h"
#include "processing/edgeAdjacency.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>

namespace obj_adapter {

class FaceSurvey;

// Three ways with one result, the fastest first: with them, a whole round takes 10,
// 12 and 13 ns for each face that it makes (grids and tori of 700,000 faces made,
// g++ 12). Those that are not for every model give up with nothing. Each shows
// every face to the survey.

// In childEdges.cpp: for the faces that a round has made, without any search.
// Gives up when the faces are not, corner by corner, what the round made of its
// parents: a host may have written into them since.
std::optional<EdgeAdjacency> deriveEdges(const ObjModel& model, const ParentEdges& parents,
                                         FaceSurvey& survey);

// In edgesByGroups.cpp: for faces as compaction leaves them. Gives up when they are
// in another order, and where the search would take long: around a vertex with
// very many neighbours.
std::optional<EdgeAdjacency> findEdgesByGroups(const ObjModel& model, FaceSurvey& survey);

// In edgesByFiling.cpp: for every model.
EdgeAdjacency findEdgesByFiling(const ObjModel& model, FaceSurvey& survey);

// The two vertices of an edge, in no direction.
struct EdgeEnds {
    std::int32_t low;
    std::int32_t high;
};

inline EdgeEnds endsOf(const Face& face, const EdgeCorners& corners) {
    const std::int32_t first = face.elements[corners.first].vertexIndex;
    const std::int32_t second = face.elements[corners.second].vertexIndex;
    return {std::min(first, second), std::max(first, second)};
}

// The vertices of a face in ascending order.
struct SortedCorners {
    std::int32_t low;
    std::int32_t middle;
    std::int32_t high;
};

inline SortedCorners sortCorners(const Face& face) {
    const auto& [a, b, c] = face.elements;
    const std::int32_t low = std::min(a.vertexIndex, b.vertexIndex);
    const std::int32_t high = std::max(a.vertexIndex, b.vertexIndex);
    return {std::min(low, c.vertexIndex), std::max(low, std::min(high, c.vertexIndex)),
            std::max(high, c.vertexIndex)};
}

// Whether each face comes after the one before it by its sorted corners, and none
// has a corner twice: so compaction leaves them. No two faces then have the same
// three corners, so no two share more than one edge.
class AscendingOrder {
public:
    // False from the first face on that is out of order.
    bool admits(const SortedCorners& corners) noexcept {
        constexpr int LOW_BITS = 32;
        const std::int64_t firstTwo =
            static_cast<std::int64_t>(corners.low) << LOW_BITS | corners.middle;
        isKept &= corners.low < corners.middle && corners.middle < corners.high &&
                  (firstTwo > previousFirstTwo ||
                   (firstTwo == previousFirstTwo && corners.high > previousHigh));
        previousFirstTwo = firstTwo;
        previousHigh = corners.high;
        return isKept;
    }

private:
    bool isKept = true;
    std::int64_t previousFirstTwo = -1;
    std::int32_t previousHigh = -1;
};

// Room for the edges of most meshes: half as many again as faces where all is
// closed, by Euler's formula about as many as faces and vertices where it is
// open, and never more than three for a face.
inline std::size_t expectedNumberOfEdges(const ObjModel& model) {
    const std::size_t faceCount = model.faces.size();
    const std::size_t vertexCount = model.vertices.size();
    return std::min(EDGES_PER_FACE * faceCount,
                    std::max(faceCount + vertexCount, faceCount + faceCount / 2));
}

// With room for the model's edges; those of its faces are still to be written.
inline EdgeAdjacency makeEmptyAdjacency(const ObjModel& model) {
    EdgeAdjacency adjacency;
    adjacency.edgesOfFaces.resizeUninitialized(model.faces.size());
    adjacency.secondOpposites.reserve(expectedNumberOfEdges(model));
    return adjacency;
}

}  // namespace obj_adapter
