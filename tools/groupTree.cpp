// Walks the converter's tree of groups. Covered by tests/tools/groupTreeTest.cpp.
#include "groupTree.h"

#include <obj_adapter/obj_adapter.h>

#include <new>
#include <unordered_set>

namespace obj_adapter::tool {

namespace {

struct Place {
    ObjHierarchyNode* node;
    std::size_t parent;
    std::size_t depth;
};

TreeNode copyNode(const Place& place) {
    TreeNode copy;
    copy.name = place.node->getName();
    copy.parent = place.parent;
    copy.depth = place.depth;
    if (const std::vector<int>* faces = place.node->getFaceIndices()) {
        copy.fullName = place.node->getFullName();
        copy.faces = *faces;
    }
    return copy;
}

// Groups that the converter's tree left out.
void addMissingGroups(ObjConverter& converter, const std::unordered_set<const Group*>& present,
                      std::vector<TreeNode>& nodes) {
    for (int index = 0; index < converter.getNumberOfGroups(); ++index) {
        const Group& group = *converter.getGroup(index);
        if (!present.contains(&group))
            nodes.push_back({group.getFullName(), 0, 1, group.getFullName(), group.faceIndices});
    }
}

}  // namespace

std::vector<TreeNode> listGroupTree(ObjConverter& converter) {
    ObjHierarchyNode* root = converter.getRootOfHierarchy();
    if (root == nullptr)
        throw std::bad_alloc();
    std::vector<TreeNode> nodes;
    std::unordered_set<const Group*> present;
    std::vector<Place> open{{root, NO_PARENT, 0}};
    while (!open.empty()) {
        const Place place = open.back();
        open.pop_back();
        nodes.push_back(copyNode(place));
        present.insert(place.node->group);
        for (int child = place.node->getNumberOfChildren() - 1; child >= 0; --child)
            open.push_back({place.node->getChild(child), nodes.size() - 1, place.depth + 1});
    }
    addMissingGroups(converter, present, nodes);
    return nodes;
}

}  // namespace obj_adapter::tool
