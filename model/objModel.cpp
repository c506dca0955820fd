// The model's tables. Covered by tests/model/.
#include "model/objModel.h"

#include "groups/objHierarchy.h"
#include "model/recordLimits.h"

#include <algorithm>
#include <cassert>
#include <cstddef>
#include <numeric>

namespace obj_adapter {

namespace {

template <typename Table, typename Record>
int appendIndexed(Table& table, Record& record) {
    const std::int32_t position = nextRecordIndex(table.size());
    record.index = position;
    table.push_back(record);  // record may lie in the table and be gone now
    return position;
}

// Makes room for one more element, growing as push_back does.
template <typename Element>
void reserveOneMore(std::vector<Element>& list) {
    if (list.size() == list.capacity())
        list.reserve(list.empty() ? 4 : 2 * list.size());
}

}  // namespace

ObjModel::ObjModel() = default;
ObjModel::~ObjModel() = default;

int ObjModel::addVertex(Vertex& vertex) {
    return appendIndexed(vertices, vertex);
}

int ObjModel::addTexturePoint(TexturePoint& texturePoint) {
    return appendIndexed(texturePoints, texturePoint);
}

int ObjModel::addNormalPoint(NormalPoint& normalPoint) {
    return appendIndexed(normalPoints, normalPoint);
}

int ObjModel::addFace(const Face& face) {
    const int faceIndex = nextRecordIndex(faces.size());
    faces.push_back(face);
    return faceIndex;
}

void ObjModel::addFaceToCurrentGroup(int faceIndex) {
    assert(!groups.empty());
    groups.back().faceIndices.push_back(faceIndex);
    faces[static_cast<std::size_t>(faceIndex)].groupIndex = getNumberOfGroups() - 1;
    hierarchyValid = false;
}

void ObjModel::addLastFacesToCurrentGroup(std::size_t faceCount) {
    assert(!groups.empty() && faceCount <= faces.size());
    std::vector<int>& list = groups.back().faceIndices;
    // A list that is begun here may well be complete. One that is long by now grows
    // fast: what it does not come to use is never touched, and each step costs a copy
    // on fresh pages.
    constexpr std::size_t LONG_LIST = std::size_t{64} * 1024;
    if (list.capacity() - list.size() < faceCount) {
        const std::size_t growth = list.capacity() < LONG_LIST ? 2 : 4;
        list.reserve(std::max(list.size() + faceCount, growth * list.capacity()));
    }
    list.resize(list.size() + faceCount);
    std::iota(list.end() - static_cast<std::ptrdiff_t>(faceCount), list.end(),
              static_cast<int>(faces.size() - faceCount));
    hierarchyValid = false;
}

int ObjModel::addFaceInCurrentGroup(const Face& face) {
    assert(!groups.empty());
    reserveOneMore(groups.back().faceIndices);
    const int faceIndex = addFace(face);
    addFaceToCurrentGroup(faceIndex);
    return faceIndex;
}

}  // namespace obj_adapter
