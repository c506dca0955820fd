// Materials as they look. Covered by tests/tools/materialLookTest.cpp.
#include "materialLook.h"

#include "importRun.h"

namespace obj_adapter::tool {

namespace {

// A NaN is not greater than 0.
double clampToUnit(double value) {
    if (!(value > 0.0))
        return 0.0;
    return value < 1.0 ? value : 1.0;
}

Vector3 clampToUnit(const Vector3& color) {
    return {clampToUnit(color.x), clampToUnit(color.y), clampToUnit(color.z)};
}

// The published matrix from CIE XYZ to linear sRGB for the D65 white point.
Vector3 linearFromXyz(double x, double y, double z) {
    return {3.2404542 * x - 1.5371385 * y - 0.4985314 * z,
            -0.9692660 * x + 1.8760108 * y + 0.0415560 * z,
            0.0556434 * x - 0.2040259 * y + 1.0572252 * z};
}

Vector3 linearColor(const MaterialColor& color) {
    const double x = static_cast<double>(color.values[0]);
    const double y = static_cast<double>(color.values[1]);
    const double z = static_cast<double>(color.values[2]);
    switch (color.type) {
        case ColorType::RGB:
            return clampToUnit({x, y, z});
        case ColorType::XYZ:
            return clampToUnit(linearFromXyz(x, y, z));
        case ColorType::SPECTRAL:
            return clampToUnit({x, x, x});
        default:
            return {};
    }
}

// Of a Blinn-Phong highlight: its variance is 2 / (exponent + 2), of which
// renderers take the square root twice.
double roughnessOf(double exponent) {
    return std::sqrt(std::sqrt(2.0 / (exponent + 2.0)));
}

}  // namespace

MaterialLook computeLook(const Material& material) {
    MaterialLook look;
    const Vector3 black;
    if (material.hasDiffuse()) {
        const Vector3 diffuse = linearColor(material.diffuse);
        if (!(diffuse == black)) {
            look.mapFactor = diffuse;
            look.color = diffuse;
        } else if (!material.hasTextureMap(Material::MAP_KD)) {
            look.color = black;
        }
    }
    look.alpha = clampToUnit(material.dissolve);
    if (look.alpha == 0.0)
        look.alpha = 1.0;
    if (material.hasSpecular())
        look.specular = linearColor(material.specular);
    if (std::isfinite(material.specularExponent) && material.specularExponent > 0.0) {
        look.exponent = material.specularExponent;
        look.roughness = roughnessOf(look.exponent);
    }
    return look;
}

void noteTakenForOpaque(const ModelAccess& model) {
    for (int index = 0; index < model.getNumberOfMaterials(); ++index) {
        const Material& material = model.getMaterial(index);
        if (clampToUnit(material.dissolve) == 0.0)
            printWarning("material " + material.name +
                         ": wholly transparent by its d or Tr; taken for opaque");
    }
}

std::vector<MaterialLook> computeLooks(const ModelAccess& model) {
    std::vector<MaterialLook> looks;
    looks.reserve(static_cast<std::size_t>(model.getNumberOfMaterials()) + 1);
    for (int index = 0; index < model.getNumberOfMaterials(); ++index)
        looks.push_back(computeLook(model.getMaterial(index)));
    looks.emplace_back();
    return looks;
}

}  // namespace obj_adapter::tool
