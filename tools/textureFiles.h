// The image files that materials name. The converter reads names only; whether
// and where the images are is found out here.
#pragma once

#include "importRun.h"
#include "modelAccess.h"

#include <filesystem>
#include <string>
#include <vector>

namespace obj_adapter::tool {

// A UTF-8 name as a path of the platform, and back.
std::filesystem::path pathOf(const std::string& name);
std::string nameOf(const std::filesystem::path& path);

// Images are named relative to the material library that names them.
class TextureFiles {
public:
    // The run tells which material came from which library; both must outlive
    // this.
    TextureFiles(const ImportSettings& settings, const ImportRun& importRun)
        : inputFile(settings.fileName), run(importRun) {}

    // Where the image of a map of the material should be.
    std::filesystem::path locate(int material, const std::string& fileName) const;

    static bool exists(const std::filesystem::path& image);

private:
    const std::string& inputFile;
    const ImportRun& run;
};

// An image that is not where it should be.
struct MissingTexture {
    std::string fileName;
    std::string firstMaterial;  // the first material that names it
    std::string keyword;        // and the statement there
    int uses;
};

// Each once, in the order of the materials.
std::vector<MissingTexture> findMissingTextures(const ModelAccess& model,
                                                const TextureFiles& textures);

}  // namespace obj_adapter::tool
