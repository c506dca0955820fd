// Faces as the vertex and index data of a GLB file.
#pragma once

#include "cornerNormals.h"
#include "jsonOutput.h"
#include "modelAccess.h"

#include <array>
#include <optional>
#include <string>
#include <vector>

namespace obj_adapter::tool {

// Collects the data of all primitives, each kind in a buffer view of its own.
class GlbGeometry {
public:
    // fileNormalsOnly  primitives none of whose faces has normals in the file get
    //                  none, and are shown flat by viewers
    // origin           is taken off all positions
    GlbGeometry(const ModelAccess& importedModel, const CornerNormals& cornerNormals,
                bool fileNormalsOnly, const Vector3& origin);

    // Whether the face can be written at all: its coordinates are finite, and fit
    // single precision once the origin is taken off.
    bool isWritable(const Face& face) const;

    // One primitive without its material. The faces are writable, and not none.
    Json addPrimitive(const std::vector<int>& faces);

    // Whether no primitive was added.
    bool isEmpty() const { return accessors.empty(); }

    Json takeAccessors() { return std::move(accessors); }

    // The buffer views and the bytes that they stand in, padded to whole words.
    Json takeBufferViews(std::string& bytes);

private:
    enum View { POSITIONS, NORMALS, TEXTURE_POINTS, INDICES, VIEW_COUNT };

    struct Corner {
        int vertex;
        int texturePoint;
        int normal;

        friend bool operator==(const Corner&, const Corner&) = default;
    };
    struct CornerHash {
        std::size_t operator()(const Corner& corner) const;
    };

    Corner cornerOf(int face, int corner, bool withNormals) const;
    int addAccessor(Json accessor);
    int addPositions(const std::vector<Corner>& corners);
    int addNormals(const std::vector<Corner>& corners);
    int addTexturePoints(const std::vector<Corner>& corners);
    int addIndices(const std::vector<std::uint32_t>& primitiveIndices);

    const ModelAccess& model;
    const CornerNormals& normals;
    bool onlyNormalsOfFile;
    Vector3 origin;
    Json accessors = Json::array();
    std::array<std::string, VIEW_COUNT> views;
};

}  // namespace obj_adapter::tool
