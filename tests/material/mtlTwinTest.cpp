// Libraries read as the slow twin reads them: every field of every material, and every
// message. fuzz/readingFuzzer.cpp compares the two by way of whole OBJ texts.
#include "material/readMtlText.h"
#include "support/randomSource.h"
#include "support/slowMtlReader.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace obj_adapter::test {
namespace {

// Reads the texts as libraries one after the other, and the twin the same.
void expectReadAsByTwin(const std::vector<std::string>& texts) {
    MaterialTable table;
    std::vector<Material> twin;
    for (const std::string& text : texts) {
        MessageRecorder recorder;
        obj_adapter::readMtlText("name.mtl", text, table);
        const std::string expected = "3|Using Mtllib file: name.mtl\n" + readMtlSlowly(text, twin);
        ASSERT_EQ(recorder.getText(), expected) << text;
        ASSERT_EQ(printMaterials(table.getMaterials()), printMaterials(twin)) << text;
    }
}

// Statements a little out of the ordinary, of pieces that belong to their grammar.
class MtlSoup {
public:
    explicit MtlSoup(std::uint64_t seed) : random(seed) {}

    std::string text() {
        std::string soup = random.oneIn(8) ? "" : "newmtl first\n";
        const int lines = random.between(1, 12);
        for (int line = 0; line < lines; ++line)
            soup += statement();
        return soup;
    }

private:
    template <std::size_t SIZE>
    std::string_view piece(const std::string_view (&pieces)[SIZE]) {
        return pieces[random.below(static_cast<int>(SIZE))];
    }

    std::string statement() {
        std::string line;
        switch (random.below(4)) {
            case 0:
                line = piece(COLORS);
                appendTokens(line, COLOR_TOKENS);
                break;
            case 1:
                line = piece(SCALARS);
                appendTokens(line, SCALAR_TOKENS);
                break;
            case 2:
                line = piece(MAPS);
                appendTokens(line, MAP_TOKENS);
                break;
            default:
                line = piece(OTHERS);
                appendTokens(line, NAMES);
                break;
        }
        return line + std::string(piece(ENDS));
    }

    template <std::size_t SIZE>
    void appendTokens(std::string& line, const std::string_view (&tokens)[SIZE]) {
        constexpr int MOST_TOKENS = 8;
        for (int left = random.below(MOST_TOKENS); left > 0; --left) {
            line += piece(GAPS);
            // Now and then one that belongs elsewhere.
            line += random.oneIn(12) ? piece(COLOR_TOKENS) : piece(tokens);
        }
    }

    static constexpr std::string_view COLORS[] = {"Ka", "Kd", "Ks", "Tf", "kA", "KD", "tF", " Ks"};
    static constexpr std::string_view SCALARS[] = {"Ns", "d",     "Tr", "illum", "sharpness", "Ni",
                                                   "D",  "ILLUM", "tr", "NS",    "\td"};
    static constexpr std::string_view MAPS[] = {"map_Ka", "map_Kd", "map_Ks", "map_Ns", "map_d",
                                                "disp",   "decal",  "bump",   "refl",   "refl",
                                                "MAP_KD", "Bump",   "REFL"};
    static constexpr std::string_view OTHERS[] = {"newmtl", "newmtl", "newmtl",  "NewMtl",
                                                  "#",      "# Kd",   " #",      "map_aat",
                                                  "",       "Kf",     "newmtl ", "d\v"};
    static constexpr std::string_view NAMES[] = {"first", "second",   "third", "First",
                                                 "\"",    "\xC3\xA4", "a/b"};
    static constexpr std::string_view COLOR_TOKENS[] = {
        "0",     "1",        "0.5",      ".5",  "5.",  "-1",   "+1",    "xyz",    "XYZ",
        "Xyz",   "spectral", "Spectral", "red", "nan", "inf",  "1e39",  "1e400",  "1e-400",
        "1e-46", "0x1p-3",   "file.rfl", "1x",  ".",   "3e38", "1e-45", "0.1abc", "-halo"};
    static constexpr std::string_view SCALAR_TOKENS[] = {
        "0",    "1",    "-halo", "-HALO",      "-Halo",      "-hal",        "2.9",         "-3",
        "+7",   "0.25", "1e400", "2147483647", "2147483648", "-2147483648", "-2147483649", "x",
        "1e-5", "\v4",  "nan",   "-",          "010",        "0x10"};
    static constexpr std::string_view MAP_TOKENS[] = {
        "-o",         "-s",       "-t",          "-blendu",     "-blendv",   "-cc",
        "-clamp",     "-mm",      "-texres",     "-imfchan",    "-type",     "-boost",
        "-O",         "-BlendU",  "-TEXRES",     "-Type",       "on",        "off",
        "ON",         "Off",      "of",          "r",           "red",       "R",
        "g",          "b",        "m",           "l",           "z",         "y",
        "sphere",     "cube_top", "cube_bottom", "cube_front",  "cube_back", "cube_left",
        "cube_right", "Sphere",   "cube_up",     "cube",        "1",         "0.5",
        "-1",         "2",        "3",           "x",           "wood.png",  "a.png",
        "-",          "--",       "1e400",       "99999999999", "-unknown"};
    static constexpr std::string_view GAPS[] = {" ", " ", " ", " ", "  ", "\t", "\r", "\\", "\\\n"};
    static constexpr std::string_view ENDS[] = {
        "\n", "\n", "\n", "\n", "\r\n", " \n", "\\\n", "", "\n\n", " wood.png\n", "\\\n\\\n"};

    RandomSource random;
};

TEST(MtlTwin, soupsOfStatements) {
    constexpr std::uint64_t SOUPS = 40000;
    for (std::uint64_t seed = 0; seed < SOUPS; ++seed)
        ASSERT_NO_FATAL_FAILURE(expectReadAsByTwin({MtlSoup(seed).text()})) << "seed " << seed;
}

// The second begins with the current material of the first.
TEST(MtlTwin, severalLibrariesIntoOneTable) {
    constexpr std::uint64_t SOUPS = 3000;
    for (std::uint64_t seed = 0; seed < SOUPS; ++seed) {
        const std::string first = MtlSoup(3 * seed).text();
        const std::string second = MtlSoup(3 * seed + 1).text();
        ASSERT_NO_FATAL_FAILURE(expectReadAsByTwin({first, second, first})) << "seed " << seed;
    }
}

// With bytes of every value at any place.
TEST(MtlTwin, soupsWithAnyBytes) {
    constexpr std::uint64_t SOUPS = 20000;
    for (std::uint64_t seed = 0; seed < SOUPS; ++seed) {
        std::string text = MtlSoup(seed).text();
        RandomSource random(seed);
        for (int change = random.between(1, 3); change > 0 && !text.empty(); --change) {
            const int place = random.below(static_cast<int>(text.size()));
            text[static_cast<std::size_t>(place)] = static_cast<char>(random.below(256) - 128);
        }
        ASSERT_NO_FATAL_FAILURE(expectReadAsByTwin({text})) << "seed " << seed;
    }
}

// What the soups say is read, for the most part: they are not all refused.
TEST(MtlTwin, soupsFillEveryFieldThatAStatementCan) {
    std::vector<Material> materials;
    constexpr std::uint64_t SOUPS = 2000;
    for (std::uint64_t seed = 0; seed < SOUPS; ++seed)
        readMtlSlowly(MtlSoup(seed).text(), materials);
    const Material none;
    const auto any = [&](auto differs) {
        for (const Material& material : materials) {
            if (differs(material))
                return true;
        }
        return false;
    };
    for (const ColorType type : {ColorType::RGB, ColorType::XYZ, ColorType::SPECTRAL}) {
        EXPECT_TRUE(any([&](const Material& m) { return m.ambient.type == type; }));
        EXPECT_TRUE(any([&](const Material& m) { return m.diffuse.type == type; }));
        EXPECT_TRUE(any([&](const Material& m) { return m.specular.type == type; }));
        EXPECT_TRUE(any([&](const Material& m) { return m.filter.type == type; }));
    }
    for (int slot = 0; slot < Material::NUMBER_OF_TEXTURE_MAPS; ++slot) {
        EXPECT_EQ(any([&](const Material& m) { return m.textureMaps[slot].hasTextureMap; }),
                  slot != Material::DISP)
            << slot;
    }
    EXPECT_TRUE(
        any([&](const Material& m) { return m.specularExponent != none.specularExponent; }));
    EXPECT_TRUE(any([&](const Material& m) { return m.dissolve != none.dissolve; }));
    EXPECT_TRUE(any([&](const Material& m) { return m.illumination != none.illumination; }));
    EXPECT_TRUE(any([&](const Material& m) { return m.sharpness != none.sharpness; }));
    EXPECT_TRUE(any([&](const Material& m) { return m.opticalDensity != none.opticalDensity; }));
    EXPECT_TRUE(any([](const Material& m) { return m.halo; }));
}

}  // namespace
}  // namespace obj_adapter::test
