// Covers groups/groupStatement.cpp, and what becomes of groups in whole files.
#include "groups/groupStatement.h"

#include "model/objModel.h"
#include "obj/lineTokens.h"
#include "support/describe.h"
#include "support/importText.h"
#include "support/textMode.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace obj_adapter::test {
namespace {

// "name[component|component]" for each group of the table.
std::string describeNames(const ObjModel& model) {
    std::string text;
    for (const Group& group : model.groups) {
        text += (text.empty() ? "" : " ") + group.name + "[";
        for (const std::string& component : group.names)
            text += component + "|";
        if (text.back() == '|')
            text.pop_back();
        text += "]";
    }
    return text;
}

struct StatementCase {
    const char* title;
    std::string_view restOfLine;
    const char* groups;
};

TEST(GroupStatementTest, NamesBehindTheKeyword) {
    using namespace std::string_view_literals;
    const StatementCase CASES[] = {
        {"nothing", "", "default[]"},
        {"blanks only", "  \t \r", "default[]"},
        {"one name", " wheel", "wheel[]"},
        {"one name, carriage return", " wheel\r", "wheel[]"},
        {"called like the default", " default", "default[]"},
        {"called like compound groups", " COMPOUND_GROUP", "COMPOUND_GROUP[]"},
        {"two names", " a b", "COMPOUND_GROUP[a|b]"},
        {"three names", " body arm left", "COMPOUND_GROUP[body|arm|left]"},
        {"runs of blanks and a tab", "   a  \t  b   ", "COMPOUND_GROUP[a|b]"},
        {"the same name again", " a a", "COMPOUND_GROUP[a|a]"},
        {"letter case is kept", " Wheel WHEEL", "COMPOUND_GROUP[Wheel|WHEEL]"},
        {"a backslash parts names", " a\\b", "COMPOUND_GROUP[a|b]"},
        {"a backslash at the end", " a\\", "a[]"},
        {"backslashes only", " \\\\", "default[]"},
        {"other signs stay", " a/b:c#1", "a/b:c#1[]"},
        {"a byte of zero ends the line", " a\0b c"sv, "a[]"},
        {"bytes above 127 stay", " \xC3\xA4\xFF", "\xC3\xA4\xFF[]"},
    };
    for (const StatementCase& row : CASES) {
        SCOPED_TRACE(row.title);
        ObjModel model;
        model.hierarchyValid = true;
        LineTokens tokens(row.restOfLine);
        handleGroupStatement(model, tokens);
        EXPECT_EQ(describeNames(model), row.groups);
        EXPECT_FALSE(model.hierarchyValid);
        EXPECT_TRUE(tokens.next().isMissing());
    }
}

TEST(GroupStatementTest, ARepeatedNameMakesAFurtherGroup) {
    ObjModel model;
    for (const char* line : {" a", " b", " a", "", ""}) {
        LineTokens tokens(line);
        handleGroupStatement(model, tokens);
    }
    EXPECT_EQ(describeNames(model), "a[] b[] a[] default[] default[]");
}

TEST(GroupStatementTest, ALineOfVeryManyNames) {
    const int NAME_COUNT = 50000;
    std::string line;
    for (int name = 0; name < NAME_COUNT; ++name)
        line += " n" + std::to_string(name);

    ObjModel model;
    LineTokens tokens(line);
    handleGroupStatement(model, tokens);

    ASSERT_EQ(model.getNumberOfGroups(), 1);
    const Group& group = model.groups.front();
    ASSERT_EQ(group.names.size(), static_cast<std::size_t>(NAME_COUNT));
    for (int name = 0; name < NAME_COUNT; ++name)
        ASSERT_EQ(group.names[static_cast<std::size_t>(name)], "n" + std::to_string(name));
}

// Three vertices; every "f 1 2 3" makes one face.
const char VERTICES[] = "v 0 0 0\nv 1 0 0\nv 0 1 0\n";

struct FileCase {
    const char* title;
    const char* statements;  // behind the vertices
    const char* groups;      // describeGroups() form
};

const FileCase FILE_CASES[] = {
    {"no group statement", "f 1 2 3\nf 3 2 1\n", "cube: 0 1"},
    {"no group statement and no face", "", "cube:"},
    {"a group without faces beside the initial one", "f 1 2 3\ng a\n", "cube: 0"},
    {"the initial group goes when it is empty", "g a\nf 1 2 3\n", "a: 0"},
    {"faces before the first statement", "f 1 2 3\ng a\nf 1 2 3\n", "cube: 0; a: 1"},
    {"groups and no faces at all", "g a\ng b\n", ""},
    {"no name, twice, with faces", "g \nf 1 2 3\ng \nf 1 2 3\n", "default: 0; default: 1"},
    {"no name, twice, one with a face", "g \ng \nf 1 2 3\n", "default: 0"},
    {"no name, carriage returns", "g\r\nf 1 2 3\r\n",
     TEXT_IS_TRANSLATED ? "cube: 0" : "default: 0"},
    {"a line of one character is no statement", "g\nf 1 2 3\n", "cube: 0"},
    {"objects are groups", "o part\nf 1 2 3\n", "part: 0"},
    {"the keyword ignores letter case", "G a\nf 1 2 3\nO b\nf 1 2 3\n", "a: 0; b: 1"},
    {"compound", "g a b\nf 1 2 3\n", "a/b: 0"},
    {"compound object", "o a b\nf 1 2 3\n", "a/b: 0"},
    {"runs of blanks and a tab", "g   a \t b\nf 1 2 3\n", "a/b: 0"},
    {"names on a continued line", "g a\\\nb\nf 1 2 3\n", "ab: 0"},
    {"names on a continued line, blank in between", "g a \\\nb\nf 1 2 3\n", "a/b: 0"},
    {"an earlier name does not return", "g a\nf 1 2 3\ng b\nf 1 2 3\ng a\nf 1 2 3\n",
     "a: 0; b: 1; a: 2"},
};

TEST(GroupStatementTest, GroupsOfWholeFiles) {
    ImportOptions options;
    options.fileName = "cube.obj";
    for (const FileCase& row : FILE_CASES) {
        SCOPED_TRACE(row.title);
        const ImportResult result = importText(std::string(VERTICES) + row.statements, options);
        EXPECT_EQ(result.code, ObjConverter::CONVERTER_OK);
        EXPECT_EQ(describeGroups(result.model), row.groups);
    }
}

TEST(GroupStatementTest, CompoundNamesAreReversedOnlyWithTheHierarchy) {
    const std::string text = std::string(VERTICES) + "g a b\nf 1 2 3\ng c\nf 1 2 3\n";
    for (const bool hierarchy : {false, true}) {
        for (const bool reverse : {false, true}) {
            ImportOptions options;
            options.hierarchy = hierarchy;
            options.reverse = reverse;
            const ImportResult result = importText(text, options);
            const bool isReversed = hierarchy && reverse;
            EXPECT_EQ(describeGroups(result.model), isReversed ? "b/a: 0; c: 1" : "a/b: 0; c: 1");
            EXPECT_EQ(result.model.groups[0].name, "COMPOUND_GROUP");
            EXPECT_EQ(result.model.groups[0].getFullName(), isReversed ? "b_a" : "a_b");
            EXPECT_EQ(result.model.groups[0].getLastName(), isReversed ? "a" : "b");
        }
    }
}

}  // namespace
}  // namespace obj_adapter::test
