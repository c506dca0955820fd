// Internal: the texture map statements of an MTL library.
#pragma once

#include "obj/lineTokens.h"

#include <obj_adapter/material.h>

namespace obj_adapter {

class MaterialTable;

// map_Kd [-option value ...] file [-option value ...]
//
// Stores the map in the current material's slot. A map that cannot be used is
// reported and dropped; only what a callback throws passes on.
void readMapStatement(MaterialTable& table, LineTokens& tokens, Material::TextureMapName slot);

// Reads the rest of the line into the map.
//
// Throws std::runtime_error "Unable to process texture map options" when a
// value cannot be used or no file is named; the reason has been reported.
void parseTextureMapOptions(LineTokens& tokens, TextureMap& map);

}  // namespace obj_adapter
