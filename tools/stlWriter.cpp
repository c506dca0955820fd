// Writes STL. Covered by tests/tools/meshWritersTest.cpp and convertedFilesTest.cpp.
#include "stlWriter.h"

#include "littleEndian.h"
#include "programVersion.h"
#include "singlePrecision.h"

#include <cstdint>
#include <string>

namespace obj_adapter::tool {

namespace {

constexpr std::size_t HEADER_BYTES = 80;

bool isWritable(const ModelAccess& model, const Face& face) {
    if (!model.isDrawable(face))
        return false;
    for (const FaceElement& corner : face.elements) {
        if (!fitsSinglePrecision(model.getPosition(corner.vertexIndex)))
            return false;
    }
    return true;
}

void appendVector(std::string& bytes, const Vector3& vector) {
    appendFloat(bytes, static_cast<float>(vector.x));
    appendFloat(bytes, static_cast<float>(vector.y));
    appendFloat(bytes, static_cast<float>(vector.z));
}

// A face without area has the normal (0,0,0).
void appendFacet(std::string& bytes, const ModelAccess& model, const Face& face) {
    const Vector3 a = model.getPosition(face.elements[0].vertexIndex);
    const Vector3 b = model.getPosition(face.elements[1].vertexIndex);
    const Vector3 c = model.getPosition(face.elements[2].vertexIndex);
    appendVector(bytes, unitVector(crossProduct(b - a, c - a)));
    appendVector(bytes, a);
    appendVector(bytes, b);
    appendVector(bytes, c);
    appendUnsigned(bytes, std::uint16_t{0});
}

}  // namespace

int writeStl(OutputFile& file, const ModelAccess& model) {
    int count = 0;
    for (int index = 0; index < model.getNumberOfFaces(); ++index)
        count += isWritable(model, model.getFace(index)) ? 1 : 0;

    // Readers take a file that begins with "solid" for one of text.
    std::string bytes = "binary STL, written by " + getProgramVersion();
    bytes.resize(HEADER_BYTES, ' ');
    appendUnsigned(bytes, static_cast<std::uint32_t>(count));
    file.write(bytes);
    for (int index = 0; index < model.getNumberOfFaces(); ++index) {
        const Face& face = model.getFace(index);
        if (!isWritable(model, face))
            continue;
        bytes.clear();
        appendFacet(bytes, model, face);
        file.write(bytes);
    }
    return count;
}

}  // namespace obj_adapter::tool
