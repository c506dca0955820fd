// Internal: the materials of the model and the names of their libraries. Hosts
// read them through ObjConverter::getMaterial.
#pragma once

#include "material/namePositions.h"
#include "platform/growingArray.h"

#include <obj_adapter/material.h>

#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace obj_adapter {

class MaterialTable {
public:
    // The libraries as the OBJ files name them, each once, in the order of
    // their first loading. Added to by addLibraryName() alone.
    std::vector<std::string> libraryNames;

    // In the order of their newmtl statements; the position is the material
    // index of faces. Change names or their number only through this class.
    const platform::GrowingArray<Material>& getMaterials() const noexcept { return materials; }
    int getNumberOfMaterials() const noexcept { return static_cast<int>(materials.size()); }

    // Unchecked access for the host, which may write through the pointer: the
    // names are then looked at again before the next search.
    Material* lendMaterial(int position) noexcept;

    // The last material, for everything but its name.
    //
    // Throws std::runtime_error "No current material" when there is none.
    Material& currentMaterial();

    // The first material whose name equals the given one byte for byte, or
    // NO_INDEX.
    int findMaterial(std::string_view name);

    // The same without asking for memory: NO_INDEX also where the names must be
    // looked at again first.
    int findKnownMaterial(std::string_view name) noexcept;

    // Appends a material that has nothing but its name and returns its position.
    // std::length_error when the table is full; the table is unchanged after any
    // failure.
    int addMaterial(std::string name);

    // The same with one search for a name that no material has; false, with nothing
    // done, for any other.
    bool addMaterialOfNewName(std::string_view name);

    // Appends the name unless it is there already. The table is unchanged after
    // a failure.
    void addLibraryName(const std::string& libraryName);

    // Empties both lists.
    void clear() noexcept;

    // The host had the chance to write through a pointer that it was lent. Must be
    // called after every callback.
    void hostHasRun() noexcept;

    // An import begins: pointers lent before it hold no longer. What was written
    // through them counts.
    void endLoans() noexcept;

private:
    void rebuildPositions();
    int findPosition(std::string_view name) noexcept;

    platform::GrowingArray<Material> materials;

    // Name to the first material of that name.
    NamePositions firstPositions;
    bool firstPositionsAreCurrent = true;

    // The host may hold a pointer into the table; growth makes it invalid.
    bool isLent = false;

    // What libraryNames holds, for looking up.
    std::set<std::string> knownLibraryNames;
};

// Stores the map in the material's slot and marks it as given. Does nothing for
// DISP and for any value outside the enumeration.
void setTextureMap(Material& material, Material::TextureMapName slot, TextureMap map) noexcept;

}  // namespace obj_adapter
