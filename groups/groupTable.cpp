// The operations on the model's groups. Covered by
// tests/groups/groupTableTest.cpp.
//
// Hosts may write into the records that they are lent, so a face's groupIndex
// may be any number here; one that names no group is passed over.
#include "groups/groupTable.h"

#include "model/objModel.h"
#include "model/recordLimits.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <set>
#include <string_view>
#include <utility>

namespace obj_adapter {

namespace {

const char COMPOUND_GROUP_NAME[] = "COMPOUND_GROUP";
const char DEFAULT_GROUP_NAME[] = "default";

// Made where it stays; nothing changes when memory runs out.
int appendGroup(ObjModel& model, std::string&& name, std::vector<std::string>&& names) {
    const int groupIndex = nextRecordIndex(model.groups.size());
    Group& group = model.groups.emplace_back();
    group.name = std::move(name);
    group.names = std::move(names);
    model.hierarchyValid = false;
    return groupIndex;
}

}  // namespace

int addGroup(ObjModel& model, std::string name) {
    return appendGroup(model, std::move(name), {});
}

int addGroupFromNames(ObjModel& model, std::vector<std::string> names) {
    if (names.size() == 1)
        return addGroup(model, std::move(names.front()));
    return appendGroup(model, COMPOUND_GROUP_NAME, std::move(names));
}

std::string addDefaultGroup(ObjModel& model) {
    std::string name = DEFAULT_GROUP_NAME;
    addGroup(model, name);
    return name;
}

std::string addInitialGroup(ObjModel& model) {
    std::string name = model.name;
    addGroup(model, name);
    return name;
}

bool namesGroup(const ObjModel& model, int groupIndex) noexcept {
    return groupIndex >= 0 && static_cast<std::size_t>(groupIndex) < model.groups.size();
}

void reserveGroupFaceLists(ObjModel& model) {
    if (!model.areFacesLent && !model.areGroupsLent)
        return;
    std::vector<std::size_t> faceCounts(model.groups.size());
    for (const Face& face : model.faces) {
        if (namesGroup(model, face.groupIndex))
            ++faceCounts[static_cast<std::size_t>(face.groupIndex)];
    }
    for (std::size_t group = 0; group < faceCounts.size(); ++group)
        model.groups[group].faceIndices.reserve(faceCounts[group]);
}

void rebuildGroupFaceLists(ObjModel& model) {
    GroupFaceLister lister(model);
    for (std::size_t face = 0; face < model.faces.size(); ++face)
        lister.add(model.faces[face], face);
}

GroupFaceLister::GroupFaceLister(ObjModel& model) noexcept : groupsModel(model) {
    model.hierarchyValid = false;
    for (Group& group : model.groups)
        group.clearFaceIndices();
}

void GroupFaceLister::goToGroup(std::int32_t newGroupIndex) noexcept {
    groupIndex = newGroupIndex;
    list = namesGroup(groupsModel, groupIndex)
               ? &groupsModel.groups[static_cast<std::size_t>(groupIndex)].faceIndices
               : nullptr;
}

void removeEmptyGroups(ObjModel& model) {
    if (model.groups.size() == 1)
        return;

    std::vector<std::int32_t> newIndices(model.groups.size(), NO_INDEX);
    std::int32_t survivorCount = 0;
    for (std::size_t group = 0; group < model.groups.size(); ++group) {
        if (!model.groups[group].faceIndices.empty())
            newIndices[group] = survivorCount++;
    }

    if (static_cast<std::size_t>(survivorCount) == model.groups.size()) {
        model.hierarchyValid = false;
        return;
    }

    // Nothing below allocates. A face whose group is gone, which takes a host
    // that emptied the list, is left without one.
    model.hierarchyValid = false;
    for (Face& face : model.faces) {
        if (namesGroup(model, face.groupIndex))
            face.groupIndex = newIndices[static_cast<std::size_t>(face.groupIndex)];
    }
    for (std::size_t group = 0; group < newIndices.size(); ++group) {
        const std::int32_t newIndex = newIndices[group];
        if (newIndex != NO_INDEX && static_cast<std::size_t>(newIndex) != group)
            model.groups[static_cast<std::size_t>(newIndex)] = std::move(model.groups[group]);
    }
    model.groups.erase(model.groups.begin() + survivorCount, model.groups.end());
}

void reverseGroupNames(ObjModel& model) {
    model.hierarchyValid = false;
    for (Group& group : model.groups)
        std::reverse(group.names.begin(), group.names.end());
}

int findGroup(const ObjModel& model, const std::string& fullName) {
    for (std::size_t group = 0; group < model.groups.size(); ++group) {
        if (model.groups[group].getFullName() == fullName)
            return static_cast<int>(group);
    }
    return NO_INDEX;
}

int countDistinctNames(const ObjModel& model) {
    std::set<std::string_view> distinctNames;
    for (const Group& group : model.groups) {
        if (group.isCompound())
            distinctNames.insert(group.names.begin(), group.names.end());
        else
            distinctNames.insert(group.name);
    }
    return static_cast<int>(distinctNames.size());
}

}  // namespace obj_adapter
