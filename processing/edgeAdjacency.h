// Internal: the edges of a triangle mesh and the faces that share them.
#pragma once

#include "platform/growingArray.h"

#include <obj_adapter/geometryRecords.h>

#include <array>
#include <cstddef>
#include <cstdint>

namespace obj_adapter {

struct ObjModel;
class FaceSurvey;

constexpr std::size_t EDGES_PER_FACE = 3;
constexpr std::size_t CHILDREN_PER_FACE = 4;

// The corners that an edge of a face joins, and the one across it.
struct EdgeCorners {
    int first;
    int second;
    int opposite;
};

// The edges of a face in the order in which they are met.
constexpr EdgeCorners EDGE_CORNERS[EDGES_PER_FACE] = {{0, 1, 2}, {0, 2, 1}, {1, 2, 0}};

// The numbers of a face's edges in the order of EDGE_CORNERS.
using FaceEdges = std::array<std::int32_t, EDGES_PER_FACE>;

// Edges are numbered in the order in which a walk over the faces first meets
// them: a walk that counts can tell a first meeting by the number alone.
struct EdgeAdjacency {
    platform::GrowingArray<FaceEdges> edgesOfFaces;

    // Of each edge, the vertex across it in the second face that has it;
    // NO_INDEX where there is only one. Further faces leave no trace.
    platform::GrowingArray<std::int32_t> secondOpposites;

    // Proven: every face has three edges, and no two faces share more than one.
    bool edgesTellFacesApart = false;

    std::size_t getNumberOfEdges() const noexcept { return secondOpposites.size(); }

    // The first meeting: returns the edge's number.
    std::int32_t addEdge() {
        secondOpposites.push_back(NO_INDEX);
        return static_cast<std::int32_t>(secondOpposites.size() - 1);
    }

    // A further meeting, in a face with that vertex across the edge.
    void meetAgain(std::int32_t edge, std::int32_t opposite) noexcept {
        std::int32_t& secondOpposite = secondOpposites[static_cast<std::size_t>(edge)];
        if (secondOpposite == NO_INDEX)
            secondOpposite = opposite;
    }
};

// What is known of a model whose faces a round has just made: the edges of the
// faces before it. Empty if nothing is.
struct ParentEdges {
    platform::GrowingArray<FaceEdges> edgesOfFaces;
    std::size_t edgeCount = 0;
    std::size_t vertexCount = 0;  // the edges' own vertices follow those
};

// The adjacency of the model's faces, all of which are shown to the survey.
//
// parents  may be out of date: a host may have written into the faces since
//
// Throws std::out_of_range when a face names a vertex that does not exist.
//
// cost  O(V + F), whatever the shape of the mesh
EdgeAdjacency buildAdjacency(const ObjModel& model, const ParentEdges& parents, FaceSurvey& survey);

}  // namespace obj_adapter
