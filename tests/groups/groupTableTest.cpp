// Covers groups/groupTable.cpp.
#include "groups/groupTable.h"

#include "model/objModel.h"
#include "support/countedMemory.h"
#include "support/describe.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <functional>
#include <limits>
#include <new>
#include <string>
#include <utility>
#include <vector>

namespace obj_adapter::test {
namespace {

using Names = std::vector<std::string>;

// Adds faces that say that they belong to these groups, and does not touch the
// groups' lists.
void addFacesOf(ObjModel& model, const std::vector<int>& groupIndices) {
    for (const int groupIndex : groupIndices) {
        Face face;
        face.groupIndex = groupIndex;
        model.faces.push_back(face);
    }
}

std::vector<int> groupIndicesOf(const ObjModel& model) {
    std::vector<int> groupIndices;
    for (const Face& face : model.faces)
        groupIndices.push_back(face.groupIndex);
    return groupIndices;
}

std::string describe(ObjModel& model) {
    return describeGroups(viewOfModel(model));
}

// What an operation may change, for seeing that it did not.
std::string printEverything(ObjModel& model) {
    std::string text = describe(model);
    for (const int groupIndex : groupIndicesOf(model))
        text += " " + std::to_string(groupIndex);
    return text + (model.hierarchyValid ? " valid" : " invalid");
}

TEST(GroupTableTest, AddGroupAlwaysMakesANewGroup) {
    ObjModel model;
    EXPECT_EQ(addGroup(model, "a"), 0);
    EXPECT_EQ(addGroup(model, "b"), 1);
    EXPECT_EQ(addGroup(model, "a"), 2);
    EXPECT_EQ(describe(model), "a:; b:; a:");
    EXPECT_EQ(model.groups[2].name, "a");
}

TEST(GroupTableTest, AddGroupFromNames) {
    ObjModel model;
    EXPECT_EQ(addGroupFromNames(model, {"a"}), 0);
    EXPECT_EQ(addGroupFromNames(model, {"b", "c"}), 1);
    EXPECT_EQ(addGroupFromNames(model, {}), 2);

    EXPECT_EQ(model.groups[0].name, "a");
    EXPECT_EQ(model.groups[0].names, Names());
    EXPECT_EQ(model.groups[1].name, "COMPOUND_GROUP");
    EXPECT_EQ(model.groups[1].names, (Names{"b", "c"}));
    EXPECT_EQ(model.groups[2].name, "COMPOUND_GROUP");
    EXPECT_EQ(model.groups[2].names, Names());
    for (const Group& group : model.groups)
        EXPECT_TRUE(group.faceIndices.empty());
}

TEST(GroupTableTest, DefaultAndInitialGroup) {
    ObjModel model;
    EXPECT_EQ(addDefaultGroup(model), "default");
    EXPECT_EQ(addInitialGroup(model), "Obj File");
    model.name = "cube";
    EXPECT_EQ(addInitialGroup(model), "cube");
    EXPECT_EQ(addDefaultGroup(model), "default");
    EXPECT_EQ(describe(model), "default:; Obj File:; cube:; default:");
}

TEST(GroupTableTest, AFaceJoinsTheLastGroup) {
    ObjModel model;
    addGroup(model, "a");
    model.addFaceInCurrentGroup(Face());
    addGroup(model, "b");
    model.addFaceInCurrentGroup(Face());
    model.hierarchyValid = true;
    model.addFaceInCurrentGroup(Face());
    EXPECT_EQ(describe(model), "a: 0; b: 1 2");
    EXPECT_EQ(groupIndicesOf(model), (std::vector<int>{0, 1, 1}));
    EXPECT_FALSE(model.hierarchyValid);
}

TEST(GroupTableTest, EveryChangeClearsTheHierarchyFlag) {
    const std::pair<const char*, std::function<void(ObjModel&)>> CASES[] = {
        {"addGroup", [](ObjModel& model) { addGroup(model, "a"); }},
        {"addGroupFromNames",
         [](ObjModel& model) {
             addGroupFromNames(model, {"a", "b"});
         }},
        {"addDefaultGroup", [](ObjModel& model) { addDefaultGroup(model); }},
        {"addInitialGroup", [](ObjModel& model) { addInitialGroup(model); }},
        {"rebuildGroupFaceLists", [](ObjModel& model) { rebuildGroupFaceLists(model); }},
        {"removeEmptyGroups", [](ObjModel& model) { removeEmptyGroups(model); }},
        {"reverseGroupNames", [](ObjModel& model) { reverseGroupNames(model); }},
    };
    for (const auto& [title, change] : CASES) {
        SCOPED_TRACE(title);
        ObjModel model;
        addGroup(model, "x");
        addGroupFromNames(model, {"y", "z"});
        model.hierarchyValid = true;
        change(model);
        EXPECT_FALSE(model.hierarchyValid);
    }
}

TEST(GroupTableTest, RebuildFillsTheListsInTableOrder) {
    ObjModel model;
    for (const char* name : {"a", "b", "c"})
        addGroup(model, name);
    addFacesOf(model, {2, 0, 2, 0, 0});
    model.groups[0].faceIndices = {4, 4, 99};
    model.groups[1].faceIndices = {1};
    rebuildGroupFaceLists(model);
    EXPECT_EQ(describe(model), "a: 1 3 4; b:; c: 0 2");
    EXPECT_EQ(groupIndicesOf(model), (std::vector<int>{2, 0, 2, 0, 0}));
}

TEST(GroupTableTest, RebuildPassesOverFacesThatNameNoGroup) {
    const int LEAST = std::numeric_limits<int>::min();
    const int GREATEST = std::numeric_limits<int>::max();
    ObjModel model;
    addFacesOf(model, {0, -1, 1, 2, LEAST, GREATEST, 1});
    rebuildGroupFaceLists(model);
    EXPECT_EQ(describe(model), "");

    addGroup(model, "a");
    addGroup(model, "b");
    rebuildGroupFaceLists(model);
    EXPECT_EQ(describe(model), "a: 0; b: 2 6");
    EXPECT_EQ(groupIndicesOf(model), (std::vector<int>{0, -1, 1, 2, LEAST, GREATEST, 1}));
}

struct RemovalCase {
    const char* title;
    GroupTable groups;
    std::vector<int> groupIndices;
    const char* groupsAfter;
    std::vector<int> groupIndicesAfter;
};

TEST(GroupTableTest, RemoveEmptyGroups) {
    const int LEAST = std::numeric_limits<int>::min();
    const int GREATEST = std::numeric_limits<int>::max();
    const RemovalCase CASES[] = {
        {"no groups", {}, {}, "", {}},
        {"a lone group without faces", {{{}, "a", {}}}, {}, "a:", {}},
        {"a lone group with faces", {{{}, "a", {0}}}, {0}, "a: 0", {0}},
        {"all empty", {{{}, "a", {}}, {{}, "b", {}}}, {}, "", {}},
        {"none empty", {{{}, "a", {1}}, {{}, "b", {0}}}, {1, 0}, "a: 1; b: 0", {1, 0}},
        {"the first", {{{}, "a", {}}, {{}, "b", {0, 1}}}, {1, 1}, "b: 0 1", {0, 0}},
        {"the last", {{{}, "a", {0, 1}}, {{}, "b", {}}}, {0, 0}, "a: 0 1", {0, 0}},
        {"some in between",
         {{{}, "a", {}},
          {{"b", "c"}, "COMPOUND_GROUP", {2}},
          {{}, "d", {}},
          {{}, "e", {}},
          {{}, "f", {0, 1}},
          {{}, "g", {3}},
          {{}, "h", {}}},
         {4, 4, 1, 5},
         "b/c: 2; f: 0 1; g: 3",
         {1, 1, 0, 2}},
        {"faces that name no group stay as they are",
         {{{}, "a", {}}, {{}, "b", {0}}},
         {1, -1, 2, LEAST, GREATEST},
         "b: 0",
         {0, -1, 2, LEAST, GREATEST}},
        {"a face of a list that a host emptied",
         {{{}, "a", {}}, {{}, "b", {1}}},
         {0, 1},
         "b: 1",
         {NO_INDEX, 0}},
        {"a list with indices of no face",
         {{{}, "a", {GREATEST, LEAST, -1}}, {{}, "b", {}}},
         {},
         "a: 2147483647 -2147483648 -1",
         {}},
    };
    for (const RemovalCase& row : CASES) {
        SCOPED_TRACE(row.title);
        ObjModel model;
        model.groups = row.groups;
        addFacesOf(model, row.groupIndices);
        removeEmptyGroups(model);
        EXPECT_EQ(describe(model), row.groupsAfter);
        EXPECT_EQ(groupIndicesOf(model), row.groupIndicesAfter);
    }
}

TEST(GroupTableTest, RemovesEveryOtherOfVeryManyGroups) {
    const int GROUP_COUNT = 400000;
    ObjModel model;
    for (int group = 0; group < GROUP_COUNT; ++group) {
        addGroup(model, "a name too long for a short string " + std::to_string(group));
        if (group % 2 == 1)
            model.addFaceInCurrentGroup(Face());
    }
    removeEmptyGroups(model);
    ASSERT_EQ(model.getNumberOfGroups(), GROUP_COUNT / 2);
    for (int group = 0; group < GROUP_COUNT / 2; ++group) {
        const auto position = static_cast<std::size_t>(group);
        ASSERT_EQ(model.groups[position].name,
                  "a name too long for a short string " + std::to_string(2 * group + 1));
        ASSERT_EQ(model.groups[position].faceIndices, std::vector<int>{group});
        ASSERT_EQ(model.faces[position].groupIndex, group);
    }
}

TEST(GroupTableTest, ReversesCompoundNamesOnly) {
    ObjModel model;
    addGroup(model, "ab");
    addGroupFromNames(model, {"body", "arm", "left"});
    addGroupFromNames(model, {"a", "b", "c", "d"});
    reverseGroupNames(model);
    EXPECT_EQ(describe(model), "ab:; left/arm/body:; d/c/b/a:");
    EXPECT_EQ(model.groups[1].name, "COMPOUND_GROUP");
    EXPECT_EQ(model.groups[1].getFullName(), "left_arm_body");
    EXPECT_EQ(model.groups[1].getLastName(), "body");
    reverseGroupNames(model);
    EXPECT_EQ(describe(model), "ab:; body/arm/left:; a/b/c/d:");
}

TEST(GroupTableTest, FindsTheFirstGroupOfAFullName) {
    ObjModel model;
    EXPECT_EQ(findGroup(model, "a"), NO_INDEX);
    addGroupFromNames(model, {"a", "b"});
    addGroup(model, "a");
    addGroup(model, "a_b");
    addGroup(model, "a");
    EXPECT_EQ(findGroup(model, "a"), 1);
    EXPECT_EQ(findGroup(model, "a_b"), 0);
    EXPECT_EQ(findGroup(model, "A"), NO_INDEX);
    EXPECT_EQ(findGroup(model, "b"), NO_INDEX);
    EXPECT_EQ(findGroup(model, ""), NO_INDEX);
    EXPECT_EQ(findGroup(model, "COMPOUND_GROUP"), NO_INDEX);
}

TEST(GroupTableTest, CountsDistinctNames) {
    ObjModel model;
    EXPECT_EQ(countDistinctNames(model), 0);
    addGroup(model, "a");
    addGroup(model, "a");
    EXPECT_EQ(countDistinctNames(model), 1);
    addGroupFromNames(model, {"a", "b", "b"});
    EXPECT_EQ(countDistinctNames(model), 2);
    addGroup(model, "a_b");
    addGroup(model, "COMPOUND_GROUP");
    EXPECT_EQ(countDistinctNames(model), 4);
}

// Two groups, one of them empty, with lists that need rebuilding.
void fill(ObjModel& model) {
    model.groups.reserve(2);
    addGroup(model, "an empty group with a long name");
    addGroupFromNames(model, {"another group with a long name", "b"});
    addFacesOf(model, {1, 1, 1, 1, 1, 0});
    model.groups[1].faceIndices = {0};
    model.hierarchyValid = true;
}

TEST(GroupTableTest, NothingChangesWhenMemoryRunsOut) {
    const std::pair<const char*, std::function<void(ObjModel&)>> CASES[] = {
        {"addGroup",
         [](ObjModel& model) { addGroup(model, "a name that needs memory of its own"); }},
        {"addGroupFromNames",
         [](ObjModel& model) {
             addGroupFromNames(model, {"a name that needs memory of its own", "b"});
         }},
        {"addDefaultGroup", [](ObjModel& model) { addDefaultGroup(model); }},
        {"addInitialGroup", [](ObjModel& model) { addInitialGroup(model); }},
        {"reserveGroupFaceLists and rebuildGroupFaceLists",
         [](ObjModel& model) {
             reserveGroupFaceLists(model);
             rebuildGroupFaceLists(model);
         }},
        {"removeEmptyGroups", [](ObjModel& model) { removeEmptyGroups(model); }},
    };
    for (const auto& [title, change] : CASES) {
        SCOPED_TRACE(title);
        bool hasSucceeded = false;
        int failures = 0;
        while (!hasSucceeded) {
            ObjModel model;
            fill(model);
            const std::string before = printEverything(model);
            try {
                const AllocationBudget budget(failures);
                change(model);
                hasSucceeded = true;
            } catch (const std::bad_alloc&) {
                ++failures;
            }
            EXPECT_EQ(printEverything(model) == before, !hasSucceeded);
        }
        EXPECT_GT(failures, 0);
    }
}

TEST(GroupTableTest, RebuildingNeedsNoMemoryWhereRoomIsMade) {
    ObjModel model;
    fill(model);
    reserveGroupFaceLists(model);
    const AllocationBudget budget(0);
    rebuildGroupFaceLists(model);
    EXPECT_EQ(model.groups[1].getNumberOfFaces(), 5);
}

TEST(GroupTableTest, ReversalNeedsNoMemory) {
    ObjModel model;
    fill(model);
    const AllocationBudget budget(0);
    reverseGroupNames(model);
    EXPECT_EQ(model.groups[1].names.front(), "b");
}

}  // namespace
}  // namespace obj_adapter::test
