// The materials of the model. Covered by tests/material/materialTableTest.cpp.
#include "material/materialTable.h"

#include "model/recordLimits.h"

#include <obj_adapter/geometryRecords.h>

#include <algorithm>
#include <cstddef>
#include <stdexcept>
#include <type_traits>
#include <utility>

namespace obj_adapter {

// Growth moves the materials, so that it is fast and leaves them whole when
// memory runs out.
static_assert(std::is_nothrow_move_constructible_v<Material>);

Material* MaterialTable::lendMaterial(int position) noexcept {
    isLent = true;
    firstPositionsAreCurrent = false;
    return materials.data() + position;
}

Material& MaterialTable::currentMaterial() {
    if (materials.empty())
        throw std::runtime_error("No current material");
    return materials.back();
}

int MaterialTable::findMaterial(std::string_view name) {
    if (!firstPositionsAreCurrent)
        rebuildPositions();
    return findPosition(name);
}

int MaterialTable::findKnownMaterial(std::string_view name) const noexcept {
    return firstPositionsAreCurrent ? findPosition(name) : NO_INDEX;
}

int MaterialTable::findPosition(std::string_view name) const noexcept {
    const int position = firstPositions.find(name);
    return position == NamePositions::NONE ? NO_INDEX : position;
}

int MaterialTable::addMaterial(Material material) {
    const int position = nextRecordIndex(materials.size());
    // The last moment at which the host can have written through its pointer.
    if (isLent)
        firstPositionsAreCurrent = false;
    // All that wants memory comes before the first change.
    if (materials.size() == materials.capacity())
        materials.reserve(std::max(std::size_t{1}, 2 * materials.size()));
    if (firstPositionsAreCurrent && findPosition(material.name) == NO_INDEX)
        firstPositions.add(material.name, position);
    materials.push_back(std::move(material));
    isLent = false;
    return position;
}

void MaterialTable::addLibraryName(const std::string& libraryName) {
    const auto [entry, isNew] = knownLibraryNames.insert(libraryName);
    if (!isNew)
        return;
    try {
        libraryNames.push_back(libraryName);
    } catch (...) {
        knownLibraryNames.erase(entry);
        throw;
    }
}

void MaterialTable::clear() noexcept {
    libraryNames.clear();
    knownLibraryNames.clear();
    materials.clear();
    firstPositions.clear();
    firstPositionsAreCurrent = true;
    isLent = false;
}

void MaterialTable::hostHasRun() noexcept {
    if (isLent)
        firstPositionsAreCurrent = false;
}

void MaterialTable::endLoans() noexcept {
    hostHasRun();
    isLent = false;
}

void MaterialTable::rebuildPositions() {
    NamePositions rebuilt;
    for (std::size_t i = 0; i < materials.size(); ++i) {
        const std::string& name = materials[i].name;
        if (rebuilt.find(name) == NamePositions::NONE)
            rebuilt.add(name, static_cast<int>(i));
    }
    firstPositions = std::move(rebuilt);
    firstPositionsAreCurrent = true;
}

}  // namespace obj_adapter
