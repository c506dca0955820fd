// Internal: where a polygon's corners lie, and whether all lie apart.
#pragma once

#include "model/objModel.h"
#include "processing/keptRoom.h"
#include "processing/vectors.h"

#include <obj_adapter/geometryRecords.h>

#include <cstddef>
#include <cstdint>
#include <optional>
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

// Looks for equal positions; keeps its lists between polygons. Up to MAX_CORNERS_WITHIN
// positions it never asks for memory.
class EqualPositionSearch {
public:
    // True if two positions are equal by the rules of Vertex::operator==: exactly, but a
    // coordinate that is not a number equals every other.
    //
    // cost  O(n), or O(n log n) where a file is made to meet the worst case
    bool hasEqualPositions(std::span<const Vector3> positions);

    static constexpr std::size_t MAX_CORNERS_WITHIN = 64;

private:
    static constexpr std::size_t SLOTS_PER_POSITION = 2;

    static std::optional<bool> searchByX(std::span<const Vector3> positions) noexcept;
    std::optional<bool> searchByHash(std::span<const Vector3> positions);

    KeptRoom<std::uint32_t, SLOTS_PER_POSITION * MAX_CORNERS_WITHIN> slotRoom;
    KeptRoom<Vector3, MAX_CORNERS_WITHIN> scratchRoom;
};

}  // namespace obj_adapter
