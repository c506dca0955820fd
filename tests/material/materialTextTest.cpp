// Tests of material/materialText.cpp: texts byte for byte, and the way back
// through the reader.
#include <obj_adapter/materialText.h>

#include "material/materialText.h"
#include "material/readMtlText.h"
#include "support/randomSource.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <functional>
#include <limits>
#include <locale>
#include <string>
#include <utility>
#include <vector>

namespace obj_adapter::test {
namespace {

constexpr double NOT_A_NUMBER = std::numeric_limits<double>::quiet_NaN();
constexpr double INFINITE = std::numeric_limits<double>::infinity();

struct MapCase {
    const char* title;
    std::function<void(TextureMap&)> change;  // of a map named wood.png
    const char* text;
};

const MapCase MAP_CASES[] = {
    {"defaults", [](TextureMap&) {}, " wood.png"},
    {"no name", [](TextureMap& map) { map.fileName.clear(); }, " "},
    {"clamp and scale",
     [](TextureMap& map) {
         map.clamp = true;
         map.scale[0] = 2;
         map.scale[1] = 2;
     },
     " -clamp on -s 2.000000 2.000000 1.000000 wood.png"},
    {"two blanks stand before the type",
     [](TextureMap& map) {
         map.reflectionType = ReflectionType::CUBE_LEFT;
         map.fileName = "env.png";
     },
     " -type  cube_left env.png"},
    {"everything, in its order",
     [](TextureMap& map) {
         map.reflectionType = ReflectionType::CUBE_TOP;
         map.blendU = false;
         map.blendV = false;
         map.boost = 2;
         map.colorCorrection = true;
         map.clamp = true;
         map.imfChannel = ImfChannel::M;
         map.mmBase = 0.25;
         map.mmGain = 3;
         map.offset[2] = -1;
         map.scale[1] = 0;
         map.turbulence[0] = 1e-7;
         map.resolution = -2;
     },
     " -type  cube_top -blendu off -blendv off -boost 2.000000 -cc on -clamp on -imfchan m"
     " -mm 0.250000 3.000000 -o 0.000000 0.000000 -1.000000 -s 1.000000 0.000000 1.000000"
     " -t 0.000000 0.000000 0.000000 -texres -2 wood.png"},
    {"base alone", [](TextureMap& map) { map.mmBase = 1; }, " -mm 1.000000 1.000000 wood.png"},
    {"gain alone", [](TextureMap& map) { map.mmGain = 0; }, " -mm 0.000000 0.000000 wood.png"},
    {"negative zero is a default", [](TextureMap& map) { map.offset[0] = map.mmBase = -0.0; },
     " wood.png"},
    {"negative zero beside another value",
     [](TextureMap& map) {
         map.offset[0] = -0.0;
         map.offset[1] = 1;
     },
     " -o -0.000000 1.000000 0.000000 wood.png"},
    {"NaN differs from nothing",
     [](TextureMap& map) {
         map.boost = map.mmBase = map.mmGain = NOT_A_NUMBER;
         map.offset[0] = map.scale[1] = map.turbulence[2] = NOT_A_NUMBER;
     },
     " wood.png"},
    {"NaN beside another value",
     [](TextureMap& map) {
         map.mmBase = -NOT_A_NUMBER;
         map.mmGain = 2;
     },
     " -mm nan 2.000000 wood.png"},
    {"infinities",
     [](TextureMap& map) {
         map.boost = INFINITE;
         map.offset[1] = -INFINITE;
     },
     " -boost inf -o 0.000000 -inf 0.000000 wood.png"},
    {"an unknown type", [](TextureMap& map) { map.reflectionType = ReflectionType(8); },
     " -type  sphere wood.png"},
    {"a negative type", [](TextureMap& map) { map.reflectionType = ReflectionType(-1); },
     " -type  sphere wood.png"},
    {"an unknown channel", [](TextureMap& map) { map.imfChannel = ImfChannel(7); },
     " -imfchan l wood.png"},
    {"a negative channel", [](TextureMap& map) { map.imfChannel = ImfChannel(-1); },
     " -imfchan l wood.png"},
    {"the smallest resolution",
     [](TextureMap& map) { map.resolution = std::numeric_limits<std::int32_t>::min(); },
     " -texres -2147483648 wood.png"},
};

TEST(TextureMapStringTest, OptionsStandInTheirOrder) {
    for (const MapCase& row : MAP_CASES) {
        SCOPED_TRACE(row.title);
        TextureMap map;
        map.fileName = "wood.png";
        row.change(map);
        EXPECT_EQ(std::as_const(map).textureMapString(), row.text);
    }
}

TEST(TextureMapStringTest, EveryTypeAndChannelHasItsName) {
    const char* types[] = {"sphere",    "cube_top",  "cube_bottom", "cube_front",
                           "cube_back", "cube_left", "cube_right"};
    for (int type = 1; type <= 7; ++type) {
        TextureMap map;
        map.reflectionType = ReflectionType(type);
        EXPECT_EQ(map.textureMapString(), " -type  " + std::string(types[type - 1]) + " ");
    }
    const char* channels[] = {"r", "g", "b", "m", "l", "z"};
    for (int channel = 1; channel <= 6; ++channel) {
        TextureMap map;
        map.imfChannel = ImfChannel(channel);
        EXPECT_EQ(map.textureMapString(), " -imfchan " + std::string(channels[channel - 1]) + " ");
    }
}

MaterialColor rgb(float red, float green, float blue) {
    MaterialColor color;
    color.setRgb(red, green, blue);
    return color;
}

MaterialColor xyz(float x, float y, float z) {
    MaterialColor color;
    color.setXyz(x, y, z);
    return color;
}

MaterialColor spectral(const std::string& fileName, float factor) {
    MaterialColor color;
    color.setSpectral(fileName, factor);
    return color;
}

MaterialColor ofType(int type) {
    MaterialColor color;
    color.type = ColorType(type);
    return color;
}

struct ColorCase {
    const char* title;
    MaterialColor color;
    const char* text;
    const char* description;
};

const ColorCase COLOR_CASES[] = {
    {"rgb", rgb(1, 0.5F, 0), "1.000000 0.500000 0.000000", "RBG: (1.000000, 0.500000,0.000000)"},
    {"green", rgb(0, 1, 0), "0.000000 1.000000 0.000000", "RBG: (0.000000, 1.000000,0.000000)"},
    {"floats are printed as doubles", rgb(0.1F, 16777216, 1e-7F),
     "0.100000 16777216.000000 0.000000", "RBG: (0.100000, 16777216.000000,0.000000)"},
    {"NaN and infinity",
     rgb(std::numeric_limits<float>::quiet_NaN(), std::numeric_limits<float>::infinity(),
         -std::numeric_limits<float>::infinity()),
     "nan inf -inf", "RBG: (nan, inf,-inf)"},
    {"xyz", xyz(0.25F, -1, 2), "xyz 0.250000 -1.000000 2.000000",
     "XYZ: (0.250000, -1.000000,2.000000)"},
    {"spectral", spectral("a.rfl", 0.5F), "spectral a.rfl 0.500000",
     "Spectral: a.rfl Factor:0.500000"},
    {"none", MaterialColor(), "# No color found", "No color"},
    {"an unknown kind", ofType(4), "# No color found", "No color"},
    {"a negative kind", ofType(-1), "# No color found", "No color"},
};

TEST(ColorTextTest, EachKindHasItsText) {
    for (const ColorCase& row : COLOR_CASES) {
        SCOPED_TRACE(row.title);
        EXPECT_EQ(colorToText(row.color), row.text);
        EXPECT_EQ(colorDescription(row.color), row.description);
    }
}

TEST(DissolveTextTest, IsLeftOutWhenOpaque) {
    const auto text = [](double dissolve, bool halo) {
        Material material;
        material.dissolve = dissolve;
        material.halo = halo;
        return dissolveToText(material);
    };
    EXPECT_EQ(text(1.0, false), "");
    EXPECT_EQ(text(0.5, false), "d 0.500000");
    EXPECT_EQ(text(1.5, false), "d 1.500000");
    EXPECT_EQ(text(0.9999999, false), "d 1.000000");
    EXPECT_EQ(text(NOT_A_NUMBER, false), "");
    EXPECT_EQ(text(1.0, true), "d -halo 1.000000");
    EXPECT_EQ(text(0.5, true), "d -halo 0.500000");
    EXPECT_EQ(text(NOT_A_NUMBER, true), "d -halo nan");
}

TextureMapSlot slotNamed(const std::string& fileName) {
    TextureMapSlot slot;
    slot.hasTextureMap = true;
    slot.textureMap.fileName = fileName;
    return slot;
}

struct MaterialCase {
    const char* title;
    std::function<void(Material&)> change;  // of a material named m
    const char* text;
};

const MaterialCase MATERIAL_CASES[] = {
    {"defaults", [](Material&) {}, "newmtl m\n"},
    {"no name", [](Material& material) { material.name.clear(); }, "newmtl \n"},
    {"colour and dissolve",
     [](Material& material) {
         material.setDiffuse(rgb(1, 0.5F, 0));
         material.dissolve = 0.5;
     },
     "newmtl m\nKd 1.000000 0.500000 0.000000\nd 0.500000\n"},
    {"halo alone", [](Material& material) { material.halo = true; },
     "newmtl m\nd -halo 1.000000\n"},
    {"a colour that is not marked", [](Material& material) { material.diffuse = rgb(1, 0, 0); },
     "newmtl m\n"},
    {"a mark without a colour", [](Material& material) { material.filterIsSet = true; },
     "newmtl m\nTf # No color found\n"},
    {"a map that is not marked",
     [](Material& material) { material.textureMaps[1].textureMap.fileName = "x"; }, "newmtl m\n"},
    {"everything, in its order",
     [](Material& material) {
         material.setAmbient(rgb(1, 1, 1));
         material.setDiffuse(xyz(1, 2, 3));
         material.setSpecular(spectral("a.rfl", 1));
         material.setFilter(rgb(0, 0, 0));
         material.dissolve = 0.25;
         material.illumination = 0;
         material.specularExponent = 10;
         material.sharpness = -60;
         material.opticalDensity = 0;
         const char* files[] = {"0", "1", "2", "3", "4", "5", "6", "7", "8"};
         for (int slot = 0; slot < Material::NUMBER_OF_TEXTURE_MAPS; ++slot)
             material.textureMaps[slot] = slotNamed(files[slot]);
     },
     "newmtl m\nKa 1.000000 1.000000 1.000000\nKd xyz 1.000000 2.000000 3.000000\n"
     "Ks spectral a.rfl 1.000000\nTf 0.000000 0.000000 0.000000\nd 0.250000\nillum 0\n"
     "Ns 10.000000\nsharpness -60\nNi 0.000000\nmap_Ka  0\nmap_Kd  1\nmap_Ks  2\nmap_Ns  3\n"
     "map_d  4\ndecal  7\ndisp  5\nbump  6\nrefl  8\n"},
    {"anti-aliasing has no line end",
     [](Material& material) {
         material.antiAliasTextures = true;
         material.textureMaps[Material::MAP_D] = slotNamed("d.png");
         material.textureMaps[Material::BUMP] = slotNamed("b.png");
         material.textureMaps[Material::REFL] = slotNamed("r.png");
     },
     "newmtl m\nmap_d  d.png\nmap_aat onbump  b.png\nrefl  r.png\n"},
    {"anti-aliasing at the end", [](Material& material) { material.antiAliasTextures = true; },
     "newmtl m\nmap_aat on"},
    {"NaN differs from nothing",
     [](Material& material) {
         material.dissolve = material.specularExponent = material.opticalDensity = NOT_A_NUMBER;
     },
     "newmtl m\n"},
    {"a map with options",
     [](Material& material) {
         material.textureMaps[Material::MAP_KD] = slotNamed("wood.png");
         material.textureMaps[Material::MAP_KD].textureMap.clamp = true;
     },
     "newmtl m\nmap_Kd  -clamp on wood.png\n"},
};

TEST(MaterialTextTest, StatementsStandInTheirOrder) {
    for (const MaterialCase& row : MATERIAL_CASES) {
        SCOPED_TRACE(row.title);
        Material material;
        material.name = "m";
        row.change(material);
        EXPECT_EQ(materialToText(material), row.text);
    }
}

TEST(MaterialTextTest, NumbersMayBeLarge) {
    Material material;
    material.name = "m";
    material.opticalDensity = -std::numeric_limits<double>::max();
    char expected[400];
    std::snprintf(expected, sizeof expected, "newmtl m\nNi %f\n", material.opticalDensity);
    EXPECT_EQ(materialToText(material), expected);
    EXPECT_GT(materialToText(material).size(), 320U);
}

TEST(MaterialTextTest, NumbersAreThoseOfTheCFormat) {
    RandomSource random(4);
    for (int i = 0; i < 20000; ++i) {
        Material material;
        material.name = "m";
        material.opticalDensity =
            (random.fraction() - 0.5) * std::pow(10.0, random.between(-12, 25));
        char expected[100];
        std::snprintf(expected, sizeof expected, "newmtl m\nNi %f\n", material.opticalDensity);
        ASSERT_EQ(materialToText(material), expected);
    }
}

TEST(LibraryNamesTextTest, OneLineForEachName) {
    MaterialTable table;
    EXPECT_EQ(libraryNamesToText(table), "");
    table.addLibraryName("a.mtl");
    EXPECT_EQ(libraryNamesToText(table), "mtllib a.mtl\n");
    table.addLibraryName("b.mtl");
    table.addLibraryName("a.mtl");
    EXPECT_EQ(libraryNamesToText(table), "mtllib a.mtl\nmtllib b.mtl\n");
}

// Decimal commas and points between thousands.
class CommaNumbers : public std::numpunct<char> {
    char do_decimal_point() const override { return ','; }
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
};

TEST(MaterialTextTest, LocaleDoesNotMatter) {
    Material material;
    material.name = "m";
    material.setDiffuse(rgb(1, 0.5F, 2048));
    material.sharpness = 1234567;
    material.opticalDensity = 1234567.5;
    const std::string expected =
        "newmtl m\nKd 1.000000 0.500000 2048.000000\nsharpness 1234567\nNi 1234567.500000\n";

    const std::string cLocale = std::setlocale(LC_ALL, nullptr);
    const std::locale earlier =
        std::locale::global(std::locale(std::locale::classic(), new CommaNumbers));
    for (const char* name : {"de_DE.UTF-8", "de_DE", "German"})
        if (std::setlocale(LC_ALL, name) != nullptr)
            break;
    const std::string text = materialToText(material);
    MaterialTable table;
    const std::string messages = readMtlText(text, table);
    std::locale::global(earlier);
    std::setlocale(LC_ALL, cLocale.c_str());

    EXPECT_EQ(text, expected);
    EXPECT_EQ(messages, "");
    EXPECT_EQ(describeMaterials(table),
              "m{Kd(rgb 1 0.5 2048 1) sharpness=1.23457e+06 Ni=1.23457e+06}");
}

// --- There and back --------------------------------------------------------------

// Materials that a library could have given, with values of six decimals.
class MaterialSource {
public:
    explicit MaterialSource(std::uint64_t seed) : random(seed) {}

    Material next() {
        Material material;
        material.name = word();
        maybeColor(material, &Material::setAmbient);
        maybeColor(material, &Material::setDiffuse);
        maybeColor(material, &Material::setSpecular);
        maybeColor(material, &Material::setFilter);
        maybe([&] { material.specularExponent = number(); });
        maybe([&] { material.dissolve = number(); });
        maybe([&] { material.illumination = integer(); });
        maybe([&] { material.sharpness = integer(); });
        maybe([&] { material.opticalDensity = number(); });
        material.halo = random.oneIn(3);
        for (int slot = 0; slot < Material::NUMBER_OF_TEXTURE_MAPS; ++slot) {
            if (slot != Material::DISP && random.oneIn(3))
                material.textureMaps[slot] = map(slot == Material::REFL);
        }
        return material;
    }

private:
    template <typename Action>
    void maybe(Action action) {
        if (random.oneIn(2))
            action();
    }

    std::string word() {
        static constexpr char CHARACTERS[] = "abcXYZ019_./#\"\xC3\xA4";
        std::string text(1, static_cast<char>('a' + random.below(26)));
        for (int length = random.below(20); length > 0; --length)
            text += CHARACTERS[random.below(static_cast<int>(sizeof CHARACTERS) - 1)];
        return text;
    }

    int integer() { return random.between(-1000000, 1000000); }
    double number() { return random.between(-1000000000, 1000000000) / 1e6; }

    // A float holds six decimals below 8.
    float colorValue(bool mayBeNegative) {
        return static_cast<float>(random.between(mayBeNegative ? -7999999 : 0, 7999999) / 1e6);
    }

    template <typename Setter>
    void maybeColor(Material& material, Setter setter) {
        MaterialColor color;
        switch (random.below(4)) {
            case 0:
                return;
            case 1:
                color.setRgb(colorValue(false), colorValue(true), colorValue(true));
                break;
            case 2:
                color.setXyz(colorValue(true), colorValue(true), colorValue(true));
                break;
            default:
                color.setSpectral(word(), colorValue(true));
        }
        (material.*setter)(color);
    }

    TextureMapSlot map(bool needsType) {
        TextureMapSlot slot = slotNamed(word());
        TextureMap& map = slot.textureMap;
        map.blendU = random.oneIn(2);
        map.blendV = random.oneIn(2);
        map.colorCorrection = random.oneIn(2);
        map.clamp = random.oneIn(2);
        maybe([&] { map.mmBase = number(); });
        maybe([&] { map.mmGain = number(); });
        for (double* triple : {map.offset, map.scale, map.turbulence}) {
            for (int component = 0; component < 3; ++component)
                if (random.oneIn(4))
                    triple[component] = number();
        }
        maybe([&] { map.resolution = integer(); });
        maybe([&] { map.imfChannel = ImfChannel(random.between(1, 6)); });
        if (needsType || random.oneIn(3))
            map.reflectionType = ReflectionType(random.between(1, 7));
        return slot;
    }

    RandomSource random;
};

TEST(MaterialRoundTripTest, TextReadsBackAsTheSameMaterials) {
    constexpr int MATERIALS = 4000;
    MaterialSource source(1);
    std::vector<Material> written;
    std::string text;
    for (int i = 0; i < MATERIALS; ++i) {
        written.push_back(source.next());
        written.back().name += "_" + std::to_string(i);
        text += materialToText(written.back());
    }
    MaterialTable table;
    EXPECT_EQ(readMtlText(text, table), "");
    ASSERT_EQ(table.getNumberOfMaterials(), MATERIALS);
    for (std::size_t i = 0; i < written.size(); ++i) {
        const Material& read = table.getMaterials()[i];
        ASSERT_EQ(printMaterials({&read, 1}), printMaterials({&written[i], 1}))
            << materialToText(written[i]);
    }
}

struct LossCase {
    const char* title;
    std::function<void(Material&)> change;  // of a material named m
    const char* readBack;
    const char* messages;
};

// What a library cannot say, and what comes back instead.
const LossCase LOSS_CASES[] = {
    {"boost is skipped, and its value is no file",
     [](Material& material) {
         material.textureMaps[Material::MAP_KD] = slotNamed("wood.png");
         material.textureMaps[Material::MAP_KD].textureMap.boost = 2;
     },
     "m{map_Kd(wood.png)}", ""},
    {"displacement",
     [](Material& material) { material.textureMaps[Material::DISP] = slotNamed("h"); }, "m{}", ""},
    {"anti-aliasing takes the next map with it",
     [](Material& material) {
         material.antiAliasTextures = true;
         material.textureMaps[Material::DECAL] = slotNamed("d.png");
         material.textureMaps[Material::BUMP] = slotNamed("b.png");
     },
     "m{bump(b.png)}", ""},
    {"a reflection without a type",
     [](Material& material) { material.textureMaps[Material::REFL] = slotNamed("r.png"); }, "m{}",
     "2|Reflection map is missing type. Map skipped.\n"},
    {"a negative red", [](Material& material) { material.setDiffuse(rgb(-1, 0, 0)); }, "m{}",
     "1|Error processing Diffuse color: Invalid color format\n"},
    {"the mark of no colour", [](Material& material) { material.diffuseIsSet = true; }, "m{}",
     "1|Error processing Diffuse color: Invalid color format\n"},
    {"a name of two words", [](Material& material) { material.name = "m n"; }, "m{}", ""},
    {"decimals behind the sixth", [](Material& material) { material.opticalDensity = 0.1234567; },
     "m{Ni=0.123457}", ""},
    {"NaN", [](Material& material) { material.dissolve = NOT_A_NUMBER; }, "m{}", ""},
};

TEST(MaterialRoundTripTest, WhatALibraryCannotSayIsLost) {
    for (const LossCase& row : LOSS_CASES) {
        SCOPED_TRACE(row.title);
        Material material;
        material.name = "m";
        row.change(material);
        MaterialTable table;
        EXPECT_EQ(readMtlText(materialToText(material), table), row.messages);
        EXPECT_EQ(describeMaterials(table), row.readBack);
    }
}

}  // namespace
}  // namespace obj_adapter::test
