// The tree of groups as a list, parents before their children: a name of many
// parts makes a tree too deep for the call stack.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace obj_adapter {
class ObjConverter;
}

namespace obj_adapter::tool {

constexpr std::size_t NO_PARENT = static_cast<std::size_t>(-1);

struct TreeNode {
    std::string name;
    std::size_t parent = NO_PARENT;  // position in the list; NO_PARENT: the root
    std::size_t depth = 0;           // 0: the root

    // The group that the node stands for; none for a part of a path only.
    std::optional<std::string> fullName;
    std::vector<int> faces;
};

// The nodes in depth-first order. Asking for the tree renames groups of one name
// in the model.
//
// With two names that read alike ("a_b" and "a" "b") the converter's tree keeps
// one of the groups only; the others follow as children of the root, so that
// each face is in one node.
//
// Throws std::bad_alloc without memory for the tree.
std::vector<TreeNode> listGroupTree(ObjConverter& converter);

}  // namespace obj_adapter::tool
