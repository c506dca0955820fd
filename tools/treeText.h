// The tree of groups, for a person and for other programs.
#pragma once

#include "groupTree.h"
#include "jsonOutput.h"

#include <iosfwd>

namespace obj_adapter::tool {

// One line a node, indented; with all, the whole tree and whole names.
void printTree(std::ostream& out, const std::vector<TreeNode>& nodes, bool all);

Json treeToJson(const std::vector<TreeNode>& nodes, const ImportRun& importRun,
                const std::string& fileName);

}  // namespace obj_adapter::tool
