// Polygons to triangles: processing/triangulation.cpp with cornerPositions.cpp,
// cornerClasses.cpp, earClipping.cpp, pointInTriangle.h and vectors.h.
#include "processing/triangulation.h"

#include "processing/cornerClasses.h"
#include "processing/cornerPositions.h"
#include "processing/pointInTriangle.h"
#include "support/countedMemory.h"
#include "support/describe.h"
#include "support/importText.h"
#include "support/messageRecorder.h"
#include "support/randomSource.h"
#include "support/slowTriangulation.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <bit>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <limits>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#if defined(__linux__)
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>
#endif

namespace obj_adapter::test {

namespace {

const double NOT_A_NUMBER = std::numeric_limits<double>::quiet_NaN();
const double POSITIVE_INFINITY = std::numeric_limits<double>::infinity();
const double PI = 3.141592653589793;

const char* const REJECTED =
    "1|Polygonal face has elements that cannot be processed. It will be skipped.\n";

// A polygon with the vertex table that it names.
struct Polygon {
    ObjModel model;
    std::vector<FaceElement> corners;

    void addCorner(double x, double y, double z) {
        Vertex vertex(x, y, z);
        FaceElement corner;
        corner.vertexIndex = model.addVertex(vertex);
        corners.push_back(corner);
    }
};

// "0 0 0, 1 0 0, 1 1 nan": each corner has a vertex of its own.
void readCorners(const char* text, Polygon& polygon) {
    while (*text != '\0') {
        std::array<double, 3> coordinates{};
        for (double& coordinate : coordinates) {
            char* end = nullptr;
            coordinate = std::strtod(text, &end);
            ASSERT_NE(end, text) << "bad row: " << text;
            text = end;
        }
        polygon.addCorner(coordinates[0], coordinates[1], coordinates[2]);
        while (*text == ',' || *text == ' ')
            ++text;
    }
}

// What came out of one polygon.
struct Outcome {
    std::vector<Face> triangles;
    std::string messages;
    bool isThrown = false;  // std::runtime_error for corners on a line
    bool isWithoutEar = false;
    std::string failure;
};

std::string describeTriangles(std::vector<Face>& triangles) {
    ModelView view;
    view.faces = triangles;
    return describeFaces(view);
}

bool isSameCorner(const FaceElement& a, const FaceElement& b) {
    return a.vertexIndex == b.vertexIndex && a.textureIndex == b.textureIndex &&
           a.normalIndex == b.normalIndex;
}

bool hasSameCorners(const std::vector<Face>& a, const std::vector<Face>& b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](const Face& x, const Face& y) {
        return std::equal(std::begin(x.elements), std::end(x.elements), std::begin(y.elements),
                          isSameCorner);
    });
}

class TriangulationTest : public ::testing::Test {
protected:
    Outcome triangulated(const Polygon& polygon) {
        recorder.clear();
        Outcome outcome;
        try {
            triangulator.triangulate(polygon.model, polygon.corners, outcome.triangles, true);
        } catch (const std::runtime_error& failure) {
            outcome.failure = failure.what();
            outcome.isWithoutEar = outcome.failure == "Polygon without an ear";
            outcome.isThrown = !outcome.isWithoutEar;
        }
        outcome.messages = recorder.getText();
        return outcome;
    }

    Outcome triangulatedSlowly(const Polygon& polygon) {
        recorder.clear();
        Outcome outcome;
        std::vector<FaceElement> corners = polygon.corners;
        try {
            slow::triangulate(polygon.model, corners, outcome.triangles);
        } catch (const std::logic_error&) {
            outcome.isWithoutEar = true;
            outcome.triangles.clear();
        } catch (const std::runtime_error& failure) {
            outcome.isThrown = true;
            outcome.failure = failure.what();
        }
        outcome.messages = recorder.getText();
        return outcome;
    }

    // "[0 1 2] [0 2 3]", the messages behind it, then what was thrown.
    std::string resultOf(const Polygon& polygon) {
        Outcome outcome = triangulated(polygon);
        return describeTriangles(outcome.triangles) + outcome.messages + outcome.failure;
    }

    std::string resultOf(const char* corners) {
        Polygon polygon;
        readCorners(corners, polygon);
        return resultOf(polygon);
    }

    MessageRecorder recorder;
    Triangulator triangulator;  // kept, as an import keeps it
};

TEST_F(TriangulationTest, squareBecomesAFan) {
    EXPECT_EQ(resultOf("0 0 0, 1 0 0, 1 1 0, 0 1 0"), "[0 1 2] [0 2 3]");
}

TEST_F(TriangulationTest, dartIsClippedAtItsFirstEar) {
    EXPECT_EQ(resultOf("0 0 0, 4 2 0, 0 4 0, 1 2 0"), "[3 0 1] [3 1 2]");
}

TEST_F(TriangulationTest, dartFromAnotherCornerHasABlockedCornerFirst) {
    EXPECT_EQ(resultOf("4 2 0, 0 4 0, 1 2 0, 0 0 0"), "[0 1 2] [3 0 2]");
}

TEST_F(TriangulationTest, cornerOnAnEdgeIsReflex) {
    EXPECT_EQ(resultOf("0 0 0, 1 0 0, 2 0 0, 2 2 0, 0 2 0"), "[4 0 1] [4 1 2] [4 2 3]");
}

// The flat one has corner 4 inside the triangle of corner 0; lifted by any
// amount it blocks nothing.
TEST_F(TriangulationTest, nothingBlocksAnEarOutsideItsPlane) {
    EXPECT_EQ(resultOf("4 2 0, 0 4 0, 1 2.5 0, 1 1.5 0, 0 0 0"), "[0 1 2] [0 2 3] [4 0 3]");
    EXPECT_EQ(resultOf("4 2 0, 0 4 0, 1 2.5 1e-9, 1 1.5 -1e-9, 0 0 0"), "[4 0 1] [4 1 2] [4 2 3]");
}

TEST_F(TriangulationTest, cornersOnALineThrow) {
    const std::string failure =
        "Cannot calculate convexity/reflexivity of vertices in a straight line";
    EXPECT_EQ(resultOf("0 0 0, 1 0 0, 2 0 0, 3 0 0"), failure);
    EXPECT_EQ(resultOf("0 0 0, 1 1 1, 3 3 3, 2 2 2, 7 7 7"), failure);
    EXPECT_EQ(resultOf("0 0 0, 1 1 0, 1 0 0, 0 1 0"), failure);  // a bow tie as wide as high
    EXPECT_EQ(resultOf("inf 0 0, 0 1 0, 1 1 0, 2 2 0"), failure);
}

TEST_F(TriangulationTest, cornersOnALineAreReportedByTheImport) {
    const ImportResult result =
        importText("v 0 0 0\nv 1 0 0\nv 2 0 0\nv 3 0 0\nf 1 2 3 4\nf 1 2 3\n");
    EXPECT_EQ(describeFaces(result.model), "[0 1 2]");
    EXPECT_EQ(result.readingMessages, "1|Could not split non-triangular face. Skipping face.\n");
}

TEST_F(TriangulationTest, cornersAtOnePositionAreRejected) {
    EXPECT_EQ(resultOf("0 0 0, 1 0 0, 1 1 0, 1 0 0"), REJECTED);
    EXPECT_EQ(resultOf("0 0 0, 1 0 0, 1 1 0, -0 -0 -0"), REJECTED);
    EXPECT_EQ(resultOf("0 0 0, 1 0 0, 1 1 0, nan nan nan"), REJECTED);
    EXPECT_EQ(resultOf("inf 0 0, 1 0 0, 1 1 0, inf 0 0"), REJECTED);

    Polygon oneVertexTwice;
    readCorners("0 0 0, 1 0 0, 1 1 0, 0 1 0", oneVertexTwice);
    oneVertexTwice.corners[3].vertexIndex = 1;
    EXPECT_EQ(resultOf(oneVertexTwice), REJECTED);

    Polygon weightsDiffer;
    readCorners("0 0 0, 1 0 0, 1 1 0, 1 0 0", weightsDiffer);
    weightsDiffer.model.vertices[3].w = 2;
    EXPECT_EQ(resultOf(weightsDiffer), REJECTED);
}

TEST_F(TriangulationTest, cornerWithoutAVertexReadSoFarIsRejected) {
    for (const int index :
         {4, -1, std::numeric_limits<int>::max(), std::numeric_limits<int>::min()}) {
        for (std::size_t corner = 0; corner < 4; ++corner) {
            SCOPED_TRACE(std::to_string(index) + " at " + std::to_string(corner));
            Polygon polygon;
            readCorners("0 0 0, 1 0 0, 1 1 0, 0 1 0", polygon);
            polygon.corners[corner].vertexIndex = index;
            EXPECT_EQ(resultOf(polygon), REJECTED);
        }
    }
}

TEST_F(TriangulationTest, quadMayNotNameALaterVertexThoughATriangleMay) {
    const ImportResult result =
        importText("v 0 0 0\nv 1 0 0\nv 1 1 0\nf 1 2 3 4\nf 1 2 4\nv 0 1 0\nf 1 2 3 4\n");
    EXPECT_EQ(describeFaces(result.model), "[0 1 3] [0 1 2] [0 2 3]");
    EXPECT_EQ(result.readingMessages, REJECTED);
}

TEST_F(TriangulationTest, textureAndNormalIndicesTravelWithTheirCorner) {
    Polygon dart;
    readCorners("0 0 0, 4 2 0, 0 4 0, 1 2 0", dart);
    dart.corners[0].textureIndex = 7;
    dart.corners[0].normalIndex = 8;
    dart.corners[1].normalIndex = 5;
    dart.corners[2].textureIndex = 3;
    dart.corners[3].textureIndex = 900;  // nothing checks these here
    dart.corners[3].normalIndex = -4;
    EXPECT_EQ(resultOf(dart), "[3/900/-4 0/7/8 1/-/5] [3/900/-4 1/-/5 2/3]");

    Polygon square;
    readCorners("0 0 0, 1 0 0, 1 1 0, 0 1 0", square);
    square.corners[0] = dart.corners[0];
    square.corners[2] = dart.corners[2];
    square.corners[3] = dart.corners[3];
    EXPECT_EQ(resultOf(square), "[0/7/8 1 2/3] [0/7/8 2/3 3/900/-4]");
}

TEST_F(TriangulationTest, trianglesAreFreshFaces) {
    for (const char* corners : {"0 0 0, 1 0 0, 1 1 0, 0 1 0", "0 0 0, 4 2 0, 0 4 0, 1 2 0"}) {
        SCOPED_TRACE(corners);
        Polygon polygon;
        readCorners(corners, polygon);
        const Outcome outcome = triangulated(polygon);
        ASSERT_EQ(outcome.triangles.size(), 2U);
        for (const Face& face : outcome.triangles) {
            EXPECT_FALSE(face.sortedKeyValid);
            EXPECT_EQ(face.materialIndex, NO_INDEX);
            EXPECT_EQ(face.groupIndex, NO_INDEX);
        }
    }
}

// Four corners turn and five lie on edges, so those five are the candidates. In
// the next pass it is four against four, and the four that turn are.
TEST_F(TriangulationTest, largerClassGivesTheEars) {
    EXPECT_EQ(resultOf("0 0 0, 1 0 0, 2 0 0, 3 0 0, 3 1 0, 3 2 0, 2 2 0, 1 2 0, 0 2 0"),
              "[0 1 2] [8 0 2] [8 2 3] [8 3 4] [4 5 6] [4 6 7] [8 4 7]");
}

// Every corner is reflex by itself here: the squared length of the sum
// overflows or underflows, and all change places.
TEST_F(TriangulationTest, sumWithoutAUsableLengthGivesAFan) {
    EXPECT_EQ(resultOf("0 0 0, 4e100 2e100 0, 0 4e100 0, 1e100 2e100 0"), "[0 1 2] [0 2 3]");
    EXPECT_EQ(resultOf("0 0 0, 4e-100 2e-100 0, 0 4e-100 0, 1e-100 2e-100 0"), "[0 1 2] [0 2 3]");
    EXPECT_EQ(resultOf("0 0 0, inf 2 0, 0 4 0, 1 2 0"), "[0 1 2] [0 2 3]");
}

TEST_F(TriangulationTest, restOnALineIsDroppedSilently) {
    EXPECT_EQ(resultOf("1 1 0, 0 0 0, 5 0 0, 2 0 0"), "[3 0 1]");
}

// The last three corners, nearly on a line, turn differently by rounding:
// corner 0 of the three is reflex, so corner 1 is cut off.
TEST_F(TriangulationTest, lastTriangleCanStartAtItsFirstCorner) {
    EXPECT_EQ(resultOf("1 0 0, 0 0 0, 0.70000000000000007 2.1000000000000001 0, 0.5 1.5 0"),
              "[3 0 1] [1 2 3]");
}

TEST_F(TriangulationTest, polygonWithoutAnEarIsThrownWhenToBeSkipped) {
    EXPECT_EQ(resultOf("0 1 0, 3 0 0, 1 0 0, 2 0 0, 0 0 0"), "Polygon without an ear");
    EXPECT_EQ(resultOf("1 1 0, 4 4 0, 4 3 0, 0 0 0, 2 2 0, 2 3 0"), "Polygon without an ear");
}

// The first pass cuts one off, the second finds none: nothing comes out.
TEST_F(TriangulationTest, polygonWithoutAnEarInALaterPassGivesNoTriangles) {
    EXPECT_EQ(resultOf("0 4 0, 4 4 0, 3 0 0, 1 4 0, 2 0 0, 1 2 0, 3 3 0"),
              "Polygon without an ear");
}

TEST_F(TriangulationTest, polygonWithoutAnEarIsReportedByTheImport) {
    ImportOptions options;
    options.skipPolygonsWithoutEar = true;
    const ImportResult result =
        importText("v 0 1 0\nv 3 0 0\nv 1 0 0\nv 2 0 0\nv 0 0 0\nf 1 2 3 4 5\nf 1 2 3\n", options);
    EXPECT_EQ(describeFaces(result.model), "[0 1 2]");
    EXPECT_EQ(result.readingMessages, "1|Could not split non-triangular face. Skipping face.\n");
}

// What never ends needs a process that can be killed.
#if defined(__linux__)

// Runs the polygon in a process of its own; true if that ends within the time.
// A process that does not is killed.
bool endsWithin(std::chrono::milliseconds limit, const Polygon& polygon) {
    const pid_t child = fork();
    if (child == 0) {
        std::vector<Face> triangles;
        Triangulator().triangulate(polygon.model, polygon.corners, triangles, false);
        _exit(0);
    }
    EXPECT_GT(child, 0);
    const auto end = std::chrono::steady_clock::now() + limit;
    while (std::chrono::steady_clock::now() < end) {
        if (waitpid(child, nullptr, WNOHANG) == child)
            return true;
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    kill(child, SIGKILL);
    waitpid(child, nullptr, 0);
    return false;
}

TEST_F(TriangulationTest, polygonWithoutAnEarNeverEndsByDefault) {
    Polygon dart;
    readCorners("0 0 0, 4 2 0, 0 4 0, 1 2 0", dart);
    EXPECT_TRUE(endsWithin(std::chrono::seconds(60), dart));

    Polygon withoutEar;
    readCorners("0 1 0, 3 0 0, 1 0 0, 2 0 0, 0 0 0", withoutEar);
    EXPECT_FALSE(endsWithin(std::chrono::milliseconds(500), withoutEar));
}

#endif

TEST_F(TriangulationTest, convexPolygonIsAFanWhateverItsSize) {
    const int size = 100000;
    Polygon polygon;
    for (int corner = 0; corner < size; ++corner)
        polygon.addCorner(corner, static_cast<double>(corner) * corner, 5.0);

    const Outcome outcome = triangulated(polygon);
    ASSERT_EQ(outcome.triangles.size(), static_cast<std::size_t>(size - 2));
    EXPECT_EQ(outcome.messages, "");
    int corner = 1;
    for (const Face& face : outcome.triangles) {
        ASSERT_EQ(face.elements[0].vertexIndex, 0);
        ASSERT_EQ(face.elements[1].vertexIndex, corner);
        ASSERT_EQ(face.elements[2].vertexIndex, corner + 1);
        ++corner;
    }
}

// --- The pieces ---------------------------------------------------------------

TEST(CornerPositionsTest, areThoseOfTheVertices) {
    Polygon polygon;
    readCorners("1 2 3, 4 5 6", polygon);
    polygon.corners.push_back(polygon.corners[0]);
    std::vector<Vector3> positions(3);
    ASSERT_TRUE(gatherCornerPositions(polygon.model, polygon.corners, positions));
    for (const std::size_t corner : {0U, 2U}) {
        EXPECT_EQ(positions[corner].x, 1);
        EXPECT_EQ(positions[corner].y, 2);
        EXPECT_EQ(positions[corner].z, 3);
    }
    EXPECT_EQ(positions[1].x, 4);
    EXPECT_EQ(positions[1].z, 6);
}

// Sizes on both sides of the limit between the two ways of comparing.
TEST(EqualPositionsTest, areThoseThatVerticesCallEqual) {
    const int polygons = 20000;
    const std::array<double, 4> special = {NOT_A_NUMBER, POSITIVE_INFINITY, -POSITIVE_INFINITY,
                                           -0.0};
    RandomSource random(20240811);
    EqualPositionSearch search;
    int withPair = 0;
    for (int round = 0; round < polygons; ++round) {
        const int size = random.between(2, random.oneIn(2) ? 8 : 80);
        const int range = random.between(1, size);
        const int specialChances = random.oneIn(2) ? 0 : random.between(2, 400);
        std::vector<Vector3> positions;
        std::vector<Vertex> vertices;
        for (int corner = 0; corner < size; ++corner) {
            Vertex vertex(random.below(range), random.below(range), random.below(3));
            for (double* coordinate : {&vertex.x, &vertex.y, &vertex.z}) {
                if (specialChances != 0 && random.oneIn(specialChances))
                    *coordinate = special[static_cast<std::size_t>(random.below(4))];
            }
            vertices.push_back(vertex);
            positions.push_back({vertex.x, vertex.y, vertex.z});
        }
        bool isExpected = false;
        for (std::size_t first = 0; first < vertices.size(); ++first) {
            for (std::size_t second = first + 1; second < vertices.size(); ++second)
                isExpected = isExpected || vertices[first] == vertices[second];
        }
        withPair += isExpected ? 1 : 0;
        ASSERT_EQ(search.hasEqualPositions(positions), isExpected) << "round " << round;
    }
    EXPECT_GT(withPair, polygons / 5);
    EXPECT_LT(withPair, polygons * 4 / 5);
}

// Every pair of places, with few corners or many that share their x with others.
TEST(EqualPositionsTest, areFoundWhereverTheyStand) {
    RandomSource random(66);
    EqualPositionSearch search;
    for (std::size_t size = 2; size <= 66; ++size) {
        const bool areManySharing = random.oneIn(4);
        std::vector<Vector3> apart;
        for (std::size_t corner = 0; corner < size; ++corner)
            apart.push_back({areManySharing ? random.below(4) : random.fraction(),
                             random.fraction(), random.fraction()});
        ASSERT_FALSE(search.hasEqualPositions(apart)) << size;
        for (std::size_t second = 1; second < size; ++second) {
            for (std::size_t first = 0; first < second; ++first) {
                std::vector<Vector3> positions = apart;
                positions[second].x = positions[first].x;
                ASSERT_FALSE(search.hasEqualPositions(positions)) << first << " " << second;
                positions[second] = positions[first];
                ASSERT_TRUE(search.hasEqualPositions(positions)) << first << " " << second;
            }
        }
    }
}

TEST(EqualPositionsTest, areFoundAmongManyInfiniteAndUndefinedOnes) {
    const int size = 30000;
    EqualPositionSearch search;
    std::vector<Vector3> positions;
    for (int corner = 0; corner < size; ++corner) {
        positions.push_back(
            {corner % 2 == 0 ? NOT_A_NUMBER : -1.0, 1.0 * corner, POSITIVE_INFINITY});
        positions.push_back({-2.0 - corner, -1.0 * corner - 1.0, POSITIVE_INFINITY});
    }
    EXPECT_FALSE(search.hasEqualPositions(positions));
    positions.push_back({3.0, -1.0, NOT_A_NUMBER});
    EXPECT_FALSE(search.hasEqualPositions(positions));
    positions.back().y = 20000.0;  // a corner there has x not a number
    EXPECT_TRUE(search.hasEqualPositions(positions));
}

// x coordinates whose hashes, computed backwards, all begin with the same bits, so that
// every position (x, 0, 0) wants the same slot.
std::vector<Vector3> positionsMadeToCollide(std::size_t count) {
    constexpr std::uint64_t FACTOR = 0x9E3779B97F4A7C15U;  // that of the search
    std::uint64_t inverse = FACTOR;
    for (int step = 0; step < 6; ++step)
        inverse *= 2 - FACTOR * inverse;
    std::vector<Vector3> positions;
    for (std::uint64_t hash = 1; positions.size() < count; ++hash) {
        const std::uint64_t folded = hash * inverse;
        const double x = std::bit_cast<double>((folded ^ folded >> 32U) * inverse);
        if (x == x)
            positions.push_back({x, 0.0, 0.0});
    }
    return positions;
}

// Told apart all the same, and not in pairs, which would take minutes.
TEST(EqualPositionsTest, areFoundAmongThoseMadeToCollide) {
    EqualPositionSearch search;
    std::vector<Vector3> positions = positionsMadeToCollide(400000);
    EXPECT_FALSE(search.hasEqualPositions(positions));
    positions.push_back(positions[positions.size() / 2]);
    EXPECT_TRUE(search.hasEqualPositions(positions));
}

TEST(CornerNormalsTest, areCrossProductsOfTheEdges) {
    const std::vector<Vector3> dart = {{0, 0, 0}, {4, 2, 0}, {0, 4, 0}, {1, 2, 0}};
    std::vector<Vector3> normals(4);
    computeCornerNormals(dart, normals);
    const std::array<double, 4> expected = {6, 16, 6, -4};
    for (std::size_t corner = 0; corner < 4; ++corner) {
        EXPECT_EQ(normals[corner].x, 0);
        EXPECT_EQ(normals[corner].y, 0);
        EXPECT_EQ(normals[corner].z, expected[corner]);
    }
}

TEST(VectorsTest, crossProductFollowsTheRightHand) {
    const Vector3 product = crossProduct({1, 2, 3}, {5, 7, 11});
    EXPECT_EQ(product.x, 1);
    EXPECT_EQ(product.y, 4);
    EXPECT_EQ(product.z, -3);
}

// Any other order of the additions gives another sum here.
TEST(VectorsTest, dotProductAddsYAndXFirst) {
    EXPECT_EQ(dotProduct({1e16, -1e16, 1}, {1, 1, 1}), 1);
    EXPECT_EQ(dotProduct({1e16, 1, -1e16}, {1, 1, 1}), 0);
    EXPECT_EQ(dotProduct({1, 1e16, -1e16}, {1, 1, 1}), 0);
}

struct ClassCase {
    const char* title;
    const char* corners;
    const char* convex;  // one letter for each corner: c or r
};

const ClassCase CLASS_CASES[] = {
    {"square", "0 0 0, 1 0 0, 1 1 0, 0 1 0", "cccc"},
    {"square, clockwise", "0 1 0, 1 1 0, 1 0 0, 0 0 0", "cccc"},
    {"dart", "0 0 0, 4 2 0, 0 4 0, 1 2 0", "cccr"},
    {"corner on an edge", "0 0 0, 1 0 0, 2 0 0, 2 2 0, 0 2 0", "crccc"},
    {"tie is not exchanged", "1 1 0, 0 0 0, 5 0 0, 2 0 0", "ccrr"},
    {"more reflex than convex", "0 0 0, 1 0 0, 2 0 0, 3 0 0, 3 1 0, 3 2 0, 2 2 0, 1 2 0, 0 2 0",
     "rccrcrccr"},
    {"square of a length of zero", "0 0 0, 4e-100 2e-100 0, 0 4e-100 0, 1e-100 2e-100 0", "cccc"},
    {"on a line", "0 0 0, 1 0 0, 2 0 0, 3 0 0", "none"},
    {"sum zero or not a number", "inf 0 0, 0 1 0, 1 1 0, 2 2 0", "none"},
};

TEST(CornerClassesTest, followThePolygonsOwnWinding) {
    for (const ClassCase& row : CLASS_CASES) {
        SCOPED_TRACE(row.title);
        Polygon polygon;
        readCorners(row.corners, polygon);
        std::vector<Vector3> positions(polygon.corners.size());
        std::vector<Vector3> normals(polygon.corners.size());
        ASSERT_TRUE(gatherCornerPositions(polygon.model, polygon.corners, positions));
        computeCornerNormals(positions, normals);
        const std::optional<CornerClasses> classes = classifyCorners(normals);
        if (!classes) {
            EXPECT_STREQ("none", row.convex);
            continue;
        }
        std::string text;
        for (const Vector3& normal : normals)
            text += classes->isConvex(normal) ? 'c' : 'r';
        EXPECT_EQ(text, row.convex);
        EXPECT_EQ(static_cast<std::ptrdiff_t>(classes->reflexCorners),
                  std::count(text.begin(), text.end(), 'r'));
    }
}

// Multiplied by the reciprocal, not divided, and the squares added in order.
TEST(CornerClassesTest, directionIsTheSumOverItsLengthToTheLastBit) {
    const int sums = 2000;
    RandomSource random(3);
    for (int round = 0; round < sums; ++round) {
        const Vector3 sum = {random.fraction(), random.fraction() - 0.5, random.fraction()};
        const std::optional<CornerClasses> classes = classifyCorners(std::array{sum});
        ASSERT_TRUE(classes.has_value());
        const double squares = (sum.x * sum.x + sum.y * sum.y) + sum.z * sum.z;
        const double scale = 1.0 / std::sqrt(squares);
        ASSERT_EQ(classes->polygonNormal.x, sum.x * scale);
        ASSERT_EQ(classes->polygonNormal.y, sum.y * scale);
        ASSERT_EQ(classes->polygonNormal.z, sum.z * scale);
    }
}

struct CertaintyCase {
    const char* title;
    const char* corners;
    bool isCertain;
};

const CertaintyCase CERTAINTY_CASES[] = {
    {"square", "0 0 0, 1 0 0, 1 1 0, 0 1 0", true},
    {"square, clockwise", "0 1 0, 1 1 0, 1 0 0, 0 0 0", true},
    {"saddle", "0 0 0, 1 0 0.2, 1 1 0, 0 1 0.2", true},
    {"pentagon", "0 0 0, 2 0 0, 3 2 1, 1 3 0, -1 2 0", true},
    {"square far away", "1e6 1e6 0, 1000001 1e6 0, 1000001 1000001 0, 1e6 1000001 0", true},
    {"sliver", "0 0 0, 1e6 0 0, 1e6 1e-3 0, 0 1e-3 0", true},
    {"dart", "0 0 0, 4 2 0, 0 4 0, 1 2 0", false},
    {"corner on an edge", "0 0 0, 1 0 0, 2 0 0, 2 2 0, 0 2 0", false},
    {"corner hardly off an edge", "0 0 0, 1 -1e-14 0, 2 0 0, 2 2 0, 0 2 0", true},
    {"neighbours at one position", "0 0 0, 1 0 0, 1 0 0, 1 1 0, 0 1 0", false},
    {"two at one position with another between", "0 0 0, 1 0 0, 0 0 0, 0 1 0, -1 1 0", false},
    {"a coordinate not a number", "0 0 0, 1 0 0, nan 1 0, 0 1 0", false},
    {"a coordinate not finite", "0 0 0, 1 0 0, inf 1 0, 0 1 0", false},
    {"square of a length too great", "0 0 0, 1e80 0 0, 1e80 1e80 0, 0 1e80 0", false},
    {"square of a length too small", "0 0 0, 1e-80 0 0, 1e-80 1e-80 0, 0 1e-80 0", false},
    {"product too small", "0 0 0, 1e-250 0 0, 1 1 0, 0 1 0", false},
    {"on a line", "0 0 0, 1 0 0, 2 0 0, 3 0 0", false},
};

TEST(CornerClassesTest, certainlyConvexPolygonsAreTold) {
    for (const CertaintyCase& row : CERTAINTY_CASES) {
        SCOPED_TRACE(row.title);
        Polygon polygon;
        readCorners(row.corners, polygon);
        std::vector<Vector3> positions(polygon.corners.size());
        std::vector<Vector3> normals(polygon.corners.size());
        ASSERT_TRUE(gatherCornerPositions(polygon.model, polygon.corners, positions));
        computeCornerNormals(positions, normals);
        EXPECT_EQ(areCertainlyConvex(normals), row.isCertain);
    }
}

TEST(CornerClassesTest, certaintyEndsWhereANormalStandsAcrossTheSum) {
    for (const double height : {1e-11, 1e-13, 0.0, -1e-11}) {
        SCOPED_TRACE(height);
        const std::array<Vector3, 3> normals = {{{0, 0, 1}, {1, 0, height}, {-1, 0, height}}};
        EXPECT_EQ(areCertainlyConvex(normals), height == 1e-11);
    }
}

// The second normal loses its only bit to a component of the direction below one
// half, and its corner is not convex.
TEST(CornerClassesTest, certaintyEndsWhereAProductVanishes) {
    const double least = std::numeric_limits<double>::denorm_min();
    const std::array<Vector3, 2> normals = {{{3e129, 9e129, 3e129}, {0, 0, least}}};
    ASSERT_EQ(classifyCorners(normals)->reflexCorners, 1U);
    EXPECT_FALSE(areCertainlyConvex(normals));
}

struct PointCase {
    const char* title;
    const char* points;  // the point, then the triangle
    bool isInside;
};

const PointCase POINT_CASES[] = {
    {"inside", "1 1 0, 0 0 0, 4 0 0, 0 4 0", true},
    {"inside, other winding", "1 1 0, 0 4 0, 4 0 0, 0 0 0", true},
    {"on an edge", "2 0 0, 0 0 0, 4 0 0, 0 4 0", true},
    {"on the edge opposite to the first corner", "2 2 0, 0 0 0, 4 0 0, 0 4 0", true},
    {"at the first corner", "0 0 0, 0 0 0, 4 0 0, 0 4 0", true},
    {"at the second corner", "4 0 0, 0 0 0, 4 0 0, 0 4 0", true},
    {"at the third corner", "0 4 0, 0 0 0, 4 0 0, 0 4 0", true},
    {"beyond the first edge", "1 -1 0, 0 0 0, 4 0 0, 0 4 0", false},
    {"beyond the last edge", "-1 1 0, 0 0 0, 4 0 0, 0 4 0", false},
    {"beyond the edge opposite to the first corner", "3 3 0, 0 0 0, 4 0 0, 0 4 0", false},
    {"above", "1 1 1e-300, 0 0 0, 4 0 0, 0 4 0", false},
    {"in a tilted plane", "1 1 2, 0 0 0, 4 0 4, 0 4 4", true},
    {"triangle without area", "1 0 0, 0 0 0, 4 0 0, 2 0 0", false},
    {"point not a number", "nan 1 0, 0 0 0, 4 0 0, 0 4 0", false},
    {"corner at infinity", "1 1 0, 0 0 0, inf 0 0, 0 4 0", false},
};

TEST(PointInTriangleTest, countsEdgesAndNeedsTheExactPlane) {
    for (const PointCase& row : POINT_CASES) {
        SCOPED_TRACE(row.title);
        Polygon points;
        readCorners(row.points, points);
        std::array<Vector3, 4> positions;
        ASSERT_EQ(points.corners.size(), positions.size());
        ASSERT_TRUE(gatherCornerPositions(points.model, points.corners, positions));
        EXPECT_EQ(isPointInTriangle(positions[0], positions[1], positions[2], positions[3]),
                  row.isInside);
        const VertexTable& vertices = points.model.vertices;
        EXPECT_EQ(slow::isPointInTriangle(vertices[0], vertices[1], vertices[2], vertices[3]),
                  row.isInside);
    }
}

// Of points on a grid the first one inside, whatever stretch of them is looked at.
TEST(PointInTriangleTest, theFirstPointInsideIsFound) {
    RandomSource random(12);
    const int rounds = 3000;
    int found = 0;
    for (int round = 0; round < rounds; ++round) {
        const auto coordinate = [&] { return static_cast<double>(random.below(7)); };
        std::array<Vector3, 3> corners;
        for (Vector3& corner : corners)
            corner = {coordinate(), coordinate(), random.oneIn(8) ? coordinate() : 0.0};
        std::vector<double> x(static_cast<std::size_t>(random.between(1, 9)));
        std::vector<double> y(x.size());
        std::vector<double> z(x.size());
        for (std::size_t place = 0; place < x.size(); ++place) {
            x[place] = random.oneIn(20) ? NOT_A_NUMBER : coordinate();
            y[place] = coordinate();
            z[place] = random.oneIn(8) ? coordinate() : 0.0;
        }
        const PointLists points{x.data(), y.data(), z.data()};
        const TriangleContainment triangle(corners[0], corners[1], corners[2]);
        for (std::size_t begin = 0; begin < x.size(); ++begin) {
            for (std::size_t end = begin; end <= x.size(); ++end) {
                std::size_t expected = begin;
                while (expected < end &&
                       !isPointInTriangle(points.at(expected), corners[0], corners[1], corners[2]))
                    ++expected;
                ASSERT_EQ(triangle.findContained(points, begin, end), expected);
                found += expected < end ? 1 : 0;
            }
        }
    }
    EXPECT_GT(found, rounds);
}

TEST(CoplanarTest, hasNoTolerance) {
    EXPECT_TRUE(isCoplanar({1, 1, 0}, {0, 0, 0}, {4, 0, 0}, {0, 4, 0}));
    EXPECT_FALSE(isCoplanar({1, 1, 1e-300}, {0, 0, 0}, {4, 0, 0}, {0, 4, 0}));
    EXPECT_TRUE(isCoplanar({1, 1, NOT_A_NUMBER}, {0, 0, 0}, {4, 0, 0}, {0, 4, 0}));
    EXPECT_FALSE(isCoplanar({0.1, 0.2, 0.3}, {0.4, 0.5, 0.7}, {0.9, 0.1, 0.3}, {0.5, 0.5, 0.5}));
}

// --- Against the slow twin ----------------------------------------------------

// Polygons of every kind, the awkward ones more often than files have them.
class PolygonSource {
public:
    explicit PolygonSource(std::uint64_t seed) : random(seed) {}

    void make(Polygon& polygon) {
        points.clear();
        switch (random.below(9)) {
            case 0:
                makeGridPoints(2);
                break;
            case 1:
                makeGridPoints(3);
                break;
            case 2:
                makeRandomPoints();
                break;
            case 3:
                makeStar(false);
                break;
            case 4:
                makeStar(true);
                break;
            case 5:
                makeComb();
                break;
            case 6:
                makeSpiral();
                break;
            case 7:
                makeRectangle();
                break;
            default:
                makeNearLine();
                break;
        }
        place();
        disturb();
        fill(polygon);
    }

private:
    using Point = std::array<double, 3>;

    // Mostly few corners: the slow twin is cubic.
    int size() { return random.between(4, random.oneIn(40) ? 40 : random.oneIn(4) ? 16 : 8); }

    // Distinct for the most part, so crossing edges and exact lines are common.
    void makeGridPoints(int dimensions) {
        const int count = size();
        const int range = count + random.below(4);
        for (int corner = 0; corner < count; ++corner) {
            Point point{};
            for (int axis = 0; axis < dimensions; ++axis)
                point[static_cast<std::size_t>(axis)] = random.below(range);
            if (dimensions == 2 || !isTaken(point))
                points.push_back(point);
        }
    }

    bool isTaken(const Point& point) const {
        return std::find(points.begin(), points.end(), point) != points.end();
    }

    void makeRandomPoints() {
        const int count = size();
        for (int corner = 0; corner < count; ++corner)
            points.push_back({random.fraction(), random.fraction(), random.fraction()});
    }

    // Corners in order of their angle; on the grid if asked for.
    void makeStar(bool onGrid) {
        const int count = size();
        const double most = random.between(3, 30);
        for (int corner = 0; corner < count; ++corner) {
            const double angle = 2 * PI * corner / count;
            const double radius = random.oneIn(3) ? most : 1 + most * random.fraction();
            Point point = {radius * std::cos(angle), radius * std::sin(angle), 0};
            if (onGrid)
                point = {std::floor(point[0]), std::floor(point[1]), 0};
            points.push_back(point);
        }
    }

    // Teeth upwards from a bar.
    void makeComb() {
        const int teeth = random.between(1, random.oneIn(12) ? 18 : 4);
        for (int tooth = 0; tooth < teeth; ++tooth) {
            points.push_back({2.0 * tooth, 3.0 + random.below(3), 0});
            points.push_back({2.0 * tooth + 1, 1.0 + random.below(2), 0});
        }
        points.push_back({2.0 * teeth, 5, 0});
        points.push_back({2.0 * teeth, 0, 0});
        points.push_back({0, 0, 0});
    }

    // A band wound around its inner end, at right angles.
    void makeSpiral() {
        const int turns = random.between(2, random.oneIn(8) ? 20 : 6);
        std::vector<Point> inner;
        for (int turn = 0; turn < turns; ++turn) {
            const double reach = 2.0 * (turn + 2);
            const double signX = turn % 4 == 0 || turn % 4 == 3 ? 1 : -1;
            const double signY = turn % 4 < 2 ? 1 : -1;
            points.push_back({signX * reach, signY * reach, 0});
            inner.push_back({signX * (reach - 1), signY * (reach - 1), 0});
        }
        points.insert(points.end(), inner.rbegin(), inner.rend());
    }

    // With corners on its edges.
    void makeRectangle() {
        const int width = random.between(1, 5);
        const int height = random.between(1, 3);
        for (int x = 0; x < width; ++x)
            addOnEdge(x, 0, x == 0);
        for (int y = 0; y < height; ++y)
            addOnEdge(width, y, y == 0);
        for (int x = width; x > 0; --x)
            addOnEdge(x, height, x == width);
        for (int y = height; y > 0; --y)
            addOnEdge(0, y, y == height);
    }

    void addOnEdge(int x, int y, bool isNeeded) {
        if (isNeeded || random.oneIn(2))
            points.push_back({1.0 * x, 1.0 * y, 0});
    }

    // On one straight line but for rounding, and perhaps for one corner.
    void makeNearLine() {
        const int count = random.between(4, 9);
        for (int corner = 0; corner < count; ++corner) {
            const double step = random.below(20);
            points.push_back({0.1 * step, 0.3 * step, 0});
        }
        if (!random.oneIn(4))
            points[0] = {1.0 * random.below(5), 1.0 * random.below(5), 0};
    }

    // Starts anywhere, in either direction, in one of several planes and sizes.
    void place() {
        if (random.oneIn(2))
            std::reverse(points.begin(), points.end());
        std::rotate(points.begin(), points.begin() + random.below(static_cast<int>(points.size())),
                    points.end());
        const int plane = random.below(6);
        const std::array<double, 7> sizes = {1, 1, 1, 0.1, 1e-80, 1e-160, 1e77};
        const double scale = sizes[static_cast<std::size_t>(random.below(7))];
        for (Point& point : points) {
            if (plane == 0)
                point[2] = point[0] + 2 * point[1];  // exact on the grid
            else if (plane == 1)
                std::swap(point[1], point[2]);
            else if (plane == 2)
                point[2] = 0.7 * point[0] - 0.3 * point[1];
            for (double& coordinate : point)
                coordinate *= scale;
        }
    }

    // Sometimes a coordinate that is no finite number, a position twice or a
    // corner off the plane.
    void disturb() {
        const std::array<double, 6> odd = {
            NOT_A_NUMBER, POSITIVE_INFINITY, -POSITIVE_INFINITY, 1e308, 5e-324, -0.0};
        if (random.oneIn(6)) {
            const int times = random.between(1, 2);
            for (int time = 0; time < times; ++time)
                anyCoordinate() = odd[static_cast<std::size_t>(random.below(6))];
        }
        if (random.oneIn(25))
            points[anyPlace()] = points[anyPlace()];
        if (random.oneIn(10))
            anyCoordinate() += 0.5;
    }

    std::size_t anyPlace() {
        return static_cast<std::size_t>(random.below(static_cast<int>(points.size())));
    }

    double& anyCoordinate() {
        Point& point = points[anyPlace()];
        return point[static_cast<std::size_t>(random.below(3))];
    }

    void fill(Polygon& polygon) {
        while (points.size() < 4)
            points.push_back({random.fraction(), random.fraction(), 0});
        polygon.model.vertices.clear();
        polygon.corners.clear();
        for (const Point& point : points) {
            polygon.addCorner(point[0], point[1], point[2]);
            polygon.corners.back().textureIndex = random.between(-2, 90);
            polygon.corners.back().normalIndex = random.between(-2, 90);
        }
        if (random.oneIn(50))
            polygon.corners[anyPlace()].vertexIndex = random.between(-3, 60);
    }

    RandomSource random;
    std::vector<Point> points;
};

std::string describePolygon(const Polygon& polygon) {
    std::string text;
    for (const FaceElement& corner : polygon.corners) {
        char line[160] = "-";
        if (corner.vertexIndex >= 0 && corner.vertexIndex < polygon.model.getNumberOfVertices()) {
            const Vertex& vertex =
                polygon.model.vertices[static_cast<std::size_t>(corner.vertexIndex)];
            std::snprintf(line, sizeof line, "%.17g %.17g %.17g", vertex.x, vertex.y, vertex.z);
        }
        text += std::string(text.empty() ? "" : ", ") + line;
    }
    return text;
}

bool isFan(const Outcome& outcome) {
    return std::all_of(outcome.triangles.begin(), outcome.triangles.end(),
                       [](const Face& face) { return face.elements[0].vertexIndex == 0; });
}

// How often each way through the method was taken.
struct Tally {
    int rejected = 0;
    int onALine = 0;
    int withoutEar = 0;
    int stopped = 0;
    int fans = 0;
    int clipped = 0;

    void count(const Polygon& polygon, const Outcome& outcome) {
        if (!outcome.messages.empty())
            ++rejected;
        else if (outcome.isThrown)
            ++onALine;
        else if (outcome.isWithoutEar)
            ++withoutEar;
        else if (outcome.triangles.size() + 2 != polygon.corners.size())
            ++stopped;
        else if (isFan(outcome))
            ++fans;
        else
            ++clipped;
    }
};

TEST_F(TriangulationTest, equalsTheSlowTwin) {
    const int polygons = 200000;
    PolygonSource source(62);
    Polygon polygon;
    Tally tally;
    for (int round = 0; round < polygons; ++round) {
        source.make(polygon);
        Outcome expected = triangulatedSlowly(polygon);
        Outcome outcome = triangulated(polygon);
        tally.count(polygon, outcome);
        ASSERT_EQ(outcome.messages, expected.messages) << describePolygon(polygon);
        ASSERT_EQ(outcome.isWithoutEar, expected.isWithoutEar) << describePolygon(polygon);
        ASSERT_EQ(outcome.isThrown, expected.isThrown) << describePolygon(polygon);
        if (!hasSameCorners(outcome.triangles, expected.triangles)) {
            FAIL() << describePolygon(polygon) << "\nexpected "
                   << describeTriangles(expected.triangles) << "\ngot      "
                   << describeTriangles(outcome.triangles);
        }
        if (outcome.isThrown || outcome.isWithoutEar || !outcome.messages.empty()) {
            ASSERT_TRUE(outcome.triangles.empty());
        }
    }
    // The source does reach every way through.
    EXPECT_GT(tally.rejected, 1000);
    EXPECT_GT(tally.onALine, 100);
    EXPECT_GT(tally.withoutEar, 100);
    EXPECT_GT(tally.stopped, 100);
    EXPECT_GT(tally.fans, 1000);
    EXPECT_GT(tally.clipped, 10000);
}

// Quads and pentagons around the limits of certainty: corners a few roundings off
// an edge, of every size, hardly any length between two.
class SmallPolygonSource {
public:
    explicit SmallPolygonSource(std::uint64_t seed) : random(seed) {}

    void make(Polygon& polygon) {
        polygon.model.vertices.clear();
        polygon.corners.clear();
        const int count = random.between(4, 5);
        const double scale = std::ldexp(1.0, random.oneIn(2) ? 0 : random.between(-540, 540));
        const double turn = PI * random.fraction();
        const double height = random.oneIn(2) ? 0.0 : random.fraction();
        std::array<double, 15> coordinates{};
        for (int corner = 0; corner < count; ++corner) {
            const double angle = turn + 2 * PI * corner / count;
            const auto place = static_cast<std::size_t>(3 * corner);
            coordinates[place] = std::cos(angle);
            coordinates[place + 1] = std::sin(angle) * (random.oneIn(3) ? 1e-7 : 1.0);
            coordinates[place + 2] = height * random.fraction();
        }
        disturb(coordinates, static_cast<std::size_t>(count));
        for (std::size_t place = 0; place < static_cast<std::size_t>(3 * count); place += 3) {
            polygon.addCorner(scale * coordinates[place], scale * coordinates[place + 1],
                              scale * coordinates[place + 2]);
        }
    }

private:
    // Brings one corner close to the line between its neighbours, or to one of
    // them, or next to it.
    void disturb(std::array<double, 15>& coordinates, std::size_t count) {
        const auto corner = static_cast<std::size_t>(random.below(static_cast<int>(count)));
        const std::size_t before = (corner + count - 1) % count;
        const std::size_t behind =
            (corner + static_cast<std::size_t>(random.between(1, 2))) % count;
        const double share = random.oneIn(3) ? random.below(2) : random.fraction();
        const double offset = std::ldexp(random.fraction() - 0.5, -random.below(60));
        const bool isOff = random.oneIn(2);
        if (random.oneIn(4))
            return;
        for (std::size_t axis = 0; axis < 3; ++axis) {
            const double line = coordinates[3 * before + axis] * (1 - share) +
                                coordinates[3 * behind + axis] * share;
            coordinates[3 * corner + axis] = line + (isOff ? offset : 0.0);
        }
    }

    RandomSource random;
};

TEST_F(TriangulationTest, quadsAndPentagonsEqualTheSlowTwin) {
    const int polygons = 300000;
    SmallPolygonSource source(5);
    Polygon polygon;
    int certain = 0;
    int uncertainFans = 0;
    for (int round = 0; round < polygons; ++round) {
        source.make(polygon);
        const Outcome expected = triangulatedSlowly(polygon);
        const Outcome outcome = triangulated(polygon);
        ASSERT_EQ(outcome.messages, expected.messages) << describePolygon(polygon);
        ASSERT_EQ(outcome.isWithoutEar, expected.isWithoutEar) << describePolygon(polygon);
        ASSERT_EQ(outcome.isThrown, expected.isThrown) << describePolygon(polygon);
        ASSERT_TRUE(hasSameCorners(outcome.triangles, expected.triangles))
            << describePolygon(polygon);

        std::vector<Vector3> positions(polygon.corners.size());
        std::vector<Vector3> normals(polygon.corners.size());
        ASSERT_TRUE(gatherCornerPositions(polygon.model, polygon.corners, positions));
        computeCornerNormals(positions, normals);
        const bool isCertain = areCertainlyConvex(normals);
        certain += isCertain ? 1 : 0;
        uncertainFans += !isCertain && !outcome.triangles.empty() && isFan(outcome) ? 1 : 0;
        if (isCertain) {
            const std::optional<CornerClasses> classes = classifyCorners(normals);
            ASSERT_TRUE(classes && classes->reflexCorners == 0 && !classes->areExchanged)
                << describePolygon(polygon);
        }
    }
    // The source does stand on both sides of the limits.
    EXPECT_GT(certain, polygons / 10);
    EXPECT_GT(uncertainFans, polygons / 100);
}

// Sizes on both sides of the room that the object has within.
TEST_F(TriangulationTest, polygonsAroundTheRoomWithinEqualTheSlowTwin) {
    RandomSource random(64);
    for (int size = 90; size > 40; --size) {
        SCOPED_TRACE(size);
        Polygon star;
        for (int corner = 0; corner < size; ++corner) {
            const double angle = 2 * PI * corner / size;
            const double radius = 1 + random.fraction();
            star.addCorner(radius * std::cos(angle), radius * std::sin(angle), 0);
        }
        const Outcome expected = triangulatedSlowly(star);
        const Outcome outcome = triangulated(star);
        ASSERT_EQ(outcome.triangles.size() + 2, star.corners.size());
        ASSERT_TRUE(hasSameCorners(outcome.triangles, expected.triangles));
    }
}

TEST_F(TriangulationTest, asksForNoMemoryUpTo64Corners) {
    for (const int size : {4, 5, 6, 33, 64}) {
        for (const double dent : {1.0, 0.3}) {
            SCOPED_TRACE(std::to_string(size) + " " + std::to_string(dent));
            Polygon polygon;
            for (int corner = 0; corner < size; ++corner) {
                const double angle = 2 * PI * corner / size;
                const double radius = corner == 2 ? dent : 1.0;
                polygon.addCorner(radius * std::cos(angle), radius * std::sin(angle), 0);
            }
            std::vector<Face> triangles;
            triangles.reserve(polygon.corners.size());
            const std::size_t before = getNumberOfAllocations();
            Triangulator().triangulate(polygon.model, polygon.corners, triangles, true);
            EXPECT_EQ(getNumberOfAllocations(), before);
            EXPECT_EQ(triangles.size() + 2, polygon.corners.size());
        }
    }
}

TEST_F(TriangulationTest, asksForMemoryOfLargePolygonsOnce) {
    Polygon polygon;
    const int size = 300;
    for (int corner = 0; corner < size; ++corner) {
        const double angle = 2 * PI * corner / size;
        const double radius = corner % 2 == 0 ? 1.0 : 0.9;
        polygon.addCorner(radius * std::cos(angle), radius * std::sin(angle), 0);
    }
    std::vector<Face> triangles;
    triangulator.triangulate(polygon.model, polygon.corners, triangles, true);
    triangles.clear();
    const std::size_t before = getNumberOfAllocations();
    triangulator.triangulate(polygon.model, polygon.corners, triangles, true);
    EXPECT_EQ(getNumberOfAllocations(), before);
}

// The twin's pieces and the library's see the same classes.
TEST_F(TriangulationTest, classesEqualThoseOfTheSlowTwin) {
    const int polygons = 5000;
    PolygonSource source(1987);
    Polygon polygon;
    for (int round = 0; round < polygons; ++round) {
        source.make(polygon);
        if (!slow::isTriangulable(polygon.model, polygon.corners))
            continue;
        std::vector<Vector3> positions(polygon.corners.size());
        std::vector<Vector3> normals(polygon.corners.size());
        ASSERT_TRUE(gatherCornerPositions(polygon.model, polygon.corners, positions));
        computeCornerNormals(positions, normals);
        const std::optional<CornerClasses> classes = classifyCorners(normals);
        std::vector<int> convex;
        std::vector<int> reflex;
        try {
            slow::classifyCorners(polygon.model, polygon.corners, convex, reflex);
        } catch (const std::runtime_error&) {
            ASSERT_FALSE(classes.has_value()) << describePolygon(polygon);
            continue;
        }
        ASSERT_TRUE(classes.has_value()) << describePolygon(polygon);
        std::vector<int> found;
        for (std::size_t corner = 0; corner < normals.size(); ++corner) {
            if (classes->isConvex(normals[corner]))
                found.push_back(static_cast<int>(corner));
        }
        ASSERT_EQ(found, convex) << describePolygon(polygon);
        ASSERT_EQ(classes->reflexCorners, reflex.size()) << describePolygon(polygon);
    }
}

// Long enough for blockers to be cut off and searched for again many times.
TEST_F(TriangulationTest, largePolygonsEqualTheSlowTwin) {
    for (const int teeth : {60, 90}) {
        for (const bool isFlat : {true, false}) {
            SCOPED_TRACE(std::to_string(teeth) + (isFlat ? " flat" : " not flat"));
            RandomSource random(5);
            Polygon comb;
            for (int tooth = 0; tooth < teeth; ++tooth) {
                comb.addCorner(2.0 * tooth, 20.0 + random.below(9), isFlat ? 0 : tooth % 3);
                comb.addCorner(2.0 * tooth + 1, 1.0 + random.below(19), 0);
            }
            comb.addCorner(2.0 * teeth, 0, 0);
            comb.addCorner(0, 0, 0);
            Outcome expected = triangulatedSlowly(comb);
            Outcome outcome = triangulated(comb);
            EXPECT_EQ(outcome.triangles.size() + 2, comb.corners.size());
            EXPECT_EQ(describeTriangles(outcome.triangles), describeTriangles(expected.triangles));
        }
    }
}

// --- Properties ---------------------------------------------------------------

// Twice the signed area in the plane of x and y.
double doubledArea(const Vertex& a, const Vertex& b, const Vertex& c) {
    return (b.x - a.x) * (c.y - a.y) - (b.y - a.y) * (c.x - a.x);
}

// On the grid every product and sum is exact, so the areas are equal and not
// only nearly so.
TEST_F(TriangulationTest, trianglesOfAConvexPolygonAddUpToItsArea) {
    const int polygons = 2000;
    RandomSource random(11);
    for (int round = 0; round < polygons; ++round) {
        // Edges in order of their direction close to a convex polygon; some
        // have parts in line.
        std::vector<std::array<int, 2>> edges;
        const int pairs = random.between(2, 12);
        for (int pair = 0; pair < pairs; ++pair) {
            const int x = random.between(-9, 9);
            const int y = x == 0 ? random.between(1, 9) : random.between(-9, 9);
            edges.push_back({x, y});
            edges.push_back({-x, -y});
        }
        std::stable_sort(edges.begin(), edges.end(), [](const auto& a, const auto& b) {
            return std::atan2(a[1], a[0]) < std::atan2(b[1], b[0]);
        });
        Polygon polygon;
        int x = 0;
        int y = 0;
        for (const auto& edge : edges) {
            polygon.addCorner(x, y, 3);
            x += edge[0];
            y += edge[1];
        }
        const VertexTable& vertices = polygon.model.vertices;
        double area = 0;
        for (std::size_t corner = 1; corner + 1 < vertices.size(); ++corner)
            area += doubledArea(vertices[0], vertices[corner], vertices[corner + 1]);

        const Outcome outcome = triangulated(polygon);
        if (!outcome.failure.empty() || !outcome.messages.empty()) {
            ASSERT_EQ(area, 0) << describePolygon(polygon);  // all on a line
            continue;
        }
        double sum = 0;
        for (const Face& face : outcome.triangles) {
            const auto corner = [&](int place) -> const Vertex& {
                return vertices[static_cast<std::size_t>(face.elements[place].vertexIndex)];
            };
            sum += doubledArea(corner(0), corner(1), corner(2));
        }
        ASSERT_EQ(sum, area) << describePolygon(polygon);
        ASSERT_EQ(outcome.triangles.size() + 2, vertices.size()) << describePolygon(polygon);
    }
}

// Each triangle takes one corner away: the corners that the polygon keeps are
// those of the last, and no triangle names a corner taken before.
TEST_F(TriangulationTest, everyCornerButTwoIsCutOffOnce) {
    const int polygons = 5000;
    PolygonSource source(4);
    Polygon polygon;
    for (int round = 0; round < polygons; ++round) {
        source.make(polygon);
        const Outcome outcome = triangulated(polygon);
        if (isFan(outcome))
            continue;
        std::vector<bool> isGone(polygon.model.vertices.size());
        for (const Face& face : outcome.triangles) {
            for (const FaceElement& corner : face.elements)
                ASSERT_FALSE(isGone[static_cast<std::size_t>(corner.vertexIndex)]);
            isGone[static_cast<std::size_t>(face.elements[1].vertexIndex)] = true;
        }
        ASSERT_LT(outcome.triangles.size(), polygon.corners.size() - 1);
    }
}

}  // namespace

}  // namespace obj_adapter::test
