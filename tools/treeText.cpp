// Prints the tree of groups. Covered by tests/tools.
#include "treeText.h"

#include "terminalText.h"

#include <algorithm>
#include <ostream>

namespace obj_adapter::tool {

namespace {

// How much of a long list is shown unless all is wanted.
constexpr std::size_t MAX_LISTED_NODES = 40;

constexpr int COUNT_WIDTH = 9;

// A node without a group has no faces of its own.
void printNode(std::ostream& out, const TreeNode& node, bool all) {
    // Deeper nodes say how deep they are, or each line of a deep tree would be as
    // long as the tree is deep.
    constexpr std::size_t MAX_INDENTED_DEPTH = 24;
    out << (node.fullName ? numberColumn(node.faces.size(), COUNT_WIDTH)
                          : std::string(COUNT_WIDTH - 1, ' ') + "-")
        << std::string(2 + 2 * std::min(node.depth, MAX_INDENTED_DEPTH), ' ');
    if (node.depth > MAX_INDENTED_DEPTH)
        out << "(level " << node.depth << ") ";
    out << printableName(node.name, all) << "\n";
}

}  // namespace

void printTree(std::ostream& out, const std::vector<TreeNode>& nodes, bool all) {
    const std::size_t shown = all ? nodes.size() : std::min(nodes.size(), MAX_LISTED_NODES);
    out << "    faces  node\n";
    for (std::size_t node = 0; node < shown; ++node)
        printNode(out, nodes[node], all);
    if (nodes.size() > shown)
        out << "  ... and " << nodes.size() - shown << " more (--all shows them)\n";
}

// A list, not objects in objects: readers of JSON limit the depth.
Json treeToJson(const std::vector<TreeNode>& nodes, const ImportRun& importRun,
                const std::string& fileName) {
    Json json = makeJson("tree");
    json["file"] = fileName;
    json["succeeded"] = importRun.succeeded;
    json["nodes"] = Json::array();
    for (const TreeNode& node : nodes) {
        Json entry;
        entry["name"] = node.name;
        entry["parent"] = node.parent == NO_PARENT ? Json(nullptr) : Json(node.parent);
        entry["depth"] = node.depth;
        entry["group"] = node.fullName ? Json(*node.fullName) : Json(nullptr);
        entry["faces"] = node.faces.size();
        json["nodes"].push_back(std::move(entry));
    }
    return json;
}

}  // namespace obj_adapter::tool
