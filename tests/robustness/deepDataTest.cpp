// Data that is far longer, deeper or more numerous than files have it, on threads
// with little stack.
#include "support/describe.h"
#include "support/importScenarios.h"
#include "support/importText.h"
#include "support/printedModel.h"
#include "support/smallStack.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <cstdio>
#include <string>
#include <vector>

namespace obj_adapter::test {
namespace {

// On a small stack, the deletion included; gone is what it kept.
ImportResult importOnSmallStack(const std::string& objText, const ImportOptions& options = {}) {
    ImportResult result;
    runWithSmallStack([&] { result = importText(objText, options); });
    return result;
}

class DeepData : public testing::Test {
protected:
    void TearDown() override {
        runWithSmallStack([] { ObjConverter::clearInstance(); });
    }
};

// The smallest of a host's threads have the room for every kind of import.
TEST_F(DeepData, scenariosOnASmallStack) {
    for (const auto* scenarios : {&importScenarios(), &largeImportScenarios()}) {
        for (const ImportScenario& scenario : *scenarios) {
            SCOPED_TRACE(scenario.title);
            const ImportResult expected = importText(scenario.objText, scenario.options);
            const std::string expectedModel = printModel(expected.model);
            const ImportResult result = importOnSmallStack(scenario.objText, scenario.options);
            EXPECT_EQ(result.allMessages, expected.allMessages);
            EXPECT_TRUE(printModel(result.model) == expectedModel);
        }
    }
}

TEST_F(DeepData, groupOfFiftyThousandNames) {
    constexpr int NAMES = 50000;
    std::string text = "v 0 0 0\nv 1 0 0\nv 0 1 0\nv 0 0 1\nf 2 3 4\ng";
    for (int name = 0; name < NAMES; ++name)
        text += " n" + std::to_string(name);
    text += "\nf 1 2 3\n";
    ImportOptions options;
    options.hierarchy = true;
    for (const bool reverse : {false, true}) {
        SCOPED_TRACE(reverse);
        options.reverse = reverse;
        importOnSmallStack(text, options);
        runWithSmallStack([&] {
            ObjHierarchyNode* node = ObjConverter::getInstance()->getRootOfHierarchy();
            ASSERT_NE(node, nullptr);
            // The root has but one child, the first name's node, which takes its place.
            for (int name = 0; name < NAMES; ++name) {
                const int number = reverse ? NAMES - 1 - name : name;
                ASSERT_EQ(node->getName(), "n" + std::to_string(number));
                if (name + 1 == NAMES)
                    break;
                ASSERT_EQ(node->getNumberOfChildren(), 1);
                node = node->getChild(0);
            }
            EXPECT_EQ(node->getNumberOfChildren(), 0);
            ASSERT_NE(node->getFaceIndices(), nullptr);
            EXPECT_EQ(*node->getFaceIndices(), std::vector<int>{1});
        });
    }
}

// A circle's corners, with as many digits as a double has.
std::string circle(int corners) {
    std::string text;
    for (int corner = 0; corner < corners; ++corner) {
        const double angle = 6.283185307179586 * corner / corners;
        char line[100];
        std::snprintf(line, sizeof line, "v %.17g %.17g 0\n", 1000.0 * std::cos(angle),
                      1000.0 * std::sin(angle));
        text += line;
    }
    return text;
}

std::string faceOfAll(int corners) {
    std::string text = "f";
    for (int corner = 1; corner <= corners; ++corner)
        text += " " + std::to_string(corner);
    return text + "\n";
}

TEST_F(DeepData, convexPolygonOfAHundredThousandCorners) {
    constexpr int CORNERS = 100000;
    const ImportResult result = importOnSmallStack(circle(CORNERS) + faceOfAll(CORNERS));
    EXPECT_EQ(result.readingMessages, "");
    ASSERT_EQ(result.model.faces.size(), static_cast<std::size_t>(CORNERS - 2));
    for (int face = 0; face < CORNERS - 2; ++face) {
        const FaceElement* corners = result.model.faces[static_cast<std::size_t>(face)].elements;
        ASSERT_EQ(corners[0].vertexIndex, 0);
        ASSERT_EQ(corners[1].vertexIndex, face + 1);
        ASSERT_EQ(corners[2].vertexIndex, face + 2);
    }
}

double signedArea(const ModelView& model, const Face& face) {
    const auto position = [&](int corner) -> const Vertex& {
        return model.vertices[static_cast<std::size_t>(face.elements[corner].vertexIndex)];
    };
    const Vertex& a = position(0);
    const Vertex& b = position(1);
    const Vertex& c = position(2);
    return 0.5 * ((b.x - a.x) * (c.y - a.y) - (c.x - a.x) * (b.y - a.y));
}

// One corner that turns the other way makes it a matter of ears: quadratic, for the
// corners' normals are added up anew for each ear, in their order. A hundred thousand
// corners take some ten seconds where the compiler optimizes, and a minute where not.
#if defined(NDEBUG)
constexpr int CORNERS_OF_CONCAVE = 100000;
#else
constexpr int CORNERS_OF_CONCAVE = 20000;
#endif

TEST_F(DeepData, slightlyConcavePolygonOfManyCorners) {
    constexpr int CORNERS = CORNERS_OF_CONCAVE;
    const std::string text = circle(CORNERS - 1) + "v 999 -0.001 0\n" + faceOfAll(CORNERS);
    const ImportResult result = importOnSmallStack(text);
    EXPECT_EQ(result.readingMessages, "");
    ASSERT_EQ(result.model.faces.size(), static_cast<std::size_t>(CORNERS - 2));
    double area = 0.0;
    for (const Face& face : result.model.faces) {
        const double part = signedArea(result.model, face);
        ASSERT_GT(part, 0.0);
        area += part;
    }
    double expectedArea = 0.0;
    for (std::size_t corner = 0; corner < CORNERS; ++corner) {
        const Vertex& a = result.model.vertices[corner];
        const Vertex& b = result.model.vertices[(corner + 1) % CORNERS];
        expectedArea += 0.5 * (a.x * b.y - b.x * a.y);
    }
    EXPECT_NEAR(area, expectedArea, 1e-3);
}

TEST_F(DeepData, lineOfAHundredMegabytes) {
    constexpr std::size_t LENGTH = 100000000;
    // A statement that is read and one that is not, each with a tail that no other
    // line has; the second is split by a backslash.
    std::string text = "v 1 2 3 4" + std::string(LENGTH, ' ') + "x\nunknown\\\n";
    text.append(LENGTH / 2, 'y');
    text += "\nv 5 6 7\n#";
    text.append(LENGTH / 2, 'z');
    const ImportResult result = importOnSmallStack(text);
    EXPECT_EQ(describeVertices(result.model), "(1 2 3 w4) (5 6 7 w1)");
    EXPECT_EQ(result.readingMessages, "2|Unrecognized statement: \"unknown" + std::string(93, 'y') +
                                          "\" was seen 1 times.\n");
}

TEST_F(DeepData, faceLineOfAMillionCornersThatIsNoPolygon) {
    std::string text = "v 0 0 0\nv 1 0 0\nf";
    for (int corner = 0; corner < 1000000; ++corner)
        text += corner % 2 == 0 ? " 1" : " 2";
    const ImportResult result = importOnSmallStack(text + "\n");
    EXPECT_EQ(result.readingMessages,
              "1|Polygonal face has elements that cannot be processed. It will be skipped.\n");
}

TEST_F(DeepData, libraryOfAHundredThousandMaterials) {
    constexpr int MATERIALS = 100000;
    std::string library;
    std::string text = "mtllib many.mtl\nv 0 0 0\nv 1 0 0\nv 0 1 0\n";
    for (int material = 0; material < MATERIALS; ++material) {
        const std::string name = "material_number_" + std::to_string(material);
        library += "newmtl " + name + "\nillum " + std::to_string(material) + "\nKd 1 0 0\n";
        // From the back, so that a search from the front takes long.
        text +=
            "usemtl material_number_" + std::to_string(MATERIALS - 1 - material) + "\nf 1 2 3\n";
    }
    ImportOptions options;
    options.otherFiles["many.mtl"] = library;
    const ImportResult result = importOnSmallStack(text, options);
    EXPECT_EQ(result.readingMessages, "3|Using Mtllib file: {dir}many.mtl\n");
    ASSERT_EQ(result.model.materials.size(), static_cast<std::size_t>(MATERIALS));
    ASSERT_EQ(result.model.faces.size(), static_cast<std::size_t>(MATERIALS));
    for (int material = 0; material < MATERIALS; ++material) {
        ASSERT_EQ(result.model.materials[static_cast<std::size_t>(material)].illumination,
                  material);
        ASSERT_EQ(result.model.faces[static_cast<std::size_t>(material)].getMaterialIndex(),
                  MATERIALS - 1 - material);
    }
}

// The stack of these tests is as small as they say: what needs more is killed.
#if defined(__linux__) && !defined(__SANITIZE_ADDRESS__)

int sumOfBytes(std::size_t count) {
    constexpr std::size_t STEP = 1024;
    volatile char room[STEP];
    room[0] = 1;
    const int rest = count > STEP ? sumOfBytes(count - STEP) : 0;
    return room[0] + rest;
}

TEST(DeepDataItself, smallStackIsSmall) {
    runWithSmallStack([] { EXPECT_GT(sumOfBytes(SMALL_STACK / 2), 1); });
    EXPECT_DEATH(runWithSmallStack([] { sumOfBytes(2 * SMALL_STACK); }), "");
}

#endif

}  // namespace
}  // namespace obj_adapter::test
