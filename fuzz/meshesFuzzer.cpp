// Compaction and subdivision against their slow twins: the same model to the last
// bit. Compacting twice changes nothing.
#include "fuzzing.h"
#include "groups/groupTable.h"
#include "model/objModel.h"
#include "processing/compaction.h"
#include "processing/subdivision.h"
#include "support/modelView.h"
#include "support/printedModel.h"
#include "support/slowCompaction.h"
#include "support/slowSubdivision.h"

#include <cstdint>
#include <string>

namespace {

using namespace obj_adapter;

// Half of the input is vertices, the rest faces.
void fill(ObjModel& model, fuzz::Bytes bytes) {
    constexpr int MOST_VERTICES = 64;
    constexpr int GROUPS = 3;
    constexpr int TEXTURE_POINTS = 4;
    for (int group = 0; group < GROUPS; ++group)
        addGroup(model, "group" + std::to_string(group));
    for (int point = 0; point < TEXTURE_POINTS; ++point) {
        TexturePoint texturePoint;
        texturePoint.u = fuzz::nextCoordinate(bytes);
        texturePoint.v = fuzz::nextCoordinate(bytes);
        model.addTexturePoint(texturePoint);
    }
    const int vertexCount = 1 + bytes.below(MOST_VERTICES);
    for (int number = 0; number < vertexCount; ++number) {
        const double x = fuzz::nextCoordinate(bytes);
        const double y = fuzz::nextCoordinate(bytes);
        Vertex vertex(x, y, fuzz::nextCoordinate(bytes));
        vertex.w = number;
        model.addVertex(vertex);
    }
    while (!bytes.empty()) {
        Face face;
        const int kind = bytes.below(16);
        for (FaceElement& corner : face.elements) {
            corner.vertexIndex = bytes.below(vertexCount);
            corner.textureIndex = kind < 4 ? bytes.below(TEXTURE_POINTS) : NO_INDEX;
            corner.normalIndex = kind % 4 == 1 ? 0 : NO_INDEX;
        }
        face.materialIndex = kind % 3 - 1;
        face.groupIndex = kind == 15 ? 1 : 0;
        const int index = model.addFace(face);
        model.groups[static_cast<std::size_t>(face.groupIndex)].faceIndices.push_back(index);
    }
}

std::string print(ObjModel& model) {
    return test::printModel(test::viewOfModel(model)) +
           (model.hasConflictingFaces ? "conflicting\n" : "");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::Bytes bytes(data, size);
    const int rounds = bytes.below(3);
    ObjModel model;
    ObjModel twin;
    fill(model, bytes);
    fill(twin, bytes);

    compactData(model);
    test::compactDataSlowly(twin);
    const std::string compacted = print(model);
    fuzz::requireEqual(compacted, print(twin), "compaction");
    compactData(model);
    fuzz::requireEqual(print(model), compacted, "compaction once more");

    if (model.hasConflictingFaces)
        return 0;
    subdivide(LIMIT_ITERATIONS, rounds, model);
    for (int round = 0; round < rounds; ++round)
        test::subdivideOnceSlowly(twin);
    fuzz::requireEqual(print(model), print(twin), "subdivision");
    return 0;
}
