// Internal: one round of Loop subdivision.
#pragma once

#include "processing/edgeAdjacency.h"

namespace obj_adapter {

// Every triangle becomes four.
//
// before   compactData() has run; neighbours are found by shared vertex index
// after    four times the faces, in the order of their parents; old vertices keep
//          their index and move; new edge vertices follow them; no face has
//          normals
// parents  what the round before left there; empty before the first. Only spares
//          time: the result is the same without
// cost     O(V + F)
//
// When it throws, for want of memory or for what subdivide() says, the model is
// as it was.
void subdivideOnce(ObjModel& model, ParentEdges& parents);

}  // namespace obj_adapter
