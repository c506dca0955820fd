// The records as hosts compile them in: layouts, defaults and what is inline.
#include <obj_adapter/obj_adapter.h>

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <type_traits>

namespace obj_adapter::test {

namespace {

static_assert(offsetof(Vertex, x) == 0 && offsetof(Vertex, y) == 8 && offsetof(Vertex, z) == 16 &&
              offsetof(Vertex, w) == 24 && offsetof(Vertex, index) == 32 && sizeof(Vertex) == 40);
static_assert(offsetof(NormalPoint, x) == 0 && offsetof(NormalPoint, y) == 8 &&
              offsetof(NormalPoint, z) == 16 && offsetof(NormalPoint, index) == 24 &&
              sizeof(NormalPoint) == 32);
static_assert(offsetof(TexturePoint, u) == 0 && offsetof(TexturePoint, v) == 8 &&
              offsetof(TexturePoint, w) == 16 && offsetof(TexturePoint, index) == 24 &&
              sizeof(TexturePoint) == 32);
static_assert(offsetof(FaceElement, vertexIndex) == 0 && offsetof(FaceElement, textureIndex) == 4 &&
              offsetof(FaceElement, normalIndex) == 8 && sizeof(FaceElement) == 12);
static_assert(offsetof(Face, elements) == 0 && offsetof(Face, sortedVertexIndices) == 36 &&
              offsetof(Face, sortedKeyValid) == 48 && offsetof(Face, materialIndex) == 52 &&
              offsetof(Face, groupIndex) == 56 && sizeof(Face) == 60);

// A string's size is the standard library's, so these stand relative to it.
constexpr std::size_t STRING = sizeof(std::string);
static_assert(
    offsetof(TextureMap, fileName) == 0 && offsetof(TextureMap, blendU) == STRING &&
    offsetof(TextureMap, blendV) == STRING + 1 &&
    offsetof(TextureMap, colorCorrection) == STRING + 2 &&
    offsetof(TextureMap, clamp) == STRING + 3 && offsetof(TextureMap, mmBase) == STRING + 8 &&
    offsetof(TextureMap, mmGain) == STRING + 16 && offsetof(TextureMap, offset) == STRING + 24 &&
    offsetof(TextureMap, scale) == STRING + 48 && offsetof(TextureMap, turbulence) == STRING + 72 &&
    offsetof(TextureMap, resolution) == STRING + 96 &&
    offsetof(TextureMap, boost) == STRING + 104 && offsetof(TextureMap, reserved) == STRING + 112 &&
    offsetof(TextureMap, imfChannel) == STRING + 120 &&
    offsetof(TextureMap, reflectionType) == STRING + 124 && sizeof(TextureMap) == STRING + 128);
static_assert(offsetof(MaterialColor, values) == 0 && offsetof(MaterialColor, spectralFile) == 16 &&
              offsetof(MaterialColor, type) == 16 + STRING);
static_assert(offsetof(TextureMapSlot, hasTextureMap) == 0 &&
              offsetof(TextureMapSlot, textureMap) == 8);

// The order of the fields of Material, each behind the one before.
static_assert(offsetof(Material, ambientIsSet) == 0 &&
              offsetof(Material, ambient) < offsetof(Material, diffuseIsSet) &&
              offsetof(Material, diffuseIsSet) < offsetof(Material, diffuse) &&
              offsetof(Material, diffuse) < offsetof(Material, specularIsSet) &&
              offsetof(Material, specularIsSet) < offsetof(Material, specular) &&
              offsetof(Material, specular) < offsetof(Material, filterIsSet) &&
              offsetof(Material, filterIsSet) < offsetof(Material, filter) &&
              offsetof(Material, filter) < offsetof(Material, textureMaps) &&
              offsetof(Material, textureMaps) < offsetof(Material, name) &&
              offsetof(Material, name) < offsetof(Material, specularExponent) &&
              offsetof(Material, specularExponent) < offsetof(Material, dissolve) &&
              offsetof(Material, dissolve) < offsetof(Material, illumination) &&
              offsetof(Material, illumination) < offsetof(Material, sharpness) &&
              offsetof(Material, sharpness) < offsetof(Material, opticalDensity) &&
              offsetof(Material, opticalDensity) < offsetof(Material, halo) &&
              offsetof(Material, halo) < offsetof(Material, antiAliasTextures));
static_assert(offsetof(Group, names) < offsetof(Group, name) &&
              offsetof(Group, name) < offsetof(Group, faceIndices));
static_assert(offsetof(ObjHierarchyNode, name) < offsetof(ObjHierarchyNode, showLastNamesOnly) &&
              offsetof(ObjHierarchyNode, showLastNamesOnly) < offsetof(ObjHierarchyNode, group) &&
              offsetof(ObjHierarchyNode, group) < offsetof(ObjHierarchyNode, children));

static_assert(sizeof(ColorType) == 4 && sizeof(ImfChannel) == 4 && sizeof(ReflectionType) == 4 &&
              sizeof(Material::TextureMapName) == 4);
static_assert(static_cast<int>(ColorType::SPECTRAL) == 3 && static_cast<int>(ImfChannel::Z) == 6 &&
              static_cast<int>(ReflectionType::CUBE_RIGHT) == 7 && Material::MAP_KA == 0 &&
              Material::MAP_KD == 1 && Material::MAP_KS == 2 && Material::MAP_NS == 3 &&
              Material::MAP_D == 4 && Material::DISP == 5 && Material::BUMP == 6 &&
              Material::DECAL == 7 && Material::REFL == 8 && Material::NUMBER_OF_TEXTURE_MAPS == 9);

// One owner each: the process's converter, and the tree.
static_assert(!std::is_copy_constructible_v<ObjConverter> &&
              !std::is_copy_assignable_v<ObjConverter> &&
              !std::is_move_constructible_v<ObjConverter> &&
              !std::is_move_assignable_v<ObjConverter> &&
              !std::is_default_constructible_v<ObjConverter>);
static_assert(!std::is_copy_constructible_v<ObjHierarchyNode> &&
              !std::is_copy_assignable_v<ObjHierarchyNode> &&
              !std::is_move_constructible_v<ObjHierarchyNode> &&
              !std::is_move_assignable_v<ObjHierarchyNode>);
static_assert(!std::is_polymorphic_v<ObjConverter> && !std::is_polymorphic_v<ObjHierarchyNode>);

// Records travel by value.
static_assert(std::is_copy_constructible_v<TextureMap> && std::is_copy_assignable_v<TextureMap> &&
              std::is_nothrow_move_constructible_v<TextureMap> &&
              std::is_copy_constructible_v<Material> &&
              std::is_nothrow_move_constructible_v<Material> &&
              std::is_copy_constructible_v<Group> && std::is_nothrow_move_constructible_v<Group>);

TEST(RecordLayoutTest, geometryRecordsHaveTheirDefaults) {
    const Vertex vertex;
    EXPECT_EQ(vertex.x, 0.0);
    EXPECT_EQ(vertex.y, 0.0);
    EXPECT_EQ(vertex.z, 0.0);
    EXPECT_EQ(vertex.w, 1.0);
    EXPECT_EQ(vertex.index, NO_INDEX);

    const Vertex placed(1.0, 2.0, 3.0);
    EXPECT_EQ(placed.x, 1.0);
    EXPECT_EQ(placed.y, 2.0);
    EXPECT_EQ(placed.z, 3.0);
    EXPECT_EQ(placed.w, 1.0);

    EXPECT_EQ(TexturePoint().w, 0.0);
    EXPECT_EQ(TexturePoint().index, NO_INDEX);
    EXPECT_EQ(NormalPoint().index, NO_INDEX);

    Face face;
    for (int corner = 0; corner < CORNERS_PER_FACE; ++corner) {
        EXPECT_EQ(face.getElement(corner).getVertexIndex(), NO_INDEX);
        EXPECT_EQ(face.getElement(corner).getTextureIndex(), NO_INDEX);
        EXPECT_EQ(face.getElement(corner).getNormalIndex(), NO_INDEX);
    }
    EXPECT_EQ(face.getMaterialIndex(), NO_INDEX);
    EXPECT_EQ(face.groupIndex, NO_INDEX);
    EXPECT_FALSE(face.hasNormals());
    EXPECT_FALSE(face.hasTextures());
}

TEST(RecordLayoutTest, materialsHaveTheirDefaults) {
    Material material;
    for (const bool isSet : {material.hasAmbient(), material.hasDiffuse(), material.hasSpecular(),
                             material.hasFilter(), material.halo, material.antiAliasTextures})
        EXPECT_FALSE(isSet);
    for (MaterialColor* color : {&material.getAmbient(), &material.getDiffuse(),
                                 &material.getSpecular(), &material.getFilter()}) {
        EXPECT_EQ(color->type, ColorType::NONE);
        EXPECT_EQ(color->spectralFile, "");
        for (const float value : color->values)
            EXPECT_EQ(value, -1.0F);
    }
    EXPECT_EQ(material.name, "");
    EXPECT_EQ(material.specularExponent, -1.0);
    EXPECT_EQ(material.dissolve, 1.0);
    EXPECT_EQ(material.illumination, -1);
    EXPECT_EQ(material.sharpness, 60);
    EXPECT_EQ(material.opticalDensity, 1.0);

    const TextureMap map;
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
}

TEST(RecordLayoutTest, aFaceThatIsFullRefusesACornerByAStandardException) {
    Face face;
    FaceElement corner;
    for (int index = 0; index < CORNERS_PER_FACE; ++index) {
        corner.setVertexIndex(index);
        corner.setTextureIndex(index + 10);
        corner.setNormalIndex(index + 20);
        face.addElement(corner);
    }
    EXPECT_EQ(face.getElement(2).getVertexIndex(), 2);
    EXPECT_EQ(face.getElement(2).getTextureIndex(), 12);
    EXPECT_EQ(face.getElement(2).getNormalIndex(), 22);
    EXPECT_TRUE(face.hasTextures());
    EXPECT_TRUE(face.hasNormals());
    try {
        face.addElement(corner);
        ADD_FAILURE() << "a fourth corner was taken";
    } catch (const std::runtime_error& refusal) {
        EXPECT_STREQ(refusal.what(), "Face cannot have fourth element");
    }
}

}  // namespace

}  // namespace obj_adapter::test
