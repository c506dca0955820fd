// Tests of material/material.cpp and include/obj_adapter/material.h.
#include "material/readMtlText.h"

#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <cfenv>
#include <climits>
#include <cmath>
#include <cstdint>
#include <stdexcept>
#include <utility>
#include <vector>

namespace obj_adapter::test {
namespace {

constexpr Material::TextureMapName USABLE_SLOTS[] = {
    Material::MAP_KA, Material::MAP_KD, Material::MAP_KS, Material::MAP_NS,
    Material::MAP_D,  Material::BUMP,   Material::DECAL,  Material::REFL};

// As a host may cast any integer.
constexpr Material::TextureMapName REFUSED_SLOTS[] = {
    Material::DISP, static_cast<Material::TextureMapName>(9),
    static_cast<Material::TextureMapName>(-1), static_cast<Material::TextureMapName>(INT_MAX),
    static_cast<Material::TextureMapName>(INT_MIN)};

TextureMap mapNamed(const std::string& fileName) {
    TextureMap map;
    map.fileName = fileName;
    return map;
}

std::string textureMapFailure(Material& material, Material::TextureMapName slot) {
    try {
        material.getTextureMap(slot);
    } catch (const std::runtime_error& failure) {
        return failure.what();
    }
    return "nothing thrown";
}

// Bits, so that a NaN is equal to itself and zeros differ by sign.
std::array<std::uint32_t, 4> bitsOf(const float* values) {
    std::array<std::uint32_t, 4> bits{};
    for (std::size_t i = 0; i < bits.size(); ++i)
        bits[i] = std::bit_cast<std::uint32_t>(values[i]);
    return bits;
}

MaterialColor xyzColor(float x, float y, float z) {
    MaterialColor color;
    color.setXyz(x, y, z);
    return color;
}

TEST(MaterialTest, NewMaterialHasDefaults) {
    Material material;
    EXPECT_FALSE(material.hasAmbient());
    EXPECT_FALSE(material.hasDiffuse());
    EXPECT_FALSE(material.hasSpecular());
    EXPECT_FALSE(material.hasFilter());
    for (const MaterialColor& color : {material.getAmbient(), material.getDiffuse(),
                                       material.getSpecular(), material.getFilter()})
        EXPECT_EQ(describeColor(color), "none -1 -1 -1 -1");
    for (const Material::TextureMapName slot : USABLE_SLOTS) {
        EXPECT_FALSE(material.hasTextureMap(slot));
        EXPECT_EQ(describeMap(material.getTextureMap(slot)), "");
    }
    const TextureMap& map = material.getTextureMap(Material::MAP_KD);
    EXPECT_EQ(map.fileName, "");
    EXPECT_TRUE(map.blendU);
    EXPECT_TRUE(map.blendV);
    EXPECT_FALSE(map.colorCorrection);
    EXPECT_FALSE(map.clamp);
    EXPECT_EQ(map.mmBase, 0.0);
    EXPECT_EQ(map.mmGain, 1.0);
    for (int component = 0; component < 3; ++component) {
        EXPECT_EQ(map.offset[component], 0.0);
        EXPECT_EQ(map.scale[component], 1.0);
        EXPECT_EQ(map.turbulence[component], 0.0);
    }
    EXPECT_EQ(map.resolution, -1);
    EXPECT_EQ(map.boost, -1.0);
    EXPECT_EQ(map.imfChannel, ImfChannel::NONE);
    EXPECT_EQ(map.reflectionType, ReflectionType::NONE);
    EXPECT_EQ(material.name, "");
    EXPECT_EQ(material.specularExponent, -1.0);
    EXPECT_EQ(material.dissolve, 1.0);
    EXPECT_EQ(material.illumination, -1);
    EXPECT_EQ(material.sharpness, 60);
    EXPECT_EQ(material.opticalDensity, 1.0);
    EXPECT_FALSE(material.halo);
    EXPECT_FALSE(material.antiAliasTextures);
}

TEST(MaterialTest, EnumerationsHaveTheirFixedValues) {
    EXPECT_EQ(static_cast<int>(ColorType::NONE), 0);
    EXPECT_EQ(static_cast<int>(ColorType::RGB), 1);
    EXPECT_EQ(static_cast<int>(ColorType::XYZ), 2);
    EXPECT_EQ(static_cast<int>(ColorType::SPECTRAL), 3);
    EXPECT_EQ(static_cast<int>(ImfChannel::R), 1);
    EXPECT_EQ(static_cast<int>(ImfChannel::Z), 6);
    EXPECT_EQ(static_cast<int>(ReflectionType::SPHERE), 1);
    EXPECT_EQ(static_cast<int>(ReflectionType::CUBE_RIGHT), 7);
    EXPECT_EQ(static_cast<int>(Material::MAP_KA), 0);
    EXPECT_EQ(static_cast<int>(Material::MAP_KD), 1);
    EXPECT_EQ(static_cast<int>(Material::MAP_KS), 2);
    EXPECT_EQ(static_cast<int>(Material::MAP_NS), 3);
    EXPECT_EQ(static_cast<int>(Material::MAP_D), 4);
    EXPECT_EQ(static_cast<int>(Material::DISP), 5);
    EXPECT_EQ(static_cast<int>(Material::BUMP), 6);
    EXPECT_EQ(static_cast<int>(Material::DECAL), 7);
    EXPECT_EQ(static_cast<int>(Material::REFL), 8);
}

// Hosts compile the layout in.
TEST(MaterialTest, FieldsStandInTheirFixedOrder) {
    const auto expectAscending = [](const std::vector<const void*>& fields) {
        for (std::size_t i = 1; i < fields.size(); ++i)
            EXPECT_LT(reinterpret_cast<std::uintptr_t>(fields[i - 1]),
                      reinterpret_cast<std::uintptr_t>(fields[i]))
                << "field " << i;
    };
    const TextureMap map;
    expectAscending({&map.fileName, &map.blendU, &map.blendV, &map.colorCorrection, &map.clamp,
                     &map.mmBase, &map.mmGain, map.offset, map.scale, map.turbulence,
                     &map.resolution, &map.boost, map.reserved, &map.imfChannel,
                     &map.reflectionType});
    EXPECT_EQ(sizeof map.reserved, 8U);
    const MaterialColor color;
    expectAscending({color.values, &color.spectralFile, &color.type});
    const Material material;
    const TextureMapSlot* slots = material.textureMaps;
    expectAscending({&material.ambientIsSet, &material.ambient,          &material.diffuseIsSet,
                     &material.diffuse,      &material.specularIsSet,    &material.specular,
                     &material.filterIsSet,  &material.filter,           &slots[0].hasTextureMap,
                     &slots[0].textureMap,   &slots[1].hasTextureMap,    &slots[8].textureMap,
                     &material.name,         &material.specularExponent, &material.dissolve,
                     &material.illumination, &material.sharpness,        &material.opticalDensity,
                     &material.halo,         &material.antiAliasTextures});
}

TEST(MaterialTest, EverySlotButDisplacementHoldsItsMap) {
    for (const Material::TextureMapName filled : USABLE_SLOTS) {
        SCOPED_TRACE(filled);
        Material material;
        setTextureMap(material, filled, mapNamed("wood.png"));
        for (const Material::TextureMapName slot : USABLE_SLOTS) {
            EXPECT_EQ(material.hasTextureMap(slot), slot == filled);
            EXPECT_EQ(material.getTextureMap(slot).fileName, slot == filled ? "wood.png" : "");
        }
        EXPECT_EQ(&material.getTextureMap(filled), &material.textureMaps[filled].textureMap);
    }
}

TEST(MaterialTest, DisplacementAndUnknownSlotsAreRefused) {
    for (const Material::TextureMapName slot : REFUSED_SLOTS) {
        SCOPED_TRACE(static_cast<int>(slot));
        Material material;
        setTextureMap(material, slot, mapNamed("wood.png"));
        EXPECT_FALSE(material.hasTextureMap(slot));
        EXPECT_EQ(textureMapFailure(material, slot), "Invalid map type");
        EXPECT_EQ(describeMaterial(material), "{}");
    }
}

// Not even a flag that somebody else has set opens the slot.
TEST(MaterialTest, DisplacementIsRefusedWhateverItsFlagSays) {
    Material material;
    material.textureMaps[Material::DISP].hasTextureMap = true;
    EXPECT_FALSE(material.hasTextureMap(Material::DISP));
    EXPECT_EQ(textureMapFailure(material, Material::DISP), "Invalid map type");
}

TEST(MaterialTest, DisplacementIsRefusedAfterADispStatement) {
    MaterialTable table;
    EXPECT_EQ(readMtlText("newmtl a\ndisp height.png\n", table), "");
    Material& material = table.currentMaterial();
    EXPECT_FALSE(material.hasTextureMap(Material::DISP));
    EXPECT_EQ(textureMapFailure(material, Material::DISP), "Invalid map type");
    EXPECT_FALSE(material.hasTextureMap(static_cast<Material::TextureMapName>(9)));
}

TEST(MaterialTest, ColorSettersStoreACopyAndMarkIt) {
    const MaterialColor color = xyzColor(1, 2, 3);
    Material material;
    material.setAmbient(color);
    EXPECT_EQ(describeMaterial(material), "{Ka(xyz 1 2 3 -1)}");
    material.setDiffuse(color);
    material.setSpecular(color);
    material.setFilter(color);
    material.getSpecular().values[0] = 7;
    EXPECT_EQ(describeMaterial(material),
              "{Ka(xyz 1 2 3 -1) Kd(xyz 1 2 3 -1) Ks(xyz 7 2 3 -1) Tf(xyz 1 2 3 -1)}");
}

TEST(MaterialTest, EachKindOfColorLeavesTheRestAsItWas) {
    MaterialColor color;
    color.setXyz(1, 2, 3);
    EXPECT_EQ(describeColor(color), "xyz 1 2 3 -1");
    color.setRgb(4, 5, 6);
    EXPECT_EQ(describeColor(color), "rgb 4 5 6 1");
    color.setSpectral("a.rfl", 0.5F);
    EXPECT_EQ(describeColor(color), "spectral a.rfl 0.5 5 6 1");
    color.setXyz(7, 8, 9);
    EXPECT_EQ(describeColor(color), "xyz a.rfl 7 8 9 1");
}

TEST(MaterialTest, TextureMapsAreCopiedAndMovedWhole) {
    TextureMap map = mapNamed("wood.png");
    map.clamp = true;
    map.turbulence[2] = 3.0;
    map.imfChannel = ImfChannel::Z;
    for (unsigned char& byte : map.reserved)
        byte = 0xA5;
    const auto expectWhole = [](const TextureMap& copy) {
        EXPECT_EQ(describeMap(copy), "wood.png clamp=1 t=0,0,3 imfchan=6");
        for (const unsigned char byte : copy.reserved)
            EXPECT_EQ(byte, 0xA5);
    };
    TextureMap copied(map);
    expectWhole(copied);
    TextureMap assigned;
    assigned = map;
    expectWhole(assigned);
    const TextureMap moved(std::move(copied));
    expectWhole(moved);
    TextureMap moveAssigned;
    moveAssigned = std::move(assigned);
    expectWhole(moveAssigned);
}

TEST(ToColorArrayTest, GreyXyzBecomesItsChromaticity) {
    MaterialTable table;
    ASSERT_EQ(readMtlText("newmtl a\nKd xyz 0.5 0.5 0.5\n", table), "");
    MaterialColor& color = table.currentMaterial().getDiffuse();
    const float* values = color.toColorArray();
    EXPECT_EQ(values, color.values);
    EXPECT_NEAR(values[0], 0.66638F, 5e-6F);
    EXPECT_NEAR(values[1], 0.59790F, 5e-6F);
    EXPECT_NEAR(values[2], 0.58644F, 5e-6F);
    EXPECT_EQ(values[3], -1.0F);
    EXPECT_EQ(color.type, ColorType::RGB);
}

TEST(ToColorArrayTest, NegativeChannelIsNotANumber) {
    MaterialColor color = xyzColor(1, 0, 0);
    const float* values = color.toColorArray();
    EXPECT_NEAR(values[0], 1.66689F, 5e-6F);
    EXPECT_TRUE(std::isnan(values[1]));
    EXPECT_NEAR(values[2], 0.26160F, 5e-6F);
    EXPECT_EQ(values[3], -1.0F);
}

TEST(ToColorArrayTest, LuminanceIsLost) {
    MaterialColor dim = xyzColor(0.125F, 0.25F, 0.125F);
    MaterialColor bright = xyzColor(8, 16, 8);
    EXPECT_EQ(bitsOf(dim.toColorArray()), bitsOf(bright.toColorArray()));
}

TEST(ToColorArrayTest, SecondCallChangesNothing) {
    MaterialColor color = xyzColor(0.3F, 0.4F, 0.2F);
    const auto first = bitsOf(color.toColorArray());
    EXPECT_EQ(bitsOf(color.toColorArray()), first);
}

TEST(ToColorArrayTest, OtherKindsAreReturnedAsTheyAre) {
    MaterialColor rgb;
    rgb.setRgb(0.2F, 0.4F, 0.6F);
    EXPECT_EQ(rgb.toColorArray(), rgb.values);
    EXPECT_EQ(describeColor(rgb), "rgb 0.2 0.4 0.6 1");
    MaterialColor spectral;
    spectral.setSpectral("a.rfl", 0.8F);
    EXPECT_EQ(spectral.toColorArray(), spectral.values);
    EXPECT_EQ(describeColor(spectral), "spectral a.rfl 0.8 -1 -1 -1");
    MaterialColor none;
    EXPECT_EQ(none.toColorArray(), none.values);
    EXPECT_EQ(describeColor(none), "none -1 -1 -1 -1");
}

TEST(ToColorArrayTest, SumOfZeroGivesNoNumbers) {
    MaterialColor color = xyzColor(0, 0, 0);
    const float* values = color.toColorArray();
    for (int channel = 0; channel < 3; ++channel)
        EXPECT_TRUE(std::isnan(values[channel])) << channel;
    EXPECT_EQ(values[3], -1.0F);
}

// In double precision, or with x and z added first, the sum would be 1.
TEST(ToColorArrayTest, SumIsOfYAndXFirstInSinglePrecision) {
    MaterialColor color = xyzColor(1e8F, 1, -1e8F);
    const float* values = color.toColorArray();
    for (int channel = 0; channel < 3; ++channel)
        EXPECT_TRUE(std::isnan(values[channel])) << channel;
}

// The arithmetic once more, step by step. With the last two colours a sum or a
// chromaticity of the other precision shows in the result.
TEST(ToColorArrayTest, StepsAreRoundedAsTheyAreWritten) {
    for (const auto& [x, y, z] :
         {std::array{0.1F, 0.2F, 0.3F}, std::array{0.4124F, 0.2126F, 0.0193F},
          std::array{3.1F, 4.7F, 2.9F}, std::array{0.45F, 0.8F, 0.2F},
          std::array{0.3F, 0.5F, 0.4F}}) {
        const float sum = (y + x) + z;
        const double k = 1.0 / static_cast<double>(sum);
        const double cx = static_cast<double>(x) * k;
        const double cy = static_cast<double>(y) * k;
        const double cz = static_cast<double>(z) * k;
        const double linear[3] = {3.2404542 * cx - 1.5371385 * cy - 0.4985314 * cz,
                                  (1.8760108 * cy - 0.969266 * cx) + 0.041556 * cz,
                                  (0.0556434 * cx - 0.2040259 * cy) + 1.0572252 * cz};
        MaterialColor color = xyzColor(x, y, z);
        const float* values = color.toColorArray();
        for (int channel = 0; channel < 3; ++channel) {
            const double encoded = std::pow(linear[channel], 0.4166666666666667) * 1.055 - 0.055;
            if (std::isnan(encoded)) {
                EXPECT_TRUE(std::isnan(values[channel]));
            } else {
                EXPECT_EQ(values[channel], static_cast<float>(encoded));
            }
        }
    }
}

TEST(ToColorArrayTest, HostsRoundingModeDoesNotMatter) {
    for (int i = 1; i <= 20; ++i) {
        const float step = static_cast<float>(i) * 0.03F;
        MaterialColor nearest = xyzColor(0.3F + step, 0.4F, 0.2F);
        MaterialColor upward = nearest;
        const auto expected = bitsOf(nearest.toColorArray());
        ASSERT_EQ(std::fesetround(FE_UPWARD), 0);
        const float* values = upward.toColorArray();
        const int modeAfterwards = std::fegetround();
        std::fesetround(FE_TONEAREST);
        EXPECT_EQ(bitsOf(values), expected) << i;
        EXPECT_EQ(modeAfterwards, FE_UPWARD);
    }
}

}  // namespace
}  // namespace obj_adapter::test
