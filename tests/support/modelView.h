// One way to look at a model, whether a test holds it or the converter does.
#pragma once

#include <obj_adapter/obj_adapter.h>

#include <cstddef>
#include <span>

namespace obj_adapter::test {

// Lent by the model or the converter; holds until a table grows.
struct ModelView {
    std::span<Vertex> vertices;
    std::span<TexturePoint> texturePoints;
    std::span<NormalPoint> normalPoints;
    std::span<Face> faces;
    std::span<Group> groups;
    std::span<Material> materials;
};

// The tables are arrays: the first record's pointer gives them all.
inline ModelView viewOf(ObjConverter& converter) {
    const auto table = [](int count, auto getFirst) {
        using Record = std::remove_pointer_t<decltype(getFirst())>;
        return count == 0 ? std::span<Record>()
                          : std::span<Record>(getFirst(), static_cast<std::size_t>(count));
    };
    return {
        table(converter.getNumberOfVertices(), [&] { return converter.getVertex(0); }),
        table(converter.getNumberOfVertexTextures(), [&] { return converter.getVertexTexture(0); }),
        table(converter.getNumberOfVertexNormals(), [&] { return converter.getVertexNormal(0); }),
        table(converter.getNumberOfFaces(), [&] { return converter.getFace(0); }),
        table(converter.getNumberOfGroups(), [&] { return converter.getGroup(0); }),
        table(converter.getNumberOfMaterials(), [&] { return converter.getMaterial(0); })};
}

// For internal tests, which have the model itself (model/objModel.h).
template <typename Model>
ModelView viewOfModel(Model& model) {
    ModelView view;
    view.vertices = model.vertices;
    view.texturePoints = model.texturePoints;
    view.normalPoints = model.normalPoints;
    view.faces = model.faces;
    view.groups = model.groups;
    return view;
}

}  // namespace obj_adapter::test
