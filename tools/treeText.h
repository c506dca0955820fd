// The tree of groups for a person.
#pragma once

#include "groupTree.h"

#include <iosfwd>

namespace obj_adapter::tool {

// One line a node, indented; with all, the whole tree and whole names.
void printTree(std::ostream& out, const std::vector<TreeNode>& nodes, bool all);

}  // namespace obj_adapter::tool
