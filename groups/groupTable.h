// Internal: the operations on the model's groups. Hosts see their results
// through ObjConverter::getGroup.
//
// Every operation that changes groups or membership clears
// ObjModel::hierarchyValid.
#pragma once

#include <cstddef>
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

// Makes room in every group's list for copies times the faces that name the
// group; the lists stay as they are.
void reserveGroupFaceLists(ObjModel& model, std::size_t copies = 1);

// Fills every group's list anew from the faces' groupIndex, in table order. Asks
// for no memory after reserveGroupFaceLists.
void rebuildGroupFaceLists(ObjModel& model);

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
