// Materials written back as MTL text.
//
// Numbers are decimal with six decimals and a point, in every locale; a value
// that is not a number counts as a default and is left out where defaults are.
// Reading the text back gives the same material for values of six decimals,
// except for what MTL libraries cannot set here: boost, disp, anti-aliasing (and
// the first map after its statement), a refl map without a type, and an RGB
// colour whose red is negative.
// Only exhausted memory is thrown (std::bad_alloc).
#pragma once

#include <obj_adapter/export.h>
#include <obj_adapter/material.h>

#include <string>

namespace obj_adapter {

// What follows Ka, Kd, Ks or Tf: "1.000000 0.500000 0.000000",
// "xyz 0.300000 0.300000 0.300000", "spectral file.rfl 1.000000", or
// "# No color found".
OBJ_ADAPTER_API std::string colorToText(const MaterialColor& color);

// "d 0.500000" or "d -halo 0.500000" without a line end; empty for 1 without
// halo.
OBJ_ADAPTER_API std::string dissolveToText(const Material& material);

// All statements of the material, newmtl first, for what differs from the
// defaults. Each ends in a line feed, except "map_aat on", after which the next
// statement follows on the same line.
OBJ_ADAPTER_API std::string materialToText(const Material& material);

// A colour for people: "RBG: (1.000000, 0.500000,0.000000)", "XYZ: (...)",
// "Spectral: file.rfl Factor:1.000000" or "No color". The spelling is an
// interface by now.
OBJ_ADAPTER_API std::string colorDescription(const MaterialColor& color);

}  // namespace obj_adapter
