#include "support/describe.h"

#include <cstdio>

namespace obj_adapter::test {

namespace {

template <typename Records, typename Describe>
std::string joined(const Records& records, const char* separator, Describe describe) {
    std::string text;
    for (auto& record : records) {
        if (!text.empty())
            text += separator;
        text += describe(record);
    }
    return text;
}

std::string indexOrDash(int index) {
    return index == NO_INDEX ? "-" : std::to_string(index);
}

}  // namespace

std::string describeNumber(double value) {
    char text[64];
    std::snprintf(text, sizeof text, "%g", value);
    return text;
}

std::string describeVertices(const ModelView& model) {
    return joined(model.vertices, " ", [](const Vertex& vertex) {
        return "(" + describeNumber(vertex.x) + " " + describeNumber(vertex.y) + " " +
               describeNumber(vertex.z) + " w" + describeNumber(vertex.w) + ")";
    });
}

std::string describeTexturePoints(const ModelView& model) {
    return joined(model.texturePoints, " ", [](const TexturePoint& point) {
        return "(" + describeNumber(point.u) + " " + describeNumber(point.v) + " w" +
               describeNumber(point.w) + ")";
    });
}

std::string describeNormalPoints(const ModelView& model) {
    return joined(model.normalPoints, " ", [](const NormalPoint& normal) {
        return "(" + describeNumber(normal.x) + " " + describeNumber(normal.y) + " " +
               describeNumber(normal.z) + ")";
    });
}

std::string describeCorner(const FaceElement& corner) {
    std::string text = indexOrDash(corner.vertexIndex);
    if (corner.textureIndex != NO_INDEX || corner.normalIndex != NO_INDEX)
        text += "/" + indexOrDash(corner.textureIndex);
    if (corner.normalIndex != NO_INDEX)
        text += "/" + indexOrDash(corner.normalIndex);
    return text;
}

std::string describeFaces(const ModelView& model) {
    return joined(model.faces, " ", [](const Face& face) {
        std::string text = "[" + describeCorner(face.elements[0]) + " " +
                           describeCorner(face.elements[1]) + " " +
                           describeCorner(face.elements[2]);
        if (face.materialIndex != NO_INDEX)
            text += " m" + std::to_string(face.materialIndex);
        return text + "]";
    });
}

std::string describeGroups(const ModelView& model) {
    return joined(model.groups, "; ", [](const Group& group) {
        std::string text =
            group.names.empty()
                ? group.name
                : joined(group.names, "/", [](const std::string& component) { return component; });
        text += ":";
        for (const int face : group.faceIndices)
            text += " " + std::to_string(face);
        return text;
    });
}

}  // namespace obj_adapter::test
