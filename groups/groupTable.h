// Internal: the operations on the model's groups. Hosts see their results
// through ObjConverter::getGroup.
//
// Every operation that changes groups or membership clears
// ObjModel::hierarchyValid.
#pragma once

#include <obj_adapter/geometryRecords.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace obj_adapter {

struct ObjModel;

// Appends a simple group and returns its position. Never looks for a group of
// the same name: every call makes a new one.
int addGroup(ObjModel& model, std::string name);

// One name makes a simple group, two or more a compound one.
int addGroupFromNames(ObjModel& model, std::vector<std::string> names);

// A new simple group "default"; returns its full name.
std::string addDefaultGroup(ObjModel& model);

// The group that faces join before any group statement, named after the model;
// returns that name.
std::string addInitialGroup(ObjModel& model);

// Whether there is such a group; a host may have written anything into a face.
bool namesGroup(const ObjModel& model, int groupIndex) noexcept;

// Makes room in every group's list for the faces that name the group; the lists stay as
// they are. Where no host can have changed either, they hold those faces already.
void reserveGroupFaceLists(ObjModel& model);

// Fills every group's list anew from the faces' groupIndex, in table order. Asks
// for no memory after reserveGroupFaceLists.
void rebuildGroupFaceLists(ObjModel& model);

// The same while the caller goes over the faces anyway: all lists are emptied, and each
// face, in table order, is added as the caller comes to it.
class GroupFaceLister {
public:
    explicit GroupFaceLister(ObjModel& model) noexcept;

    // Asks for no memory after reserveGroupFaceLists.
    void add(const Face& face, std::size_t position) {
        if (face.groupIndex != groupIndex)
            goToGroup(face.groupIndex);
        if (list != nullptr)
            list->push_back(static_cast<int>(position));
    }

private:
    void goToGroup(std::int32_t newGroupIndex) noexcept;

    ObjModel& groupsModel;
    std::int32_t groupIndex = NO_INDEX;
    std::vector<int>* list = nullptr;  // of that group; null where there is none
};

// Drops the groups without faces and renumbers the faces' groupIndex; the
// others keep their order. A lone group stays, with or without faces.
void removeEmptyGroups(ObjModel& model);

// Reverses the components of every compound group.
void reverseGroupNames(ObjModel& model);

// The first group with that full name, or NO_INDEX.
int findGroup(const ObjModel& model, const std::string& fullName);

// Distinct strings among the components of compound groups and the names of
// simple ones.
int countDistinctNames(const ObjModel& model);

}  // namespace obj_adapter
