// Materials of GLB files. Covered by tests/tools/glbWriterTest.cpp.
#include "glbMaterials.h"

#include "imageFiles.h"
#include "materialLook.h"
#include "materialMaps.h"
#include "singlePrecision.h"

#include <utility>

namespace obj_adapter::tool {

namespace {

// Numbers of the format.
constexpr int FILTER_LINEAR = 9729;
constexpr int FILTER_LINEAR_MIPMAP_LINEAR = 9987;
constexpr int WRAP_CLAMP = 33071;
constexpr int WRAP_REPEAT = 10497;

constexpr const char* TRANSFORM = "KHR_texture_transform";
constexpr const char* IOR = "KHR_materials_ior";

// What the format's own value is when a file says nothing.
constexpr double DEFAULT_IOR = 1.5;

// Maps that the format has no place for.
constexpr Material::TextureMapName LOST_MAPS[] = {
    Material::MAP_KA, Material::MAP_KS, Material::MAP_NS, Material::DECAL, Material::REFL};

// -s and -o scale and move the image, whose rows the format counts from the top.
std::optional<Json> transformOf(const TextureMap& map) {
    const double* offset = map.offset;
    const double* scale = map.scale;
    if (offset[0] == 0.0 && offset[1] == 0.0 && scale[0] == 1.0 && scale[1] == 1.0)
        return std::nullopt;
    const Vector3 moved{offset[0], 1.0 - scale[1] - offset[1], 0.0};
    if (!fitsSinglePrecision(moved) || !fitsSinglePrecision({scale[0], scale[1], 0.0}))
        return std::nullopt;
    Json transform;
    transform["offset"] = {moved.x, moved.y};
    transform["scale"] = {scale[0], scale[1]};
    return transform;
}

const char* keywordOf(Material::TextureMapName wanted) {
    for (const auto& [slot, keyword] : MAP_SLOTS) {
        if (slot == wanted)
            return keyword;
    }
    return "";
}

}  // namespace

GlbMaterials::GlbMaterials(const ModelAccess& importedModel, const TextureFiles& textureFiles,
                           std::filesystem::path outputFolder, bool bumpAsNormal)
    : model(importedModel),
      files(textureFiles),
      folder(std::move(outputFolder)),
      bumpIsNormal(bumpAsNormal) {}

int GlbMaterials::add(int material) {
    const auto known = materialPlaces.find(material);
    if (known != materialPlaces.end())
        return known->second;
    const int place = static_cast<int>(materials.size());
    materials.push_back(convert(material));
    materialPlaces.emplace(material, place);
    return place;
}

void GlbMaterials::moveInto(Json& file) {
    const std::pair<const char*, Json*> lists[] = {{"materials", &materials},
                                                   {"textures", &textures},
                                                   {"images", &images},
                                                   {"samplers", &samplers}};
    for (const auto& [key, list] : lists) {
        if (!list->empty())
            file[key] = std::move(*list);
    }
    if (usesTransform)
        file["extensionsUsed"].push_back(TRANSFORM);
    if (usesIor)
        file["extensionsUsed"].push_back(IOR);
}

Json GlbMaterials::convert(int material) {
    const bool exists = material != NO_INDEX;
    const MaterialLook look = exists ? computeLook(model.getMaterial(material)) : MaterialLook();
    Json json;
    json["name"] = exists ? model.getMaterial(material).name : std::string("no material");
    Json& surface = json["pbrMetallicRoughness"];
    std::optional<Json> colorMap;
    if (exists)
        colorMap = makeTextureInfo(material, Material::MAP_KD, "map_Kd");
    const Vector3& color = colorMap ? look.mapFactor : look.color;
    surface["baseColorFactor"] = {color.x, color.y, color.z, look.alpha};
    if (colorMap)
        surface["baseColorTexture"] = std::move(*colorMap);
    surface["metallicFactor"] = 0.0;
    surface["roughnessFactor"] = look.roughness;
    if (exists) {
        if (bumpIsNormal) {
            if (std::optional<Json> normals = makeTextureInfo(material, Material::BUMP, "bump"))
                json["normalTexture"] = std::move(*normals);
        }
        addAlpha(json, material);
        const double density = model.getMaterial(material).opticalDensity;
        if (std::isfinite(density) && density > 1.0 && density != DEFAULT_IOR) {
            json["extensions"][IOR]["ior"] = density;
            usesIor = true;
        }
        noteLostMaps(material);
    }
    // A face of an OBJ file has no back side.
    json["doubleSided"] = true;
    return json;
}

// The format takes transparency from the map of the colour only.
void GlbMaterials::addAlpha(Json& json, int material) {
    Material& record = model.getMaterial(material);
    const bool hasMap = record.hasTextureMap(Material::MAP_D);
    const bool isInColorMap = hasMap && json["pbrMetallicRoughness"].contains("baseColorTexture") &&
                              record.getTextureMap(Material::MAP_D).fileName ==
                                  record.getTextureMap(Material::MAP_KD).fileName;
    if (hasMap && !isInColorMap)
        lose(material, "map_d is not the image of map_Kd");
    if (isInColorMap || computeLook(record).alpha < 1.0)
        json["alphaMode"] = "BLEND";
}

void GlbMaterials::noteLostMaps(int material) {
    const Material& record = model.getMaterial(material);
    for (const Material::TextureMapName slot : LOST_MAPS) {
        if (record.hasTextureMap(slot))
            lose(material, std::string(keywordOf(slot)) + " has no place in the format");
    }
    if (!bumpIsNormal && record.hasTextureMap(Material::BUMP))
        lose(material, "bump is a map of heights (--bump-is-normal takes it for normals)");
}

std::optional<Json> GlbMaterials::makeTextureInfo(int material, Material::TextureMapName slot,
                                                  const char* keyword) {
    Material& record = model.getMaterial(material);
    if (!record.hasTextureMap(slot))
        return std::nullopt;
    const TextureMap& map = record.getTextureMap(slot);
    const std::optional<int> image = addImage(material, map, keyword);
    if (!image)
        return std::nullopt;
    Json info;
    info["index"] = addTexture(*image, map.clamp);
    if (std::optional<Json> transform = transformOf(map)) {
        info["extensions"][TRANSFORM] = std::move(*transform);
        usesTransform = true;
    }
    return info;
}

std::optional<int> GlbMaterials::addImage(int material, const TextureMap& map,
                                          const char* keyword) {
    const std::filesystem::path image = files.locate(material, map.fileName);
    const std::string statement = std::string(keyword) + " " + map.fileName;
    if (!TextureFiles::exists(image)) {
        lose(material, statement + " was not found");
        return std::nullopt;
    }
    if (!isPngOrJpeg(image)) {
        lose(material, statement + " is neither PNG nor JPEG");
        return std::nullopt;
    }
    const std::optional<std::string> uri = makeUri(image, folder);
    if (!uri) {
        lose(material, statement + " cannot be named from where the file is written");
        return std::nullopt;
    }
    const auto [known, isNew] = imagePlaces.try_emplace(*uri, static_cast<int>(images.size()));
    if (isNew)
        images.push_back({{"uri", *uri}});
    return known->second;
}

int GlbMaterials::addTexture(int image, bool clamp) {
    const auto [sampler, isNewSampler] =
        samplerPlaces.try_emplace(clamp, static_cast<int>(samplers.size()));
    if (isNewSampler) {
        const int wrap = clamp ? WRAP_CLAMP : WRAP_REPEAT;
        samplers.push_back({{"magFilter", FILTER_LINEAR},
                            {"minFilter", FILTER_LINEAR_MIPMAP_LINEAR},
                            {"wrapS", wrap},
                            {"wrapT", wrap}});
    }
    const auto [texture, isNewTexture] =
        texturePlaces.try_emplace(std::pair(image, clamp), static_cast<int>(textures.size()));
    if (isNewTexture)
        textures.push_back({{"sampler", sampler->second}, {"source", image}});
    return texture->second;
}

void GlbMaterials::lose(int material, const std::string& what) {
    losses.push_back("material " + model.getMaterial(material).name + ": " + what + "; left out");
}

}  // namespace obj_adapter::tool
