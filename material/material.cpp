// The colours and the map slots of a material. Covered by
// tests/material/materialTest.cpp.
#include "material/materialTable.h"
#include "platform/floatingPointMode.h"

#include <cmath>
#include <stdexcept>
#include <utility>

namespace obj_adapter {

namespace {

// 1/2.4, the exponent of the sRGB transfer curve, and the curve's two other
// constants (IEC 61966-2-1).
constexpr double GAMMA_EXPONENT = 0.4166666666666667;
constexpr double GAMMA_SCALE = 1.055;
constexpr double GAMMA_OFFSET = 0.055;

// The curve without its linear segment near zero; NaN below zero.
float gammaEncoded(double channel) noexcept {
    return static_cast<float>(std::pow(channel, GAMMA_EXPONENT) * GAMMA_SCALE - GAMMA_OFFSET);
}

// Displacement maps have a slot that is deliberately neither filled nor lent.
bool isUsableSlot(Material::TextureMapName slot) noexcept {
    return slot >= Material::MAP_KA && slot <= Material::REFL && slot != Material::DISP;
}

}  // namespace

// The matrix takes XYZ with the D65 white point to linear sRGB. The order of
// the additions is fixed: it belongs to the result.
float* MaterialColor::toColorArray() {
    if (type != ColorType::XYZ)
        return values;
    // The host calls this from its own code, in whatever mode it computes in.
    const platform::DefaultFloatingPointMode mode;

    // In single precision; each sum is rounded before it is used.
    const float sumOfTwo = values[1] + values[0];
    const float sum = sumOfTwo + values[2];
    const double factor = 1.0 / static_cast<double>(sum);
    const double x = static_cast<double>(values[0]) * factor;
    const double y = static_cast<double>(values[1]) * factor;
    const double z = static_cast<double>(values[2]) * factor;

    values[0] = gammaEncoded(3.2404542 * x - 1.5371385 * y - 0.4985314 * z);
    values[1] = gammaEncoded((1.8760108 * y - 0.969266 * x) + 0.041556 * z);
    values[2] = gammaEncoded((0.0556434 * x - 0.2040259 * y) + 1.0572252 * z);
    type = ColorType::RGB;
    return values;
}

TextureMap& Material::getTextureMap(TextureMapName slot) {
    if (!isUsableSlot(slot))
        throw std::runtime_error("Invalid map type");
    return textureMaps[slot].textureMap;
}

bool Material::hasTextureMap(TextureMapName slot) const {
    return isUsableSlot(slot) && textureMaps[slot].hasTextureMap;
}

void setTextureMap(Material& material, Material::TextureMapName slot, TextureMap map) noexcept {
    if (!isUsableSlot(slot))
        return;
    material.textureMaps[slot].textureMap = std::move(map);
    material.textureMaps[slot].hasTextureMap = true;
}

}  // namespace obj_adapter
