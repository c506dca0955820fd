// Covers groups/group.cpp and groups/groupText.cpp.
#include "groups/groupText.h"

#include "support/countedMemory.h"

#include <obj_adapter/group.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <string>
#include <vector>

namespace obj_adapter::test {
namespace {

Group simpleGroup(const std::string& name) {
    Group group;
    group.name = name;
    return group;
}

Group compoundGroup(const std::vector<std::string>& names) {
    Group group;
    group.name = "COMPOUND_GROUP";
    group.names = names;
    return group;
}

struct NameCase {
    const char* title;
    Group group;
    bool isCompound;
    const char* fullName;
    const char* lastName;
};

TEST(GroupTest, NamesOfSimpleAndCompoundGroups) {
    const NameCase CASES[] = {
        {"simple", simpleGroup("wheel"), false, "wheel", "wheel"},
        {"simple with an underscore", simpleGroup("car_wheel"), false, "car_wheel", "car_wheel"},
        {"simple without a name", simpleGroup(""), false, "", ""},
        {"simple, called like compound ones", simpleGroup("COMPOUND_GROUP"), false,
         "COMPOUND_GROUP", "COMPOUND_GROUP"},
        {"two components", compoundGroup({"a", "b"}), true, "a_b", "b"},
        {"three components", compoundGroup({"body", "arm", "left"}), true, "body_arm_left", "left"},
        {"components with underscores", compoundGroup({"a_", "_b"}), true, "a___b", "_b"},
        {"one component, which a host may write", compoundGroup({"a"}), true, "a", "a"},
        {"empty components", compoundGroup({"", "", ""}), true, "__", ""},
        {"one empty component", compoundGroup({""}), true, "", ""},
    };
    for (const NameCase& row : CASES) {
        SCOPED_TRACE(row.title);
        EXPECT_EQ(row.group.isCompound(), row.isCompound);
        EXPECT_EQ(row.group.getFullName(), row.fullName);
        EXPECT_EQ(row.group.getLastName(), row.lastName);
        EXPECT_EQ(row.group.getNames(), row.group.names);
    }
}

TEST(GroupTest, OnlyTheListOfNamesMakesAGroupCompound) {
    Group group = compoundGroup({"a", "b"});
    group.name = "wheel";
    EXPECT_EQ(group.getFullName(), "a_b");
    group.names.clear();
    EXPECT_FALSE(group.isCompound());
    EXPECT_EQ(group.getFullName(), "wheel");
}

struct PrefixCase {
    const char* title;
    Group group;
    int componentCount;
    const char* prefix;
};

TEST(GroupTest, PrefixNames) {
    const int LEAST = std::numeric_limits<int>::min();
    const int GREATEST = std::numeric_limits<int>::max();
    const PrefixCase CASES[] = {
        {"more than there are", compoundGroup({"a", "b"}), 3, ""},
        {"all are the full name", compoundGroup({"a", "b"}), 2, "a_b"},
        {"one", compoundGroup({"a", "b"}), 1, "a"},
        {"two of three", compoundGroup({"body", "arm", "left"}), 2, "body_arm"},
        {"none", compoundGroup({"a", "b"}), 0, ""},
        {"less than none", compoundGroup({"a", "b"}), -1, ""},
        {"the least number", compoundGroup({"a", "b"}), LEAST, ""},
        {"the greatest number", compoundGroup({"a", "b"}), GREATEST, ""},
        {"simple, none", simpleGroup("a"), 0, ""},
        {"simple, one", simpleGroup("a"), 1, ""},
    };
    for (const PrefixCase& row : CASES) {
        SCOPED_TRACE(row.title);
        EXPECT_EQ(row.group.getPrefixName(row.componentCount), row.prefix);
    }
}

TEST(GroupTest, SetComponentNameReplacesTheComponent) {
    Group group = compoundGroup({"a", "b", "c"});
    group.setComponentName(1, "x");
    EXPECT_EQ(group.names, (std::vector<std::string>{"a", "x", "c"}));
    group.setComponentName(2, "y");
    EXPECT_EQ(group.names, (std::vector<std::string>{"a", "x", "y"}));
    EXPECT_EQ(group.name, "COMPOUND_GROUP");
}

TEST(GroupTest, SetComponentNameOfASimpleGroupIgnoresThePosition) {
    Group group = simpleGroup("a");
    for (const int position : {0, -1, 7}) {
        const std::string name = "name" + std::to_string(position);
        group.setComponentName(position, name);
        EXPECT_EQ(group.name, name);
        EXPECT_FALSE(group.isCompound());
    }
}

TEST(GroupTest, NamesAreGivenAsACopy) {
    Group group = compoundGroup({"a", "b"});
    group.getNames().push_back("c");
    EXPECT_EQ(group.getFullName(), "a_b");
}

TEST(GroupTest, FaceListKeepsJoiningOrderAndRepetitions) {
    Group group = simpleGroup("a");
    EXPECT_EQ(group.getNumberOfFaces(), 0);
    for (const int face : {7, 3, 7})
        group.addFaceIndex(face);
    EXPECT_EQ(group.faceIndices, (std::vector<int>{7, 3, 7}));
    EXPECT_EQ(group.getNumberOfFaces(), 3);
    group.clearFaceIndices();
    EXPECT_EQ(group.getNumberOfFaces(), 0);
}

TEST(GroupTextTest, StatementEndsInABlankOnlyForCompoundGroups) {
    EXPECT_EQ(groupStatementText(simpleGroup("wheel")), "g wheel");
    EXPECT_EQ(groupStatementText(simpleGroup("")), "g ");
    EXPECT_EQ(groupStatementText(compoundGroup({"body", "arm", "left"})), "g body arm left ");
    EXPECT_EQ(groupStatementText(compoundGroup({"a"})), "g a ");
}

FaceElement corner(std::int32_t vertex, std::int32_t texture, std::int32_t normal) {
    FaceElement element;
    element.vertexIndex = vertex;
    element.textureIndex = texture;
    element.normalIndex = normal;
    return element;
}

TEST(GroupTest, AFaceThatFindsNoMemoryIsLeftOut) {
    Group group = simpleGroup("wheel");
    group.addFaceIndex(7);
    group.faceIndices.shrink_to_fit();
    bool hasFailed = false;
    {
        const AllocationBudget none(0);
        group.addFaceIndex(8);
        hasFailed = none.isExceeded();
    }
    EXPECT_TRUE(hasFailed);
    group.addFaceIndex(9);
    EXPECT_EQ(group.faceIndices, (std::vector<int>{7, 9}));
}

struct CornersCase {
    const char* title;
    FaceElement corners[CORNERS_PER_FACE];
    const char* text;
};

TEST(GroupTextTest, TriangleCorners) {
    const std::int32_t GREATEST = std::numeric_limits<std::int32_t>::max();
    const CornersCase CASES[] = {
        {"vertices only", {corner(0, -1, -1), corner(1, -1, -1), corner(2, -1, -1)}, "1 2 3"},
        {"with normals", {corner(0, -1, 4), corner(1, -1, 5), corner(2, -1, 6)}, "1//5 2//6 3//7"},
        {"with textures", {corner(0, 4, -1), corner(1, 5, -1), corner(2, 6, -1)}, "1/5 2/6 3/7"},
        {"with both", {corner(9, 0, 1), corner(8, 2, 3), corner(7, 4, 5)}, "10/1/2 9/3/4 8/5/6"},
        {"every corner by itself",
         {corner(0, 1, 2), corner(3, -1, 4), corner(5, -1, -1)},
         "1/2/3 4//5 6"},
        {"an empty face", {corner(-1, -1, -1), corner(-1, -1, -1), corner(-1, -1, -1)}, "0 0 0"},
        {"the greatest indices",
         {corner(GREATEST, GREATEST, GREATEST), corner(0, -1, -1), corner(1, -1, -1)},
         "2147483648/2147483648/2147483648 1 2"},
    };
    for (const CornersCase& row : CASES) {
        SCOPED_TRACE(row.title);
        Face face;
        for (int position = 0; position < CORNERS_PER_FACE; ++position)
            face.elements[position] = row.corners[position];
        EXPECT_EQ(triangleCornersText(face), row.text);
    }
}

}  // namespace
}  // namespace obj_adapter::test
