// Normals of the file and computed ones, corner by corner.
#include "cornerNormals.h"

#include "support/describe.h"
#include "tools/importedText.h"

#include <gtest/gtest.h>

#include <cmath>
#include <optional>
#include <string>

namespace obj_adapter::test {

namespace {

std::string describeShort(double value) {
    char text[32];
    std::snprintf(text, sizeof text, "%.3g", value == 0.0 ? 0.0 : value);
    return text;
}

// "(0 0 1)" for each corner of each face, with "file" where the file gave them.
std::string describe(const tool::ModelAccess& model, std::optional<double> smallestCosine) {
    const tool::CornerNormals normals(model, smallestCosine);
    std::string text;
    for (int face = 0; face < model.getNumberOfFaces(); ++face) {
        text += std::string(face == 0 ? "" : " | ") + (normals.isFromFile(face) ? "file" : "own");
        for (int corner = 0; corner < CORNERS_PER_FACE; ++corner) {
            const tool::Vector3& normal = normals.getNormal(normals.indexOf(face, corner));
            text += " (" + describeShort(normal.x) + " " + describeShort(normal.y) + " " +
                    describeShort(normal.z) + ")";
        }
    }
    return text;
}

struct NormalsCase {
    const char* title;
    const char* objText;
    std::optional<double> smallestCosine;
    const char* normals;
};

// Two triangles of one size, bent by a right angle along the side from vertex 1
// to vertex 2; the third is on the far side of the first.
const char* const FOLD = "v 0 0 0\nv 0 1 0\nv 1 0 0\nv 0 0 1\n";

const NormalsCase CASES[] = {
    {"flat without an angle", "f 1 3 2\nf 1 2 4\n", std::nullopt,
     "own (1 0 0) (1 0 0) (1 0 0) | own (0 0 1) (0 0 1) (0 0 1)"},
    {"a sharp edge stays sharp", "f 1 3 2\nf 1 2 4\n", 0.5,
     "own (1 0 0) (1 0 0) (1 0 0) | own (0 0 1) (0 0 1) (0 0 1)"},
    {"smooth over the common edge, and only there", "f 1 3 2\nf 1 2 4\n", -0.5,
     "own (0.707 0 0.707) (0.707 0 0.707) (1 0 0) | "
     "own (0.707 0 0.707) (0 0 1) (0.707 0 0.707)"},
    {"the larger face weighs more", "v 3 0 0\nf 1 5 2\nf 1 2 4\n", -0.5,
     "own (0.316 0 0.949) (0.316 0 0.949) (1 0 0) | "
     "own (0.316 0 0.949) (0 0 1) (0.316 0 0.949)"},
    {"neighbours that disagree on the front side stay apart", "f 1 3 2\nf 1 4 2\n", 0.5,
     "own (-1 0 0) (-1 0 0) (-1 0 0) | own (0 0 1) (0 0 1) (0 0 1)"},
    {"those of the file, made as long as 1", "vn 0 0 -5\nf 1//1 3//1 2//1\n", 0.5,
     "file (0 0 -1) (0 0 -1) (0 0 -1)"},
    {"enormous ones as well", "vn 1e200 0 1e200\nf 1//1 3//1 2//1\n", 0.5,
     "file (0.707 0 0.707) (0.707 0 0.707) (0.707 0 0.707)"},
    {"one of no length is none", "vn 0 0 0\nvn 0 0 1\nf 1//2 3//1 2//2\n", 0.5,
     "own (0 0 1) (0 0 1) (0 0 1)"},
    {"one that is not finite is none", "vn nan 0 1\nvn 0 0 1\nf 1//2 3//1 2//2\n", 0.5,
     "own (0 0 1) (0 0 1) (0 0 1)"},
    {"a face without area", "v 2 0 0\nf 1 3 5\n", 0.5, "own (0 0 1) (0 0 1) (0 0 1)"},
    {"a face at no finite place", "v inf 0 0\nf 1 3 5\n", 0.5, "own (0 0 1) (0 0 1) (0 0 1)"},
    {"an enormous face", "v 1e300 0 0\nv 0 1e300 0\nf 1 5 6\n", 0.5, "own (0 0 1) (0 0 1) (0 0 1)"},
};

TEST(CornerNormalsTest, Cases) {
    for (const NormalsCase& row : CASES) {
        SCOPED_TRACE(row.title);
        const ImportedText imported(std::string(FOLD) + row.objText);
        EXPECT_EQ(describe(imported.getModel(), row.smallestCosine), row.normals);
    }
}

// A fan of many faces about one vertex, whose corners there are all one class.
TEST(CornerNormalsTest, AFanIsNotQuadratic) {
    constexpr int COUNT = 200000;
    std::string text = "v 0 0 1\n";
    for (int index = 0; index <= COUNT; ++index)
        text += "v " + std::to_string(index) + " " + std::to_string(index % 7) + " 0\n";
    for (int index = 0; index < COUNT; ++index)
        text += "f 1 " + std::to_string(index + 2) + " " + std::to_string(index + 3) + "\n";
    const ImportedText imported(text);
    ASSERT_EQ(imported.getModel().getNumberOfFaces(), COUNT);
    const tool::CornerNormals normals(imported.getModel(), -1.0);
    // All corners at the middle vertex share one normal.
    const int first = normals.indexOf(0, 0);
    const tool::Vector3& normal = normals.getNormal(first);
    EXPECT_NEAR(std::sqrt(tool::dotProduct(normal, normal)), 1.0, 1e-15);
}

}  // namespace

}  // namespace obj_adapter::test
