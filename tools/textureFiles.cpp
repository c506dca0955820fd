// Finds the images of materials. Covered by tests/tools.
#include "textureFiles.h"

#include "materialMaps.h"

#include <map>
#include <system_error>

namespace obj_adapter::tool {

std::filesystem::path pathOf(const std::string& name) {
    return std::filesystem::path(std::u8string(name.begin(), name.end()));
}

std::string nameOf(const std::filesystem::path& path) {
    const std::u8string name = path.generic_u8string();
    return std::string(name.begin(), name.end());
}

std::filesystem::path TextureFiles::locate(int material, const std::string& fileName) const {
    // The last library that began at or before the material.
    const std::string* library = &inputFile;
    for (const LoadedLibrary& candidate : run.libraries) {
        if (candidate.firstMaterial <= material)
            library = &candidate.fileName;
    }
    return pathOf(*library).parent_path() / pathOf(fileName);
}

bool TextureFiles::exists(const std::filesystem::path& image) {
    std::error_code failure;
    return std::filesystem::is_regular_file(image, failure);
}

std::vector<MissingTexture> findMissingTextures(const ModelAccess& model,
                                                const TextureFiles& textures) {
    std::vector<MissingTexture> missing;
    std::map<std::filesystem::path, std::size_t> known;
    for (int index = 0; index < model.getNumberOfMaterials(); ++index) {
        Material& material = model.getMaterial(index);
        for (const auto& [slot, keyword] : MAP_SLOTS) {
            if (!material.hasTextureMap(slot))
                continue;
            const std::string& fileName = material.getTextureMap(slot).fileName;
            const std::filesystem::path image = textures.locate(index, fileName);
            if (TextureFiles::exists(image))
                continue;
            const auto [place, isNew] = known.try_emplace(image, missing.size());
            if (isNew)
                missing.push_back({fileName, material.name, keyword, 0});
            ++missing[place->second].uses;
        }
    }
    return missing;
}

}  // namespace obj_adapter::tool
