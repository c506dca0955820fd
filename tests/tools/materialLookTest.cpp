// Materials as they look, from MTL text.
#include "materialLook.h"

#include "support/describe.h"
#include "tools/importedText.h"

#include <gtest/gtest.h>

#include <string>

namespace obj_adapter::test {

namespace {

// Three digits suffice to tell colours apart.
std::string describeShort(double value) {
    char text[32];
    std::snprintf(text, sizeof text, "%.3g", value);
    return text;
}

std::string describe(const tool::Vector3& color) {
    return describeShort(color.x) + " " + describeShort(color.y) + " " + describeShort(color.z);
}

std::string describe(const tool::MaterialLook& look) {
    return describe(look.color) + " map " + describe(look.mapFactor) + " specular " +
           describe(look.specular) + " exponent " + describeShort(look.exponent) + " roughness " +
           describeShort(look.roughness) + " alpha " + describeShort(look.alpha);
}

struct LookCase {
    const char* title;
    const char* mtlText;
    const char* look;
};

const LookCase CASES[] = {
    {"nothing given", "", "0.6 0.6 0.6 map 1 1 1 specular 0 0 0 exponent 0 roughness 1 alpha 1"},
    {"diffuse", "Kd 0.1 0.2 0.3",
     "0.1 0.2 0.3 map 0.1 0.2 0.3 specular 0 0 0 exponent 0 roughness 1 alpha 1"},
    {"beyond white", "Kd 7 0.5 1.5",
     "1 0.5 1 map 1 0.5 1 specular 0 0 0 exponent 0 roughness 1 alpha 1"},
    {"not a number", "Kd 0.5 nan 0.5",
     "0.5 0 0.5 map 0.5 0 0.5 specular 0 0 0 exponent 0 roughness 1 alpha 1"},
    {"black stays black", "Kd 0 0 0",
     "0 0 0 map 1 1 1 specular 0 0 0 exponent 0 roughness 1 alpha 1"},
    {"black beside a map is not meant", "Kd 0 0 0\nmap_Kd a.png",
     "0.6 0.6 0.6 map 1 1 1 specular 0 0 0 exponent 0 roughness 1 alpha 1"},
    {"the white of D65", "Kd xyz 0.95047 1 1.08883",
     "1 1 1 map 1 1 1 specular 0 0 0 exponent 0 roughness 1 alpha 1"},
    {"luminance counts", "Kd xyz 0.095047 0.1 0.108883",
     "0.1 0.1 0.1 map 0.1 0.1 0.1 specular 0 0 0 exponent 0 roughness 1 alpha 1"},
    {"a spectral curve is a grey", "Kd spectral a.rfl 0.25",
     "0.25 0.25 0.25 map 0.25 0.25 0.25 specular 0 0 0 exponent 0 roughness 1 alpha 1"},
    {"highlight", "Ks 0.5 0.5 0.5\nNs 30",
     "0.6 0.6 0.6 map 1 1 1 specular 0.5 0.5 0.5 exponent 30 roughness 0.5 alpha 1"},
    {"no highlight with a negative exponent", "Ns -30",
     "0.6 0.6 0.6 map 1 1 1 specular 0 0 0 exponent 0 roughness 1 alpha 1"},
    {"no highlight with an infinite exponent", "Ns inf",
     "0.6 0.6 0.6 map 1 1 1 specular 0 0 0 exponent 0 roughness 1 alpha 1"},
    {"dissolve", "d 0.25",
     "0.6 0.6 0.6 map 1 1 1 specular 0 0 0 exponent 0 roughness 1 alpha 0.25"},
    {"transparency", "Tr 0.25",
     "0.6 0.6 0.6 map 1 1 1 specular 0 0 0 exponent 0 roughness 1 alpha 0.75"},
    {"wholly transparent is opaque", "Tr 1",
     "0.6 0.6 0.6 map 1 1 1 specular 0 0 0 exponent 0 roughness 1 alpha 1"},
};

TEST(MaterialLookTest, Cases) {
    for (const LookCase& row : CASES) {
        SCOPED_TRACE(row.title);
        const ImportedText imported("mtllib a.mtl\nv 0 0 0\nv 1 0 0\nv 0 1 0\nusemtl m\nf 1 2 3\n",
                                    {{"a.mtl", std::string("newmtl m\n") + row.mtlText + "\n"}});
        ASSERT_EQ(imported.getModel().getNumberOfMaterials(), 1);
        EXPECT_EQ(describe(tool::computeLook(imported.getModel().getMaterial(0))), row.look);
    }
}

TEST(MaterialLookTest, FacesWithoutMaterialComeLast) {
    const ImportedText imported(
        "mtllib a.mtl\nv 0 0 0\nv 1 0 0\nv 0 1 0\nv 1 1 0\nf 1 2 3\nusemtl m\nf 2 4 3\n",
        {{"a.mtl", "newmtl m\nKd 1 0 0\n"}});
    const tool::ModelAccess& model = imported.getModel();
    const std::vector<tool::MaterialLook> looks = tool::computeLooks(model);
    ASSERT_EQ(looks.size(), 2U);
    EXPECT_EQ(describe(tool::lookOf(looks, model, model.getFace(0)).color), "0.6 0.6 0.6");
    EXPECT_EQ(describe(tool::lookOf(looks, model, model.getFace(1)).color), "1 0 0");
}

}  // namespace

}  // namespace obj_adapter::test
