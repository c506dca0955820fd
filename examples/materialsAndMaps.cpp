// Lists the materials of an OBJ file: diffuse colour, dissolve, and each texture map
// with the options that a renderer needs.
#include <obj_adapter/obj_adapter.h>

#include <cstdio>

using namespace obj_adapter;

// The slots that can be filled; displacement maps are read but never kept.
static const struct {
    Material::TextureMapName slot;
    const char* keyword;
} MAPS[] = {
    {Material::MAP_KA, "map_Ka"}, {Material::MAP_KD, "map_Kd"}, {Material::MAP_KS, "map_Ks"},
    {Material::MAP_NS, "map_Ns"}, {Material::MAP_D, "map_d"},   {Material::BUMP, "bump"},
    {Material::DECAL, "decal"},   {Material::REFL, "refl"},
};

static void showMap(const char* keyword, const TextureMap& map) {
    std::printf("  %-7s %s, scale %g %g, offset %g %g%s\n", keyword, map.fileName.c_str(),
                map.scale[0], map.scale[1], map.offset[0], map.offset[1],
                map.clamp ? ", clamped" : "");
}

static void showMaterial(Material& material) {
    std::printf("%s\n", material.name.c_str());
    if (material.hasDiffuse()) {
        // A colour in XYZ is converted to RGB here, in place.
        const float* rgb = material.getDiffuse().toColorArray();
        std::printf("  diffuse %.3f %.3f %.3f\n", static_cast<double>(rgb[0]),
                    static_cast<double>(rgb[1]), static_cast<double>(rgb[2]));
    }
    if (material.dissolve < 1.0)
        std::printf("  opacity %g\n", material.dissolve);
    for (const auto& map : MAPS) {
        if (material.hasTextureMap(map.slot))
            showMap(map.keyword, material.getTextureMap(map.slot));
    }
}

int main(int argc, char** argv) {
    ObjConverter* converter = ObjConverter::getInstance();
    converter->setSkipPolygonsWithoutEar(true);
    const char* fileName = argc > 1 ? argv[1] : "examples/scene/scene.obj";
    if (converter->importObjDataFromFile(fileName) != ObjConverter::CONVERTER_OK)
        return 1;
    for (int index = 0; index < converter->getNumberOfMaterials(); ++index)
        showMaterial(*converter->getMaterial(index));
    ObjConverter::clearInstance();
    return 0;
}
