// The project's own sample files, whole: every message and every table.
#include "support/describe.h"
#include "support/importText.h"

#include <gtest/gtest.h>

#include <string>

namespace obj_adapter::test {
namespace {

std::string sample(const std::string& name) {
    return std::string(OBJ_ADAPTER_SAMPLES) + "/" + name;
}

TEST(Samples, repairsSayWhatTheyDid) {
    const ImportResult result = importFile(sample("repairs.obj"));
    EXPECT_EQ(result.code, ObjConverter::CONVERTER_OK);
    EXPECT_EQ(result.readingMessages,
              "3|Using Mtllib file: " + sample("repairs.mtl") +
                  "\n"
                  "1|Error processing Ambient color: No current material\n"
                  "2|Error processing texture map. Map will be skipped.\n"
                  "1|Error processing Diffuse color: No float value found\n"
                  "1|Error processing Specular color: Invalid color format\n"
                  "1|Error processing Specular Exponent: invalid stod argument\n"
                  "1|Error processing Sharpness: invalid stoi argument\n"
                  "1|Error processing Dissolve: invalid stod argument\n"
                  "1|Problem processing map options.invalid stod argument\n"
                  "2|Error processing texture map. Map will be skipped.\n"
                  "2|Invalid value for -blendv. Option skipped.\n"
                  "2|Invalid value for -cc. Option skipped.\n"
                  "2|Invalid value for -clamp. Option skipped.\n"
                  "2|Invalid value for -imfchan. Option skipped.\n"
                  "2|Bad input values for -texres. Option skipped.\n"
                  "2|Invalid value for reflection map's -type.\n"
                  "2|Bad input values for -mm. Option skipped.\n"
                  "1|Map missing file name.\n"
                  "1|Problem processing map options.Unable to process texture map options\n"
                  "2|Error processing texture map. Map will be skipped.\n"
                  "2|Reflection map is missing type. Map skipped.\n"
                  "2|Material with the name \"red\" already exists. The materials will not "
                  "reliably be distinguished.\n"
                  "1|Error processing New Material: No name given.\n"
                  "1|Error processing New Material: Material name missing\n"
                  "1|Problem with material library: Could not proccess new material\n"
                  "1|Could not find material library missing.mtl\n"
                  "1|No name given for material library. Materials will not be loaded.\n"
                  "1|Error processing vertex: invalid stod argument\n"
                  "Vertex will be replaced by (0,0,0).\n"
                  "1|Error processing vertex: No float value found\n"
                  "Vertex will be replaced by (0,0,0).\n"
                  "1|Error processing vertex texture: No float value found\n"
                  "Vertex Texture will be replaced by (0,0).\n"
                  "1|Error processing vertex normal: invalid stod argument\n"
                  "Vertex Normal will be replaced by (0,0,0).\n"
                  "1|usemtl with no material name. No material will be assigned.\n"
                  "1|Could not process face. Index too low. Skipping face.\n"
                  "1|Face does not have enough vertices. Skipping face.\n"
                  "1|Could not process face. No integer found Skipping face.\n"
                  "1|Polygonal face has elements that cannot be processed. It will be skipped.\n"
                  "1|Polygonal face has elements that cannot be processed. It will be skipped.\n"
                  "2|Unrecognized statement: \"curv\" was seen 1 times.\n"
                  "2|Unrecognized statement: \"s\" was seen 2 times.\n"
                  "2|Unrecognized statement: \"xy\" was seen 1 times.\n"
                  "1|Could not find material \"nothing\" But saw 2 references.\n"
                  "2|Number of faces where vertex, texture, or normal indices had to be changed "
                  "due to being out of range: 2\n");
    EXPECT_EQ(describeVertices(result.model),
              "(0 0 0 w1) (1 0 0 w1) (1 1 0 w0.5) (0 1 0 w1) (0 0 0 w1) (0 0 0 w1)");
    EXPECT_EQ(describeTexturePoints(result.model), "(0 0 w0) (0 0 w0)");
    EXPECT_EQ(describeNormalPoints(result.model), "(0 0 1) (0 0 0)");
    EXPECT_EQ(describeFaces(result.model),
              "[0 1 2 m0] [0/0/0 1/0/0 2/0/0 m0] [0/0/0 2/0/0 3/0/0 m0] [0 1 5] "
              "[0/1 1/-/1 2/0/0] [5 4 3]");
    EXPECT_EQ(describeGroups(result.model), "repairs: 0 1 2 3 4 5");
    ASSERT_EQ(result.model.materials.size(), 2U);
    Material& red = result.model.materials[0];
    EXPECT_TRUE(red.hasAmbient());
    EXPECT_FALSE(red.hasDiffuse());
    EXPECT_FALSE(red.hasSpecular());
    EXPECT_EQ(red.filter.type, ColorType::XYZ);
    EXPECT_TRUE(red.halo);
    EXPECT_EQ(red.dissolve, 0.75);
    EXPECT_EQ(red.illumination, 2);
    EXPECT_EQ(red.getTextureMap(Material::MAP_KA).fileName, "wood.png");
    EXPECT_FALSE(red.hasTextureMap(Material::MAP_KD));
    EXPECT_EQ(red.getTextureMap(Material::MAP_KS).fileName, "gloss.png");
    EXPECT_EQ(red.getTextureMap(Material::MAP_NS).mmBase, 0.2);
    EXPECT_FALSE(red.hasTextureMap(Material::MAP_D));
    EXPECT_EQ(red.getTextureMap(Material::REFL).reflectionType, ReflectionType::SPHERE);
}

TEST(Samples, polygonsAreSplit) {
    const ImportResult result = importFile(sample("polygons.obj"));
    EXPECT_EQ(result.readingMessages,
              "1|Could not split non-triangular face. Skipping face.\n"
              "1|Polygonal face has elements that cannot be processed. It will be skipped.\n");
    EXPECT_EQ(describeFaces(result.model),
              "[0 1 2] [0 2 3] "
              "[7 4 5] [7 5 6] "
              "[5 6 7] [4 5 7] "
              "[12 8 9] [12 9 10] [12 10 11] "
              "[13 14 15] [13 15 16] [13 16 17] "
              "[18 19 20] [18 20 21] [23 18 21] [23 21 22] "
              "[25 26 27] [25 27 28] [24 25 28] [24 28 29] [29 30 31] [29 31 32] [24 29 32] "
              "[24 32 33] [33 34 35] [33 35 36] [24 33 36] [24 36 37] [39 24 37] [39 37 38] "
              "[27 8 9] [27 9 10]");
}

TEST(Samples, groupsAreCleanedUp) {
    const ImportResult result = importFile(sample("groups.obj"));
    EXPECT_EQ(result.readingMessages, "");
    EXPECT_EQ(describeGroups(result.model),
              "groups: 0; robot/arm/left: 1; robot/arm/right: 2; robot/leg: 3; robot: 4; "
              "default: 5; default: 6; robot_arm: 7");
}

TEST(Samples, aClosedMeshIsMergedAndSubdivided) {
    ImportOptions options;
    options.compaction = true;
    const ImportResult compacted = importFile(sample("tetrahedron.obj"), options);
    EXPECT_EQ(describeVertices(compacted.model),
              "(-1 -1 1 w1) (-1 1 -1 w1) (1 -1 -1 w1) (1 1 1 w1)");
    EXPECT_EQ(describeFaces(compacted.model),
              "[0/0 1/1 2/2] [3/0 1/1 0/2] [3/0 0/1 2/2] [3/0 2/1 1/2]");
    options.limitType = "FACE_COUNT";
    options.rounds = 100;
    const ImportResult subdivided = importFile(sample("tetrahedron.obj"), options);
    EXPECT_EQ(subdivided.model.faces.size(), 64U);
    EXPECT_EQ(subdivided.model.vertices.size(), 34U);
    EXPECT_EQ(subdivided.model.texturePoints.size(), 3U + 3U * (4U + 16U));
}

}  // namespace
}  // namespace obj_adapter::test
