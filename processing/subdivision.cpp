// How many rounds of Loop subdivision. Covered by tests/processing/subdivisionTest.cpp
// and, against other libraries, subdivisionPeersTest.cpp.
#include "processing/subdivision.h"

#include "converter/messages.h"
#include "model/objModel.h"
#include "processing/subdivisionLimits.h"
#include "processing/subdivisionRound.h"

#include <cstdint>
#include <string>

namespace obj_adapter {

namespace {

// Unbroken, so that a search for what a user saw finds it.
// clang-format off
const char CONFLICTING_FACES_MESSAGE[] =
    "The data contains at least one pair of faces that have the same vertex coordinates. Subdivision cannot be used.";
// clang-format on

void runIterations(int limit, ObjModel& model) {
    ParentEdges parents;
    // Counted in 64 bits: the limit may be the largest int.
    for (std::int64_t round = 1; round <= limit; ++round) {
        reportInformation("Subdivision " + std::to_string(round) + "...");
        subdivideOnce(model, parents);
    }
}

// Without faces no round would ever bring the count nearer to the limit.
void runToFaceCount(int limit, ObjModel& model) {
    ParentEdges parents;
    while (!model.faces.empty() && nextFaceCount(model.getNumberOfFaces()) < limit) {
        reportInformation("Subdividing to " +
                          std::to_string(nextFaceCount(model.getNumberOfFaces())) + " faces...");
        subdivideOnce(model, parents);
    }
}

// The same.
void runToVertexCount(int limit, ObjModel& model) {
    ParentEdges parents;
    while (!model.faces.empty() && nextVertexEstimate(model.getNumberOfVertices()) < limit) {
        reportInformation("Subdividing to up to " +
                          std::to_string(nextVertexEstimate(model.getNumberOfVertices())) +
                          " vertices...");
        subdivideOnce(model, parents);
    }
}

}  // namespace

void subdivide(int limitType, int limit, ObjModel& model) {
    if (model.hasConflictingFaces) {
        reportError(CONFLICTING_FACES_MESSAGE);
        return;
    }
    switch (limitType) {
        case LIMIT_ITERATIONS:
            runIterations(limit, model);
            break;
        case LIMIT_FACE_COUNT:
            runToFaceCount(limit, model);
            break;
        case LIMIT_VERTEX_COUNT:
            runToVertexCount(limit, model);
            break;
        default:
            break;
    }
}

}  // namespace obj_adapter
