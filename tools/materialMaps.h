// The map slots of a material by the keywords that fill them.
#pragma once

#include <obj_adapter/material.h>

namespace obj_adapter::tool {

struct MapSlot {
    Material::TextureMapName slot;
    const char* keyword;
};

// The slots that can hold a map, in their order.
constexpr MapSlot MAP_SLOTS[] = {
    {Material::MAP_KA, "map_Ka"}, {Material::MAP_KD, "map_Kd"}, {Material::MAP_KS, "map_Ks"},
    {Material::MAP_NS, "map_Ns"}, {Material::MAP_D, "map_d"},   {Material::BUMP, "bump"},
    {Material::DECAL, "decal"},   {Material::REFL, "refl"},
};

}  // namespace obj_adapter::tool
