// Internal: where a polygon's corners lie, and whether all lie apart.
#pragma once

#include "model/objModel.h"
#include "processing/vectors.h"

#include <obj_adapter/geometryRecords.h>

#include <cstddef>
#include <span>
#include <vector>

namespace obj_adapter {

// Fills positions, as many as there are corners. False, with positions incomplete, when
// a corner names no vertex read so far.
inline bool gatherCornerPositions(const ObjModel& model, const std::vector<FaceElement>& corners,
                                  std::span<Vector3> positions) noexcept {
    const int vertexCount = model.getNumberOfVertices();
    const Vertex* const vertices = model.vertices.data();
    for (std::size_t corner = 0; corner < positions.size(); ++corner) {
        const int index = corners[corner].vertexIndex;
        if (index < 0 || index >= vertexCount)
            return false;
        positions[corner] = {vertices[index].x, vertices[index].y, vertices[index].z};
    }
    return true;
}

// True if two positions are equal by the rules of Vertex::operator==: exactly,
// but a coordinate that is not a number equals every other. scratch is working
// memory for as many positions.
//
// cost  O(n log n)
bool hasEqualPositions(std::span<const Vector3> positions, std::span<Vector3> scratch) noexcept;

}  // namespace obj_adapter
