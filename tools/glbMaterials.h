// Materials as those of a GLB file. docs/toolFormats.md says what becomes of each
// statement.
#pragma once

#include "jsonOutput.h"
#include "modelAccess.h"
#include "textureFiles.h"

#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace obj_adapter::tool {

class GlbMaterials {
public:
    // outputFolder  images are named relative to it
    // bumpAsNormal  take bump maps for maps of normals, as some exporters write
    //               them; otherwise they are left out
    GlbMaterials(const ModelAccess& importedModel, const TextureFiles& textureFiles,
                 std::filesystem::path outputFolder, bool bumpAsNormal);

    // The position of a material of the model, NO_INDEX included, in the list.
    int add(int material);

    // What could not be taken over, a line each.
    const std::vector<std::string>& getLosses() const { return losses; }

    // Moves the lists that are not empty into the file's JSON.
    void moveInto(Json& file);

private:
    Json convert(int material);
    void addAlpha(Json& json, int material);
    void noteLostMaps(int material);
    std::optional<Json> makeTextureInfo(int material, Material::TextureMapName slot,
                                        const char* keyword);
    std::optional<int> addImage(int material, const TextureMap& map, const char* keyword);
    int addTexture(int image, bool clamp);
    void lose(int material, const std::string& what);

    const ModelAccess& model;
    const TextureFiles& files;
    std::filesystem::path folder;
    bool bumpIsNormal;
    bool usesTransform = false;
    bool usesIor = false;

    std::map<int, int> materialPlaces;
    std::map<std::string, int> imagePlaces;             // by URI
    std::map<std::pair<int, bool>, int> texturePlaces;  // by image and clamping
    std::map<bool, int> samplerPlaces;                  // by clamping
    Json materials = Json::array();
    Json images = Json::array();
    Json textures = Json::array();
    Json samplers = Json::array();
    std::vector<std::string> losses;
};

}  // namespace obj_adapter::tool
