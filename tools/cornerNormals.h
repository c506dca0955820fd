// A normal for each corner of each face: the file's, or one computed from the
// faces around.
#pragma once

#include "modelAccess.h"

#include <optional>
#include <vector>

namespace obj_adapter::tool {

class CornerNormals {
public:
    // Normals of the file are taken where a face has a usable one at each corner.
    //
    // smallestCosine  faces without take, at each corner, the mean over the faces
    //                 that they meet there by edges whose sides' normals have at
    //                 least this cosine between them, weighted by area; the normal
    //                 of the face itself without a value. Faces without area get
    //                 (0,0,1) where nothing better is around.
    //
    // O(F log F).
    CornerNormals(const ModelAccess& model, std::optional<double> smallestCosine);

    // Equal numbers stand for equal normals.
    int indexOf(int face, int corner) const {
        return indices[static_cast<std::size_t>(face) * CORNERS_PER_FACE +
                       static_cast<std::size_t>(corner)];
    }

    // Of length 1.
    const Vector3& getNormal(int index) const { return normals[static_cast<std::size_t>(index)]; }

    // Whether the file gave them.
    bool isFromFile(int face) const { return fromFile[static_cast<std::size_t>(face)]; }

private:
    void takeFromFile(const ModelAccess& model);
    void computeFlat(const ModelAccess& model);
    void computeSmooth(const ModelAccess& model, double smallestCosine);

    std::vector<int> indices;
    std::vector<Vector3> normals;
    std::vector<bool> fromFile;
};

}  // namespace obj_adapter::tool
