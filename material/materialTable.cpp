// The materials of the model. Covered by tests/material/materialTableTest.cpp.
#include "material/materialTable.h"

#include "model/recordLimits.h"

#include <obj_adapter/geometryRecords.h>

#include <cstddef>
#include <stdexcept>
#include <utility>

namespace obj_adapter {

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

int MaterialTable::findKnownMaterial(std::string_view name) noexcept {
    return firstPositionsAreCurrent ? findPosition(name) : NO_INDEX;
}

int MaterialTable::findPosition(std::string_view name) noexcept {
    const int position = firstPositions.find(name);
    return position == NamePositions::NONE ? NO_INDEX : position;
}

int MaterialTable::addMaterial(std::string name) {
    const int position = nextRecordIndex(materials.size());
    // The last moment at which the host can have written through its pointer.
    if (isLent)
        firstPositionsAreCurrent = false;
    // The record is large: it is made where it stays.
    Material& material = materials.emplace_back();
    try {
        const NamePositions::Key key(name);
        if (firstPositionsAreCurrent && firstPositions.find(key) == NamePositions::NONE)
            firstPositions.add(key, position);
    } catch (...) {
        materials.pop_back();
        throw;
    }
    material.name = std::move(name);
    isLent = false;
    return position;
}

bool MaterialTable::addMaterialOfNewName(std::string_view name) {
    if (isLent || !firstPositionsAreCurrent) {
        if (findMaterial(name) != NO_INDEX)
            return false;
        addMaterial(std::string(name));
        return true;
    }
    const NamePositions::Key key(name);
    if (firstPositions.find(key) != NamePositions::NONE)
        return false;
    const int position = nextRecordIndex(materials.size());
    Material& material = materials.emplace_back();
    try {
        material.name.assign(name);
        firstPositions.add(key, position);
    } catch (...) {
        materials.pop_back();
        throw;
    }
    return true;
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
        const NamePositions::Key key(name);
        if (rebuilt.find(key) == NamePositions::NONE)
            rebuilt.add(key, static_cast<int>(i));
    }
    firstPositions = std::move(rebuilt);
    firstPositionsAreCurrent = true;
}

}  // namespace obj_adapter
