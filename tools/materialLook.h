// A material as it looks, for writers and pictures: colours in linear light with
// what is missing filled in.
#pragma once

#include "modelAccess.h"

#include <vector>

namespace obj_adapter::tool {

struct MaterialLook {
    Vector3 color{0.6, 0.6, 0.6};  // 0..1, linear light

    // Above 0 to 1. What the file makes wholly transparent is opaque: nobody means
    // it, but some exporters write "Tr 1" or "d 0" for that.
    double alpha = 1.0;

    Vector3 specular;       // 0..1
    double exponent = 0.0;  // of the highlight; 0: none

    // The exponent as the roughness of a surface of today's renderers, 0..1.
    double roughness = 1.0;

    // The map of the colour is multiplied with this. White where the file says
    // black, as many exporters do beside a map.
    Vector3 mapFactor{1.0, 1.0, 1.0};
};

// Colour rules, for Kd and Ks alike: RGB values are linear light, as exporters of
// today write them; XYZ is brought to RGB by the D65 matrix; for a spectral curve
// its factor stands as a grey. Each channel is clamped to 0..1, and 0 where it is
// not a number.
MaterialLook computeLook(const Material& material);

// Says which materials are taken for opaque though the file makes them wholly
// transparent.
void noteTakenForOpaque(const ModelAccess& model);

// One for each material of the model, and that of no material at the end.
std::vector<MaterialLook> computeLooks(const ModelAccess& model);

inline const MaterialLook& lookOf(const std::vector<MaterialLook>& looks, const ModelAccess& model,
                                  const Face& face) {
    const int material = model.materialOf(face);
    return material == NO_INDEX ? looks.back() : looks[static_cast<std::size_t>(material)];
}

}  // namespace obj_adapter::tool
