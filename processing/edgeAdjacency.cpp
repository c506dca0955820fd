// The choice between the ways to find a mesh's edges. Covered by
// tests/processing/edgeAdjacencyTest.cpp.
#include "processing/edgeAdjacency.h"

#include "processing/edgeWalk.h"

#include <optional>
#include <utility>

namespace obj_adapter {

EdgeAdjacency buildAdjacency(const ObjModel& model, const ParentEdges& parents,
                             FaceSurvey& survey) {
    if (std::optional<EdgeAdjacency> adjacency = deriveEdges(model, parents, survey))
        return *std::move(adjacency);
    if (std::optional<EdgeAdjacency> adjacency = findEdgesByGroups(model, survey))
        return *std::move(adjacency);
    return findEdgesByFiling(model, survey);
}

}  // namespace obj_adapter
