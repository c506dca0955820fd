// Every exported function, called through the shared library as a host does.
#include "support/describe.h"
#include "support/messageRecorder.h"
#include "support/modelView.h"
#include "support/temporaryDirectory.h"

#include <obj_adapter/obj_adapter.h>

#include <gtest/gtest.h>

#include <cmath>
#include <stdexcept>
#include <string>
#include <vector>

namespace obj_adapter::test {

namespace {

const char* const SAMPLE_OBJ =
    "mtllib sample.mtl\n"
    "v 1 0 0\n"
    "v 0 0 0 0.5\n"
    "v 1 0 0\n"
    "v 0 1 0\n"
    "v 0 0 2\n"
    "vt 0.25 0.75\n"
    "vn 0 0 1\n"
    "g arm left\n"
    "usemtl red\n"
    "f 2/1/1 1/1/1 4/1/1\n"
    "g arm right\n"
    "f 2 4 5\n";

const char* const SAMPLE_MTL =
    "newmtl red\n"
    "Ka 0.1 0.2 0.3\n"
    "Kd xyz 0.5 0.5 0.5\n"
    "Ks spectral curve.rfl 0.5\n"
    "Tf 1 1 1\n"
    "Ns 10\n"
    "d -halo 0.5\n"
    "illum 2\n"
    "sharpness 70\n"
    "Ni 1.5\n"
    "map_Ka ka.png\n"
    "map_Kd -clamp on kd.png\n"
    "map_Ks ks.png\n"
    "map_Ns ns.png\n"
    "map_d d.png\n"
    "disp disp.png\n"
    "bump bump.png\n"
    "decal decal.png\n"
    "refl -type sphere refl.png\n";

// A fresh converter, and a sample to import into it.
class ExportedInterfaceTest : public testing::Test {
protected:
    ExportedInterfaceTest() {
        ObjConverter::clearInstance();
        directory.write("sample.mtl", SAMPLE_MTL);
        sampleFile = directory.write("sample.obj", SAMPLE_OBJ);
    }
    ~ExportedInterfaceTest() override { ObjConverter::clearInstance(); }

    static ObjConverter& converter() { return *ObjConverter::getInstance(); }

    void importSample() {
        ASSERT_EQ(converter().importObjDataFromFile(sampleFile.c_str()),
                  ObjConverter::CONVERTER_OK);
    }

    static std::string vertices() { return describeVertices(viewOf(converter())); }

    const TemporaryDirectory directory;
    std::string sampleFile;
};

// The nodes below and including this one: "arm(left right)".
std::string describeNode(ObjHierarchyNode& node) {
    std::string text = node.getName();
    if (node.getNumberOfChildren() == 0)
        return text;
    text += "(";
    for (int child = 0; child < node.getNumberOfChildren(); ++child)
        text += (child == 0 ? "" : " ") + describeNode(*node.getChild(child));
    return text + ")";
}

const char* nameOf(int code) {
    switch (code) {
        case ObjConverter::CONVERTER_OK:
            return "ok";
        case ObjConverter::CONVERTER_ERROR:
            return "error";
        default:
            return "neither";
    }
}

TEST_F(ExportedInterfaceTest, resultCodesServeAsCaseLabelsAndHaveAddresses) {
    EXPECT_STREQ(nameOf(1), "ok");
    EXPECT_STREQ(nameOf(0), "error");
    EXPECT_STREQ(nameOf(2), "neither");

    const int* const addresses[] = {&ObjConverter::CONVERTER_OK, &ObjConverter::CONVERTER_ERROR};
    EXPECT_NE(addresses[0], addresses[1]);
    EXPECT_EQ(*addresses[0], 1);
    EXPECT_EQ(*addresses[1], 0);
}

TEST_F(ExportedInterfaceTest, thereIsOneConverterUntilItIsCleared) {
    ObjConverter* const first = ObjConverter::getInstance();
    ASSERT_NE(first, nullptr);
    EXPECT_EQ(ObjConverter::getInstance(), first);
    importSample();
    EXPECT_EQ(first->getNumberOfFaces(), 2);

    ObjConverter::clearInstance();
    ObjConverter::clearInstance();
    EXPECT_EQ(converter().getNumberOfFaces(), 0);
}

TEST_F(ExportedInterfaceTest, aConverterThatTheHostDeletesIsMadeAnew) {
    importSample();
    delete ObjConverter::getInstance();
    ASSERT_NE(ObjConverter::getInstance(), nullptr);
    EXPECT_EQ(converter().getNumberOfFaces(), 0);
    importSample();
    EXPECT_EQ(converter().getNumberOfFaces(), 2);
}

TEST_F(ExportedInterfaceTest, aFreshConverterIsEmpty) {
    EXPECT_EQ(converter().getNumberOfVertices(), 0);
    EXPECT_EQ(converter().getNumberOfVertexTextures(), 0);
    EXPECT_EQ(converter().getNumberOfVertexNormals(), 0);
    EXPECT_EQ(converter().getNumberOfFaces(), 0);
    EXPECT_EQ(converter().getNumberOfGroups(), 0);
    EXPECT_EQ(converter().getNumberOfMaterials(), 0);

    ObjHierarchyNode* const root = converter().getRootOfHierarchy();
    ASSERT_NE(root, nullptr);
    EXPECT_EQ(describeNode(*root), "Obj File");
    EXPECT_EQ(root->getFullName(), "Obj File");
    EXPECT_EQ(root->getFaceIndices(), nullptr);
}

TEST_F(ExportedInterfaceTest, aFreshConverterHasNoInput) {
    const MessageRecorder recorder;
    EXPECT_EQ(converter().importObjDataFromFile(nullptr), ObjConverter::CONVERTER_ERROR);
    EXPECT_EQ(recorder.getText(), "1|No input file specified.\n");
}

TEST_F(ExportedInterfaceTest, theDefaultsCompactAndDoNothingElse) {
    const MessageRecorder recorder;
    importSample();
    EXPECT_EQ(recorder.getText(),
              "3|Obj Converter Import:\n"
              "3|Reading input file...\n"
              "3|Using Mtllib file: " +
                  directory.getPath() +
                  "sample.mtl\n"
                  "3|Done reading input.\n"
                  "3|Compacting...\n"
                  "3|Done compacting.\n"
                  "3|Obj data import complete.\n");
    EXPECT_EQ(vertices(), "(0 0 0 w0.5) (0 0 2 w1) (0 1 0 w1) (1 0 0 w1)");
    EXPECT_EQ(describeNode(*converter().getRootOfHierarchy()), "sample(arm_left arm_right)");
}

TEST_F(ExportedInterfaceTest, inputIsSetInOneOrInTwoParts) {
    converter().setInput(sampleFile.c_str());
    EXPECT_EQ(converter().importObjDataFromFile(nullptr), ObjConverter::CONVERTER_OK);
    EXPECT_EQ(converter().getNumberOfFaces(), 2);

    ObjConverter::clearInstance();
    converter().setInputPath(directory.getPath().c_str());
    converter().setInputFile("sample.obj");
    EXPECT_EQ(converter().importObjDataFromFile(nullptr), ObjConverter::CONVERTER_OK);
    EXPECT_EQ(converter().getNumberOfFaces(), 2);
}

TEST_F(ExportedInterfaceTest, outputIsTakenAndWritesNothing) {
    const std::string outputFile = directory.getPath() + "out.obj";
    converter().setOutput(outputFile.c_str());
    converter().setOutputPath(directory.getPath().c_str());
    converter().setOutputFile("out.obj");
    importSample();
    EXPECT_FALSE(std::filesystem::exists(pathFromUtf8(outputFile)));
    EXPECT_FALSE(std::filesystem::exists(pathFromUtf8(directory.getPath() + "out")));
}

TEST_F(ExportedInterfaceTest, nullTextsCountAsEmpty) {
    converter().setInput(nullptr);
    converter().setInputPath(nullptr);
    converter().setInputFile(nullptr);
    converter().setOutput(nullptr);
    converter().setOutputPath(nullptr);
    converter().setOutputFile(nullptr);
    converter().setSubdivisionRounds(nullptr, 0);
    EXPECT_EQ(converter().importObjDataFromFile(nullptr), ObjConverter::CONVERTER_ERROR);
}

TEST_F(ExportedInterfaceTest, compactionCanBeTurnedOff) {
    converter().setDataCompaction(false);
    importSample();
    EXPECT_EQ(vertices(), "(1 0 0 w1) (0 0 0 w0.5) (1 0 0 w1) (0 1 0 w1) (0 0 2 w1)");
}

TEST_F(ExportedInterfaceTest, subdivisionRunsToItsLimit) {
    const std::string triangle = directory.write("one.obj", "v 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\n");
    converter().setSubdivisionRounds("FACE_COUNT", 10);
    ASSERT_EQ(converter().importObjDataFromFile(triangle.c_str()), ObjConverter::CONVERTER_OK);
    EXPECT_EQ(converter().getNumberOfFaces(), 4);
    EXPECT_EQ(converter().getNumberOfVertices(), 6);
}

TEST_F(ExportedInterfaceTest, theTreeFollowsItsSettings) {
    converter().setUseGroupNameHierarchy(true);
    importSample();
    EXPECT_EQ(describeNode(*converter().getRootOfHierarchy()), "arm(left right)");
    converter().setHierarchyShowLastNamesOnly(false);
    EXPECT_EQ(describeNode(*converter().getRootOfHierarchy()), "arm(arm_left arm_right)");
    converter().setUseGroupNameHierarchy(false);
    EXPECT_EQ(describeNode(*converter().getRootOfHierarchy()), "sample(arm_left arm_right)");
}

TEST_F(ExportedInterfaceTest, groupNamesAreReversedByTheImport) {
    converter().setUseGroupNameHierarchy(true);
    converter().setHierarchyReverseGroupNames(true);
    importSample();
    EXPECT_EQ(converter().getGroup(0)->getFullName(), "left_arm");
    EXPECT_EQ(converter().getGroup(1)->getFullName(), "right_arm");
}

TEST_F(ExportedInterfaceTest, aPolygonWithoutAnEarCanBeSkipped) {
    // The corners run to and fro along one edge, and each of them blocks an ear.
    const std::string file = directory.write("noEar.obj",
                                             "v 0 1 0\nv 3 0 0\nv 1 0 0\nv 2 0 0\nv 0 0 0\n"
                                             "f 1 2 3 4 5\nf 1 2 5\n");
    converter().setDataCompaction(false);
    converter().setSkipPolygonsWithoutEar(true);
    const MessageRecorder recorder;
    EXPECT_EQ(converter().importObjDataFromFile(file.c_str()), ObjConverter::CONVERTER_OK);
    ASSERT_EQ(recorder.getMessages().size(), 5U);
    EXPECT_EQ(recorder.getMessages()[2], "1|Could not split non-triangular face. Skipping face.");
    EXPECT_EQ(describeFaces(viewOf(converter())), "[0 1 4]");
}

std::vector<int> receivedLevels;

TEST_F(ExportedInterfaceTest, messagesReachTheCallbackUntilItIsRemoved) {
    receivedLevels.clear();
    converter().setMsgCallback([](int level, const char*) { receivedLevels.push_back(level); });
    const std::string file = directory.write("messages.obj", "v 1\ns 1\n");
    converter().importObjDataFromFile(file.c_str());
    EXPECT_EQ(receivedLevels, (std::vector<int>{3, 3, 1, 2, 3, 3, 3, 3}));

    receivedLevels.clear();
    converter().setMsgCallback(nullptr);
    converter().importObjDataFromFile(file.c_str());
    EXPECT_TRUE(receivedLevels.empty());
}

TEST_F(ExportedInterfaceTest, gettersLendTheRecords) {
    converter().setDataCompaction(false);
    importSample();
    ASSERT_EQ(converter().getNumberOfVertices(), 5);
    EXPECT_EQ(converter().getVertex(4)->z, 2.0);
    EXPECT_EQ(converter().getVertex(4)->index, 4);
    EXPECT_EQ(converter().getVertex(1)->w, 0.5);

    ASSERT_EQ(converter().getNumberOfVertexTextures(), 1);
    EXPECT_EQ(converter().getVertexTexture(0)->u, 0.25);
    EXPECT_EQ(converter().getVertexTexture(0)->v, 0.75);
    EXPECT_EQ(converter().getVertexTexture(0)->w, 0.0);

    ASSERT_EQ(converter().getNumberOfVertexNormals(), 1);
    EXPECT_EQ(converter().getVertexNormal(0)->x, 0.0);
    EXPECT_EQ(converter().getVertexNormal(0)->z, 1.0);

    ASSERT_EQ(converter().getNumberOfFaces(), 2);
    EXPECT_EQ(describeFaces(viewOf(converter())), "[1/0/0 0/0/0 3/0/0 m0] [1 3 4 m0]");
    EXPECT_TRUE(converter().getFace(0)->hasTextures());
    EXPECT_TRUE(converter().getFace(0)->hasNormals());
    EXPECT_EQ(converter().getFace(1)->groupIndex, 1);
    EXPECT_EQ(converter().getFace(1)->getMaterialIndex(), 0);

    // The host may write through them.
    converter().getVertex(4)->z = 3.0;
    EXPECT_EQ(converter().getVertex(4)->z, 3.0);
}

TEST_F(ExportedInterfaceTest, groupsAnswerAboutTheirNames) {
    importSample();
    ASSERT_EQ(converter().getNumberOfGroups(), 2);
    Group& group = *converter().getGroup(0);
    EXPECT_TRUE(group.isCompound());
    EXPECT_EQ(group.getFullName(), "arm_left");
    EXPECT_EQ(group.getLastName(), "left");
    EXPECT_EQ(group.getPrefixName(1), "arm");
    EXPECT_EQ(group.getPrefixName(3), "");
    EXPECT_EQ(group.getNames(), (std::vector<std::string>{"arm", "left"}));
    group.setComponentName(1, "upper");
    EXPECT_EQ(group.getFullName(), "arm_upper");

    EXPECT_EQ(group.getNumberOfFaces(), 1);
    group.addFaceIndex(7);
    EXPECT_EQ(group.getNumberOfFaces(), 2);
    EXPECT_EQ(group.faceIndices.back(), 7);
    group.clearFaceIndices();
    EXPECT_EQ(group.getNumberOfFaces(), 0);
}

TEST_F(ExportedInterfaceTest, aNodeLendsItsGroupsFaces) {
    importSample();
    ObjHierarchyNode& root = *converter().getRootOfHierarchy();
    ASSERT_EQ(root.getNumberOfChildren(), 2);
    EXPECT_EQ(root.getFaceIndices(), nullptr);
    ObjHierarchyNode& node = *root.getChild(1);
    EXPECT_EQ(node.group, converter().getGroup(1));
    EXPECT_EQ(node.getFaceIndices(), &converter().getGroup(1)->faceIndices);
    EXPECT_EQ(node.getFullName(), "arm_right");
}

TEST_F(ExportedInterfaceTest, aHostCanMakeATreeOfItsOwn) {
    Group group;
    group.name = "wheel";
    ObjHierarchyNode root("car", true, nullptr);
    root.children.push_back(new ObjHierarchyNode("GROUP NODE", true, &group));
    EXPECT_EQ(describeNode(root), "car(wheel)");
}

TEST_F(ExportedInterfaceTest, materialsAnswerAboutWhatTheyHave) {
    importSample();
    ASSERT_EQ(converter().getNumberOfMaterials(), 1);
    Material& red = *converter().getMaterial(0);
    EXPECT_EQ(red.name, "red");
    EXPECT_TRUE(red.hasAmbient() && red.hasDiffuse() && red.hasSpecular() && red.hasFilter());
    EXPECT_EQ(red.getAmbient().values[1], 0.2F);
    EXPECT_EQ(red.getDiffuse().type, ColorType::XYZ);
    EXPECT_EQ(red.getSpecular().spectralFile, "curve.rfl");
    EXPECT_EQ(red.getFilter().values[3], 1.0F);
    EXPECT_EQ(red.specularExponent, 10.0);
    EXPECT_EQ(red.dissolve, 0.5);
    EXPECT_TRUE(red.halo);
    EXPECT_EQ(red.illumination, 2);
    EXPECT_EQ(red.sharpness, 70);
    EXPECT_EQ(red.opticalDensity, 1.5);

    struct SlotAndFile {
        Material::TextureMapName slot;
        const char* fileName;
    };
    const SlotAndFile slots[] = {{Material::MAP_KA, "ka.png"},   {Material::MAP_KD, "kd.png"},
                                 {Material::MAP_KS, "ks.png"},   {Material::MAP_NS, "ns.png"},
                                 {Material::MAP_D, "d.png"},     {Material::BUMP, "bump.png"},
                                 {Material::DECAL, "decal.png"}, {Material::REFL, "refl.png"}};
    for (const auto& [slot, fileName] : slots) {
        EXPECT_TRUE(red.hasTextureMap(slot)) << fileName;
        EXPECT_EQ(red.getTextureMap(slot).fileName, fileName);
    }
    EXPECT_FALSE(red.hasTextureMap(Material::DISP));
    EXPECT_TRUE(red.getTextureMap(Material::MAP_KD).clamp);
    EXPECT_EQ(red.getTextureMap(Material::REFL).reflectionType, ReflectionType::SPHERE);
}

TEST_F(ExportedInterfaceTest, anInvalidMapTypeIsCaughtByItsTypeAcrossTheLibrary) {
    Material material;
    for (const int slot : {static_cast<int>(Material::DISP), 9, -1}) {
        const auto name = static_cast<Material::TextureMapName>(slot);
        EXPECT_FALSE(material.hasTextureMap(name)) << slot;
        try {
            material.getTextureMap(name);
            ADD_FAILURE() << "slot " << slot << " was lent";
        } catch (const std::runtime_error& refusal) {
            EXPECT_STREQ(refusal.what(), "Invalid map type") << slot;
        }
    }
}

TEST_F(ExportedInterfaceTest, coloursAreHandedOutAsArrays) {
    MaterialColor color;
    EXPECT_EQ(color.toColorArray(), color.values);
    EXPECT_EQ(color.values[0], -1.0F);

    color.setRgb(0.2F, 0.4F, 0.6F);
    EXPECT_EQ(color.toColorArray()[0], 0.2F);
    EXPECT_EQ(color.values[3], 1.0F);

    MaterialColor bright;
    bright.setXyz(0.5F, 0.5F, 0.5F);
    const float* const rgb = bright.toColorArray();
    EXPECT_NEAR(rgb[0], 0.66638, 0.00001);
    EXPECT_NEAR(rgb[1], 0.59790, 0.00001);
    EXPECT_NEAR(rgb[2], 0.58644, 0.00001);
    EXPECT_EQ(rgb[3], -1.0F);
    EXPECT_EQ(bright.type, ColorType::RGB);
}

TEST_F(ExportedInterfaceTest, materialsAreWrittenBackAsText) {
    importSample();
    Material& red = *converter().getMaterial(0);
    EXPECT_EQ(colorToText(red.getAmbient()), "0.100000 0.200000 0.300000");
    EXPECT_EQ(colorDescription(red.getSpecular()), "Spectral: curve.rfl Factor:0.500000");
    EXPECT_EQ(dissolveToText(red), "d -halo 0.500000");
    EXPECT_EQ(red.getTextureMap(Material::MAP_KD).textureMapString(), " -clamp on kd.png");
    EXPECT_EQ(materialToText(red),
              "newmtl red\n"
              "Ka 0.100000 0.200000 0.300000\n"
              "Kd xyz 0.500000 0.500000 0.500000\n"
              "Ks spectral curve.rfl 0.500000\n"
              "Tf 1.000000 1.000000 1.000000\n"
              "d -halo 0.500000\n"
              "illum 2\n"
              "Ns 10.000000\n"
              "sharpness 70\n"
              "Ni 1.500000\n"
              "map_Ka  ka.png\n"
              "map_Kd  -clamp on kd.png\n"
              "map_Ks  ks.png\n"
              "map_Ns  ns.png\n"
              "map_d  d.png\n"
              "decal  decal.png\n"
              "bump  bump.png\n"
              "refl  -type  sphere refl.png\n");
}

}  // namespace

}  // namespace obj_adapter::test
