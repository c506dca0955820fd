// The imported model with its indices checked. Covered by
// tests/tools/meshFactsTest.cpp and by what the verbs print.
#include "modelAccess.h"

namespace obj_adapter::tool {

bool ModelAccess::hasVertices(const Face& face) const {
    for (const FaceElement& corner : face.elements) {
        if (vertexOf(corner) == NO_INDEX)
            return false;
    }
    return true;
}

bool ModelAccess::isDrawable(const Face& face) const {
    for (const FaceElement& corner : face.elements) {
        const int vertex = vertexOf(corner);
        if (vertex == NO_INDEX || !isFinite(getPosition(vertex)))
            return false;
    }
    return true;
}

std::vector<std::size_t> ModelAccess::countFacesOfMaterials() const {
    const auto count = static_cast<std::size_t>(getNumberOfMaterials());
    std::vector<std::size_t> uses(count + 1);
    for (int index = 0; index < getNumberOfFaces(); ++index) {
        const int material = materialOf(getFace(index));
        ++uses[material == NO_INDEX ? count : static_cast<std::size_t>(material)];
    }
    return uses;
}

}  // namespace obj_adapter::tool
