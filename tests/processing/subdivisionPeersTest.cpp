// Loop subdivision beside two other libraries, which number vertices in other
// orders: every position must be among theirs, one to one.
#include "model/objModel.h"
#include "processing/subdivision.h"
#include "support/randomSource.h"
#include "support/testMeshes.h"

#include <gtest/gtest.h>
#include <opensubdiv/far/primvarRefiner.h>
#include <opensubdiv/far/topologyDescriptor.h>
#include <OpenMesh/Core/Mesh/TriMesh_ArrayKernelT.hh>
#include <OpenMesh/Tools/Subdivider/Uniform/LoopT.hh>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <memory>
#include <set>
#include <string>
#include <vector>

namespace obj_adapter::test {

namespace {

using Point = std::array<double, 3>;
using Points = std::vector<Point>;

constexpr int MOST_ROUNDS = 3;

// As a part of the length of the mesh's diagonal.
constexpr double TOLERANCE = 1e-12;

Points subdivideHere(const Mesh& mesh, int rounds) {
    ObjModel model;
    fillModel(mesh, model);
    subdivide(LIMIT_ITERATIONS, rounds, model);
    Points points;
    for (const Vertex& vertex : model.vertices)
        points.push_back({vertex.x, vertex.y, vertex.z});
    return points;
}

// --- OpenSubdiv -------------------------------------------------------------

namespace osd = OpenSubdiv::OPENSUBDIV_VERSION;

// The form in which the refiner wants its points.
struct RefinedPoint {
    Point position = {0, 0, 0};

    void Clear() { position = {0, 0, 0}; }
    void AddWithWeight(const RefinedPoint& other, double weight) {
        for (std::size_t axis = 0; axis < position.size(); ++axis)
            position[axis] += weight * other.position[axis];
    }
};

Points subdivideWithOpenSubdiv(const Mesh& mesh, int rounds) {
    using Descriptor = osd::Far::TopologyDescriptor;
    using Factory = osd::Far::TopologyRefinerFactory<Descriptor>;
    const std::vector<int> cornerCounts(mesh.triangles.size(), 3);
    std::vector<int> corners;
    for (const auto& triangle : mesh.triangles)
        corners.insert(corners.end(), triangle.begin(), triangle.end());

    Descriptor descriptor;
    descriptor.numVertices = static_cast<int>(mesh.points.size());
    descriptor.numFaces = static_cast<int>(mesh.triangles.size());
    descriptor.numVertsPerFace = cornerCounts.data();
    descriptor.vertIndicesPerFace = corners.data();
    osd::Sdc::Options options;
    options.SetVtxBoundaryInterpolation(osd::Sdc::Options::VTX_BOUNDARY_EDGE_ONLY);
    const std::unique_ptr<osd::Far::TopologyRefiner> refiner(
        Factory::Create(descriptor, Factory::Options(osd::Sdc::SCHEME_LOOP, options)));
    refiner->RefineUniform(osd::Far::TopologyRefiner::UniformOptions(rounds));

    std::vector<RefinedPoint> points(mesh.points.size());
    for (std::size_t point = 0; point < points.size(); ++point)
        points[point].position = mesh.points[point];
    const osd::Far::PrimvarRefinerReal<double> primvarRefiner(*refiner);
    for (int level = 1; level <= rounds; ++level) {
        std::vector<RefinedPoint> finer(
            static_cast<std::size_t>(refiner->GetLevel(level).GetNumVertices()));
        primvarRefiner.Interpolate(level, points, finer);
        points = finer;
    }
    Points result;
    for (const RefinedPoint& point : points)
        result.push_back(point.position);
    return result;
}

// --- OpenMesh ---------------------------------------------------------------

struct DoubleTraits : OpenMesh::DefaultTraits {
    using Point = OpenMesh::Vec3d;
    using Normal = OpenMesh::Vec3d;
};

Points subdivideWithOpenMesh(const Mesh& mesh, int rounds) {
    using PeerMesh = OpenMesh::TriMesh_ArrayKernelT<DoubleTraits>;
    PeerMesh peer;
    std::vector<PeerMesh::VertexHandle> handles;
    for (const Point& point : mesh.points)
        handles.push_back(peer.add_vertex(OpenMesh::Vec3d(point[0], point[1], point[2])));
    for (const auto& [a, b, c] : mesh.triangles) {
        EXPECT_TRUE(peer.add_face(handles[static_cast<std::size_t>(a)],
                                  handles[static_cast<std::size_t>(b)],
                                  handles[static_cast<std::size_t>(c)])
                        .is_valid());
    }
    OpenMesh::Subdivider::Uniform::LoopT<PeerMesh, double> subdivider;
    subdivider.attach(peer);
    subdivider(static_cast<std::size_t>(rounds));
    subdivider.detach();

    Points result;
    for (const PeerMesh::VertexHandle vertex : peer.vertices()) {
        const OpenMesh::Vec3d& point = peer.point(vertex);
        result.push_back({point[0], point[1], point[2]});
    }
    return result;
}

// --- comparison -------------------------------------------------------------

double diagonalOf(const Points& points) {
    Point low = points.front();
    Point high = points.front();
    for (const Point& point : points) {
        for (std::size_t axis = 0; axis < point.size(); ++axis) {
            low[axis] = std::min(low[axis], point[axis]);
            high[axis] = std::max(high[axis], point[axis]);
        }
    }
    return std::hypot(high[0] - low[0], high[1] - low[1], high[2] - low[2]);
}

// How many of ours have no partner of their own among theirs.
int countWithoutPartner(const Points& ours, Points theirs, double tolerance) {
    std::sort(theirs.begin(), theirs.end());
    std::vector<bool> isTaken(theirs.size());
    int missing = 0;
    for (const Point& point : ours) {
        const auto begin =
            std::lower_bound(theirs.begin(), theirs.end(), point[0] - tolerance,
                             [](const Point& candidate, double x) { return candidate[0] < x; });
        auto place = static_cast<std::size_t>(begin - theirs.begin());
        bool isFound = false;
        for (; place < theirs.size() && theirs[place][0] <= point[0] + tolerance; ++place) {
            const double distance =
                std::hypot(theirs[place][0] - point[0], theirs[place][1] - point[1],
                           theirs[place][2] - point[2]);
            if (!isTaken[place] && distance <= tolerance) {
                isTaken[place] = true;
                isFound = true;
                break;
            }
        }
        missing += isFound ? 0 : 1;
    }
    return missing;
}

// The numbers of neighbours of the points that no boundary edge touches.
std::set<std::size_t> interiorValences(const Mesh& mesh) {
    std::vector<std::set<int>> neighbours(mesh.points.size());
    std::vector<std::size_t> faceCounts(mesh.points.size());
    for (const auto& triangle : mesh.triangles) {
        for (const int from : triangle) {
            ++faceCounts[static_cast<std::size_t>(from)];
            for (const int to : triangle) {
                if (from != to)
                    neighbours[static_cast<std::size_t>(from)].insert(to);
            }
        }
    }
    std::set<std::size_t> valences;
    for (std::size_t point = 0; point < neighbours.size(); ++point) {
        // An open fan has one neighbour more than faces.
        if (neighbours[point].size() == faceCounts[point])
            valences.insert(neighbours[point].size());
    }
    return valences;
}

struct PeerCase {
    const char* title;
    Mesh mesh;
};

std::vector<PeerCase> makeCases() {
    RandomSource random(1);
    std::vector<PeerCase> cases = {
        {"one triangle", oneTriangle()},
        {"tetrahedron", tetrahedron()},
        {"octahedron", octahedron()},
        {"icosahedron", icosahedron()},
        {"rough grid 1 x 1", roughGrid(1, 1, random)},
        {"rough grid 7 x 5", roughGrid(7, 5, random)},
        {"rough grid, shuffled", shuffled(roughGrid(12, 9, random), random)},
        {"torus", roughTorus(9, 6, random)},
        {"open disc with 3 to 10 neighbours",
         withPointsSetIn(roughGrid(20, 20, random), 4, random)},
        {"closed torus with points set in", withPointsSetIn(roughTorus(8, 7, random), 3, random)},
        {"pyramid without a floor", fan(16, true)},
        {"open fan", fan(5, false)},
    };
    // Shuffling turns faces but keeps their winding, as manifolds need it.
    cases.push_back({"closed torus, shuffled", shuffled(roughTorus(6, 8, random), random)});
    return cases;
}

using PeerSubdivision = Points (*)(const Mesh&, int);

void expectSamePositions(PeerSubdivision subdivideThere) {
    for (const PeerCase& row : makeCases()) {
        for (int rounds = 1; rounds <= MOST_ROUNDS; ++rounds) {
            SCOPED_TRACE(std::string(row.title) + ", rounds: " + std::to_string(rounds));
            const Points ours = subdivideHere(row.mesh, rounds);
            const Points theirs = subdivideThere(row.mesh, rounds);
            ASSERT_EQ(ours.size(), theirs.size());
            const double tolerance = TOLERANCE * diagonalOf(row.mesh.points);
            EXPECT_EQ(countWithoutPartner(ours, theirs, tolerance), 0);
        }
    }
}

TEST(SubdivisionPeers, samePositionsAsOpenSubdiv) {
    expectSamePositions(&subdivideWithOpenSubdiv);
}

TEST(SubdivisionPeers, samePositionsAsOpenMesh) {
    expectSamePositions(&subdivideWithOpenMesh);
}

TEST(SubdivisionPeers, theMeshesHaveTheValencesThatMatter) {
    std::set<std::size_t> valences;
    for (const PeerCase& row : makeCases()) {
        if (std::string(row.title).find("open disc") != std::string::npos)
            valences = interiorValences(row.mesh);
    }
    for (std::size_t valence = 3; valence <= 10; ++valence)
        EXPECT_EQ(valences.count(valence), 1U) << valence;
}

TEST(SubdivisionPeers, aMovedPointHasNoPartner) {
    Points ours = subdivideHere(tetrahedron(), 1);
    const Points theirs = ours;
    ours[3][1] += 1e-9;
    EXPECT_EQ(countWithoutPartner(ours, theirs, TOLERANCE), 1);
    ours[3] = ours[4];
    EXPECT_EQ(countWithoutPartner(ours, theirs, TOLERANCE), 1);
}

}  // namespace

}  // namespace obj_adapter::test
