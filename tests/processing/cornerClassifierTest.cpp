// processing/cornerClasses.h: what CornerClassifier tells of a polygon while its ears are
// cut off, beside what classifyCorners finds in the same normals.
#include "processing/cornerClasses.h"

#include "support/randomSource.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <limits>
#include <optional>
#include <string>
#include <vector>

namespace obj_adapter::test {

namespace {

const double PI = 3.141592653589793;

// A polygon that corners are cut off from, with the normals that it has.
struct Cutting {
    explicit Cutting(std::vector<Vector3> polygon)
        : positions(std::move(polygon)), normals(positions.size()) {
        computeCornerNormals(positions, normals);
    }

    CornerClassifier::Cut cutOff(std::size_t corner) {
        const std::size_t count = positions.size();
        const std::size_t previous = (corner + count - 1) % count;
        const std::size_t next = (corner + 1) % count;
        CornerClassifier::Cut cut{normals[corner], normals[previous], normals[next], {}, {}};
        cut.newPrevious = cornerNormal(positions[(previous + count - 1) % count],
                                       positions[previous], positions[next]);
        cut.newNext =
            cornerNormal(positions[previous], positions[next], positions[(next + 1) % count]);
        normals[previous] = cut.newPrevious;
        normals[next] = cut.newNext;
        positions.erase(positions.begin() + static_cast<std::ptrdiff_t>(corner));
        normals.erase(normals.begin() + static_cast<std::ptrdiff_t>(corner));
        return cut;
    }

    std::vector<Vector3> positions;
    std::vector<Vector3> normals;
};

// How often the classes came the short way: their direction is then not of length 1.
struct Ways {
    int shortOnes = 0;
    int all = 0;
};

// "none" or the classes of all corners in order, and what else a polygon's classes hold.
std::string describeClasses(const std::optional<CornerClasses>& classes,
                            const std::vector<Vector3>& normals) {
    if (!classes)
        return "none";
    std::string text = std::to_string(classes->reflexCorners);
    text += classes->areExchanged ? " exchanged " : " ";
    for (const Vector3& normal : normals)
        text += classes->isConvex(normal) ? 'c' : 'r';
    return text;
}

bool isSame(const Vector3& a, const Vector3& b) {
    return a.x == b.x && a.y == b.y && a.z == b.z;
}

void expectPlainClasses(const std::optional<CornerClasses>& classes,
                        const std::vector<Vector3>& normals, Ways& ways) {
    const std::optional<CornerClasses> plain = classifyCorners(normals);
    ASSERT_EQ(describeClasses(classes, normals), describeClasses(plain, normals));
    ++ways.all;
    if (classes && !isSame(classes->polygonNormal, plain->polygonNormal))
        ++ways.shortOnes;
}

// Cuts off corners at random until three are left.
void expectPlainClassesToTheEnd(std::vector<Vector3> polygon, RandomSource& random, Ways& ways) {
    Cutting cutting(std::move(polygon));
    CornerClassifier classifier;
    ASSERT_NO_FATAL_FAILURE(
        expectPlainClasses(classifier.classify(cutting.normals), cutting.normals, ways));
    while (cutting.positions.size() > 3) {
        classifier.follow(cutting.cutOff(
            static_cast<std::size_t>(random.below(static_cast<int>(cutting.positions.size())))));
        ASSERT_NO_FATAL_FAILURE(
            expectPlainClasses(classifier.classifyLeft(cutting.normals), cutting.normals, ways));
    }
}

// Corners around a centre at random distances.
std::vector<Vector3> star(int corners, double least, RandomSource& random) {
    std::vector<Vector3> polygon;
    for (int corner = 0; corner < corners; ++corner) {
        const double angle = 2 * PI * corner / corners;
        const double radius = least + (1.0 - least) * random.fraction();
        polygon.push_back({radius * std::cos(angle), radius * std::sin(angle), 0.0});
    }
    return polygon;
}

// Of the unit square, each on a grid so coarse that straight edges and returns are common.
std::vector<Vector3> tangle(int corners, int steps, bool isFlat, RandomSource& random) {
    std::vector<Vector3> polygon;
    for (int corner = 0; corner < corners; ++corner) {
        const auto coordinate = [&] { return static_cast<double>(random.below(steps)) / steps; };
        const double x = coordinate();
        const double y = coordinate();
        polygon.push_back({x, y, isFlat ? 0.0 : coordinate()});
    }
    return polygon;
}

void tilt(std::vector<Vector3>& polygon, double slopeX, double slopeY) {
    for (Vector3& position : polygon)
        position.z += slopeX * position.x + slopeY * position.y;
}

void scale(std::vector<Vector3>& polygon, double factor) {
    for (Vector3& position : polygon)
        position = {position.x * factor, position.y * factor, position.z * factor};
}

}  // namespace

TEST(CornerClassifierTest, flatPolygonsAreToldTheShortWay) {
    RandomSource random(1);
    Ways ways;
    for (int round = 0; round < 2000; ++round) {
        std::vector<Vector3> polygon = star(random.between(4, 30), 0.3, random);
        if (random.oneIn(2))
            tilt(polygon, 4 * random.fraction() - 2, 4 * random.fraction() - 2);
        if (random.oneIn(2))
            std::reverse(polygon.begin(), polygon.end());
        ASSERT_NO_FATAL_FAILURE(expectPlainClassesToTheEnd(polygon, random, ways));
    }
    EXPECT_GT(ways.shortOnes, ways.all * 9 / 10);
}

TEST(CornerClassifierTest, anyPolygonHasThePlainClasses) {
    RandomSource random(2);
    Ways ways;
    for (int round = 0; round < 6000; ++round) {
        const int corners = random.between(4, 24);
        std::vector<Vector3> polygon =
            tangle(corners, random.between(2, 12), random.oneIn(2), random);
        if (random.oneIn(3))
            tilt(polygon, 1e3 * random.fraction(), 0.5);
        if (random.oneIn(3))
            scale(polygon, std::pow(10.0, random.between(-160, 160)));
        ASSERT_NO_FATAL_FAILURE(expectPlainClassesToTheEnd(polygon, random, ways));
    }
    EXPECT_GT(ways.shortOnes, ways.all / 10);
    EXPECT_LT(ways.shortOnes, ways.all * 9 / 10);
}

TEST(CornerClassifierTest, coordinatesThatAreNoNumbersHaveThePlainClasses) {
    RandomSource random(3);
    Ways ways;
    for (int round = 0; round < 1000; ++round) {
        std::vector<Vector3> polygon = star(random.between(4, 12), 0.3, random);
        const double odd[] = {std::numeric_limits<double>::quiet_NaN(),
                              std::numeric_limits<double>::infinity(), -1e300, 1e-300, -0.0};
        const auto corner =
            static_cast<std::size_t>(random.below(static_cast<int>(polygon.size())));
        polygon[corner].y = odd[random.below(5)];
        ASSERT_NO_FATAL_FAILURE(expectPlainClassesToTheEnd(polygon, random, ways));
    }
    EXPECT_GT(ways.shortOnes, 0);
}

// Normals that no polygon has, to stand where the direction decides: around 90 degrees
// from the sum, at the limits of what is told the short way.
TEST(CornerClassifierTest, normalsAcrossTheDirectionHaveThePlainClasses) {
    RandomSource random(4);
    Ways ways;
    for (int round = 0; round < 20000; ++round) {
        std::vector<Vector3> normals = {{0, 0, 1}};
        const int corners = random.between(3, 8);
        for (int corner = 0; corner < corners; ++corner) {
            const double angle = 2 * PI * random.fraction();
            const double height = random.oneIn(2) ? 1e-16 * (random.fraction() - 0.5)
                                                  : 0.6 * (random.fraction() - 0.5);
            const double length = random.oneIn(4) ? 1e-4 : 1.0;
            normals.push_back(
                {length * std::cos(angle), length * std::sin(angle), length * height});
        }
        CornerClassifier classifier;
        ASSERT_NO_FATAL_FAILURE(expectPlainClasses(classifier.classify(normals), normals, ways));
        // Each goes for two others, so that the direction changes in many small steps.
        for (int step = 0; step < 4; ++step) {
            const Vector3 gone = normals.back();
            normals.pop_back();
            CornerClassifier::Cut cut{gone, normals[0], normals[1], normals[0], normals[1]};
            cut.newPrevious.x += 0.1 * (random.fraction() - 0.5);
            cut.newNext.z += 0.1 * random.fraction();
            normals[0] = cut.newPrevious;
            normals[1] = cut.newNext;
            classifier.follow(cut);
            ASSERT_NO_FATAL_FAILURE(
                expectPlainClasses(classifier.classifyLeft(normals), normals, ways));
            if (normals.size() == 3)
                break;
        }
    }
    EXPECT_GT(ways.shortOnes, ways.all / 100);
}

struct DirectionCase {
    const char* title;
    double share;  // of the first direction that turns into another, in a cut
    bool isShort;
};

const DirectionCase DIRECTION_CASES[] = {
    {"the same", 0.0, true},
    {"seven degrees away", 0.1228, true},
    {"nine degrees away", 0.1584, false},
    {"a right angle away", 1e3, false},
};

// Three normals along z; one corner is cut off, and the sum turns towards x by what its
// neighbour becomes.
TEST(CornerClassifierTest, theShortWayEndsEightDegreesFromTheFirstDirection) {
    for (const DirectionCase& row : DIRECTION_CASES) {
        SCOPED_TRACE(row.title);
        std::vector<Vector3> normals(3, {0, 0, 2});
        CornerClassifier classifier;
        const std::optional<CornerClasses> first = classifier.classify(normals);
        ASSERT_TRUE(first);
        EXPECT_EQ(first->polygonNormal.z, 6.0);
        const CornerClassifier::Cut cut{
            {0, 0, 2}, {0, 0, 2}, {0, 0, 2}, {4 * row.share / 2, 0, 2}, {4 * row.share / 2, 0, 2}};
        classifier.follow(cut);
        normals = {cut.newPrevious, cut.newNext};
        Ways ways;
        expectPlainClasses(classifier.classifyLeft(normals), normals, ways);
        EXPECT_EQ(classifier.classifyLeft(normals)->polygonNormal.z == 6.0, row.isShort);
    }
}

struct LimitCase {
    const char* title;
    std::vector<Vector3> first;
    CornerClassifier::Cut cut;  // of first[2], between first[1] and first[3]
};

// What a sum carried along would not notice.
const LimitCase LIMIT_CASES[] = {
    {"lengths beside which all else is lost",
     {{0, 0, -0.5}, {0, 0, 1}, {0, 0, 1}, {0, 0, 1}},
     {{0, 0, 1}, {0, 0, 1}, {0, 0, 1}, {0, 0, 3e17}, {0, 0, -3e17}}},
    {"a square beyond the range of numbers",
     {{0, 0, 1}, {0, 0, 1}, {0, 0, 1}, {0, 0, 1}},
     {{0, 0, 1}, {0, 0, 1}, {0, 0, 1}, {0, 0, 1e160}, {0, 0, 1e160}}},
    {"a direction hardly above zero",
     {{0, 0, 5e-324}, {0, 0, 5e-324}, {0, 0, 5e-324}, {0, 0, 5e-324}},
     {{0, 0, 5e-324}, {0, 0, 5e-324}, {0, 0, 5e-324}, {4, 0, 1}, {-1.5, 0, 1}}},
    {"a product that vanishes",
     {{1e50, 1e50, 0.7e50}, {0, 0, 1e50}, {0, 0, 1e50}, {0, 0, 1e50}},
     {{0, 0, 1e50}, {0, 0, 1e50}, {0, 0, 1e50}, {1e50, 1e50, 0.7e50}, {0, 0, 5e-324}}},
};

TEST(CornerClassifierTest, limitsOfNumbersHaveThePlainClasses) {
    for (const LimitCase& row : LIMIT_CASES) {
        SCOPED_TRACE(row.title);
        Ways ways;
        CornerClassifier classifier;
        expectPlainClasses(classifier.classify(row.first), row.first, ways);
        classifier.follow(row.cut);
        const std::vector<Vector3> left = {row.first[0], row.cut.newPrevious, row.cut.newNext};
        expectPlainClasses(classifier.classifyLeft(left), left, ways);
        expectPlainClasses(CornerClassifier().classify(left), left, ways);
    }
}

// The first direction serves again as soon as no corner stands across it.
TEST(CornerClassifierTest, theShortWayGoesOnWhenACornerAcrossIsCutOff) {
    const std::vector<Vector3> first = {{0, 0, 1}, {0, 0, 1}, {1, 0, 0}, {0, 0, 1}, {-0.9, 0, 1}};
    CornerClassifier classifier;
    ASSERT_TRUE(classifier.classify(first));
    const CornerClassifier::Cut cut{first[2], first[1], first[3], {0, 0, 1.5}, {0.85, 0, 1.5}};
    classifier.follow(cut);
    const std::vector<Vector3> left = {first[0], cut.newPrevious, cut.newNext, first[4]};
    const std::optional<CornerClasses> classes = classifier.classifyLeft(left);
    Ways ways;
    expectPlainClasses(classes, left, ways);
    ASSERT_TRUE(classes);
    EXPECT_EQ(classes->polygonNormal.z, 4.0);
}

// Many corners, so that the sums drift apart as far as they can.
TEST(CornerClassifierTest, largePolygonsHaveThePlainClassesAtEveryCut) {
    RandomSource random(5);
    Ways ways;
    std::vector<Vector3> polygon = star(3000, 0.999, random);
    tilt(polygon, 0.3, -0.7);
    ASSERT_NO_FATAL_FAILURE(expectPlainClassesToTheEnd(polygon, random, ways));
    EXPECT_GT(ways.shortOnes, ways.all / 2);
}

}  // namespace obj_adapter::test
