// What a person wants to know of a mesh before using it.
#pragma once

#include "modelAccess.h"

namespace obj_adapter::tool {

// Neighbours are found by shared vertex indices, so equal vertices have to be
// merged before, as the import does.
struct MeshFacts {
    // Faces. A face counts once, under the first that fits.
    int facesWithoutVertex = 0;  // a corner names no vertex
    int facesNotFinite = 0;      // a corner's coordinates are no finite numbers
    int facesWithoutArea = 0;    // corners at one place or on one line
    int duplicateFaces = 0;      // over the same three vertices as an earlier one
    int facesWithNormals = 0;    // at all three corners
    int facesWithTextures = 0;   // at all three corners

    // Edges of faces with three different vertices.
    long long edges = 0;
    long long boundaryEdges = 0;     // of one face
    long long nonManifoldEdges = 0;  // of more than two faces
    long long windingConflicts = 0;  // of two faces that disagree on the front side

    // Vertices.
    int unusedVertices = 0;     // of no face
    int verticesNotFinite = 0;  // a coordinate is no finite number

    // Parts of the mesh that share no vertex.
    int pieces = 0;

    // Every edge is of exactly two faces, and there is one.
    bool isClosed() const { return edges > 0 && boundaryEdges == 0 && nonManifoldEdges == 0; }
};

// O(F log F + V).
MeshFacts computeMeshFacts(const ModelAccess& model);

// The faces that compaction drops because two corners are at one place or a
// corner names no vertex; for the model before compaction.
int countCollapsedFaces(const ModelAccess& model);

}  // namespace obj_adapter::tool
