// The tree of groups as a list.
#include "groupTree.h"

#include "tools/importedText.h"

#include <gtest/gtest.h>

#include <string>

namespace obj_adapter::test {

namespace {

// "0 model | 1 body (body): 0 1 | ..." with the depth in front; groups in brackets.
std::string describe(const std::vector<tool::TreeNode>& nodes) {
    std::string text;
    for (std::size_t index = 0; index < nodes.size(); ++index) {
        const tool::TreeNode& node = nodes[index];
        text += (index == 0 ? "" : " | ") + std::to_string(node.depth) + " " + node.name;
        if (node.parent != tool::NO_PARENT)
            text += " of " + nodes[node.parent].name;
        if (node.fullName)
            text += " (" + *node.fullName + "):";
        for (const int face : node.faces)
            text += " " + std::to_string(face);
    }
    return text;
}

struct TreeCase {
    const char* title;
    const char* objText;
    bool flat;
    const char* nodes;
};

const char* const VERTICES = "v 0 0 0\nv 1 0 0\nv 0 1 0\nv 0 0 1\n";

const TreeCase CASES[] = {
    {"one group is the root", "g a\nf 1 2 3\n", false, "0 a (a): 0"},
    {"siblings keep their order", "g b\nf 1 2 3\ng a\nf 1 2 4\n", false,
     "0 test | 1 b of test (b): 1 | 1 a of test (a): 0"},
    {"parts of a path have no group", "g a b c\nf 1 2 3\ng d\nf 1 2 4\n", false,
     "0 test | 1 d of test (d): 0 | 1 a of test | 2 b of a | 3 c of b (a_b_c): 1"},
    {"flat", "g a b c\nf 1 2 3\ng d\nf 1 2 4\n", true,
     "0 test | 1 a_b_c of test (a_b_c): 1 | 1 d of test (d): 0"},
    {"two names that read alike keep their faces", "g a_b\nf 1 2 3\ng a b\nf 1 2 4\ng c\nf 2 3 4\n",
     false, "0 test | 1 b of test (a_b): 0 | 1 c of test (c): 2 | 1 a_b of test (a_b): 1"},
    {"no faces", "", false, "0 test (test):"},
};

TEST(GroupTreeTest, Cases) {
    for (const TreeCase& row : CASES) {
        SCOPED_TRACE(row.title);
        tool::ImportSettings settings;
        settings.hierarchy = !row.flat;
        const ImportedText imported(std::string(VERTICES) + row.objText, {}, settings);
        EXPECT_EQ(describe(tool::listGroupTree(imported.getModel().getConverter())), row.nodes);
    }
}

TEST(GroupTreeTest, ADeepTree) {
    constexpr int DEPTH = 100000;
    std::string text = std::string(VERTICES) + "g";
    for (int part = 0; part < DEPTH; ++part)
        text += " n";
    const ImportedText imported(text + "\nf 1 2 3\ng x\nf 1 2 4\n");
    const std::vector<tool::TreeNode> nodes =
        tool::listGroupTree(imported.getModel().getConverter());
    ASSERT_EQ(nodes.size(), static_cast<std::size_t>(DEPTH) + 2);
    EXPECT_EQ(nodes.back().depth, static_cast<std::size_t>(DEPTH));
    EXPECT_EQ(nodes.back().parent, nodes.size() - 2);
}

}  // namespace

}  // namespace obj_adapter::test
