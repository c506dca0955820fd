// Compaction of the vertex and face tables. Covered by
// tests/processing/compactionTest.cpp.
//
// Records are sorted where they stand, without a second table; what is to be done
// with each in order is done as the sort hands it out, while the caches hold it.
#include "processing/compaction.h"

#include "converter/progress.h"
#include "groups/groupTable.h"
#include "model/objModel.h"
#include "platform/growingArray.h"
#include "processing/bucketSort.h"
#include "processing/faceOrder.h"
#include "processing/vertexOrder.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>

namespace obj_adapter {

namespace {

// From a vertex's position before compaction to that of the vertex that stands
// for it afterwards.
using IndexMap = platform::GrowingArray<std::int32_t>;

using VertexSorter = BucketSorter<Vertex, VertexOrder>;
using FaceSorter = BucketSorter<Face, FaceOrder>;

template <typename Table>
void cutOff(Table& table, std::size_t newSize) noexcept {
    table.erase(table.begin() + static_cast<std::ptrdiff_t>(newSize), table.end());
}

// Sets each vertex's index to its position, where it is another, and makes the order
// ready. True if all vertices are in order.
bool numberVertices(VertexTable& vertices, VertexOrder& order) noexcept {
    bool isInOrder = true;
    VertexOrder seen;  // in registers, where the caller's cannot be
    for (std::size_t position = 0; position < vertices.size(); ++position) {
        Vertex& vertex = vertices[position];
        // Most are right, and memory that is not written need not be stored.
        if (vertex.index != static_cast<std::int32_t>(position))
            vertex.index = static_cast<std::int32_t>(position);
        isInOrder =
            isInOrder && (position == 0 || !VertexOrder::precedes(vertex, vertices[position - 1]));
        seen.addToRange(vertex);
    }
    order = seen;
    order.setScale();
    return isInOrder;
}

// Sorts the vertices and keeps of each run of equal ones the one that stood first in the
// table. Each is compared with the last one kept: a NaN equals every number, so this can
// merge what is not alike.
void mergeEqualVertices(VertexTable& vertices, VertexSorter& sorter, IndexMap& newPositions,
                        WorkOfChange& work) noexcept {
    std::size_t keptCount = 0;
    std::int32_t keptPosition = 0;  // where the last one kept stood
    const auto keep = [&](const Vertex& vertex, std::size_t position) {
        keptPosition = vertex.index;
        vertices[position] = vertex;
        vertices[position].index = static_cast<std::int32_t>(position);
    };
    const auto keepOrMerge = [&](const Vertex& vertex) {
        const auto oldPosition = static_cast<std::size_t>(vertex.index);
        if (keptCount == 0 || !(vertex == vertices[keptCount - 1]))
            keep(vertex, keptCount++);
        else if (vertex.index < keptPosition &&
                 VertexOrder::areAlike(vertex, vertices[keptCount - 1]))
            keep(vertex, keptCount - 1);
        newPositions[oldPosition] = static_cast<std::int32_t>(keptCount) - 1;
        work.count(1);
    };
    VertexOrder order;
    if (numberVertices(vertices, order))
        std::for_each(vertices.begin(), vertices.end(), keepOrMerge);
    else
        sorter.visitInOrder(vertices.data(), vertices.size(), order, keepOrMerge);
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

// Renumbers and marks all faces and drops the degenerate ones; those that stay are
// counted for the sort. True if they are in order.
bool renumberFaces(FaceTable& faces, const IndexMap& newPositions, FaceSorter& sorter,
                   WorkOfChange& work) noexcept {
    bool isInOrder = true;
    std::size_t keptCount = 0;
    for (std::size_t position = 0; position < faces.size(); ++position) {
        // Changed where it comes to stand, as below.
        Face& face = faces[keptCount];
        if (position != keptCount)
            face = faces[position];
        if (renumberCorners(face, newPositions) && !isDegenerate(face)) {
            FaceOrder::mark(face, static_cast<std::int32_t>(keptCount));
            isInOrder =
                isInOrder && (keptCount == 0 || FaceOrder::precedes(faces[keptCount - 1], face));
            sorter.count(face);
            ++keptCount;
        }
        work.count(1);
    }
    cutOff(faces, keptCount);
    return isInOrder;
}

bool isSameCorner(const FaceElement& a, const FaceElement& b) noexcept {
    return a.vertexIndex == b.vertexIndex && a.textureIndex == b.textureIndex &&
           a.normalIndex == b.normalIndex;
}

// Of faces whose sorted vertex indices are up to date. All three are compared at once:
// whether neighbours in order share the first is anybody's guess, also the processor's.
bool isOverSameVertices(const Face& a, const Face& b) noexcept {
    const std::int32_t* left = a.sortedVertexIndices;
    const std::int32_t* right = b.sortedVertexIndices;
    const std::int32_t difference =
        (left[0] ^ right[0]) | (left[1] ^ right[1]) | (left[2] ^ right[2]);
    return difference == 0;
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

// Sorts the faces, which are marked, and removes each that repeats the one before
// it in the same group, whatever the materials; those that stay join their group's list.
// True if other faces over the same vertices remain. Only neighbours are compared: a duplicate with
// a mirror image between stays.
bool removeDuplicateFaces(ObjModel& model, bool isInOrder, FaceSorter& sorter,
                          const FaceOrder& order, WorkOfChange& work) noexcept {
    // Lists of more groups than the caches hold beside the sort are filled faster by
    // themselves.
    constexpr std::size_t MOST_GROUPS_LISTED_AT_ONCE = 256;
    const bool areListedAtOnce = model.groups.size() <= MOST_GROUPS_LISTED_AT_ONCE;

    FaceTable& faces = model.faces;
    GroupFaceLister lister(model);
    bool conflictFound = false;
    std::size_t keptCount = 0;
    const auto keepOrDrop = [&](const Face& marked) {
        // Changed where it comes to stand: a copy that is written in part and then copied
        // again would have to wait for that part.
        Face& face = faces[keptCount];
        face = marked;
        FaceOrder::unmark(face);
        work.count(1);
        if (keptCount > 0 && isOverSameVertices(face, faces[keptCount - 1])) {
            const Face& previous = faces[keptCount - 1];
            if (face.groupIndex == previous.groupIndex && isSameUpToRotation(face, previous))
                return;
            conflictFound = true;
        }
        if (areListedAtOnce)
            lister.add(face, keptCount);
        ++keptCount;
    };
    if (isInOrder)
        std::for_each(faces.begin(), faces.end(), keepOrDrop);
    else
        sorter.visitInOrder(faces.data(), faces.size(), order, keepOrDrop);
    cutOff(faces, keptCount);
    if (!areListedAtOnce)
        rebuildGroupFaceLists(model);
    return conflictFound;
}

}  // namespace

void compactData(ObjModel& model) {
    IndexMap newPositions;
    newPositions.resizeUninitialized(model.vertices.size());
    // Too large for the stack of some hosts' threads.
    const auto vertexSorter = std::make_unique<VertexSorter>(model.vertices.size());
    const auto faceSorter = std::make_unique<FaceSorter>(model.faces.size());
    reserveGroupFaceLists(model);

    // Nothing below asks for memory, and the host cannot stop it half-way. Every
    // vertex is visited once, every face twice.
    WorkOfChange work(model.vertices.size() + 2 * model.faces.size());
    model.hierarchyValid = false;
    mergeEqualVertices(model.vertices, *vertexSorter, newPositions, work);
    const FaceOrder faceOrder(model.vertices.size());
    faceSorter->beginCounting(model.faces.size(), faceOrder);
    const bool isInOrder = renumberFaces(model.faces, newPositions, *faceSorter, work);
    model.hasConflictingFaces =
        removeDuplicateFaces(model, isInOrder, *faceSorter, faceOrder, work);
    stopIfCancelled();
}

}  // namespace obj_adapter
