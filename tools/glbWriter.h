// The model as a GLB file, version 2.0 of the format: a node for each node of the
// tree of groups, a mesh for each group, a primitive for each material in it.
#pragma once

#include "modelAccess.h"
#include "outputFile.h"
#include "textureFiles.h"

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace obj_adapter::tool {

struct GlbOptions {
    // Images are named relative to this folder.
    std::filesystem::path folder;

    // Take bump maps for maps of normals.
    bool bumpIsNormal = false;

    // Compute normals for faces without: smooth over edges whose faces have at
    // least this cosine between their normals. Without it, faces stay flat.
    std::optional<double> smallestCosine;
};

struct GlbResult {
    int faces = 0;                    // written
    std::vector<std::string> losses;  // what could not be taken over, a line each
};

// Asking for the tree renames groups of one name in the model.
//
// Throws std::length_error if the data is more than the format can hold.
GlbResult writeGlb(OutputFile& file, const ModelAccess& model, const TextureFiles& textures,
                   const GlbOptions& options);

}  // namespace obj_adapter::tool
