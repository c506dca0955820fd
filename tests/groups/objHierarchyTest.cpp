// Covers groups/objHierarchy.cpp, groups/nameIndex.h and
// groups/objHierarchyNode.cpp.
#include "groups/objHierarchy.h"

#include "groups/groupTable.h"
#include "groups/nameIndex.h"
#include "model/objModel.h"
#include "support/countedMemory.h"
#include "support/describe.h"
#include "support/importText.h"
#include "support/randomSource.h"

#include <gtest/gtest.h>

#if !defined(_WIN32)
#include <pthread.h>
#endif

#include <algorithm>
#include <deque>
#include <map>
#include <memory>
#include <new>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace obj_adapter::test {
namespace {

using Names = std::vector<std::string>;

const bool FLAT = true;
const bool BY_PATH = false;
const bool LAST_NAMES = true;
const bool FULL_NAMES = false;

// Each entry one group: one name a simple group, more a compound one.
void addGroups(ObjModel& model, const std::vector<Names>& groups) {
    for (const Names& names : groups)
        addGroupFromNames(model, names);
}

ObjHierarchyNode* buildRoot(ObjModel& model, bool flat, bool showLastNamesOnly) {
    return getHierarchy(model, flat, showLastNamesOnly).getRoot();
}

// "robot(leg#2 arm(left#0 right#1))": what getName gives, the group's position
// in the table, and the children. For trees that are not deep.
std::string describeTree(ObjHierarchyNode& node, const GroupTable& groups) {
    std::string text = node.getName();
    if (node.group != nullptr)
        text += "#" + std::to_string(node.group - groups.data());
    for (int child = 0; child < node.getNumberOfChildren(); ++child)
        text += (child == 0 ? "(" : " ") + describeTree(*node.getChild(child), groups);
    return node.getNumberOfChildren() == 0 ? text : text + ")";
}

std::string describeTree(ObjModel& model, bool flat, bool showLastNamesOnly) {
    return describeTree(*buildRoot(model, flat, showLastNamesOnly), model.groups);
}

struct TreeCase {
    const char* title;
    std::vector<Names> groups;
    const char* lastNames;  // describeTree() form
    const char* fullNames;
    const char* flat;
};

// All for a model named "robot".
const TreeCase TREE_CASES[] = {
    {"no groups", {}, "robot", "robot", "robot"},
    {"one simple group", {{"a"}}, "a#0", "a#0", "a#0"},
    {"one compound group shows no path", {{"a", "b"}}, "b#0", "a_b#0", "a_b#0"},
    {"simple groups keep table order",
     {{"c"}, {"a"}, {"b"}},
     "robot(c#0 a#1 b#2)",
     "robot(c#0 a#1 b#2)",
     "robot(c#0 a#1 b#2)"},
    {"a shared first component becomes the root",
     {{"body", "arm", "left"}, {"body", "arm", "right"}, {"body", "leg"}},
     "body(leg#2 arm(left#0 right#1))",
     "body(body_leg#2 body_arm(body_arm_left#0 body_arm_right#1))",
     "robot(body_arm_left#0 body_arm_right#1 body_leg#2)"},
    {"groups of fewer components come first",
     {{"a", "b", "c"}, {"d", "e"}, {"f"}},
     "robot(f#2 d(e#1) a(b(c#0)))",
     "robot(f#2 d(d_e#1) a(a_b(a_b_c#0)))",
     "robot(a_b_c#0 d_e#1 f#2)"},
    {"a simple group is the path of a compound one",
     {{"body"}, {"body", "arm"}, {"x"}},
     "robot(body#0(arm#1) x#2)",
     "robot(body#0(body_arm#1) x#2)",
     "robot(body#0 body_arm#1 x#2)"},
    {"the same, the simple group read last",
     {{"body", "arm"}, {"x"}, {"body"}},
     "robot(x#1 body#2(arm#0))",
     "robot(x#1 body#2(body_arm#0))",
     "robot(body_arm#0 x#1 body#2)"},
    {"a compound group is the path of a longer one",
     {{"a", "b", "c"}, {"a", "b"}, {"x"}},
     "robot(x#2 a(b#1(c#0)))",
     "robot(x#2 a(a_b#1(a_b_c#0)))",
     "robot(a_b_c#0 a_b#1 x#2)"},
    {"of one full name, the group of more components takes the node",
     {{"a_b"}, {"a", "b"}, {"x"}},
     "robot(b#1 x#2)",
     "robot(a_b#1 x#2)",
     "robot(a_b#0 a_b_1#1 x#2)"},
    {"a joined name is a path",
     {{"body_arm"}, {"body", "arm", "left"}, {"x"}},
     "robot(body_arm#0(left#1) x#2)",
     "robot(body_arm#0(body_arm_left#1) x#2)",
     "robot(body_arm#0 body_arm_left#1 x#2)"},
    {"a joined name in the middle of a path",
     {{"a_b"}, {"a", "b", "c", "d"}, {"x"}},
     "robot(a_b#0(c(d#1)) x#2 a)",
     "robot(a_b#0(a_b_c(a_b_c_d#1)) x#2 a)",
     "robot(a_b#0 a_b_c_d#1 x#2)"},
    {"a mere path is taken by a group that joins to its name",
     {{"a", "b", "c", "d"}, {"a", "b", "c", "e", "f"}, {"x", "y", "z", "u", "v"}, {"x_y", "z"}},
     "robot(x_y(z#3(u(v#2))) a(b(c(d#0 e(f#1)))) x)",
     "robot(x_y(x_y_z#3(x_y_z_u(x_y_z_u_v#2))) a(a_b(a_b_c(a_b_c_d#0 a_b_c_e(a_b_c_e_f#1)))) x)",
     "robot(a_b_c_d#0 a_b_c_e_f#1 x_y_z_u_v#2 x_y_z#3)"},
    {"the root takes the group of its name",
     {{"robot"}, {"a"}, {"b"}},
     "robot#0(a#1 b#2)",
     "robot#0(a#1 b#2)",
     "robot(robot#0 a#1 b#2)"},
    {"the root has taken a group and still gives way to its only child",
     {{"robot"}, {"robot", "a"}},
     "a#1",
     "robot_a#1",
     "robot(robot#0 robot_a#1)"},
    {"paths that begin with the root's name",
     {{"robot", "a"}, {"robot", "b", "c"}},
     "robot(a#0 b(c#1))",
     "robot(robot_a#0 robot_b(robot_b_c#1))",
     "robot(robot_a#0 robot_b_c#1)"},
    {"one name twice",
     {{"default"}, {"default"}},
     "robot(default#0 default_1#1)",
     "robot(default#0 default_1#1)",
     "robot(default#0 default_1#1)"},
    {"one last name twice",
     {{"a", "b"}, {"c", "b"}},
     "robot(a(b#0) c(b_1#1))",
     "robot(a(a_b#0) c(c_b_1#1))",
     "robot(a_b#0 c_b#1)"},
    {"one path twice",
     {{"a", "b"}, {"a", "b"}},
     "a(b#0 b_1#1)",
     "a(a_b#0 a_b_1#1)",
     "robot(a_b#0 a_b_1#1)"},
    {"one child for the root, but many below",
     {{"a", "b", "c"}, {"a", "b", "d"}},
     "a(b(c#0 d#1))",
     "a(a_b(a_b_c#0 a_b_d#1))",
     "robot(a_b_c#0 a_b_d#1)"},
};

TEST(ObjHierarchyTest, TreesOfAllThreeKinds) {
    for (const TreeCase& row : TREE_CASES) {
        SCOPED_TRACE(row.title);
        const std::pair<std::pair<bool, bool>, const char*> KINDS[] = {
            {{BY_PATH, LAST_NAMES}, row.lastNames},
            {{BY_PATH, FULL_NAMES}, row.fullNames},
            {{FLAT, FULL_NAMES}, row.flat},
        };
        for (const auto& [flags, expected] : KINDS) {
            ObjModel model;
            model.name = "robot";
            addGroups(model, row.groups);
            EXPECT_EQ(describeTree(model, flags.first, flags.second), expected);
        }
    }
}

TEST(ObjHierarchyTest, FlatTreesShowFullNamesWhateverIsSet) {
    ObjModel model;
    addGroups(model, {{"body", "arm", "left"}, {"leg"}});
    ObjHierarchyNode* root = buildRoot(model, FLAT, LAST_NAMES);
    EXPECT_EQ(describeTree(*root, model.groups), "Obj File(body_arm_left#0 leg#1)");
    EXPECT_TRUE(root->showLastNamesOnly);
    EXPECT_FALSE(root->getChild(0)->showLastNamesOnly);
    root = buildRoot(model, FLAT, FULL_NAMES);
    EXPECT_FALSE(root->showLastNamesOnly);
    EXPECT_FALSE(root->getChild(0)->showLastNamesOnly);
}

TEST(ObjHierarchyTest, BeforeAnyImport) {
    ObjConverter::clearInstance();
    ObjConverter* converter = ObjConverter::getInstance();
    for (const bool useHierarchy : {false, true}) {
        converter->setUseGroupNameHierarchy(useHierarchy);
        ObjHierarchyNode* root = converter->getRootOfHierarchy();
        ASSERT_NE(root, nullptr);
        EXPECT_EQ(root->name, "Obj File");
        EXPECT_EQ(root->getName(), "Obj File");
        EXPECT_EQ(root->getFullName(), "Obj File");
        EXPECT_EQ(root->getNumberOfChildren(), 0);
        EXPECT_EQ(root->group, nullptr);
        EXPECT_EQ(root->getFaceIndices(), nullptr);
    }
    ObjConverter::clearInstance();
}

TEST(ObjHierarchyTest, ALoneGroupIsTheRoot) {
    for (const bool flat : {false, true}) {
        ObjModel model;
        addGroup(model, "a");
        model.groups[0].faceIndices = {3, 1};
        ObjHierarchyNode* root = buildRoot(model, flat, LAST_NAMES);
        EXPECT_EQ(root->name, "GROUP NODE");
        EXPECT_EQ(root->getNumberOfChildren(), 0);
        EXPECT_EQ(root->group, &model.groups[0]);
        EXPECT_EQ(root->getFaceIndices(), &model.groups[0].faceIndices);
        EXPECT_EQ(root->getName(), "a");
        EXPECT_EQ(root->name, "a");
    }
}

TEST(ObjHierarchyTest, NamesOfNodes) {
    ObjModel model;
    addGroups(model, {{"a", "b", "c"}, {"a", "b", "d"}, {"x"}});
    ObjHierarchyNode* root = buildRoot(model, BY_PATH, LAST_NAMES);
    ASSERT_EQ(describeTree(*root, model.groups), "Obj File(x#2 a(b(c#0 d#1)))");

    ObjHierarchyNode* path = root->getChild(1)->getChild(0);
    EXPECT_EQ(path->name, "b");
    EXPECT_EQ(path->getFullName(), "b");
    EXPECT_EQ(path->getFaceIndices(), nullptr);
    EXPECT_TRUE(path->showLastNamesOnly);

    ObjHierarchyNode* leaf = path->getChild(1);
    EXPECT_EQ(leaf->getFullName(), "a_b_d");
    EXPECT_EQ(leaf->name, "a_b_d");
    EXPECT_TRUE(leaf->showLastNamesOnly);
    EXPECT_EQ(leaf->getName(), "d");
    EXPECT_EQ(leaf->name, "d");

    // The group's name as it is now, not as it was when the tree was built.
    model.groups[1].names.back() = "e";
    EXPECT_EQ(leaf->getName(), "e");

    root = buildRoot(model, BY_PATH, FULL_NAMES);
    path = root->getChild(1)->getChild(0);
    EXPECT_EQ(path->name, "a_b");
    EXPECT_FALSE(path->showLastNamesOnly);
    EXPECT_EQ(path->getChild(0)->name, "GROUP NODE");
    EXPECT_EQ(path->getChild(0)->getName(), "a_b_c");
}

TEST(ObjHierarchyTest, ATakenNodeKeepsItsPlaceAndShowsTheLastGroup) {
    ObjModel model;
    addGroups(model, {{"x"}, {"a_b"}, {"y"}, {"a", "b"}});
    model.groups[1].faceIndices = {1};
    model.groups[3].faceIndices = {3};
    ObjHierarchyNode* root = buildRoot(model, BY_PATH, LAST_NAMES);
    ASSERT_EQ(root->getNumberOfChildren(), 3);
    EXPECT_EQ(root->getChild(1)->name, "GROUP NODE");
    EXPECT_EQ(root->getChild(1)->group, &model.groups[3]);
    EXPECT_EQ(root->getChild(1)->getFaceIndices(), &model.groups[3].faceIndices);
    EXPECT_EQ(describeTree(*root, model.groups), "Obj File(x#0 b#3 y#2)");
}

TEST(ObjHierarchyTest, TheInitialGroupIsTakenByTheRootOrHangsBelowIt) {
    ImportOptions options;
    options.fileName = "robot.obj";
    const std::string text =
        "v 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\nf 2 3 1\ng a\nf 3 1 2\ng b\nf 3 2 1\n";
    for (const bool hierarchy : {false, true}) {
        options.hierarchy = hierarchy;
        const ImportResult result = importText(text, options);
        ASSERT_EQ(describeGroups(result.model), "robot: 0 1; a: 2; b: 3");
        ObjHierarchyNode* root = ObjConverter::getInstance()->getRootOfHierarchy();
        EXPECT_EQ(root->getName(), "robot");
        if (hierarchy) {
            ASSERT_NE(root->getFaceIndices(), nullptr);
            EXPECT_EQ(*root->getFaceIndices(), (std::vector<int>{0, 1}));
            EXPECT_EQ(root->getNumberOfChildren(), 2);
        } else {
            EXPECT_EQ(root->getFaceIndices(), nullptr);
            ASSERT_EQ(root->getNumberOfChildren(), 3);
            EXPECT_EQ(root->getChild(0)->getName(), "robot");
            EXPECT_EQ(*root->getChild(0)->getFaceIndices(), (std::vector<int>{0, 1}));
        }
    }
}

TEST(ObjHierarchyTest, RenamedGroupsKeepTheirNames) {
    ImportOptions options;
    options.fileName = "robot.obj";
    const ImportResult result =
        importText("v 0 0 0\nv 1 0 0\nv 0 1 0\ng \nf 1 2 3\ng \nf 1 2 3\n", options);
    ASSERT_EQ(describeGroups(result.model), "default: 0; default: 1");
    ObjConverter* converter = ObjConverter::getInstance();
    for (int call = 0; call < 2; ++call) {
        ObjHierarchyNode* root = converter->getRootOfHierarchy();
        ASSERT_EQ(root->getNumberOfChildren(), 2);
        EXPECT_EQ(root->getChild(0)->getName(), "default");
        EXPECT_EQ(root->getChild(1)->getName(), "default_1");
        EXPECT_EQ(converter->getGroup(0)->name, "default");
        EXPECT_EQ(converter->getGroup(1)->name, "default_1");
    }
}

TEST(ObjHierarchyTest, UniqueNamesSkipThoseThatAreTaken) {
    ObjModel model;
    addGroups(model, {{"a_1"}, {"a"}, {"a_3"}, {"a"}, {"a"}, {"a_1"}, {"a_1_1"}, {"a"}});
    EXPECT_EQ(describeTree(model, FLAT, LAST_NAMES),
              "Obj File(a_1#0 a#1 a_3#2 a_2#3 a_4#4 a_1_1#5 a_1_1_1#6 a_5#7)");
}

TEST(ObjHierarchyTest, UniqueNamesDifferBetweenFlatAndByPath) {
    const std::vector<Names> groups = {{"a", "b"}, {"c", "b"}, {"b"}, {"a", "b_1"}};
    ObjModel byPath;
    addGroups(byPath, groups);
    buildRoot(byPath, BY_PATH, LAST_NAMES);
    EXPECT_EQ(describeGroups(viewOfModel(byPath)), "a/b:; c/b_1:; b_2:; a/b_1_1:");

    ObjModel flat;
    addGroups(flat, groups);
    buildRoot(flat, FLAT, LAST_NAMES);
    EXPECT_EQ(describeGroups(viewOfModel(flat)), "a/b:; c/b:; b:; a/b_1:");
}

TEST(ObjHierarchyTest, EveryRequestBuildsAnewAndFreesTheOldTree) {
    ObjModel model;
    addGroups(model, {{"a", "b", "c"}, {"a", "b", "d"}, {"x"}});
    buildRoot(model, BY_PATH, LAST_NAMES)->name = "written by the host";
    const std::size_t liveBlocks = getNumberOfBlocksInUse();
    EXPECT_FALSE(model.hierarchyValid);
    EXPECT_EQ(buildRoot(model, BY_PATH, LAST_NAMES)->name, "Obj File");
    EXPECT_FALSE(model.hierarchyValid);
    EXPECT_EQ(getNumberOfBlocksInUse(), liveBlocks - 1);  // the long name
}

TEST(ObjHierarchyTest, AValidTreeWithTheSameFlagsIsKept) {
    ObjModel model;
    addGroups(model, {{"a"}, {"b"}});
    buildRoot(model, BY_PATH, LAST_NAMES)->name = "kept";
    model.hierarchyValid = true;
    EXPECT_EQ(buildRoot(model, BY_PATH, LAST_NAMES)->name, "kept");
    EXPECT_EQ(buildRoot(model, BY_PATH, FULL_NAMES)->name, "Obj File");
    buildRoot(model, BY_PATH, FULL_NAMES)->name = "kept";
    EXPECT_EQ(buildRoot(model, BY_PATH, FULL_NAMES)->name, "kept");
    EXPECT_EQ(buildRoot(model, FLAT, FULL_NAMES)->name, "Obj File");
}

TEST(ObjHierarchyTest, FlagsBeforeTheFirstBuild) {
    const ObjHierarchy hierarchy;
    EXPECT_EQ(hierarchy.getRoot(), nullptr);
    EXPECT_TRUE(hierarchy.wasBuiltWith(true, true));
    EXPECT_FALSE(hierarchy.wasBuiltWith(false, true));
    EXPECT_FALSE(hierarchy.wasBuiltWith(true, false));
}

// A host may write names that no file can hold.
TEST(ObjHierarchyTest, NamesThatAHostWrote) {
    ObjModel model;
    model.name = "robot";
    model.groups = {{{""}, "", {}}, {{"a"}, "", {}}, {{}, "b", {}}, {{"", ""}, "", {}}};
    EXPECT_EQ(describeTree(model, BY_PATH, FULL_NAMES), "robot(b#2 #0(a#1 __1#3))");
    EXPECT_EQ(model.groups[3].names, (Names{"", "_1"}));
}

// --- The slow twin -----------------------------------------------------------

// The same trees with whole strings as keys, every number tried and no thought
// for speed; what the library's must equal. Never for the library.
struct SlowNode {
    std::string name;
    bool showLastNamesOnly = false;
    int group = NO_INDEX;
    std::vector<SlowNode*> children;

    void addChild(SlowNode* child) {
        if (std::find(children.begin(), children.end(), child) == children.end())
            children.push_back(child);
    }
};

std::string joinFirst(const Names& names, std::size_t componentCount) {
    std::string joined;
    for (std::size_t component = 0; component < componentCount; ++component)
        joined += names[component] + "_";
    if (!joined.empty())
        joined.pop_back();
    return joined;
}

std::string fullNameOf(const Group& group) {
    return group.names.empty() ? group.name : joinFirst(group.names, group.names.size());
}

std::string lastNameOf(const Group& group) {
    return group.names.empty() ? group.name : group.names.back();
}

class SlowHierarchy {
public:
    SlowHierarchy(GroupTable& modelGroups, bool flat, bool showLastNamesOnly,
                  const std::string& rootName)
        : groups(modelGroups), lastNamesOnly(showLastNamesOnly) {
        if (groups.size() == 1) {
            root = makeNode("GROUP NODE", lastNamesOnly, 0);
            return;
        }
        root = makeNode(rootName, lastNamesOnly, NO_INDEX);
        nodeIndex.emplace(rootName, root);
        makeNamesUnique(flat);
        if (flat)
            buildFlat();
        else
            buildByPath();
        if (root->children.size() == 1)
            root = root->children[0];
    }

    SlowNode& getRoot() { return *root; }

private:
    SlowNode* makeNode(const std::string& name, bool showLastNamesOnly, int group) {
        nodes.push_back({name, showLastNamesOnly, group, {}});
        return &nodes.back();
    }

    void makeNamesUnique(bool flat) {
        std::set<std::string> seen;
        const auto keyOf = [flat](const Group& group) {
            return flat ? fullNameOf(group) : lastNameOf(group);
        };
        for (Group& group : groups) {
            std::string& last = group.names.empty() ? group.name : group.names.back();
            const std::string base = last;
            for (int number = 1; seen.count(keyOf(group)) > 0; ++number)
                last = base + "_" + std::to_string(number);
            seen.insert(keyOf(group));
        }
    }

    void buildFlat() {
        for (std::size_t group = 0; group < groups.size(); ++group) {
            SlowNode* node = makeNode("GROUP NODE", false, static_cast<int>(group));
            nodeIndex.emplace(fullNameOf(groups[group]), node);
            root->addChild(node);
        }
    }

    void buildByPath() {
        std::set<std::pair<std::size_t, std::size_t>> order;
        for (std::size_t group = 0; group < groups.size(); ++group)
            order.emplace(groups[group].names.size(), group);
        for (const auto& [componentCount, group] : order)
            placeGroup(static_cast<int>(group), groups[group]);
    }

    void placeGroup(int groupIndex, const Group& group) {
        const std::string fullName = fullNameOf(group);
        if (const auto found = nodeIndex.find(fullName); found != nodeIndex.end()) {
            found->second->group = groupIndex;
            found->second->name = "GROUP NODE";
            return;
        }
        SlowNode* node = makeNode("GROUP NODE", lastNamesOnly, groupIndex);
        nodeIndex.emplace(fullName, node);
        if (group.names.empty()) {
            root->addChild(node);
            return;
        }
        const std::size_t pathLength = group.names.size() - 1;
        const auto found = nodeIndex.find(joinFirst(group.names, pathLength));
        (found != nodeIndex.end() ? found->second : makePath(group, pathLength))->addChild(node);
    }

    SlowNode* makePath(const Group& group, std::size_t pathLength) {
        SlowNode* parent = root;
        for (std::size_t count = 1; count <= pathLength; ++count) {
            const std::string prefix = joinFirst(group.names, count);
            SlowNode*& node = nodeIndex[prefix];
            if (node == nullptr) {
                node = makeNode(lastNamesOnly ? group.names[count - 1] : prefix, lastNamesOnly,
                                NO_INDEX);
                parent->addChild(node);
            }
            parent = node;
        }
        return parent;
    }

    GroupTable& groups;
    const bool lastNamesOnly;
    std::deque<SlowNode> nodes;
    std::map<std::string, SlowNode*> nodeIndex;
    SlowNode* root = nullptr;
};

std::string printNode(int depth, const std::string& storedName, bool showLastNamesOnly, int group,
                      const std::string& name, const std::string& fullName) {
    return std::string(static_cast<std::size_t>(depth), ' ') + "'" + storedName + "' " +
           (showLastNamesOnly ? "last " : "full ") + std::to_string(group) + " '" + name + "' '" +
           fullName + "'\n";
}

std::string print(SlowNode& node, const GroupTable& groups, int depth = 0) {
    std::string name = node.name;
    std::string fullName = node.name;
    if (node.group != NO_INDEX) {
        const Group& group = groups[static_cast<std::size_t>(node.group)];
        fullName = fullNameOf(group);
        name = node.showLastNamesOnly ? lastNameOf(group) : fullName;
    }
    std::string text =
        printNode(depth, node.name, node.showLastNamesOnly, node.group, name, fullName);
    for (SlowNode* child : node.children)
        text += print(*child, groups, depth + 1);
    return text;
}

std::string print(ObjHierarchyNode& node, const GroupTable& groups, int depth = 0) {
    const int group =
        node.group == nullptr ? NO_INDEX : static_cast<int>(node.group - groups.data());
    const std::string storedName = node.name;
    const std::string fullName = node.getFullName();
    const std::string name = node.getName();
    std::string text = printNode(depth, storedName, node.showLastNamesOnly, group, name, fullName);
    for (int child = 0; child < node.getNumberOfChildren(); ++child)
        text += print(*node.getChild(child), groups, depth + 1);
    return text;
}

std::string printNames(const GroupTable& groups) {
    std::string text;
    for (const Group& group : groups) {
        text += "'" + group.name + "'";
        for (const std::string& component : group.names)
            text += " '" + component + "'";
        text += "\n";
    }
    return text;
}

// Few names, with underscores inside, so that different components often join
// to the same text.
GroupTable randomGroups(RandomSource& random) {
    const char* const NAMES[] = {"a", "b", "a_b", "b_1", "a_1", "_", "1", "", "b_a", "ab"};
    const int nameCount = random.between(2, static_cast<int>(std::size(NAMES)));
    const auto randomName = [&] { return std::string(NAMES[random.below(nameCount)]); };

    GroupTable groups(static_cast<std::size_t>(random.below(13)));
    for (Group& group : groups) {
        group.name = randomName();
        if (random.oneIn(3))
            continue;
        group.name = "COMPOUND_GROUP";
        group.names.resize(static_cast<std::size_t>(random.between(1, 5)));
        for (std::string& component : group.names)
            component = randomName();
        // A lone empty component would be its own parent in the twin.
        if (group.names.size() == 1 && group.names.front().empty())
            group.names.front() = "a";
    }
    return groups;
}

TEST(ObjHierarchyTest, EqualsTheSlowTwin) {
    const int ROUNDS = 8000;
    const char* const ROOT_NAMES[] = {"a", "b", "a_b", "robot", "", "a_b_a", "_", "a_1"};
    RandomSource random(20240519);
    for (int round = 0; round < ROUNDS; ++round) {
        SCOPED_TRACE("round " + std::to_string(round));
        ObjModel model;
        model.name = ROOT_NAMES[random.below(static_cast<int>(std::size(ROOT_NAMES)))];
        model.groups = randomGroups(random);
        GroupTable twinGroups = model.groups;

        // The second build sees the names that the first has left.
        for (int build = 0; build < 2; ++build) {
            const bool flat = random.oneIn(4);
            const bool showLastNamesOnly = random.oneIn(2);
            SlowHierarchy twin(twinGroups, flat, showLastNamesOnly, model.name);
            ObjHierarchyNode* root = buildRoot(model, flat, showLastNamesOnly);
            ASSERT_EQ(printNames(model.groups), printNames(twinGroups));
            ASSERT_EQ(print(*root, model.groups), print(twin.getRoot(), twinGroups));
        }
    }
}

TEST(NameIndexTest, EqualsAMapOfStrings) {
    const int ROUNDS = 300;
    const int NODE_COUNT = 200;
    RandomSource random(77);
    for (int round = 0; round < ROUNDS; ++round) {
        const int byteCount = round % 3 == 0 ? 256 : random.between(1, 4);
        const int longest = random.between(1, 12);
        std::deque<std::string> texts;  // outlive the index
        std::deque<ObjHierarchyNode> nodes;
        NameIndex index;
        std::map<std::string, ObjHierarchyNode*> twin;
        for (int node = 0; node < NODE_COUNT; ++node) {
            std::string& text = texts.emplace_back();
            for (int length = random.below(longest + 1); length > 0; --length)
                text += static_cast<char>(random.below(byteCount));

            const auto found = twin.find(text);
            ASSERT_EQ(index.find(text), found == twin.end() ? nullptr : found->second);

            // In two steps, as paths are walked.
            const auto middle =
                static_cast<std::size_t>(random.below(static_cast<int>(text.size()) + 1));
            const std::string_view view = text;
            NameIndex::Place& halfway = index.reach(index.getStart(), view.substr(0, middle));
            NameIndex::Place& place = index.reach(halfway, view.substr(middle));
            ASSERT_EQ(place.node, found == twin.end() ? nullptr : found->second);
            place.node = &nodes.emplace_back(text, false, nullptr);
            twin[text] = place.node;
        }
        for (const auto& [text, node] : twin)
            ASSERT_EQ(index.find(text), node);
    }
}

// --- Great numbers -----------------------------------------------------------
//
// The numbers are such that work or memory in proportion to their square runs
// into the time limit of the test program.

TEST(ObjHierarchyTest, VeryManyGroupsOfOneName) {
    const int GROUP_COUNT = 100000;
    for (const bool flat : {false, true}) {
        ObjModel model;
        for (int group = 0; group < GROUP_COUNT; ++group)
            addGroup(model, "default");
        ObjHierarchyNode* root = buildRoot(model, flat, LAST_NAMES);
        ASSERT_EQ(root->getNumberOfChildren(), GROUP_COUNT);
        ASSERT_EQ(model.groups[0].name, "default");
        for (int group = 1; group < GROUP_COUNT; ++group) {
            const std::string name = "default_" + std::to_string(group);
            ASSERT_EQ(model.groups[static_cast<std::size_t>(group)].name, name);
            ASSERT_EQ(root->getChild(group)->getName(), name);
        }
    }
}

TEST(ObjHierarchyTest, VeryManyCompoundGroupsOfOnePath) {
    const int GROUP_COUNT = 100000;
    for (const bool flat : {false, true}) {
        ObjModel model;
        model.name = "robot";
        addGroup(model, "b_2");
        for (int group = 0; group < GROUP_COUNT; ++group)
            addGroupFromNames(model, {"a", "b"});
        ObjHierarchyNode* root = buildRoot(model, flat, LAST_NAMES);
        // By path, "b_2" is taken; flat, it is not, for there it would be "a_b_2".
        const auto last = static_cast<std::size_t>(GROUP_COUNT);
        EXPECT_EQ(model.groups[2].names, (Names{"a", "b_1"}));
        EXPECT_EQ(model.groups[3].names, (Names{"a", flat ? "b_2" : "b_3"}));
        EXPECT_EQ(model.groups[last].names.back(),
                  "b_" + std::to_string(flat ? GROUP_COUNT - 1 : GROUP_COUNT));
        EXPECT_EQ(root->getNumberOfChildren(), flat ? GROUP_COUNT + 1 : 2);
        EXPECT_EQ(root->getChild(1)->getNumberOfChildren(), flat ? 0 : GROUP_COUNT);
    }
}

Names chainNames(int componentCount) {
    Names names;
    for (int component = 0; component < componentCount; ++component)
        names.push_back("c" + std::to_string(component));
    return names;
}

// Walks down a chain of only children whose labels are the components; returns
// the node at its end or null where it is something else.
ObjHierarchyNode* findChainEnd(ObjHierarchyNode* node, const Names& names, std::size_t length) {
    for (std::size_t component = 0; component < length; ++component) {
        if (node->name != names[component])
            return nullptr;
        if (component + 1 < length) {
            if (node->getNumberOfChildren() != 1)
                return nullptr;
            node = node->getChild(0);
        }
    }
    return node;
}

void checkGroupsOfOneLongPath(int componentCount) {
    const Names names = chainNames(componentCount);
    const std::size_t pathLength = names.size() - 1;
    Names beside = names;
    beside.back() = "beside";
    Names below = names;
    below.push_back("further");
    below.push_back("below");

    ObjModel model;
    addGroups(model, {below, names, beside});
    ObjHierarchyNode* root = buildRoot(model, BY_PATH, LAST_NAMES);

    ObjHierarchyNode* end = findChainEnd(root, names, pathLength);
    ASSERT_NE(end, nullptr);
    ASSERT_EQ(end->getNumberOfChildren(), 2);
    EXPECT_EQ(end->getChild(0)->group, &model.groups[1]);
    EXPECT_EQ(end->getChild(1)->group, &model.groups[2]);
    EXPECT_EQ(end->getChild(1)->getName(), "beside");
    ASSERT_EQ(end->getChild(0)->getNumberOfChildren(), 1);
    ObjHierarchyNode* further = end->getChild(0)->getChild(0);
    EXPECT_EQ(further->getName(), "further");
    ASSERT_EQ(further->getNumberOfChildren(), 1);
    EXPECT_EQ(further->getChild(0)->group, &model.groups[0]);
}

TEST(ObjHierarchyTest, GroupsThatShareAVeryLongPath) {
    const int COMPONENT_COUNT = 50000;
    checkGroupsOfOneLongPath(COMPONENT_COUNT);
    checkGroupsOfOneLongPath(8 * COMPONENT_COUNT);
}

std::size_t bytesForChain(int componentCount) {
    ObjModel model;
    addGroups(model, {chainNames(componentCount), {"x"}});
    const std::size_t before = getBytesRequested();
    buildRoot(model, BY_PATH, LAST_NAMES);
    return getBytesRequested() - before;
}

TEST(ObjHierarchyTest, MemoryForAChainIsInProportionToItsLength) {
    const int COMPONENT_COUNT = 25000;
    const std::size_t bytes = bytesForChain(COMPONENT_COUNT);
    EXPECT_GT(bytes, COMPONENT_COUNT * sizeof(ObjHierarchyNode));
    EXPECT_LT(bytesForChain(2 * COMPONENT_COUNT), 5 * bytes / 2);
}

TEST(ObjHierarchyTest, AChainWithFullNames) {
    const int COMPONENT_COUNT = 5000;
    const Names names = chainNames(COMPONENT_COUNT);
    ObjModel model;
    addGroups(model, {names, {"x"}});
    ObjHierarchyNode* root = buildRoot(model, BY_PATH, FULL_NAMES);
    ASSERT_EQ(root->getNumberOfChildren(), 2);
    ObjHierarchyNode* node = root->getChild(1);
    std::string prefix = names.front();
    for (int component = 1; component < COMPONENT_COUNT; ++component) {
        ASSERT_EQ(node->name, prefix);
        ASSERT_EQ(node->getNumberOfChildren(), 1);
        node = node->getChild(0);
        prefix += "_" + names[static_cast<std::size_t>(component)];
    }
    EXPECT_EQ(node->group, &model.groups[0]);
    EXPECT_EQ(node->getName(), prefix);
}

TEST(ObjHierarchyNodeTest, DestroysAllDescendants) {
    const std::size_t before = getNumberOfBlocksInUse();
    {
        ObjHierarchyNode root("a root with a name of some length", true, nullptr);
        ObjHierarchyNode* node = &root;
        for (int depth = 0; depth < 1000; ++depth) {
            for (int child = 0; child < 3; ++child)
                node->children.push_back(new ObjHierarchyNode("a node", true, nullptr));
            // First, middle and last child in turn carry the next level.
            node = node->children[static_cast<std::size_t>(depth % 3)];
        }
        EXPECT_GT(getNumberOfBlocksInUse(), before + 3000);
    }
    EXPECT_EQ(getNumberOfBlocksInUse(), before);
}

TEST(ObjHierarchyNodeTest, DestructionNeedsNoMemory) {
    auto root = std::make_unique<ObjHierarchyNode>("root", true, nullptr);
    for (int child = 0; child < 3; ++child)
        root->children.push_back(new ObjHierarchyNode("child", true, nullptr));
    const std::size_t before = getNumberOfBlocksInUse();
    {
        const AllocationBudget budget(0);
        root.reset();
    }
    EXPECT_LT(getNumberOfBlocksInUse(), before);
}

// The stack of a thread can be chosen by POSIX threads alone.
#if !defined(_WIN32)

// Builds and destroys a tree as deep as the chain is long.
void* buildAndDestroyDeepTree(void* argument) {
    ObjModel& model = *static_cast<ObjModel*>(argument);
    buildRoot(model, BY_PATH, LAST_NAMES);
    model.hierarchy.reset();
    return argument;
}

TEST(ObjHierarchyTest, ADeepTreeNeedsLittleStack) {
    const std::size_t STACK_SIZE = 64 * 1024;
    const int DEPTH = 50000;
    ObjModel model;
    addGroups(model, {chainNames(DEPTH), {"x"}});

    pthread_attr_t attributes;
    ASSERT_EQ(pthread_attr_init(&attributes), 0);
    ASSERT_EQ(pthread_attr_setstacksize(&attributes, STACK_SIZE), 0);
    pthread_t thread;
    ASSERT_EQ(pthread_create(&thread, &attributes, buildAndDestroyDeepTree, &model), 0);
    void* result = nullptr;
    EXPECT_EQ(pthread_join(thread, &result), 0);
    EXPECT_EQ(result, &model);
    EXPECT_EQ(model.hierarchy, nullptr);
    pthread_attr_destroy(&attributes);
}

#endif

// --- Memory that runs out ----------------------------------------------------

TEST(ObjHierarchyTest, ABuildThatRunsOutOfMemoryLeavesNoTree) {
    const std::vector<Names> groups = {{"a", "a component with a long name", "c"},
                                       {"a", "a component with a long name", "d"},
                                       {"a"},
                                       {"a"},
                                       {"x_y"},
                                       {"x", "y"},
                                       {"robot"}};
    for (const bool flat : {false, true}) {
        std::string expected;
        {
            ObjModel model;
            addGroups(model, groups);
            expected = describeTree(model, flat, FULL_NAMES);
        }
        bool hasSucceeded = false;
        int failures = 0;
        while (!hasSucceeded) {
            ObjModel model;
            addGroups(model, groups);
            getHierarchy(model, !flat, LAST_NAMES);
            model.groups.clear();
            addGroups(model, groups);
            const std::size_t before = getNumberOfBlocksInUse();
            try {
                const AllocationBudget budget(failures);
                getHierarchy(model, flat, FULL_NAMES);
                hasSucceeded = true;
            } catch (const std::bad_alloc&) {
                ++failures;
            }
            if (hasSucceeded)
                break;
            ASSERT_EQ(model.hierarchy->getRoot(), nullptr);
            EXPECT_LE(getNumberOfBlocksInUse(), before);
            // The next request, with memory, is none the worse.
            EXPECT_EQ(describeTree(model, flat, FULL_NAMES), expected);
        }
        EXPECT_GT(failures, 10);
    }
}

}  // namespace
}  // namespace obj_adapter::test
