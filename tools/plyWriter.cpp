// Writes PLY. Covered by tests/tools/meshWritersTest.cpp and convertedFilesTest.cpp.
#include "plyWriter.h"

#include "littleEndian.h"
#include "materialLook.h"
#include "srgb.h"

#include <cstdint>
#include <string>

namespace obj_adapter::tool {

namespace {

std::string headerOf(const ModelAccess& model, int faceCount, bool hasColors) {
    std::string header =
        "ply\n"
        "format binary_little_endian 1.0\n"
        "element vertex " +
        std::to_string(model.getNumberOfVertices()) +
        "\n"
        "property double x\n"
        "property double y\n"
        "property double z\n"
        "element face " +
        std::to_string(faceCount) +
        "\n"
        "property list uchar int vertex_indices\n";
    if (hasColors)
        header +=
            "property uchar red\n"
            "property uchar green\n"
            "property uchar blue\n";
    return header + "end_header\n";
}

double finiteOrZero(double value) {
    return std::isfinite(value) ? value : 0.0;
}

void appendFace(std::string& bytes, const Face& face) {
    appendUnsigned(bytes, static_cast<std::uint8_t>(CORNERS_PER_FACE));
    for (const FaceElement& corner : face.elements)
        appendUnsigned(bytes, static_cast<std::uint32_t>(corner.vertexIndex));
}

void appendColor(std::string& bytes, const Vector3& linear) {
    appendUnsigned(bytes, encodeSrgb(linear.x));
    appendUnsigned(bytes, encodeSrgb(linear.y));
    appendUnsigned(bytes, encodeSrgb(linear.z));
}

}  // namespace

void writePly(OutputFile& file, const ModelAccess& model) {
    int faceCount = 0;
    for (int index = 0; index < model.getNumberOfFaces(); ++index)
        faceCount += model.isDrawable(model.getFace(index)) ? 1 : 0;
    const bool hasColors = model.getNumberOfMaterials() > 0;
    file.write(headerOf(model, faceCount, hasColors));

    std::string bytes;
    for (int index = 0; index < model.getNumberOfVertices(); ++index) {
        const Vector3 position = model.getPosition(index);
        bytes.clear();
        appendDouble(bytes, finiteOrZero(position.x));
        appendDouble(bytes, finiteOrZero(position.y));
        appendDouble(bytes, finiteOrZero(position.z));
        file.write(bytes);
    }
    const std::vector<MaterialLook> looks = computeLooks(model);
    for (int index = 0; index < model.getNumberOfFaces(); ++index) {
        const Face& face = model.getFace(index);
        if (!model.isDrawable(face))
            continue;
        bytes.clear();
        appendFace(bytes, face);
        if (hasColors)
            appendColor(bytes, lookOf(looks, model, face).color);
        file.write(bytes);
    }
}

}  // namespace obj_adapter::tool
