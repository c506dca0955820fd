// The model's tables as JSON. Covered by tests/tools/jsonSchemaTest.cpp and the
// expected texts beside it.
#include "summaryJson.h"

#include "boundingBox.h"
#include "materialMaps.h"

namespace obj_adapter::tool {

namespace {

Json countsToJson(const ModelAccess& model) {
    Json counts;
    counts["vertices"] = model.getNumberOfVertices();
    counts["textureCoordinates"] = model.getNumberOfTexturePoints();
    counts["normals"] = model.getNumberOfNormals();
    counts["faces"] = model.getNumberOfFaces();
    counts["groups"] = model.getNumberOfGroups();
    counts["materials"] = model.getNumberOfMaterials();
    return counts;
}

// An axis without a number is null, and so is an end of it that is not finite.
Json boxToJson(const ModelAccess& model) {
    const BoundingBox box = computeBoundingBox(model);
    Json json;
    for (int axis = 0; axis < AXIS_COUNT; ++axis) {
        const Extent& extent = box.extents[axis];
        Json& entry = json[AXIS_NAMES[axis]];
        if (extent.isEmpty())
            continue;
        entry["least"] = jsonNumber(extent.low);
        entry["greatest"] = jsonNumber(extent.high);
    }
    json["verticesThatAreNoNumbers"] = box.notNumbers;
    return json;
}

Json groupsToJson(const ModelAccess& model) {
    Json list = Json::array();
    for (int index = 0; index < model.getNumberOfGroups(); ++index) {
        const Group& group = model.getGroup(index);
        Json entry;
        entry["fullName"] = group.getFullName();
        entry["names"] = group.isCompound() ? Json(group.names) : Json::array({group.name});
        entry["faces"] = group.faceIndices.size();
        list.push_back(std::move(entry));
    }
    return list;
}

// As the file gave it: an XYZ colour is not converted.
Json colorToJson(const MaterialColor& color) {
    Json json;
    const auto& values = color.values;
    switch (color.type) {
        case ColorType::RGB:
            json["rgb"] = {jsonNumber(values[0]), jsonNumber(values[1]), jsonNumber(values[2])};
            break;
        case ColorType::XYZ:
            json["xyz"] = {jsonNumber(values[0]), jsonNumber(values[1]), jsonNumber(values[2])};
            break;
        case ColorType::SPECTRAL:
            json["spectralFile"] = color.spectralFile;
            json["factor"] = jsonNumber(values[0]);
            break;
        case ColorType::NONE:
            break;
    }
    return json;
}

Json threeToJson(const double (&values)[3]) {
    return {jsonNumber(values[0]), jsonNumber(values[1]), jsonNumber(values[2])};
}

Json mapToJson(const TextureMap& map) {
    Json json;
    json["file"] = map.fileName;
    json["statement"] = map.textureMapString().substr(1);
    json["offset"] = threeToJson(map.offset);
    json["scale"] = threeToJson(map.scale);
    json["clamp"] = map.clamp;
    return json;
}

void addColors(Json& json, const Material& material) {
    if (material.hasAmbient())
        json["Ka"] = colorToJson(material.ambient);
    if (material.hasDiffuse())
        json["Kd"] = colorToJson(material.diffuse);
    if (material.hasSpecular())
        json["Ks"] = colorToJson(material.specular);
    if (material.hasFilter())
        json["Tf"] = colorToJson(material.filter);
}

// What no statement gave is left out, but for the dissolve.
void addScalars(Json& json, const Material& material) {
    const Material untouched;
    if (material.specularExponent != untouched.specularExponent)
        json["Ns"] = jsonNumber(material.specularExponent);
    json["d"] = jsonNumber(material.dissolve);
    json["halo"] = material.halo;
    if (material.illumination != untouched.illumination)
        json["illum"] = material.illumination;
    if (material.sharpness != untouched.sharpness)
        json["sharpness"] = material.sharpness;
    if (material.opticalDensity != untouched.opticalDensity)
        json["Ni"] = jsonNumber(material.opticalDensity);
}

Json materialsToJson(const ModelAccess& model) {
    Json list = Json::array();
    const std::vector<std::size_t> uses = model.countFacesOfMaterials();
    for (int index = 0; index < model.getNumberOfMaterials(); ++index) {
        Material& material = model.getMaterial(index);
        Json entry;
        entry["name"] = material.name;
        entry["faces"] = uses[static_cast<std::size_t>(index)];
        addColors(entry, material);
        addScalars(entry, material);
        entry["maps"] = Json::object();
        for (const auto& [slot, keyword] : MAP_SLOTS) {
            if (material.hasTextureMap(slot))
                entry["maps"][keyword] = mapToJson(material.getTextureMap(slot));
        }
        list.push_back(std::move(entry));
    }
    return list;
}

Json librariesToJson(const std::vector<LoadedLibrary>& libraries) {
    Json list = Json::array();
    for (const LoadedLibrary& library : libraries)
        list.push_back(library.fileName);
    return list;
}

}  // namespace

Json summaryToJson(const ModelAccess& model, const ImportRun& importRun,
                   const std::string& fileName) {
    Json json = makeJson("info");
    json["file"] = fileName;
    json["succeeded"] = importRun.succeeded;
    json["counts"] = countsToJson(model);
    json["boundingBox"] = boxToJson(model);
    json["groups"] = groupsToJson(model);
    json["materialLibraries"] = librariesToJson(importRun.libraries);
    json["materials"] = materialsToJson(model);
    json["facesWithoutMaterial"] = model.countFacesOfMaterials().back();
    json["stages"] = stagesToJson(importRun.stages);
    return json;
}

}  // namespace obj_adapter::tool
