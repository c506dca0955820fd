#include "support/modelComparison.h"

#include "model/objModel.h"
#include "support/modelView.h"
#include "support/printedModel.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>

namespace obj_adapter::test {

namespace {

bool sameBits(double a, double b) {
    return std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b) ||
           (std::isnan(a) && std::isnan(b));
}

bool sameVertex(const Vertex& a, const Vertex& b) {
    return sameBits(a.x, b.x) && sameBits(a.y, b.y) && sameBits(a.z, b.z) && sameBits(a.w, b.w) &&
           a.index == b.index;
}

bool sameTexturePoint(const TexturePoint& a, const TexturePoint& b) {
    return sameBits(a.u, b.u) && sameBits(a.v, b.v) && sameBits(a.w, b.w) && a.index == b.index;
}

bool sameFace(const Face& a, const Face& b) {
    for (int corner = 0; corner < CORNERS_PER_FACE; ++corner) {
        const FaceElement& ofA = a.elements[corner];
        const FaceElement& ofB = b.elements[corner];
        if (ofA.vertexIndex != ofB.vertexIndex || ofA.textureIndex != ofB.textureIndex ||
            ofA.normalIndex != ofB.normalIndex)
            return false;
    }
    return a.materialIndex == b.materialIndex && a.groupIndex == b.groupIndex;
}

}  // namespace

void copyTables(const ObjModel& from, ObjModel& to) {
    to.groups = from.groups;
    to.faces = from.faces;
    to.vertices = from.vertices;
    to.texturePoints = from.texturePoints;
    to.normalPoints = from.normalPoints;
    to.hasConflictingFaces = from.hasConflictingFaces;
}

std::string printState(ObjModel& model) {
    return printModel(viewOfModel(model)) + (model.hasConflictingFaces ? "conflict " : "") +
           (model.hierarchyValid ? "hierarchy valid" : "");
}

std::string firstDifference(const std::string& expected, const std::string& actual) {
    if (expected == actual)
        return "";
    std::size_t at = 0;
    while (at < expected.size() && at < actual.size() && expected[at] == actual[at])
        ++at;
    const auto lineAround = [at](const std::string& text) {
        if (at >= text.size())
            return std::string("(end)");
        const std::size_t before = at == 0 ? std::string::npos : text.rfind('\n', at - 1);
        const std::size_t begin = before == std::string::npos ? 0 : before + 1;
        return text.substr(begin, text.find('\n', at) - begin);
    };
    return "expected " + lineAround(expected) + "\ngot      " + lineAround(actual);
}

bool sameState(const ObjModel& a, const ObjModel& b) {
    const auto same = [](const auto& ofA, const auto& ofB, auto compare) {
        return std::equal(ofA.begin(), ofA.end(), ofB.begin(), ofB.end(), compare);
    };
    return same(a.vertices, b.vertices, sameVertex) &&
           same(a.texturePoints, b.texturePoints, sameTexturePoint) &&
           same(a.normalPoints, b.normalPoints,
                [](const NormalPoint& ofA, const NormalPoint& ofB) {
                    return sameBits(ofA.x, ofB.x) && sameBits(ofA.y, ofB.y) &&
                           sameBits(ofA.z, ofB.z) && ofA.index == ofB.index;
                }) &&
           same(a.faces, b.faces, sameFace) &&
           same(a.groups, b.groups,
                [](const Group& ofA, const Group& ofB) {
                    return ofA.name == ofB.name && ofA.names == ofB.names &&
                           ofA.faceIndices == ofB.faceIndices;
                }) &&
           a.hasConflictingFaces == b.hasConflictingFaces && a.hierarchyValid == b.hierarchyValid;
}

}  // namespace obj_adapter::test
