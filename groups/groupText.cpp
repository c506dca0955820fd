// Groups and corners as OBJ text. Covered by tests/groups/groupTest.cpp.
#include "groups/groupText.h"

#include <cstdint>

namespace obj_adapter {

namespace {

// OBJ counts from one. In 64 bits, so that the greatest index has a number too.
std::string oneBased(std::int32_t index) {
    return std::to_string(std::int64_t{index} + 1);
}

std::string cornerText(const FaceElement& corner) {
    std::string text = oneBased(corner.vertexIndex);
    if (corner.textureIndex != NO_INDEX)
        text.append("/").append(oneBased(corner.textureIndex));
    if (corner.normalIndex != NO_INDEX)
        text.append(corner.textureIndex == NO_INDEX ? "//" : "/")
            .append(oneBased(corner.normalIndex));
    return text;
}

}  // namespace

std::string groupStatementText(const Group& group) {
    if (!group.isCompound())
        return "g " + group.name;

    std::string text = "g ";
    for (const std::string& component : group.names)
        text.append(component).append(" ");
    return text;
}

std::string triangleCornersText(const Face& face) {
    std::string text = cornerText(face.elements[0]);
    for (int corner = 1; corner < CORNERS_PER_FACE; ++corner)
        text.append(" ").append(cornerText(face.elements[corner]));
    return text;
}

}  // namespace obj_adapter
