// Tests of material/textureMapOptions.cpp.
#include "material/textureMapOptions.h"

#include "material/readMtlText.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <string_view>

namespace obj_adapter::test {
namespace {

using std::string_view_literals::operator""sv;

#define SKIPPED "2|Error processing texture map. Map will be skipped.\n"

const MtlCase STATEMENT_CASES[] = {
    {"each keyword fills its slot",
     "newmtl a\nmap_Ka 1\nmap_Kd 2\nmap_Ks 3\nmap_Ns 4\nmap_d 5\nbump 7\ndecal 8\n"
     "refl -type sphere 9\n",
     "a{map_Ka(1) map_Kd(2) map_Ks(3) map_Ns(4) map_d(5) bump(7) decal(8) refl(9 type=1)}", ""},
    {"keywords ignore case",
     "newmtl a\nMAP_KA 1\nmap_kd 2\nMap_kS 3\nmap_nS 4\nmap_D 5\nBump 7\nDECAL 8\n"
     "Refl -type sphere 9\n",
     "a{map_Ka(1) map_Kd(2) map_Ks(3) map_Ns(4) map_d(5) bump(7) decal(8) refl(9 type=1)}", ""},
    {"other maps are unknown", "newmtl a\nmap_bump x\nmap_Ke x\nmap_Tr x\nmap x\n", "a{}", ""},
    {"the last statement holds whole", "newmtl a\nmap_Kd -clamp on a.png\nmap_Kd b.png\n",
     "a{map_Kd(b.png)}", ""},
    {"a failed statement keeps the earlier map", "newmtl a\nmap_Kd a.png\nmap_Kd -o x b.png\n",
     "a{map_Kd(a.png)}", "1|Problem processing map options.invalid stod argument\n" SKIPPED},
    {"disp is read and never stored", "newmtl a\ndisp height.png\n", "a{}", ""},
    {"disp is checked", "newmtl a\ndisp -cc x -s y height.png\nNs 1\n", "a{Ns=1}",
     "2|Invalid value for -cc. Option skipped.\n"
     "1|Problem processing map options.invalid stod argument\n" SKIPPED},
    {"a map wants a material", "map_Kd wood.png\nrefl -type sphere env.png\n", "", SKIPPED SKIPPED},
    {"disp wants a material too", "disp height.png\n", "", SKIPPED},
    {"a reflection without a type is told before", "refl env.png\n", "",
     "2|Reflection map is missing type. Map skipped.\n"},
    {"a bad map without a material", "map_Kd -o x wood.png\n", "",
     "1|Problem processing map options.invalid stod argument\n" SKIPPED},
    {"reading goes on", "newmtl a\nmap_Kd\nNs 1\n", "a{Ns=1}",
     "1|Map missing file name.\n"
     "1|Problem processing map options.Unable to process texture map options\n" SKIPPED},
};

TEST(TextureMapStatementTest, Statements) {
    checkMtlCases(STATEMENT_CASES);
}

// --- Options --------------------------------------------------------------------

// What stands behind "map_Kd " in "newmtl a", and the map that results; "none"
// when it was dropped.
struct OptionCase {
    const char* title;
    std::string_view options;
    const char* map;
    const char* messages;
};

#define MISSING                  \
    "1|Map missing file name.\n" \
    "1|Problem processing map options.Unable to process texture map options\n" SKIPPED
#define BAD_NUMBER "1|Problem processing map options.invalid stod argument\n" SKIPPED
#define NO_NUMBER "1|Problem processing map options.No float value found\n" SKIPPED

template <std::size_t ROWS>
void checkOptions(const char* keyword, Material::TextureMapName slot,
                  const OptionCase (&rows)[ROWS]) {
    for (const OptionCase& row : rows) {
        SCOPED_TRACE(std::string(row.title) + "\n" + std::string(row.options));
        MaterialTable table;
        const std::string text =
            "newmtl a\n" + std::string(keyword) + " " + std::string(row.options) + "\nNs 5\n";
        EXPECT_EQ(readMtlText(text, table), row.messages);
        Material& material = table.currentMaterial();
        EXPECT_EQ(material.hasTextureMap(slot) ? describeMap(material.getTextureMap(slot)) : "none",
                  std::string(row.map));
        EXPECT_EQ(material.specularExponent, 5.0);
    }
}

const OptionCase FILE_CASES[] = {
    {"a file alone", "wood.png", "wood.png", ""},
    {"behind the options", "-clamp on -blendu off wood.png", "wood.png blendu=0 clamp=1", ""},
    {"before the options", "wood.png -clamp ON", "wood.png clamp=1", ""},
    {"between the options", "-cc on wood.png -clamp on", "wood.png cc=1 clamp=1", ""},
    {"the last one holds", "a.png -clamp on b.png c.png -cc on", "c.png cc=1 clamp=1", ""},
    {"blanks part names", "my wood.png", "wood.png", ""},
    {"backslashes part names", "textures\\wood.png", "wood.png", ""},
    {"slashes do not", "textures/wood.png", "textures/wood.png", ""},
    {"a carriage return is no part of it", "wood.png\r", "wood.png", ""},
    {"a NUL ends the line", "wood.png\0 -clamp on"sv, "wood.png", ""},
    {"no file", "", "none", MISSING},
    {"options and no file", "-clamp on -o 0.1", "none", MISSING},
    {"an offset and no file", "-o 0.1", "none", MISSING},
    {"a NUL before the file", "-clamp on \0wood.png"sv, "none", MISSING},
};

TEST(TextureMapOptionsTest, FileNames) {
    checkOptions("map_Kd", Material::MAP_KD, FILE_CASES);
}

const OptionCase TRIPLE_CASES[] = {
    {"three values of -o", "-o 1 -2 .5 wood.png", "wood.png o=1,-2,0.5", ""},
    {"three values of -s", "-s 2 2 2 wood.png", "wood.png s=2,2,2", ""},
    {"three values of -t", "-t 1 2 3 wood.png", "wood.png t=1,2,3", ""},
    {"two values at the end of the line", "wood.png -s 2 3", "wood.png s=2,3,1", ""},
    {"one value at the end of the line", "wood.png -s 2", "wood.png s=2,1,1", ""},
    {"one value of -o at the end", "wood.png -o 2", "wood.png o=2,0,0", ""},
    {"two values of -t at the end", "wood.png -t 2 3", "wood.png t=2,3,0", ""},
    {"a fourth value is a file", "-s 1 2 3 4", "4 s=1,2,3", ""},
    {"the last statement of a value holds", "-s 2 2 2 -s 3 3 3 -o 1 1 1 wood.png",
     "wood.png o=1,1,1 s=3,3,3", ""},
    {"a later one replaces what it reads only", "-s 2 3 4 wood.png -s 5", "wood.png s=5,3,4", ""},
    {"options ignore case", "-O 1 1 1 -S 2 2 2 -T 3 3 3 wood.png",
     "wood.png o=1,1,1 s=2,2,2 t=3,3,3", ""},
    {"a file is taken for the second value", "-s 2 wood.png", "none", BAD_NUMBER},
    {"a file is taken for the third value", "-o 0.5 0.5 wood.png", "none", BAD_NUMBER},
    {"an option is taken for a value", "-t 1 -clamp on wood.png", "none", BAD_NUMBER},
    {"a file that starts with a digit passes for a value", "-o 0.5 2wood.png", "none",
     "1|Map missing file name.\n"
     "1|Problem processing map options.Unable to process texture map options\n" SKIPPED},
    {"a bad first value", "-o x wood.png", "none", BAD_NUMBER},
    {"no value of -o", "wood.png -o", "none", NO_NUMBER},
    {"no value of -s", "wood.png -s", "none", NO_NUMBER},
    {"no value of -t", "wood.png -t", "none", NO_NUMBER},
    {"a value out of range", "-s 1e999 wood.png", "none",
     "1|Problem processing map options.stod argument out of range\n" SKIPPED},
};

TEST(TextureMapOptionsTest, Triples) {
    checkOptions("map_Kd", Material::MAP_KD, TRIPLE_CASES);
}

const OptionCase FLAG_CASES[] = {
    {"each on", "-blendu on -blendv on -cc on -clamp on wood.png", "wood.png cc=1 clamp=1", ""},
    {"each off", "-blendu off -blendv off -cc off -clamp off wood.png",
     "wood.png blendu=0 blendv=0", ""},
    {"letter case is ignored", "-BlendU OFF -BLENDV Off -Cc ON -CLAMP On wood.png",
     "wood.png blendu=0 blendv=0 cc=1 clamp=1", ""},
    {"the last one holds", "-clamp on -clamp off -cc off -cc on wood.png", "wood.png cc=1", ""},
    {"neither on nor off", "-blendu x -blendv 1 -cc o -clamp onn wood.png", "wood.png",
     "2|Invalid value for -blendu. Option skipped.\n"
     "2|Invalid value for -blendv. Option skipped.\n"
     "2|Invalid value for -cc. Option skipped.\n"
     "2|Invalid value for -clamp. Option skipped.\n"},
    {"a bad value keeps the earlier one", "-clamp on -clamp x wood.png", "wood.png clamp=1",
     "2|Invalid value for -clamp. Option skipped.\n"},
    {"a bad value is no file", "-clamp wood.png", "none",
     "2|Invalid value for -clamp. Option skipped.\n" MISSING},
    {"an option is taken for the value", "-clamp -cc on wood.png", "wood.png",
     "2|Invalid value for -clamp. Option skipped.\n"},
    {"no value of -blendu", "wood.png -blendu", "wood.png",
     "2|Invalid value for -blendu. Option skipped.\n"},
    {"no value of -blendv", "wood.png -blendv", "wood.png",
     "2|Invalid value for -blendv. Option skipped.\n"},
    {"no value of -cc", "wood.png -cc", "wood.png", "2|Invalid value for -cc. Option skipped.\n"},
    {"no value of -clamp", "wood.png -clamp", "wood.png",
     "2|Invalid value for -clamp. Option skipped.\n"},
    {"no value and no file", "-clamp", "none",
     "2|Invalid value for -clamp. Option skipped.\n" MISSING},
};

TEST(TextureMapOptionsTest, Flags) {
    checkOptions("map_Kd", Material::MAP_KD, FLAG_CASES);
}

#define BAD_MM "2|Bad input values for -mm. Option skipped.\n"
#define BAD_TEXRES "2|Bad input values for -texres. Option skipped.\n"

const OptionCase NUMBER_CASES[] = {
    {"base and gain", "-mm 0.2 3 wood.png", "wood.png base=0.2 gain=3", ""},
    {"letter case is ignored", "-MM 0.2 3 -TexRes 64 wood.png",
     "wood.png base=0.2 gain=3 texres=64", ""},
    {"a bad gain is taken and the base stays", "-mm 0.2 x wood.png", "wood.png base=0.2", BAD_MM},
    {"the file is taken for the gain", "-mm 0.2 wood.png", "none", BAD_MM MISSING},
    {"no gain", "wood.png -mm 0.2", "wood.png base=0.2", BAD_MM},
    {"a gain out of range", "-mm 0.2 1e999 wood.png", "wood.png base=0.2", BAD_MM},
    {"behind a bad base the gain is not read", "-mm x 3 wood.png", "wood.png", BAD_MM},
    {"the gain behind a bad base is seen as a file", "-mm x 3", "3", BAD_MM},
    {"a bad base keeps the earlier values", "-mm 0.2 3 -mm x wood.png", "wood.png base=0.2 gain=3",
     BAD_MM},
    {"neither base nor gain", "wood.png -mm", "wood.png", BAD_MM},
    {"resolution", "-texres 512 wood.png", "wood.png texres=512", ""},
    {"resolution ends at the point", "-texres 2.7 wood.png", "wood.png texres=2", ""},
    {"resolution may be negative", "-texres -5 wood.png", "wood.png texres=-5", ""},
    {"a bad resolution", "-texres x wood.png", "wood.png", BAD_TEXRES},
    {"a bad resolution keeps the earlier one", "-texres 5 -texres x wood.png", "wood.png texres=5",
     BAD_TEXRES},
    {"a resolution out of range", "-texres 2147483648 wood.png", "wood.png", BAD_TEXRES},
    {"no resolution", "wood.png -texres", "wood.png", BAD_TEXRES},
    {"the file is taken for the resolution", "-texres wood.png", "none", BAD_TEXRES MISSING},
};

TEST(TextureMapOptionsTest, Numbers) {
    checkOptions("map_Kd", Material::MAP_KD, NUMBER_CASES);
}

#define BAD_IMFCHAN "2|Invalid value for -imfchan. Option skipped.\n"
#define BAD_TYPE "2|Invalid value for reflection map's -type.\n"

const OptionCase CHOICE_CASES[] = {
    {"-imfchan r", "-imfchan r wood.png", "wood.png imfchan=1", ""},
    {"-imfchan g", "-imfchan g wood.png", "wood.png imfchan=2", ""},
    {"-imfchan b", "-imfchan b wood.png", "wood.png imfchan=3", ""},
    {"-imfchan m", "-imfchan m wood.png", "wood.png imfchan=4", ""},
    {"-imfchan l", "-imfchan l wood.png", "wood.png imfchan=5", ""},
    {"-imfchan z", "-imfchan z wood.png", "wood.png imfchan=6", ""},
    {"only the first character counts", "-imfchan red wood.png", "wood.png imfchan=1", ""},
    {"its letter case counts", "-imfchan R wood.png", "wood.png", BAD_IMFCHAN},
    {"the option's does not", "-ImfChan r wood.png", "wood.png imfchan=1", ""},
    {"another channel", "-imfchan a wood.png", "wood.png", BAD_IMFCHAN},
    {"a bad channel keeps the earlier one", "-imfchan z -imfchan a wood.png", "wood.png imfchan=6",
     BAD_IMFCHAN},
    {"no channel", "wood.png -imfchan", "wood.png", BAD_IMFCHAN},
    {"-type sphere", "-type sphere e.png", "e.png type=1", ""},
    {"-type cube_top", "-type cube_top e.png", "e.png type=2", ""},
    {"-type cube_bottom", "-type cube_bottom e.png", "e.png type=3", ""},
    {"-type cube_front", "-type cube_front e.png", "e.png type=4", ""},
    {"-type cube_back", "-type cube_back e.png", "e.png type=5", ""},
    {"-type cube_left", "-type cube_left e.png", "e.png type=6", ""},
    {"-type cube_right", "-type cube_right e.png", "e.png type=7", ""},
    {"types ignore case", "-TYPE CUBE_Top e.png", "e.png type=2", ""},
    {"types are matched whole", "-type cube e.png", "e.png", BAD_TYPE},
    {"a bad type keeps the earlier one", "-type sphere -type x e.png", "e.png type=1", BAD_TYPE},
    {"no type", "e.png -type", "e.png", BAD_TYPE},
};

TEST(TextureMapOptionsTest, Choices) {
    checkOptions("map_Kd", Material::MAP_KD, CHOICE_CASES);
}

const OptionCase REFLECTION_CASES[] = {
    {"with a type", "-type sphere env.png", "env.png type=1", ""},
    {"the type may follow", "env.png -type cube_right", "env.png type=7", ""},
    {"without a type", "env.png", "none", "2|Reflection map is missing type. Map skipped.\n"},
    {"with a bad type", "-type cube_up env.png", "none",
     BAD_TYPE "2|Reflection map is missing type. Map skipped.\n"},
    {"with a type and then a bad one", "-type sphere -type cube_up env.png", "env.png type=1",
     BAD_TYPE},
    {"without a file", "-type sphere", "none", MISSING},
};

TEST(TextureMapOptionsTest, ReflectionsNeedAType) {
    checkOptions("refl", Material::REFL, REFLECTION_CASES);
}

const OptionCase UNKNOWN_CASES[] = {
    {"an unknown option is skipped by itself", "-x wood.png", "wood.png", ""},
    {"its value is seen as a file", "-x 5", "5", ""},
    {"-boost is unknown", "-boost 2.0 wood.png", "wood.png", ""},
    {"-boost behind the file takes its place", "wood.png -boost 2.0", "2.0", ""},
    {"a hyphen alone", "- wood.png", "wood.png", ""},
    {"options are matched whole", "-blend off -clampx on -ofs 1 2 3 wood.png", "wood.png", ""},
    {"a file cannot start with a hyphen", "-wood.png", "none", MISSING},
};

TEST(TextureMapOptionsTest, UnknownOptionsAreSkippedBySelf) {
    checkOptions("map_Kd", Material::MAP_KD, UNKNOWN_CASES);
}

TEST(TextureMapOptionsTest, ParsingThrowsOneTextForEveryFailure) {
    for (const char* line : {"-o x wood.png", "", "-clamp on", "-t"}) {
        SCOPED_TRACE(line);
        LineTokens tokens{std::string_view(line)};
        TextureMap map;
        try {
            parseTextureMapOptions(tokens, map);
            FAIL() << "nothing thrown";
        } catch (const std::runtime_error& failure) {
            EXPECT_STREQ(failure.what(), "Unable to process texture map options");
        }
    }
}

TEST(TextureMapOptionsTest, ParsingReadsTheRestOfTheLineIntoTheMap) {
    LineTokens tokens("map_Kd -clamp on a.png");
    tokens.next();
    TextureMap map;
    map.colorCorrection = true;
    parseTextureMapOptions(tokens, map);
    EXPECT_EQ(describeMap(map), "a.png cc=1 clamp=1");
    EXPECT_TRUE(tokens.next().isMissing());
}

}  // namespace
}  // namespace obj_adapter::test
