// Tests of material/mtlReader.cpp: statements, libraries and failures. The
// texture maps stand in textureMapOptionsTest.cpp.
#include "material/readMtlText.h"
#include "support/importText.h"
#include "support/randomSource.h"

#include <obj_adapter/obj_adapter.h>

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace obj_adapter::test {
namespace {

using std::string_view_literals::operator""sv;

const MtlCase COLOR_CASES[] = {
    {"each keyword sets its colour", "newmtl a\nKa 1 0 0\nKd 0 1 0\nKs 0 0 1\nTf 1 1 1\n",
     "a{Ka(rgb 1 0 0 1) Kd(rgb 0 1 0 1) Ks(rgb 0 0 1 1) Tf(rgb 1 1 1 1)}", ""},
    {"keywords ignore case", "NEWMTL a\nKD 1 0 0\nkA 0 1 0\nks 0 0 1\ntf 1 1 1\n",
     "a{Ka(rgb 0 1 0 1) Kd(rgb 1 0 0 1) Ks(rgb 0 0 1 1) Tf(rgb 1 1 1 1)}", ""},
    {"the last statement holds", "newmtl a\nKd 1 0 0\nKd xyz 1 2 3\n", "a{Kd(xyz 1 2 3 -1)}", ""},
    {"further tokens are ignored", "newmtl a\nKd 1 0 0 x y\nKs xyz 1 2 3 x\n",
     "a{Kd(rgb 1 0 0 1) Ks(xyz 1 2 3 -1)}", ""},
    {"rgb may start with a point", "newmtl a\nKd .5 .5 .5\n", "a{Kd(rgb 0.5 0.5 0.5 1)}", ""},
    {"rgb may be negative behind the first", "newmtl a\nKd 0 -1 +2\n", "a{Kd(rgb 0 -1 2 1)}", ""},
    {"rgb is not clamped", "newmtl a\nKd 2 1e30 1e300\n", "a{Kd(rgb 2 1e+30 inf 1)}", ""},
    {"text after a number is ignored", "newmtl a\nKd 1x 0,5 2e\n", "a{Kd(rgb 1 0 2 1)}", ""},
    {"one value of rgb", "newmtl a\nKd 0.5\n", "a{}",
     "1|Error processing Diffuse color: No float value found\n"},
    {"two values of rgb", "newmtl a\nKs 0.5 0.5\n", "a{}",
     "1|Error processing Specular color: No float value found\n"},
    {"bad second value of rgb", "newmtl a\nKa 1 x 0\n", "a{}",
     "1|Error processing Ambient color: invalid stod argument\n"},
    {"bad third value of rgb", "newmtl a\nTf 1 0 x\n", "a{}",
     "1|Error processing Transmission Filter: invalid stod argument\n"},
    {"a point is not a number", "newmtl a\nKd . 0 0\n", "a{}",
     "1|Error processing Diffuse color: invalid stod argument\n"},
    {"a number too large", "newmtl a\nKd 1 1e400 0\n", "a{}",
     "1|Error processing Diffuse color: stod argument out of range\n"},
    {"a sign makes no rgb", "newmtl a\nKd -0.1 0 0\nKs +1 0 0\n", "a{}",
     "1|Error processing Diffuse color: Invalid color format\n"
     "1|Error processing Specular color: Invalid color format\n"},
    {"a name is no colour", "newmtl a\nKd red\nKs inf 0 0\n", "a{}",
     "1|Error processing Diffuse color: Invalid color format\n"
     "1|Error processing Specular color: Invalid color format\n"},
    {"no value at all", "newmtl a\nKa\nKd \nKs\t\\\nTf  \n", "a{}",
     "1|Error processing Ambient color: No float value found\n"
     "1|Error processing Diffuse color: No float value found\n"
     "1|Error processing Specular color: Invalid color format\n"},
    {"a bad value keeps the earlier colour", "newmtl a\nKd 1 0 0\nKd 0.5\nKd xyz\nKd red\n",
     "a{Kd(rgb 1 0 0 1)}",
     "1|Error processing Diffuse color: No float value found\n"
     "1|Error processing Diffuse color: No float value found\n"
     "1|Error processing Diffuse color: Invalid color format\n"},
    {"xyz with three values", "newmtl a\nKd xyz -0.5 1 2\n", "a{Kd(xyz -0.5 1 2 -1)}", ""},
    {"one value of xyz serves for all", "newmtl a\nKd xyz 0.5\n", "a{Kd(xyz 0.5 0.5 0.5 -1)}", ""},
    {"two values of xyz", "newmtl a\nKd xyz 0.5 0.5\n", "a{}",
     "1|Error processing Diffuse color: No float value found\n"},
    {"bad values of xyz", "newmtl a\nKa xyz x\nKd xyz 1 x 1\nKs xyz 1 1 x\n", "a{}",
     "1|Error processing Ambient color: invalid stod argument\n"
     "1|Error processing Diffuse color: invalid stod argument\n"
     "1|Error processing Specular color: invalid stod argument\n"},
    {"no value of xyz", "newmtl a\nKa xyz\n", "a{}",
     "1|Error processing Ambient color: No float value found\n"},
    {"kinds ignore case", "newmtl a\nKd XYZ 1\nKs Spectral a.rfl\n",
     "a{Kd(xyz 1 1 1 -1) Ks(spectral a.rfl 1 -1 -1 -1)}", ""},
    {"kinds are matched whole", "newmtl a\nKd xyzw 1\nKs spectr a.rfl\n", "a{}",
     "1|Error processing Diffuse color: Invalid color format\n"
     "1|Error processing Specular color: Invalid color format\n"},
    {"spectral without a factor", "newmtl a\nKs spectral curve.rfl\n",
     "a{Ks(spectral curve.rfl 1 -1 -1 -1)}", ""},
    {"spectral with a factor", "newmtl a\nKs spectral curve.rfl 0.8\n",
     "a{Ks(spectral curve.rfl 0.8 -1 -1 -1)}", ""},
    {"spectral with a bad factor", "newmtl a\nKs spectral curve.rfl x\n", "a{}",
     "1|Error processing Specular color: invalid stod argument\n"},
    {"spectral without a file", "newmtl a\nKd spectral\n", "a{}",
     "1|Error processing Diffuse color: Invalid color format\n"},
    {"a colour starts afresh", "newmtl a\nKd spectral a.rfl\nKd xyz 1 2 3\n", "a{Kd(xyz 1 2 3 -1)}",
     ""},
};

TEST(MtlReaderTest, Colors) {
    checkMtlCases(COLOR_CASES);
}

const MtlCase SCALAR_CASES[] = {
    {"each keyword sets its value", "newmtl a\nNs 10.5\nd 0.5\nillum 2\nsharpness 100\nNi 1.5\n",
     "a{Ns=10.5 d=0.5 illum=2 sharpness=100 Ni=1.5}", ""},
    {"keywords ignore case", "newmtl a\nnS 1\nD 0.5\nILLUM 2\nSharpness 1\nnI 2\n",
     "a{Ns=1 d=0.5 illum=2 sharpness=1 Ni=2}", ""},
    {"further tokens are ignored", "newmtl a\nNs 1 x\nd 0.5 x\nillum 2 x\nsharpness 1 x\nNi 2 x\n",
     "a{Ns=1 d=0.5 illum=2 sharpness=1 Ni=2}", ""},
    {"values are not clamped", "newmtl a\nNs -5\nd 7\nillum -3\nsharpness -1\nNi 1e300\n",
     "a{Ns=-5 d=7 illum=-3 sharpness=-1 Ni=1e+300}", ""},
    {"integers end at the point", "newmtl a\nillum 2.9\nsharpness 2.7\n", "a{illum=2 sharpness=2}",
     ""},
    {"transparency is the complement", "newmtl a\nTr 0.25\n", "a{d=0.75}", ""},
    {"the later of d and Tr holds", "newmtl a\nd 0.1\nTr 0.25\nnewmtl b\nTr 0.25\nd 0.1\n",
     "a{d=0.75} b{d=0.1}", ""},
    {"halo", "newmtl a\nd -halo 0.6\n", "a{d=0.6 halo=1}", ""},
    {"halo ignores case", "newmtl a\nD -HALO 0.6\n", "a{d=0.6 halo=1}", ""},
    {"halo is not cleared", "newmtl a\nd -halo 0.6\nd 0.5\nTr 0.75\n", "a{d=0.25 halo=1}", ""},
    {"halo stays when its value fails", "newmtl a\nd -halo x\n", "a{halo=1}",
     "1|Error processing Dissolve: invalid stod argument\n"},
    {"halo stays without a value", "newmtl a\nd -halo\n", "a{halo=1}",
     "1|Error processing Dissolve: No float value found\n"},
    {"halo stands first", "newmtl a\nd 0.5 -halo\n", "a{d=0.5}", ""},
    {"halo is matched whole", "newmtl a\nd -hal 0.5\n", "a{}",
     "1|Error processing Dissolve: invalid stod argument\n"},
    {"halo is not for Tr", "newmtl a\nTr -halo 0.5\n", "a{}",
     "1|Error processing Transparency: invalid stod argument\n"},
    {"one character is no statement", "newmtl a\nd\n", "a{}", ""},
    {"d with a blank is one", "newmtl a\nd \n", "a{}",
     "1|Error processing Dissolve: No float value found\n"},
    {"bad values", "newmtl a\nNs x\nd x\nTr x\nillum x\nsharpness x\nNi x\n", "a{}",
     "1|Error processing Specular Exponent: invalid stod argument\n"
     "1|Error processing Dissolve: invalid stod argument\n"
     "1|Error processing Transparency: invalid stod argument\n"
     "1|Error processing Illumination Model: invalid stoi argument\n"
     "1|Error processing Sharpness: invalid stoi argument\n"
     "1|Error processing Optical Density: invalid stod argument\n"},
    {"missing values", "newmtl a\nNs\nTr\nillum\nsharpness\nNi\n", "a{}",
     "1|Error processing Specular Exponent: No float value found\n"
     "1|Error processing Transparency: No float value found\n"
     "1|Error processing Illumination Model: No integer found\n"
     "1|Error processing Sharpness: No integer found\n"
     "1|Error processing Optical Density: No float value found\n"},
    {"values out of range",
     "newmtl a\nNs 1e999\nillum 2147483648\nsharpness -99999999999999999999\n", "a{}",
     "1|Error processing Specular Exponent: stod argument out of range\n"
     "1|Error processing Illumination Model: stoi argument out of range\n"
     "1|Error processing Sharpness: stoi argument out of range\n"},
    {"a bad value keeps the earlier one", "newmtl a\nNs 5\nNs x\nd 0.5\nTr\nillum 1\nillum y\n",
     "a{Ns=5 d=0.5 illum=1}",
     "1|Error processing Specular Exponent: invalid stod argument\n"
     "1|Error processing Transparency: No float value found\n"
     "1|Error processing Illumination Model: invalid stoi argument\n"},
};

TEST(MtlReaderTest, Scalars) {
    checkMtlCases(SCALAR_CASES);
}

const MtlCase NO_MATERIAL_CASES[] = {
    {"every statement wants a material",
     "Ka 1 0 0\nKd 1 0 0\nKs 1 0 0\nTf 1 0 0\nNs 1\nd 1\nTr 1\nillum 1\nsharpness 1\nNi 1\n", "",
     "1|Error processing Ambient color: No current material\n"
     "1|Error processing Diffuse color: No current material\n"
     "1|Error processing Specular color: No current material\n"
     "1|Error processing Transmission Filter: No current material\n"
     "1|Error processing Specular Exponent: No current material\n"
     "1|Error processing Dissolve: No current material\n"
     "1|Error processing Transparency: No current material\n"
     "1|Error processing Illumination Model: No current material\n"
     "1|Error processing Sharpness: No current material\n"
     "1|Error processing Optical Density: No current material\n"},
    {"the value is looked at before the material", "Ka red\nNs x\nillum\nd x\n", "",
     "1|Error processing Ambient color: Invalid color format\n"
     "1|Error processing Specular Exponent: invalid stod argument\n"
     "1|Error processing Illumination Model: No integer found\n"
     "1|Error processing Dissolve: invalid stod argument\n"},
    {"halo wants the material before its value", "d -halo x\n", "",
     "1|Error processing Dissolve: No current material\n"},
    {"reading goes on", "Ns 1\nnewmtl a\nNs 2\n", "a{Ns=2}",
     "1|Error processing Specular Exponent: No current material\n"},
};

TEST(MtlReaderTest, StatementsBeforeTheFirstMaterial) {
    checkMtlCases(NO_MATERIAL_CASES);
}

const MtlCase MATERIAL_CASES[] = {
    {"statements change the last material", "newmtl a\nNs 1\nnewmtl b\nNs 2\nNi 3\n",
     "a{Ns=1} b{Ns=2 Ni=3}", ""},
    {"the name is one token", "newmtl my mat\n", "my{}", ""},
    {"the name keeps its letter case", "newmtl a\nnewmtl A\n", "a{} A{}", ""},
    {"the name may be any characters", "newmtl #\"%s\xC3\xA4/-1\n", "#\"%s\xC3\xA4/-1{}", ""},
    {"a second material of one name", "newmtl red\nNs 1\nnewmtl red\nNs 2\n", "red{Ns=1} red{Ns=2}",
     "2|Material with the name \"red\" already exists. The materials will not reliably be "
     "distinguished.\n"},
    {"no name", "newmtl a\nNs 1\nnewmtl\nNs 2\nnewmtl b\n", "a{Ns=1}",
     "1|Error processing New Material: No name given.\n"
     "1|Error processing New Material: Material name missing\n"
     "1|Problem with material library: Could not proccess new material\n"},
    {"blanks are no name", "newmtl \t\\ \n", "",
     "1|Error processing New Material: No name given.\n"
     "1|Error processing New Material: Material name missing\n"
     "1|Problem with material library: Could not proccess new material\n"},
};

TEST(MtlReaderTest, Materials) {
    checkMtlCases(MATERIAL_CASES);
}

const MtlCase LINE_CASES[] = {
    {"nothing at all", "", "", ""},
    {"only line ends", "\n\n\n", "", ""},
    {"the last line needs no end", "newmtl a\nNs 5", "a{Ns=5}", ""},
    {"comments", "# newmtl x\n#newmtl x\nnewmtl a\n#\n##\n", "a{}", ""},
    {"an indented comment is an unknown keyword", "newmtl a\n #Ns 5\n # Ns 5\n", "a{}", ""},
    {"a comment behind a statement is not one", "newmtl a\nNs 5 # six\nKd 1 #0 0\n", "a{Ns=5}",
     "1|Error processing Diffuse color: invalid stod argument\n"},
    {"unknown keywords are silent", "newmtl a\nmap_aat on\nKe 1 1 1\nNsx 5\nN 5\nmap_K x\n", "a{}",
     ""},
    {"statements may be indented", " \tnewmtl\ta\n\\Ns\\5\n", "a{Ns=5}", ""},
    {"lines of delimiters", "newmtl a\n  \n\t\t\n \\ \nNs 5\n", "a{Ns=5}", ""},
    {"carriage returns are delimiters", "newmtl a\r\nKd 1 0 0\r\n\r\nNs 5\r\n# c\r\n",
     "a{Kd(rgb 1 0 0 1) Ns=5}", ""},
    {"carriage returns alone end no line", "newmtl a\rNs 5\rNi 2\n", "a{}", ""},
    {"a line goes on behind a backslash", "newmtl a\nKd 1 \\\n0 0\n", "a{Kd(rgb 1 0 0 1)}", ""},
    {"the joined lines are not parted", "newmtl my\\\nname\nNs 1\\\n5\n", "myname{Ns=15}", ""},
    {"lines are joined once", "newmtl a\nKd 1 \\\n0 \\\n0 0\nNs 5\n", "a{Ns=5}",
     "1|Error processing Diffuse color: No float value found\n"},
    {"a comment goes on too", "newmtl a\n# c \\\nNs 5\nNi 2\n", "a{Ni=2}", ""},
    {"two characters may come from two lines", "newmtl a\nN\\\ns 5\nd\\\n\n", "a{Ns=5}", ""},
    {"a byte order mark makes an unknown keyword", "\xEF\xBB\xBFnewmtl a\nNs 5\n", "",
     "1|Error processing Specular Exponent: No current material\n"},
    {"a NUL ends the name", "newmtl re\0d\nNs 5\n"sv, "re{Ns=5}", ""},
    {"a NUL ends the line", "newmtl a\nKd 1 0\0 0 0\nNs\0 5\nillum 3\n"sv, "a{illum=3}",
     "1|Error processing Diffuse color: No float value found\n"
     "1|Error processing Specular Exponent: No float value found\n"},
    {"a NUL ends the keyword", "newmtl a\nN\0s 5\n\0\0Ns 5\n\0# x\n"sv, "a{}", ""},
    {"a NUL counts as a character", "newmtl a\nd\0\n"sv, "a{}",
     "1|Error processing Dissolve: No float value found\n"},
    {"a NUL in place of the name", "newmtl \0a\nnewmtl b\n"sv, "",
     "1|Error processing New Material: No name given.\n"
     "1|Error processing New Material: Material name missing\n"
     "1|Problem with material library: Could not proccess new material\n"},
};

TEST(MtlReaderTest, Lines) {
    checkMtlCases(LINE_CASES);
}

TEST(MtlReaderTest, LongNamesAreCitedWhole) {
    const std::string name(5000, 'n');
    MaterialTable table;
    EXPECT_EQ(readMtlText("newmtl " + name + "\nnewmtl " + name + "\n", table),
              "2|Material with the name \"" + name +
                  "\" already exists. The materials will not reliably be distinguished.\n");
    EXPECT_EQ(table.getNumberOfMaterials(), 2);
}

TEST(MtlReaderTest, TheFirstOfANameIsFound) {
    MaterialTable table;
    readMtlText("newmtl blue\nnewmtl red\nnewmtl red\n", table);
    EXPECT_EQ(table.findMaterial("red"), 1);
    EXPECT_EQ(table.findMaterial("Red"), NO_INDEX);
}

// --- Where libraries are looked for ------------------------------------------

// Makes a directory the current one for the time of a test.
class CurrentDirectory {
public:
    explicit CurrentDirectory(const TemporaryDirectory& directory)
        : earlier(std::filesystem::current_path()) {
        std::filesystem::current_path(pathFromUtf8(directory.getPath()));
    }
    ~CurrentDirectory() { std::filesystem::current_path(earlier); }
    CurrentDirectory(const CurrentDirectory&) = delete;
    CurrentDirectory& operator=(const CurrentDirectory&) = delete;

private:
    std::filesystem::path earlier;
};

// Two places for libraries: the current directory, and the input path.
class MtlPlacesTest : public testing::Test {
protected:
    // The text of the exception thrown; empty when none was.
    std::string read(const std::string& libraryName) {
        try {
            readMtlFile(inputDirectory.getPath(), libraryName, table);
        } catch (const std::exception& failure) {
            return failure.what();
        }
        return "";
    }

    TemporaryDirectory currentDirectory;
    TemporaryDirectory inputDirectory;
    CurrentDirectory setAndRestored{currentDirectory};
    MessageRecorder recorder;
    MaterialTable table;
};

TEST_F(MtlPlacesTest, CurrentDirectoryComesFirst) {
    currentDirectory.write("a.mtl", "newmtl current\n");
    inputDirectory.write("a.mtl", "newmtl input\n");
    EXPECT_EQ(read("a.mtl"), "");
    EXPECT_EQ(describeMaterials(table), "current{}");
    EXPECT_EQ(recorder.getText(), "3|Using Mtllib file: a.mtl\n");
    EXPECT_EQ(table.libraryNames, (std::vector<std::string>{"a.mtl"}));
}

TEST_F(MtlPlacesTest, InputPathComesSecond) {
    inputDirectory.write("a.mtl", "newmtl input\n");
    EXPECT_EQ(read("a.mtl"), "");
    EXPECT_EQ(describeMaterials(table), "input{}");
    EXPECT_EQ(recorder.getText(), "3|Using Mtllib file: " + inputDirectory.getPath() + "a.mtl\n");
    // As the OBJ file names it, wherever it was found.
    EXPECT_EQ(table.libraryNames, (std::vector<std::string>{"a.mtl"}));
}

TEST_F(MtlPlacesTest, AbsoluteNamesAreFoundAtTheFirstPlace) {
    const std::string path = inputDirectory.write("a.mtl", "newmtl input\n");
    EXPECT_EQ(read(path), "");
    EXPECT_EQ(recorder.getText(), "3|Using Mtllib file: " + path + "\n");
    EXPECT_EQ(table.libraryNames, (std::vector<std::string>{path}));
}

TEST_F(MtlPlacesTest, InputPathIsJoinedAsItIs) {
    inputDirectory.write("b_a.mtl", "newmtl joined\n");
    readMtlFile(inputDirectory.getPath() + "b_", "a.mtl", table);
    EXPECT_EQ(describeMaterials(table), "joined{}");
}

TEST_F(MtlPlacesTest, NamesAreUtf8) {
    inputDirectory.write("\xC3\xA4.mtl", "newmtl umlaut\n");
    EXPECT_EQ(read("\xC3\xA4.mtl"), "");
    EXPECT_EQ(describeMaterials(table), "umlaut{}");
}

TEST_F(MtlPlacesTest, DirectoryAtTheFirstPlaceIsPassedOver) {
    std::filesystem::create_directory("a.mtl");
    inputDirectory.write("a.mtl", "newmtl input\n");
    EXPECT_EQ(read("a.mtl"), "");
    EXPECT_EQ(describeMaterials(table), "input{}");
    EXPECT_EQ(recorder.getText(), "3|Using Mtllib file: " + inputDirectory.getPath() + "a.mtl\n");
}

// It opens and has no lines; the second place is not looked at.
TEST_F(MtlPlacesTest, EmptyLibraryAtTheFirstPlaceIsTaken) {
    currentDirectory.write("a.mtl", "");
    inputDirectory.write("a.mtl", "newmtl input\n");
    EXPECT_EQ(read("a.mtl"), "");
    EXPECT_EQ(describeMaterials(table), "");
    EXPECT_EQ(recorder.getText(), "3|Using Mtllib file: a.mtl\n");
    EXPECT_EQ(table.libraryNames, (std::vector<std::string>{"a.mtl"}));
}

TEST_F(MtlPlacesTest, MissingAtBothPlacesIsThrown) {
    EXPECT_EQ(read("a.mtl"), "Unable to open file");
    EXPECT_EQ(recorder.getText(), "");
    EXPECT_TRUE(table.libraryNames.empty());
    EXPECT_EQ(table.getNumberOfMaterials(), 0);
}

TEST_F(MtlPlacesTest, OnlyTheSecondPlacesFailureIsThrown) {
    EXPECT_EQ(read(""), "Unable to open file");  // the directory itself
    try {
        readMtlFile("", "", table);
        FAIL() << "nothing thrown";
    } catch (const std::runtime_error& failure) {
        EXPECT_STREQ(failure.what(), "File Name empty");
    }
}

TEST_F(MtlPlacesTest, SecondLibraryBeginsWithTheLastMaterialOfTheFirst) {
    currentDirectory.write("a.mtl", "newmtl a\nNs 1\nnewmtl b\nNs 2\nKd 1 0 0\n");
    currentDirectory.write("b.mtl", "Ns 3\nmap_Kd wood.png\nnewmtl c\nNs 4\n");
    EXPECT_EQ(read("a.mtl"), "");
    EXPECT_EQ(read("b.mtl"), "");
    EXPECT_EQ(describeMaterials(table), "a{Ns=1} b{Kd(rgb 1 0 0 1) map_Kd(wood.png) Ns=3} c{Ns=4}");
    EXPECT_EQ(table.libraryNames, (std::vector<std::string>{"a.mtl", "b.mtl"}));
}

TEST_F(MtlPlacesTest, LibraryReadTwiceIsNamedOnce) {
    currentDirectory.write("a.mtl", "newmtl a\nNs 1\n");
    EXPECT_EQ(read("a.mtl"), "");
    EXPECT_EQ(read("a.mtl"), "");
    EXPECT_EQ(describeMaterials(table), "a{Ns=1} a{Ns=1}");
    EXPECT_EQ(table.libraryNames, (std::vector<std::string>{"a.mtl"}));
    EXPECT_EQ(recorder.getText(),
              "3|Using Mtllib file: a.mtl\n"
              "3|Using Mtllib file: a.mtl\n"
              "2|Material with the name \"a\" already exists. The materials will not reliably be "
              "distinguished.\n");
}

TEST_F(MtlPlacesTest, LibraryAfterOneThatEndedEarlyIsRead) {
    currentDirectory.write("a.mtl", "newmtl a\nnewmtl\nNs 1\n");
    currentDirectory.write("b.mtl", "Ns 2\n");
    EXPECT_EQ(read("a.mtl"), "");
    EXPECT_EQ(read("b.mtl"), "");
    EXPECT_EQ(describeMaterials(table), "a{Ns=2}");
}

#ifdef __linux__
// Opens, and fails at the first read.
TEST_F(MtlPlacesTest, ReadErrorEndsTheLibraryAndIsNoReasonForTheSecondPlace) {
    EXPECT_EQ(read("/proc/self/mem"), "");
    EXPECT_EQ(recorder.getText(),
              "3|Using Mtllib file: /proc/self/mem\n"
              "1|Problem with material library: Unable to read file\n");
    EXPECT_EQ(describeMaterials(table), "");
    EXPECT_EQ(table.libraryNames, (std::vector<std::string>{"/proc/self/mem"}));
}
#endif

// --- A callback that throws ---------------------------------------------------

// A host whose callback throws at every message with a certain beginning.
class ThrowingHost {
public:
    enum Kind { STANDARD_EXCEPTION, INTEGER };

    ThrowingHost(const char* messageStart, Kind kindThrown)
        : thrownAt(messageStart), kind(kindThrown) {
        current = this;
        ObjConverter::getInstance()->setMsgCallback(&ThrowingHost::receive);
    }
    ~ThrowingHost() {
        current = nullptr;
        ObjConverter::getInstance()->setMsgCallback(nullptr);
    }
    ThrowingHost(const ThrowingHost&) = delete;
    ThrowingHost& operator=(const ThrowingHost&) = delete;

    std::string messages;

private:
    static void receive(int level, const char* text) {
        const std::string message = std::to_string(level) + "|" + text;
        current->messages += message + "\n";
        if (message.compare(0, current->thrownAt.size(), current->thrownAt) != 0)
            return;
        if (current->kind == INTEGER)
            throw 7;
        throw std::runtime_error("host");
    }

    static ThrowingHost* current;
    std::string thrownAt;
    Kind kind;
};

ThrowingHost* ThrowingHost::current = nullptr;

// What readMtlFile threw: the text, the integer, or nothing.
std::string thrownByReading(const std::string& inputPath, const std::string& libraryName,
                            MaterialTable& table) {
    try {
        readMtlFile(inputPath, libraryName, table);
    } catch (const std::exception& failure) {
        return failure.what();
    } catch (int value) {
        return "integer " + std::to_string(value);
    }
    return "";
}

constexpr ThrowingHost::Kind STANDARD = ThrowingHost::STANDARD_EXCEPTION;
constexpr ThrowingHost::Kind INTEGER = ThrowingHost::INTEGER;

struct ThrowingCase {
    const char* title;
    const char* thrownAt;
    ThrowingHost::Kind kind;
    const char* mtlText;
    const char* materials;
    const char* messages;  // without where the library is
    const char* thrown;    // by readMtlFile
};

const ThrowingCase THROWING_CASES[] = {
    {"a statement's error ends the library", "1|Error processing Specular", STANDARD,
     "newmtl a\nNi 2\nNs x\nNi 3\n", "a{Ni=2}",
     "1|Error processing Specular Exponent: invalid stod argument\n"
     "1|Problem with material library: host\n",
     ""},
    {"a statement's error, no standard exception", "1|Error processing Specular", INTEGER,
     "newmtl a\nNi 2\nNs x\nNi 3\n", "a{Ni=2}",
     "1|Error processing Specular Exponent: invalid stod argument\n", "integer 7"},
    {"a colour's error", "1|Error processing Ambient", STANDARD, "newmtl a\nKa red\nNi 3\n", "a{}",
     "1|Error processing Ambient color: Invalid color format\n"
     "1|Problem with material library: host\n",
     ""},
    {"no name given", "1|Error processing New Material: No name", STANDARD, "newmtl\nnewmtl b\n",
     "",
     "1|Error processing New Material: No name given.\n"
     "1|Error processing New Material: host\n"
     "1|Problem with material library: Could not proccess new material\n",
     ""},
    {"no name given, no standard exception", "1|Error processing New Material: No name", INTEGER,
     "newmtl\nnewmtl b\n", "", "1|Error processing New Material: No name given.\n", "integer 7"},
    {"name missing", "1|Error processing New Material: Material name", STANDARD,
     "newmtl\nnewmtl b\n", "",
     "1|Error processing New Material: No name given.\n"
     "1|Error processing New Material: Material name missing\n"
     "1|Problem with material library: host\n",
     ""},
    {"a name that exists is not appended", "2|Material with", STANDARD,
     "newmtl a\nNs 1\nnewmtl a\nNs 2\n", "a{Ns=1}",
     "2|Material with the name \"a\" already exists. The materials will not reliably be "
     "distinguished.\n"
     "1|Error processing New Material: host\n"
     "1|Problem with material library: Could not proccess new material\n",
     ""},
    {"a name that exists, no standard exception", "2|Material with", INTEGER,
     "newmtl a\nNs 1\nnewmtl a\nNs 2\n", "a{Ns=1}",
     "2|Material with the name \"a\" already exists. The materials will not reliably be "
     "distinguished.\n",
     "integer 7"},
    {"the library's problem", "1|Problem with material library", STANDARD, "newmtl\n", "",
     "1|Error processing New Material: No name given.\n"
     "1|Error processing New Material: Material name missing\n"
     "1|Problem with material library: Could not proccess new material\n",
     "host"},
    {"an option's warning", "2|Invalid value", STANDARD,
     "newmtl a\nmap_Kd -blendu x wood.png\nNs 1\n", "a{Ns=1}",
     "2|Invalid value for -blendu. Option skipped.\n"
     "1|Problem processing map options.host\n"
     "2|Error processing texture map. Map will be skipped.\n",
     ""},
    {"an option's warning, no standard exception", "2|Invalid value", INTEGER,
     "newmtl a\nmap_Kd -blendu x wood.png\nNs 1\n", "a{Ns=1}",
     "2|Invalid value for -blendu. Option skipped.\n"
     "2|Error processing texture map. Map will be skipped.\n",
     ""},
    {"the warning of -mm", "2|Bad input", STANDARD, "newmtl a\nmap_Kd -mm x wood.png\nNs 1\n",
     "a{Ns=1}",
     "2|Bad input values for -mm. Option skipped.\n"
     "1|Problem processing map options.host\n"
     "2|Error processing texture map. Map will be skipped.\n",
     ""},
    {"the warning of -texres", "2|Bad input", INTEGER,
     "newmtl a\nmap_Kd -texres x wood.png\nNs 1\n", "a{Ns=1}",
     "2|Bad input values for -texres. Option skipped.\n"
     "2|Error processing texture map. Map will be skipped.\n",
     ""},
    {"no file", "1|Map missing", STANDARD, "newmtl a\nmap_Kd\nNs 1\n", "a{Ns=1}",
     "1|Map missing file name.\n"
     "1|Problem processing map options.host\n"
     "2|Error processing texture map. Map will be skipped.\n",
     ""},
    {"the options' problem", "1|Problem processing", STANDARD, "newmtl a\nmap_Kd -o x\nNs 1\n",
     "a{Ns=1}",
     "1|Problem processing map options.invalid stod argument\n"
     "2|Error processing texture map. Map will be skipped.\n",
     ""},
    {"the options' problem, no standard exception", "1|Problem processing", INTEGER,
     "newmtl a\nmap_Kd -o x\nNs 1\n", "a{Ns=1}",
     "1|Problem processing map options.invalid stod argument\n"
     "2|Error processing texture map. Map will be skipped.\n",
     ""},
    {"no reflection type", "2|Reflection", INTEGER, "newmtl a\nrefl env.png\nNs 1\n", "a{Ns=1}",
     "2|Reflection map is missing type. Map skipped.\n"
     "2|Error processing texture map. Map will be skipped.\n",
     ""},
    {"the map's warning ends the library", "2|Error processing texture", STANDARD,
     "newmtl a\nmap_Kd -o x\nNs 1\n", "a{}",
     "1|Problem processing map options.invalid stod argument\n"
     "2|Error processing texture map. Map will be skipped.\n"
     "1|Problem with material library: host\n",
     ""},
    {"the map's warning, no standard exception", "2|Error processing texture", INTEGER,
     "newmtl a\nmap_Kd -o x\nNs 1\n", "a{}",
     "1|Problem processing map options.invalid stod argument\n"
     "2|Error processing texture map. Map will be skipped.\n",
     "integer 7"},
};

TEST(MtlThrowingHostTest, ThrowsTakeThePathOfTheFailureAtThatPlace) {
    const TemporaryDirectory directory;
    for (const ThrowingCase& row : THROWING_CASES) {
        SCOPED_TRACE(row.title);
        const std::string path = directory.write("a.mtl", row.mtlText);
        MaterialTable table;
        ThrowingHost host(row.thrownAt, row.kind);
        EXPECT_EQ(thrownByReading("", path, table), row.thrown);
        EXPECT_EQ(host.messages, "3|Using Mtllib file: " + path + "\n" + row.messages);
        EXPECT_EQ(describeMaterials(table), row.materials);
        for (int i = 0; i < table.getNumberOfMaterials(); ++i)
            EXPECT_EQ(table.findMaterial(table.getMaterials()[static_cast<std::size_t>(i)].name),
                      i);
    }
}

// The message belongs to the opening: whatever is thrown there has the library
// opened at the second place.
TEST(MtlThrowingHostTest, ThrowAtTheFirstPlaceLeadsToTheSecond) {
    const TemporaryDirectory currentDirectory;
    const TemporaryDirectory inputDirectory;
    const CurrentDirectory setAndRestored(currentDirectory);
    currentDirectory.write("a.mtl", "newmtl current\n");
    const std::string second = inputDirectory.write("a.mtl", "newmtl input\n");
    for (const ThrowingHost::Kind kind : {STANDARD, INTEGER}) {
        MaterialTable table;
        ThrowingHost host("3|Using Mtllib file: a.mtl", kind);
        EXPECT_EQ(thrownByReading(inputDirectory.getPath(), "a.mtl", table), "");
        EXPECT_EQ(host.messages,
                  "3|Using Mtllib file: a.mtl\n3|Using Mtllib file: " + second + "\n");
        EXPECT_EQ(describeMaterials(table), "input{}");
        EXPECT_EQ(table.libraryNames, (std::vector<std::string>{"a.mtl"}));
    }
}

TEST(MtlThrowingHostTest, ThrowAtTheSecondPlaceIsPassedOn) {
    const TemporaryDirectory inputDirectory;
    inputDirectory.write("throwing.mtl", "newmtl input\n");
    for (const ThrowingHost::Kind kind : {STANDARD, INTEGER}) {
        MaterialTable table;
        ThrowingHost host("3|Using Mtllib file: ", kind);
        EXPECT_EQ(thrownByReading(inputDirectory.getPath(), "throwing.mtl", table),
                  kind == STANDARD ? "host" : "integer 7");
        EXPECT_EQ(describeMaterials(table), "");
        EXPECT_EQ(table.libraryNames, (std::vector<std::string>{"throwing.mtl"}));
    }
}

TEST(MtlThrowingHostTest, ThrowAtTheFirstPlaceWithoutASecond) {
    const TemporaryDirectory currentDirectory;
    const CurrentDirectory setAndRestored(currentDirectory);
    currentDirectory.write("a.mtl", "newmtl current\n");
    MaterialTable table;
    ThrowingHost host("3|Using Mtllib file: ", STANDARD);
    EXPECT_EQ(thrownByReading("no such directory/", "a.mtl", table), "Unable to open file");
    EXPECT_EQ(host.messages, "3|Using Mtllib file: a.mtl\n");
    EXPECT_EQ(describeMaterials(table), "");
}

// --- Whole imports --------------------------------------------------------------

TEST(MtlImportTest, UsemtlSelectsTheFirstOfAName) {
    ImportOptions options;
    options.otherFiles["mtlImportTest.mtl"] = "newmtl red\nNs 1\nnewmtl red\nNs 2\nnewmtl blue\n";
    const ImportResult result = importText(
        "mtllib mtlImportTest.mtl\nv 0 0 0\nv 1 0 0\nv 0 1 0\nusemtl red\nf 1 2 3\n"
        "usemtl blue\nf 1 2 3\n",
        options);
    EXPECT_EQ(describeFaces(result.model), "[0 1 2 m0] [0 1 2 m2]");
    ASSERT_EQ(result.model.materials.size(), 3U);
    EXPECT_EQ(describeMaterial(result.model.materials[0]), "red{Ns=1}");
    EXPECT_EQ(describeMaterial(result.model.materials[1]), "red{Ns=2}");
    EXPECT_EQ(describeMaterial(result.model.materials[2]), "blue{}");
}

// --- Size and damage --------------------------------------------------------------

constexpr int MANY = 100000;

// Far above what a linear pass takes under the sanitizers, and far below what
// comparing each with each does.
constexpr std::chrono::seconds TIME_LIMIT{60};

TEST(MtlSizeTest, ManyMaterialsOfDifferentNames) {
    std::string text;
    for (int i = 0; i < MANY; ++i)
        text += "newmtl material_with_a_common_beginning_" + std::to_string(i) + "\nNs " +
                std::to_string(i) + "\n";
    MaterialTable table;
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_EQ(readMtlText(text, table), "");
    EXPECT_LT(std::chrono::steady_clock::now() - begin, TIME_LIMIT);
    ASSERT_EQ(table.getNumberOfMaterials(), MANY);
    for (int i = 0; i < MANY; ++i) {
        const Material& material = table.getMaterials()[static_cast<std::size_t>(i)];
        ASSERT_EQ(material.specularExponent, i);
        ASSERT_EQ(table.findMaterial(material.name), i);
    }
}

TEST(MtlSizeTest, ManyMaterialsOfOneName) {
    std::string text;
    for (int i = 0; i < MANY; ++i)
        text += "newmtl red\n";
    MaterialTable table;
    const auto begin = std::chrono::steady_clock::now();
    const std::string messages = readMtlText(text, table);
    EXPECT_LT(std::chrono::steady_clock::now() - begin, TIME_LIMIT);
    EXPECT_EQ(table.getNumberOfMaterials(), MANY);
    EXPECT_EQ(table.findMaterial("red"), 0);
    const std::string warning =
        "2|Material with the name \"red\" already exists. The materials will not reliably be "
        "distinguished.\n";
    EXPECT_EQ(messages.size(), warning.size() * (MANY - 1));
    EXPECT_EQ(messages.substr(messages.size() - warning.size()), warning);
}

TEST(MtlSizeTest, ManyLibraryNames) {
    MaterialTable table;
    const auto begin = std::chrono::steady_clock::now();
    for (int round = 0; round < 2; ++round) {
        for (int i = 0; i < MANY; ++i)
            table.addLibraryName("library_with_a_common_beginning_" + std::to_string(i));
    }
    EXPECT_LT(std::chrono::steady_clock::now() - begin, TIME_LIMIT);
    ASSERT_EQ(table.libraryNames.size(), static_cast<std::size_t>(MANY));
    EXPECT_EQ(table.libraryNames.back(),
              "library_with_a_common_beginning_" + std::to_string(MANY - 1));
}

TEST(MtlSizeTest, OneLongLine) {
    constexpr std::size_t LENGTH = 5000000;
    MaterialTable table;
    EXPECT_EQ(readMtlText("newmtl a\nmap_Kd " + std::string(LENGTH, ' ') + "x\nNs " +
                              std::string(LENGTH, '1') + "\nd 0." + std::string(LENGTH, '0') +
                              "1\nillum " + std::string(LENGTH, '9') + "\nKd spectral " +
                              std::string(LENGTH, 's') + "\n",
                          table),
              "1|Error processing Specular Exponent: stod argument out of range\n"
              "1|Error processing Dissolve: stod argument out of range\n"
              "1|Error processing Illumination Model: stoi argument out of range\n");
    EXPECT_EQ(table.currentMaterial().getTextureMap(Material::MAP_KD).fileName, "x");
    EXPECT_EQ(table.currentMaterial().getDiffuse().spectralFile.size(), LENGTH);
}

const std::string_view WHOLE_LIBRARY =
    "# every statement\r\nnewmtl a\nKa 0.1 0.2 0.3\nKd xyz .4 .5 .6\nKs spectral c.rfl 0.5\n"
    "Tf 1 1 1\nNs 5\nd -halo 0.5\nTr 0.25\nillum 2\nsharpness 99\nNi 1.5\n"
    "map_Ka -o 1 2 3 -clamp on a.png\nmap_Kd -s 1 2 3 b.png\nmap_Ks -t 1 2 3 c.png\n"
    "map_Ns -imfchan l -mm 0.5 2 d.png\nmap_d -texres 64 -blendu off e.png\ndisp f.png\n"
    "decal -cc on -blendv off g.png\nbump h.png \\\n -clamp on\nrefl -type cube_top i.png\n"
    "newmtl b\nKd 1 0 0\n";

// Colours have a kind exactly when they are marked, maps a file, and every name
// is found at its first place.
std::string findDamage(MaterialTable& table) {
    for (int i = 0; i < table.getNumberOfMaterials(); ++i) {
        Material material = table.getMaterials()[static_cast<std::size_t>(i)];
        const int found = table.findMaterial(material.name);
        if (found < 0 || found > i ||
            table.getMaterials()[static_cast<std::size_t>(found)].name != material.name)
            return "name of " + std::to_string(i);
        if (material.hasAmbient() != (material.getAmbient().type != ColorType::NONE) ||
            material.hasDiffuse() != (material.getDiffuse().type != ColorType::NONE) ||
            material.hasSpecular() != (material.getSpecular().type != ColorType::NONE) ||
            material.hasFilter() != (material.getFilter().type != ColorType::NONE))
            return "colour of " + std::to_string(i);
        for (const TextureMapSlot& slot : material.textureMaps) {
            if (slot.hasTextureMap == slot.textureMap.fileName.empty())
                return "map of " + std::to_string(i);
        }
    }
    return "";
}

TEST(MtlDamageTest, WholeLibraryReads) {
    MaterialTable table;
    EXPECT_EQ(readMtlText(WHOLE_LIBRARY, table), "");
    EXPECT_EQ(describeMaterials(table),
              "a{Ka(rgb 0.1 0.2 0.3 1) Kd(xyz 0.4 0.5 0.6 -1) Ks(spectral c.rfl 0.5 -1 -1 -1) "
              "Tf(rgb 1 1 1 1) map_Ka(a.png clamp=1 o=1,2,3) map_Kd(b.png s=1,2,3) "
              "map_Ks(c.png t=1,2,3) map_Ns(d.png base=0.5 gain=2 imfchan=5) "
              "map_d(e.png blendu=0 texres=64) bump(h.png clamp=1) "
              "decal(g.png blendv=0 cc=1) refl(i.png type=2) Ns=5 d=0.75 illum=2 sharpness=99 "
              "Ni=1.5 halo=1} b{Kd(rgb 1 0 0 1)}");
}

TEST(MtlDamageTest, EveryBeginningOfALibraryReads) {
    for (std::size_t length = 0; length <= WHOLE_LIBRARY.size(); ++length) {
        MaterialTable table;
        readMtlText(WHOLE_LIBRARY.substr(0, length), table);
        ASSERT_EQ(findDamage(table), "") << "length " << length;
    }
}

TEST(MtlDamageTest, EveryLibraryWithOneByteChangedReads) {
    RandomSource random(7);
    for (std::size_t position = 0; position < WHOLE_LIBRARY.size(); ++position) {
        std::string text(WHOLE_LIBRARY);
        text[position] =
            random.oneIn(2) ? "\0\n\\ -#9"[random.below(8)] : static_cast<char>(random.below(256));
        MaterialTable table;
        readMtlText(text, table);
        ASSERT_EQ(findDamage(table), "") << "position " << position << "\n" << text;
    }
}

}  // namespace
}  // namespace obj_adapter::test
