// Internal: the edges of a triangle mesh and the faces that share them.
#pragma once

#include "model/objModel.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace obj_adapter {

constexpr int EDGES_PER_FACE = 3;

// The corners that an edge of a face joins, and the one across it.
struct EdgeCorners {
    int first;
    int second;
    int opposite;
};

// The edges of a face in the order in which they are met.
constexpr EdgeCorners EDGE_CORNERS[EDGES_PER_FACE] = {{0, 1, 2}, {0, 2, 1}, {1, 2, 0}};

// The two vertices of an edge, in no direction.
struct EdgeEnds {
    std::int32_t low;
    std::int32_t high;
};

// Edges are numbered in the order in which a walk over the faces first meets
// them: a walk that counts can tell a first meeting by the number alone.
struct EdgeAdjacency {
    // Of each face, the numbers of its edges in the order of EDGE_CORNERS.
    std::vector<std::array<std::int32_t, EDGES_PER_FACE>> edgesOfFaces;

    // Of each edge.
    std::vector<EdgeEnds> ends;

    // Of each edge, the vertex across it in the second face that has it;
    // NO_INDEX where there is only one. Further faces leave no trace.
    std::vector<std::int32_t> secondOpposites;

    std::size_t getNumberOfEdges() const noexcept { return secondOpposites.size(); }
};

// The adjacency of faces whose corners name vertices below vertexCount.
//
// Throws std::out_of_range when one does not.
//
// cost  O(V + F), whatever the shape of the mesh
EdgeAdjacency buildAdjacency(const FaceTable& faces, std::size_t vertexCount);

}  // namespace obj_adapter
