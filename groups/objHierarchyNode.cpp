// A node of the tree of group names. Covered by
// tests/groups/objHierarchyTest.cpp.
#include <obj_adapter/objHierarchyNode.h>

#include <cstddef>
#include <utility>

namespace obj_adapter {

ObjHierarchyNode::ObjHierarchyNode(std::string label, bool lastNamesOnly, Group* nodeGroup)
    : name(std::move(label)), showLastNamesOnly(lastNamesOnly), group(nodeGroup) {}

// A file decides how deep the tree is, so the way back up is kept in the tree
// itself: on the way down into a node's last child, the child's place in the
// list holds the node's parent. Needs neither stack nor memory.
ObjHierarchyNode::~ObjHierarchyNode() {
    ObjHierarchyNode* parent = nullptr;
    ObjHierarchyNode* node = this;
    while (true) {
        if (!node->children.empty()) {
            ObjHierarchyNode* const child = std::exchange(node->children.back(), parent);
            parent = node;
            node = child;
        } else if (node == this) {
            return;
        } else {
            // Childless by now: this destructor, entered again, returns at once.
            delete node;
            node = parent;
            parent = node->children.back();
            node->children.pop_back();
        }
    }
}

ObjHierarchyNode* ObjHierarchyNode::getChild(int position) {
    return children[static_cast<std::size_t>(position)];
}

int ObjHierarchyNode::getNumberOfChildren() const {
    return static_cast<int>(children.size());
}

std::vector<int>* ObjHierarchyNode::getFaceIndices() {
    return group == nullptr ? nullptr : &group->faceIndices;
}

std::string ObjHierarchyNode::getName() {
    if (group != nullptr)
        name = showLastNamesOnly ? group->getLastName() : group->getFullName();
    return name;
}

std::string ObjHierarchyNode::getFullName() {
    if (group != nullptr)
        name = group->getFullName();
    return name;
}

}  // namespace obj_adapter
