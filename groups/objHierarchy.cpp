// Builds the tree of group names. Covered by tests/groups/objHierarchyTest.cpp.
#include "groups/objHierarchy.h"

#include "groups/nameIndex.h"
#include "model/objModel.h"

#include <algorithm>
#include <cstddef>
#include <deque>
#include <map>
#include <numeric>
#include <string_view>
#include <utility>
#include <vector>

namespace obj_adapter {

namespace {

// The label of a group's node until getName brings it up to date.
const char GROUP_NODE_LABEL[] = "GROUP NODE";

// Appends a new node to the parent's children. No node is ever attached twice.
ObjHierarchyNode& attachNewNode(ObjHierarchyNode& parent, std::string label, bool lastNamesOnly,
                                Group* group) {
    auto node = std::make_unique<ObjHierarchyNode>(std::move(label), lastNamesOnly, group);
    parent.children.push_back(node.get());
    return *node.release();
}

// Names seen so far, in byte order, each with the first number that may still
// be free behind it. Names are only ever added, so a number once found taken
// stays taken.
using SeenNames = std::map<std::string, int>;

// Appends "_" and the first free number to the last component, given that the
// name as it stands is taken. That number is free for the full name exactly if
// it is for the last component with the rest in front, so one of them decides.
void renameGroup(Group& group, SeenNames::iterator takenName, SeenNames& seenNames) {
    std::string ending;
    do {
        ending = '_';
        ending += std::to_string(takenName->second++);
    } while (!seenNames.try_emplace(takenName->first + ending, 1).second);

    const int lastPosition = static_cast<int>(group.names.size()) - 1;
    group.setComponentName(lastPosition, group.getLastName() + ending);
}

// In table order: the first group of a name keeps it. The names that must
// differ are the full ones where groups hang flat and the last ones where they
// hang by path.
void makeNamesUnique(ObjModel& model, bool flat) {
    SeenNames seenNames;
    for (Group& group : model.groups) {
        const auto [name, isNew] =
            seenNames.try_emplace(flat ? group.getFullName() : group.getLastName(), 1);
        if (!isNew)
            renameGroup(group, name, seenNames);
    }
}

// Every group becomes a child of the root and shows its full name, whatever the
// host has chosen.
void attachGroupsFlat(ObjModel& model, ObjHierarchyNode& root) {
    root.children.reserve(model.groups.size());
    for (Group& group : model.groups)
        attachNewNode(root, GROUP_NODE_LABEL, false, &group);
}

// Hangs groups under the nodes of their paths.
//
// Nodes are found by joined names, not by components: a simple group "a_b" and
// the path "a", "b" are one name and so one node.
class PathTree {
public:
    // The root is registered under the text that it has for a label.
    PathTree(ObjHierarchyNode& treeRoot, std::string_view rootName, bool lastNamesOnly)
        : root(treeRoot), showLastNamesOnly(lastNamesOnly) {
        index.reach(index.getStart(), rootName).node = &root;
    }

    // A node that is registered under the group's full name is taken over where
    // it hangs, be it a mere path, the root or another group's. Otherwise the
    // group gets a node of its own.
    void addGroup(Group& group) {
        const std::string_view fullName = keepFullName(group);
        if (ObjHierarchyNode* const node = index.find(fullName)) {
            node->name = GROUP_NODE_LABEL;
            node->group = &group;
            return;
        }
        // Registered only after its parent is found: a host may have written a
        // lone empty component, whose path would else lead to the node itself.
        ObjHierarchyNode& parent = findOrMakeParent(group, fullName);
        NameIndex::Place& place = index.reach(index.getStart(), fullName);
        place.node = &attachNewNode(parent, GROUP_NODE_LABEL, showLastNamesOnly, &group);
    }

private:
    // The full name as a text that stays for as long as the tree is built.
    std::string_view keepFullName(const Group& group) {
        if (!group.isCompound())
            return group.name;
        return joinedNames.emplace_back(group.getFullName());
    }

    // The whole path is looked up before its parts: where it has a node, no
    // nodes are made for the parts in front.
    ObjHierarchyNode& findOrMakeParent(const Group& group, std::string_view fullName) {
        if (!group.isCompound())
            return root;
        const std::size_t lastLength = group.names.back().size();
        const std::size_t separatorLength = group.names.size() > 1 ? 1 : 0;
        ObjHierarchyNode* const parent =
            index.find(fullName.substr(0, fullName.size() - lastLength - separatorLength));
        return parent != nullptr ? *parent : makePath(group, fullName);
    }

    // Walks down the path of all components but the last, making the nodes that
    // it lacks.
    ObjHierarchyNode& makePath(const Group& group, std::string_view fullName) {
        ObjHierarchyNode* parent = &root;
        NameIndex::Place* place = &index.getStart();
        std::size_t length = 0;  // of the path so far, joined
        for (std::size_t component = 0; component + 1 < group.names.size(); ++component) {
            const std::string& name = group.names[component];
            const std::size_t separatorLength = component > 0 ? 1 : 0;
            const std::size_t addedLength = separatorLength + name.size();
            place = &index.reach(*place, fullName.substr(length, addedLength));
            length += addedLength;
            if (place->node == nullptr) {
                std::string label = showLastNamesOnly ? name : std::string(fullName, 0, length);
                place->node = &attachNewNode(*parent, std::move(label), showLastNamesOnly, nullptr);
            }
            parent = place->node;
        }
        return *parent;
    }

    ObjHierarchyNode& root;
    const bool showLastNamesOnly;
    std::deque<std::string> joinedNames;
    NameIndex index;
};

// Groups with fewer components come first, simple ones before all, so that the
// node of a group is there when its path is looked up. Table order otherwise.
std::vector<std::size_t> pathOrder(const GroupTable& groups) {
    std::vector<std::size_t> order(groups.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::stable_sort(order.begin(), order.end(), [&groups](std::size_t a, std::size_t b) {
        return groups[a].names.size() < groups[b].names.size();
    });
    return order;
}

void attachGroupsByPath(ObjModel& model, ObjHierarchyNode& root, const std::string& rootName,
                        bool showLastNamesOnly) {
    PathTree tree(root, rootName, showLastNamesOnly);
    for (const std::size_t group : pathOrder(model.groups))
        tree.addGroup(model.groups[group]);
}

// A root with one child only says nothing: the child takes its place, even
// where the root stands for a group.
void replaceRootByOnlyChild(std::unique_ptr<ObjHierarchyNode>& root) {
    if (root->children.size() != 1)
        return;
    std::unique_ptr<ObjHierarchyNode> onlyChild(root->children.front());
    root->children.clear();
    root = std::move(onlyChild);
}

}  // namespace

void ObjHierarchy::build(ObjModel& model, bool flat, bool showLastNamesOnly,
                         const std::string& rootName) {
    root.reset();
    builtFlat = flat;
    builtWithLastNamesOnly = showLastNamesOnly;

    if (model.groups.size() == 1) {
        root = std::make_unique<ObjHierarchyNode>(GROUP_NODE_LABEL, showLastNamesOnly,
                                                  &model.groups.front());
        return;
    }

    auto newRoot = std::make_unique<ObjHierarchyNode>(rootName, showLastNamesOnly, nullptr);
    makeNamesUnique(model, flat);
    if (flat)
        attachGroupsFlat(model, *newRoot);
    else
        attachGroupsByPath(model, *newRoot, rootName, showLastNamesOnly);
    replaceRootByOnlyChild(newRoot);
    root = std::move(newRoot);
}

ObjHierarchy& getHierarchy(ObjModel& model, bool flat, bool showLastNamesOnly) {
    if (model.hierarchy == nullptr)
        model.hierarchy = std::make_unique<ObjHierarchy>();
    ObjHierarchy& hierarchy = *model.hierarchy;
    const bool isCurrent = model.hierarchyValid && hierarchy.wasBuiltWith(flat, showLastNamesOnly);
    if (!isCurrent)
        hierarchy.build(model, flat, showLastNamesOnly, model.name);
    return hierarchy;
}

}  // namespace obj_adapter
