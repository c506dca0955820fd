// A node of the tree of group names.
#pragma once

#include <obj_adapter/export.h>
#include <obj_adapter/group.h>

#include <string>
#include <vector>

namespace obj_adapter {

// Compound group names are paths: "g car left wheel" hangs the group under
// "left" under "car". A node stands for a group, or, where no group has that
// name, for a part of a path only.
//
// A node owns its children. The converter owns the tree: every call of
// ObjConverter::getRootOfHierarchy destroys the one before and builds it anew,
// so a host copies what it needs and keeps no node.
struct ObjHierarchyNode {
    std::string name;             // label; brought up to date by getName for a group's node
    bool showLastNamesOnly;       // getName gives "wheel", not "car_left_wheel"
    Group* group;                 // the group, lent by the model; null for a mere path
    std::vector<ObjHierarchyNode*> children;  // owned, in order of attachment

    OBJ_ADAPTER_API ObjHierarchyNode(std::string label, bool lastNamesOnly, Group* nodeGroup);
    // Destroys the children first, depth first, without using the call stack
    // in proportion to the depth.
    OBJ_ADAPTER_API ~ObjHierarchyNode();
    ObjHierarchyNode(const ObjHierarchyNode&) = delete;
    ObjHierarchyNode& operator=(const ObjHierarchyNode&) = delete;

    // 0 <= position < getNumberOfChildren(); not checked.
    OBJ_ADAPTER_API ObjHierarchyNode* getChild(int position);
    OBJ_ADAPTER_API int getNumberOfChildren() const;

    // The group's own list of positions in the face table; null for a node
    // without a group.
    OBJ_ADAPTER_API std::vector<int>* getFaceIndices();

    // The group's last or full name, as set when the tree was built; the label
    // for a node without a group.
    OBJ_ADAPTER_API std::string getName();

    // The group's full name; the label for a node without a group.
    OBJ_ADAPTER_API std::string getFullName();
};

}  // namespace obj_adapter
