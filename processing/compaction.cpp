// Compaction of the vertex and face tables. Covered by
// tests/processing/compactionTest.cpp.
//
// Records are sorted where they stand and every pass moves each of them at most
// once: fresh memory for a second table would cost more than the sort.
#include "processing/compaction.h"

#include "groups/groupTable.h"
#include "model/objModel.h"
#include "processing/bucketSort.h"
#include "processing/faceOrder.h"
#include "processing/vertexOrder.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace obj_adapter {

namespace {

// From a vertex's position before compaction to that of the vertex that stands
// for it afterwards.
using IndexMap = std::vector<std::int32_t>;

template <typename Table>
void cutOff(Table& table, std::size_t newSize) noexcept {
    table.erase(table.begin() + static_cast<std::ptrdiff_t>(newSize), table.end());
}

// Each vertex's index is its position before the sort when this returns.
void sortVertices(VertexTable& vertices) noexcept {
    for (std::size_t position = 0; position < vertices.size(); ++position)
        vertices[position].index = static_cast<std::int32_t>(position);

    if (std::is_sorted(vertices.begin(), vertices.end(), VertexOrder::precedes))
        return;
    const VertexOrder order(vertices);
    BucketSorter<Vertex, VertexOrder>(order).sort(vertices.data(), vertices.size());
}

// Keeps the first of each run of equal vertices. Each is compared with the last
// one kept: a NaN equals every number, so this can merge what is not alike.
void mergeEqualVertices(VertexTable& vertices, IndexMap& newPositions) noexcept {
    std::size_t keptCount = 0;
    for (const Vertex& vertex : vertices) {
        const auto oldPosition = static_cast<std::size_t>(vertex.index);
        if (keptCount == 0 || !(vertex == vertices[keptCount - 1])) {
            vertices[keptCount] = vertex;
            vertices[keptCount].index = static_cast<std::int32_t>(keptCount);
            ++keptCount;
        }
        newPositions[oldPosition] = static_cast<std::int32_t>(keptCount) - 1;
    }
    cutOff(vertices, keptCount);
}

// Replaces the corners' vertices. False if one of them is not in the table: a
// file without vertices, or a host that wrote into the face.
bool renumberCorners(Face& face, const IndexMap& newPositions) noexcept {
    for (FaceElement& corner : face.elements) {
        const auto oldPosition = static_cast<std::size_t>(corner.vertexIndex);
        if (corner.vertexIndex < 0 || oldPosition >= newPositions.size())
            return false;
        corner.vertexIndex = newPositions[oldPosition];
    }
    return true;
}

bool isDegenerate(const Face& face) noexcept {
    const FaceElement* corners = face.elements;
    return corners[0].vertexIndex == corners[1].vertexIndex ||
           corners[0].vertexIndex == corners[2].vertexIndex ||
           corners[1].vertexIndex == corners[2].vertexIndex;
}

// Renumbers all faces and drops the degenerate ones.
void renumberFaces(FaceTable& faces, const IndexMap& newPositions) noexcept {
    std::size_t keptCount = 0;
    for (Face face : faces) {
        if (renumberCorners(face, newPositions) && !isDegenerate(face)) {
            FaceOrder::mark(face, static_cast<std::int32_t>(keptCount));
            faces[keptCount++] = face;
        }
    }
    cutOff(faces, keptCount);
}

// The faces are marked, before and after.
void sortFaces(FaceTable& faces) noexcept {
    if (std::is_sorted(faces.begin(), faces.end(), FaceOrder::precedes))
        return;
    BucketSorter<Face, FaceOrder>(FaceOrder()).sort(faces.data(), faces.size());
}

bool isSameCorner(const FaceElement& a, const FaceElement& b) noexcept {
    return a.vertexIndex == b.vertexIndex && a.textureIndex == b.textureIndex &&
           a.normalIndex == b.normalIndex;
}

// A face and its mirror image are not the same.
bool isSameUpToRotation(const Face& a, const Face& b) noexcept {
    for (int turn = 0; turn < CORNERS_PER_FACE; ++turn) {
        if (isSameCorner(a.elements[0], b.elements[turn]))
            return isSameCorner(a.elements[1], b.elements[(turn + 1) % CORNERS_PER_FACE]) &&
                   isSameCorner(a.elements[2], b.elements[(turn + 2) % CORNERS_PER_FACE]);
    }
    return false;
}

// Removes each face that repeats the one before it in the same group, whatever
// the materials; true if other faces over the same vertices remain. Only
// neighbours are compared: a duplicate with a mirror image between stays.
bool removeDuplicateFaces(FaceTable& faces) noexcept {
    bool conflictFound = false;
    std::size_t keptCount = 0;
    for (Face face : faces) {
        FaceOrder::unmark(face);
        if (keptCount > 0 && !(faces[keptCount - 1] < face)) {
            const Face& previous = faces[keptCount - 1];
            if (face.groupIndex == previous.groupIndex && isSameUpToRotation(face, previous))
                continue;
            conflictFound = true;
        }
        faces[keptCount++] = face;
    }
    cutOff(faces, keptCount);
    return conflictFound;
}

}  // namespace

void compactData(ObjModel& model) {
    IndexMap newPositions(model.vertices.size());
    reserveGroupFaceLists(model);

    // Nothing below asks for memory.
    model.hierarchyValid = false;
    sortVertices(model.vertices);
    mergeEqualVertices(model.vertices, newPositions);
    renumberFaces(model.faces, newPositions);
    sortFaces(model.faces);
    model.hasConflictingFaces = removeDuplicateFaces(model.faces);
    rebuildGroupFaceLists(model);
}

}  // namespace obj_adapter
