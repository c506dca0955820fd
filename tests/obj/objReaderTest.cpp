// The statements of an OBJ file, from the file to the tables.
#include "support/describe.h"
#include "support/importText.h"
#include "support/textMode.h"

#include <gtest/gtest.h>

#include <string>

namespace obj_adapter::test {
namespace {

struct RecordCase {
    const char* title;
    const char* objText;
    const char* vertices;
    const char* texturePoints;
    const char* normals;
    const char* messages;
};

const RecordCase RECORD_CASES[] = {
    {"vertex", "v 1 2 3\n", "(1 2 3 w1)", "", "", ""},
    {"weight is optional", "v 1 2 3 0.5\n", "(1 2 3 w0.5)", "", "", ""},
    {"further tokens are ignored", "v 1 2 3 0.5 x y\nvt 1 2 3 x\nvn 1 2 3 x\n", "(1 2 3 w0.5)",
     "(1 2 w3)", "(1 2 3)", ""},
    {"keywords ignore case", "V 1 2 3\nVt 0 1\nvN 0 0 1\n", "(1 2 3 w1)", "(0 1 w0)", "(0 0 1)",
     ""},
    {"text after a number is ignored", "v 1.5abc 2 3\n", "(1.5 2 3 w1)", "", "", ""},
    {"runs of delimiters", " \t v\t1   2\t\t3 \r\n", "(1 2 3 w1)", "", "", ""},
    {"a missing coordinate", "v 1 2\n", "(0 0 0 w1)", "", "",
     "1|Error processing vertex: No float value found\n"
     "Vertex will be replaced by (0,0,0).\n"},
    {"no number", "v 1 x 3\n", "(0 0 0 w1)", "", "",
     "1|Error processing vertex: invalid stod argument\n"
     "Vertex will be replaced by (0,0,0).\n"},
    {"a weight that is no number spoils the vertex", "v 1 2 3 x\n", "(0 0 0 w1)", "", "",
     "1|Error processing vertex: invalid stod argument\n"
     "Vertex will be replaced by (0,0,0).\n"},
    {"overflow", "v 1e999 0 0\n", "(0 0 0 w1)", "", "",
     "1|Error processing vertex: stod argument out of range\n"
     "Vertex will be replaced by (0,0,0).\n"},
    {"numbering is kept", "v 1 2 3\nv x\nv 4 5 6\n", "(1 2 3 w1) (0 0 0 w1) (4 5 6 w1)", "", "",
     "1|Error processing vertex: invalid stod argument\n"
     "Vertex will be replaced by (0,0,0).\n"},
    {"third texture coordinate is optional", "vt 0.25 0.5\nvt 0.25 0.5 0.75\n", "",
     "(0.25 0.5 w0) (0.25 0.5 w0.75)", "", ""},
    {"one texture coordinate", "vt 0.5\n", "", "(0 0 w0)", "",
     "1|Error processing vertex texture: No float value found\n"
     "Vertex Texture will be replaced by (0,0).\n"},
    {"a bad third texture coordinate", "vt 1 1 x\n", "", "(0 0 w0)", "",
     "1|Error processing vertex texture: invalid stod argument\n"
     "Vertex Texture will be replaced by (0,0).\n"},
    {"two components of a normal", "vn 0 1\n", "", "", "(0 0 0)",
     "1|Error processing vertex normal: No float value found\n"
     "Vertex Normal will be replaced by (0,0,0).\n"},
    {"a bad normal", "vn a b c\n", "", "", "(0 0 0)",
     "1|Error processing vertex normal: invalid stod argument\n"
     "Vertex Normal will be replaced by (0,0,0).\n"},
    {"comments", "#v 1 2 3\n# text\n##\n", "", "", "", ""},
    {"a comment that ends in a backslash takes the next line with it", "# x\\\nv 1 2 3\nv 4 5 6\n",
     "(4 5 6 w1)", "", "", ""},
    {"an indented comment is an unknown keyword", " # x\n", "", "", "",
     "2|Unrecognized statement: \"#\" was seen 1 times.\n"},
    {"a line of one character is skipped, whatever it is", "x\nv\ng\n#\n", "", "", "", ""},
    {"a line of two is not", "xy\n", "", "", "",
     "2|Unrecognized statement: \"xy\" was seen 1 times.\n"},
    {"a carriage return counts as a character", "x\r\n", "", "", "",
     TEXT_IS_TRANSLATED ? "" : "2|Unrecognized statement: \"x\" was seen 1 times.\n"},
    {"a line of delimiters", "  \t \n\\ \n", "", "", "", ""},
    {"unknown keywords are tallied as they stand", "s 1\ns 1\nS 1\ns off\ncurv 1\n", "", "", "",
     "2|Unrecognized statement: \"S\" was seen 1 times.\n"
     "2|Unrecognized statement: \"curv\" was seen 1 times.\n"
     "2|Unrecognized statement: \"s\" was seen 3 times.\n"},
    {"the tally's order is that of the bytes", "\xc3\xa4 1\nz 1\na 1\nZ 1\n", "", "", "",
     "2|Unrecognized statement: \"Z\" was seen 1 times.\n"
     "2|Unrecognized statement: \"a\" was seen 1 times.\n"
     "2|Unrecognized statement: \"z\" was seen 1 times.\n"
     "2|Unrecognized statement: \"\xc3\xa4\" was seen 1 times.\n"},
    {"usemtl without a name", "usemtl \n", "", "", "",
     "1|usemtl with no material name. No material will be assigned.\n"},
    {"mtllib without a name", "mtllib \n", "", "", "",
     "1|No name given for material library. Materials will not be loaded.\n"},
    {"a library that is missing", "mtllib none.mtl\nv 1 2 3\n", "(1 2 3 w1)", "", "",
     "1|Could not find material library none.mtl\n"},
    {"missing materials are tallied", "usemtl b\nusemtl a\nusemtl b\n", "", "", "",
     "1|Could not find material \"a\" But saw 1 references.\n"
     "1|Could not find material \"b\" But saw 2 references.\n"},
    {"warnings of keywords come before missing materials and repairs",
     "usemtl m\nxx\nv 0 0 0\nf 1 1 9\n", "(0 0 0 w1)", "", "",
     "2|Unrecognized statement: \"xx\" was seen 1 times.\n"
     "1|Could not find material \"m\" But saw 1 references.\n"
     "2|Number of faces where vertex, texture, or normal indices had to be changed due to being "
     "out of range: 1\n"},
    {"a last line without a line feed", "v 1 2 3", "(1 2 3 w1)", "", "", ""},
    {"a continued line", "v 1 2 \\\n3\n", "(1 2 3 w1)", "", "", ""},
    {"a continued line is joined without a blank", "v 1 2\\\n3\n", "(0 0 0 w1)", "", "",
     "1|Error processing vertex: No float value found\n"
     "Vertex will be replaced by (0,0,0).\n"},
    {"an empty file", "", "", "", "", ""},
};

TEST(ObjReader, recordsAndMessages) {
    for (const RecordCase& row : RECORD_CASES) {
        SCOPED_TRACE(std::string(row.title) + "\n" + row.objText);
        const ImportResult result = importText(row.objText);
        EXPECT_EQ(result.code, ObjConverter::CONVERTER_OK);
        EXPECT_EQ(describeVertices(result.model), row.vertices);
        EXPECT_EQ(describeTexturePoints(result.model), row.texturePoints);
        EXPECT_EQ(describeNormalPoints(result.model), row.normals);
        EXPECT_EQ(result.readingMessages, row.messages);
    }
}

TEST(ObjReader, aNulEndsTheTokensOfALineAndCountsInItsLength) {
    using std::string_literals::operator""s;
    const ImportResult result = importText("v 1 2 3\0 9\nx\0\nv 1 2\0 3\n"s);
    EXPECT_EQ(describeVertices(result.model), "(1 2 3 w1) (0 0 0 w1)");
    EXPECT_EQ(result.readingMessages,
              "1|Error processing vertex: No float value found\n"
              "Vertex will be replaced by (0,0,0).\n"
              "2|Unrecognized statement: \"x\" was seen 1 times.\n");
}

TEST(ObjReader, messagesCiteTheFirstHundredCharactersOfAName) {
    const std::string hundred(100, 'k');
    const std::string longName = hundred + "TAIL";
    const ImportResult result =
        importText(longName + " 1\nusemtl " + longName + "\nmtllib " + longName + "\n");
    EXPECT_EQ(result.readingMessages, "1|Could not find material library " + hundred +
                                          "\n"
                                          "2|Unrecognized statement: \"" +
                                          hundred +
                                          "\" was seen 1 times.\n"
                                          "1|Could not find material \"" +
                                          hundred + "\" But saw 1 references.\n");
}

TEST(ObjReader, longNamesAreTalliedWhole) {
    const std::string hundred(100, 'm');
    const ImportResult result =
        importText("usemtl " + hundred + "b\nusemtl " + hundred + "a\nusemtl " + hundred + "b\n");
    EXPECT_EQ(result.readingMessages, "1|Could not find material \"" + hundred +
                                          "\" But saw 1 references.\n"
                                          "1|Could not find material \"" +
                                          hundred + "\" But saw 2 references.\n");
}

TEST(ObjReader, facesCarryTheMaterialSelectedBefore) {
    ImportOptions options;
    options.otherFiles["a.mtl"] = "newmtl red\nnewmtl blue\nnewmtl red\n";
    const ImportResult result = importText(
        "v 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\nmtllib a.mtl\nUsemtl red\nf 1 2 3\n"
        "usemtl Red\nf 1 2 3\nusemtl blue\nf 1 2 3\nusemtl \nf 1 2 3\nusemtl missing\nf 1 2 3\n",
        options);
    EXPECT_EQ(describeFaces(result.model), "[0 1 2] [0 1 2 m0] [0 1 2] [0 1 2 m1] [0 1 2] [0 1 2]");
    EXPECT_EQ(result.readingMessages,
              "3|Using Mtllib file: {dir}a.mtl\n"
              "2|Material with the name \"red\" already exists. The materials will not reliably "
              "be distinguished.\n"
              "1|usemtl with no material name. No material will be assigned.\n"
              "1|Could not find material \"Red\" But saw 1 references.\n"
              "1|Could not find material \"missing\" But saw 1 references.\n");
}

TEST(ObjReader, onlyTheFirstLibraryOfALineIsLoaded) {
    ImportOptions options;
    options.otherFiles["a.mtl"] = "newmtl a\n";
    options.otherFiles["b.mtl"] = "newmtl b\n";
    const ImportResult result = importText("mtllib a.mtl b.mtl\n", options);
    ASSERT_EQ(result.model.materials.size(), 1U);
    EXPECT_EQ(result.model.materials[0].name, "a");
    EXPECT_EQ(result.readingMessages, "3|Using Mtllib file: {dir}a.mtl\n");
}

TEST(ObjReader, aZeroLengthLibraryIsFound) {
    ImportOptions options;
    options.otherFiles["empty.mtl"] = "";
    const ImportResult result = importText("mtllib empty.mtl\n", options);
    EXPECT_EQ(result.readingMessages, "3|Using Mtllib file: {dir}empty.mtl\n");
}

struct GroupCase {
    const char* title;
    const char* fileName;
    const char* objText;
    const char* groups;  // describeGroups() form
};

const GroupCase GROUP_CASES[] = {
    {"no statement: one group named after the file", "cube.obj", "f 1 2 3\nf 3 2 1\n", "cube: 0 1"},
    {"a lone group stays without faces", "cube.obj", "", "cube:"},
    {"the last four characters of the name go", "cube.txt3", "f 1 2 3\n", "cube.: 0"},
    {"a name of four characters leaves none", ".obj", "f 1 2 3\n", ": 0"},
    {"a shorter name stays", "abc", "f 1 2 3\n", "abc: 0"},
    {"the initial group goes when it has no faces", "cube.obj", "g part\nf 1 2 3\n", "part: 0"},
    {"and stays when it has", "cube.obj", "f 1 2 3\ng part\nf 1 2 3\n", "cube: 0; part: 1"},
    {"objects are groups", "a.obj", "o part\nf 1 2 3\nO other\nf 1 2 3\n", "part: 0; other: 1"},
    {"two names make a compound group", "a.obj", "g a \t b\nf 1 2 3\n", "a/b: 0"},
    {"the statement without a name", "a.obj", "g \nf 1 2 3\ng\r\nf 1 2 3\ng \n",
     TEXT_IS_TRANSLATED ? "default: 0 1" : "default: 0; default: 1"},
    {"g alone on its line does nothing", "a.obj", "g part\nf 1 2 3\ng\nf 1 2 3\n", "part: 0 1"},
    {"a name again makes a group again", "a.obj", "g a\nf 1 2 3\ng b\nf 1 2 3\ng a\nf 1 2 3\n",
     "a: 0; b: 1; a: 2"},
};

TEST(ObjReader, groups) {
    for (const GroupCase& row : GROUP_CASES) {
        SCOPED_TRACE(std::string(row.title) + "\n" + row.objText);
        ImportOptions options;
        options.fileName = row.fileName;
        const ImportResult result =
            importText(std::string("v 0 0 0\nv 1 0 0\nv 0 1 0\n") + row.objText, options);
        EXPECT_EQ(describeGroups(result.model), row.groups);
        EXPECT_EQ(result.readingMessages, "");
    }
}

}  // namespace
}  // namespace obj_adapter::test
