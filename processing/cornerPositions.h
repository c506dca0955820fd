// Internal: where a polygon's corners lie, and whether all lie apart.
#pragma once

#include "processing/vectors.h"

#include <obj_adapter/geometryRecords.h>

#include <vector>

namespace obj_adapter {

struct ObjModel;

// Fills positions, one for each corner. False, with positions incomplete, when
// a corner names no vertex read so far.
bool gatherCornerPositions(const ObjModel& model, const std::vector<FaceElement>& corners,
                           std::vector<Vector3>& positions);

// True if two positions are equal by the rules of Vertex::operator==: exactly,
// but a coordinate that is not a number equals every other. scratch is working
// memory that the caller keeps between calls.
//
// cost  O(n log n)
bool hasEqualPositions(const std::vector<Vector3>& positions, std::vector<Vector3>& scratch);

}  // namespace obj_adapter
