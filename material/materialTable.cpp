// The materials of the model. Covered by tests/material/materialTableTest.cpp.
#include "material/materialTable.h"

#include "model/recordLimits.h"

#include <obj_adapter/geometryRecords.h>

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
    const auto found = firstPositions.find(name);
    return found == firstPositions.end() ? NO_INDEX : found->second;
}

int MaterialTable::findKnownMaterial(std::string_view name) const noexcept {
    if (!firstPositionsAreCurrent)
        return NO_INDEX;
    const auto found = firstPositions.find(name);
    return found == firstPositions.end() ? NO_INDEX : found->second;
}

int MaterialTable::addMaterial(const Material& material) {
    const int position = nextRecordIndex(materials.size());
    // The last moment at which the host can have written through its pointer.
    if (isLent)
        firstPositionsAreCurrent = false;
    if (firstPositionsAreCurrent) {
        const auto [entry, isFirst] = firstPositions.try_emplace(material.name, position);
        try {
            materials.push_back(material);
        } catch (...) {
            if (isFirst)
                firstPositions.erase(entry);
            throw;
        }
    } else {
        materials.push_back(material);
    }
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
    std::map<std::string, int, std::less<>> rebuilt;
    for (std::size_t i = 0; i < materials.size(); ++i)
        rebuilt.try_emplace(materials[i].name, static_cast<int>(i));
    firstPositions = std::move(rebuilt);
    firstPositionsAreCurrent = true;
}

}  // namespace obj_adapter
