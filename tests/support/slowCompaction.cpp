// Shares no code with the library's compaction.
#include "support/slowCompaction.h"

#include "groups/groupTable.h"
#include "model/objModel.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <map>
#include <tuple>

namespace obj_adapter::test {

namespace {

using SlowIndexMap = std::map<int, int>;

// For one coordinate: numbers before NaN.
std::tuple<bool, double> rankOf(double coordinate) {
    return std::isnan(coordinate) ? std::tuple(true, 0.0) : std::tuple(false, coordinate);
}

bool comesBefore(const Vertex& a, const Vertex& b) {
    return std::tuple(rankOf(a.x), rankOf(a.y), rankOf(a.z)) <
           std::tuple(rankOf(b.x), rankOf(b.y), rankOf(b.z));
}

void mergeVertices(VertexTable& vertices, SlowIndexMap& newIndices) {
    for (std::size_t p = 0; p < vertices.size(); ++p)
        vertices[p].index = static_cast<int>(p);
    std::stable_sort(vertices.begin(), vertices.end(), comesBefore);

    std::size_t p = 0;
    while (p < vertices.size()) {
        if (p > 0 && vertices[p] == vertices[p - 1]) {
            newIndices.emplace(vertices[p].index, static_cast<int>(p - 1));
            vertices.erase(vertices.begin() + static_cast<std::ptrdiff_t>(p));
        } else {
            newIndices.emplace(vertices[p].index, static_cast<int>(p));
            vertices[p].index = static_cast<int>(p);
            ++p;
        }
    }
}

bool survivesRenumbering(Face& face, const SlowIndexMap& newIndices) {
    for (int corner = 0; corner < 3; ++corner) {
        FaceElement& element = face.getElement(corner);
        const auto entry = newIndices.find(element.getVertexIndex());
        if (entry == newIndices.end())
            return false;
        element.setVertexIndex(entry->second);
    }
    const int a = face.elements[0].vertexIndex;
    const int b = face.elements[1].vertexIndex;
    const int c = face.elements[2].vertexIndex;
    return a != b && a != c && b != c;
}

void renumberFaces(FaceTable& faces, const SlowIndexMap& newIndices) {
    std::size_t f = 0;
    while (f < faces.size()) {
        if (survivesRenumbering(faces[f], newIndices))
            ++f;
        else
            faces.erase(faces.begin() + static_cast<std::ptrdiff_t>(f));
    }
}

bool isSame(const FaceElement& a, const FaceElement& b) {
    return std::tie(a.vertexIndex, a.textureIndex, a.normalIndex) ==
           std::tie(b.vertexIndex, b.textureIndex, b.normalIndex);
}

bool isRotated(const Face& f, const Face& g) {
    const FaceElement* F = f.elements;
    const FaceElement* G = g.elements;
    if (isSame(F[0], G[0]))
        return isSame(F[1], G[1]) && isSame(F[2], G[2]);
    if (isSame(F[0], G[1]))
        return isSame(F[1], G[2]) && isSame(F[2], G[0]);
    if (isSame(F[0], G[2]))
        return isSame(F[1], G[0]) && isSame(F[2], G[1]);
    return false;
}

// Whether two faces over the same vertices remain.
bool removeDuplicates(FaceTable& faces) {
    std::stable_sort(faces.begin(), faces.end());
    bool conflict = false;
    std::size_t f = 1;
    while (f < faces.size()) {
        const Face& previous = faces[f - 1];
        const bool isEquivalent = !(previous < faces[f]) && !(faces[f] < previous);
        if (isEquivalent && isRotated(faces[f], previous) &&
            faces[f].groupIndex == previous.groupIndex) {
            faces.erase(faces.begin() + static_cast<std::ptrdiff_t>(f));
            continue;
        }
        conflict = conflict || isEquivalent;
        ++f;
    }
    return conflict;
}

}  // namespace

void compactDataSlowly(ObjModel& model) {
    SlowIndexMap newIndices;
    mergeVertices(model.vertices, newIndices);
    renumberFaces(model.faces, newIndices);
    model.hasConflictingFaces = removeDuplicates(model.faces);
    for (const Face& face : model.faces)
        face.refreshSortedKey();
    rebuildGroupFaceLists(model);
    model.hierarchyValid = false;
}

}  // namespace obj_adapter::test
