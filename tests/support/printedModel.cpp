#include "support/printedModel.h"

#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdio>

namespace obj_adapter::test {

namespace {

void append(std::string& text, double value) {
    if (std::isnan(value)) {
        text += " nan";
        return;
    }
    char digits[32];
    std::snprintf(digits, sizeof digits, " %016llx",
                  static_cast<unsigned long long>(std::bit_cast<std::uint64_t>(value)));
    text += digits;
}

void append(std::string& text, int value) {
    text += " " + std::to_string(value);
}

void append(std::string& text, const std::string& value) {
    text += " \"" + value + "\"";
}

void append(std::string& text, const MaterialColor& color) {
    append(text, static_cast<int>(color.type));
    for (const float value : color.values)
        append(text, static_cast<double>(value));
    append(text, color.spectralFile);
}

void append(std::string& text, const TextureMap& map) {
    append(text, map.fileName);
    for (const bool flag : {map.blendU, map.blendV, map.colorCorrection, map.clamp})
        append(text, static_cast<int>(flag));
    append(text, map.mmBase);
    append(text, map.mmGain);
    for (const double* triple : {map.offset, map.scale, map.turbulence})
        for (int component = 0; component < 3; ++component)
            append(text, triple[component]);
    append(text, map.resolution);
    append(text, map.boost);
    append(text, static_cast<int>(map.imfChannel));
    append(text, static_cast<int>(map.reflectionType));
}

void append(std::string& text, const Material& material) {
    append(text, material.name);
    append(text, static_cast<int>(material.ambientIsSet));
    append(text, material.ambient);
    append(text, static_cast<int>(material.diffuseIsSet));
    append(text, material.diffuse);
    append(text, static_cast<int>(material.specularIsSet));
    append(text, material.specular);
    append(text, static_cast<int>(material.filterIsSet));
    append(text, material.filter);
    for (const TextureMapSlot& slot : material.textureMaps) {
        append(text, static_cast<int>(slot.hasTextureMap));
        append(text, slot.textureMap);
    }
    append(text, material.specularExponent);
    append(text, material.dissolve);
    append(text, material.illumination);
    append(text, material.sharpness);
    append(text, material.opticalDensity);
    append(text, static_cast<int>(material.halo));
    append(text, static_cast<int>(material.antiAliasTextures));
}

}  // namespace

std::string printModel(const ModelView& model) {
    std::string text;
    for (const Vertex& vertex : model.vertices) {
        text += "vertex";
        for (const double coordinate : {vertex.x, vertex.y, vertex.z, vertex.w})
            append(text, coordinate);
        append(text, vertex.index);
        text += "\n";
    }
    for (const TexturePoint& point : model.texturePoints) {
        text += "texture";
        for (const double coordinate : {point.u, point.v, point.w})
            append(text, coordinate);
        append(text, point.index);
        text += "\n";
    }
    for (const NormalPoint& normal : model.normalPoints) {
        text += "normal";
        for (const double component : {normal.x, normal.y, normal.z})
            append(text, component);
        append(text, normal.index);
        text += "\n";
    }
    for (const Face& face : model.faces) {
        text += "face";
        for (const FaceElement& corner : face.elements)
            for (const int index : {corner.vertexIndex, corner.textureIndex, corner.normalIndex})
                append(text, index);
        append(text, face.materialIndex);
        append(text, face.groupIndex);
        text += "\n";
    }
    for (const Group& group : model.groups) {
        text += "group";
        append(text, group.name);
        for (const std::string& name : group.names)
            append(text, name);
        for (const int face : group.faceIndices)
            append(text, face);
        text += "\n";
    }
    for (const Material& material : model.materials) {
        text += "material";
        append(text, material);
        text += "\n";
    }
    return text;
}

}  // namespace obj_adapter::test
