// The imported model as the verbs read it: indices checked, as an import
// without compaction may leave faces that name no vertex.
#pragma once

#include "vector3.h"

#include <obj_adapter/obj_adapter.h>

#include <cstddef>
#include <vector>

namespace obj_adapter::tool {

class ModelAccess {
public:
    explicit ModelAccess(ObjConverter& importedModel) : converter(importedModel) {}

    int getNumberOfVertices() const { return converter.getNumberOfVertices(); }
    int getNumberOfFaces() const { return converter.getNumberOfFaces(); }
    int getNumberOfGroups() const { return converter.getNumberOfGroups(); }
    int getNumberOfMaterials() const { return converter.getNumberOfMaterials(); }
    int getNumberOfTexturePoints() const { return converter.getNumberOfVertexTextures(); }
    int getNumberOfNormals() const { return converter.getNumberOfVertexNormals(); }

    const Face& getFace(int face) const { return *converter.getFace(face); }
    const Group& getGroup(int group) const { return *converter.getGroup(group); }
    Material& getMaterial(int material) const { return *converter.getMaterial(material); }
    const TexturePoint& getTexturePoint(int index) const {
        return *converter.getVertexTexture(index);
    }
    const Vertex& getVertex(int index) const { return *converter.getVertex(index); }

    Vector3 getPosition(int vertex) const {
        const Vertex& record = *converter.getVertex(vertex);
        return {record.x, record.y, record.z};
    }
    Vector3 getNormal(int index) const {
        const NormalPoint& record = *converter.getVertexNormal(index);
        return {record.x, record.y, record.z};
    }

    // Positions in the tables, or NO_INDEX for those outside.
    int vertexOf(const FaceElement& corner) const {
        return checked(corner.vertexIndex, getNumberOfVertices());
    }
    int texturePointOf(const FaceElement& corner) const {
        return checked(corner.textureIndex, getNumberOfTexturePoints());
    }
    int normalOf(const FaceElement& corner) const {
        return checked(corner.normalIndex, getNumberOfNormals());
    }
    int materialOf(const Face& face) const {
        return checked(face.materialIndex, getNumberOfMaterials());
    }

    // Whether each corner has a vertex.
    bool hasVertices(const Face& face) const;

    // Whether each corner has a vertex with finite coordinates: what can be
    // drawn and exported.
    bool isDrawable(const Face& face) const;

    // The faces of each material, and those of none at the end.
    std::vector<std::size_t> countFacesOfMaterials() const;

    ObjConverter& getConverter() const { return converter; }

private:
    static int checked(int index, int count) {
        return index >= 0 && index < count ? index : NO_INDEX;
    }

    ObjConverter& converter;
};

}  // namespace obj_adapter::tool
