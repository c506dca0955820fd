// OpenMesh subdivides.
#include "meshes/benchMeshes.h"
#include "peers/subdividers.h"

#include <OpenMesh/Core/Mesh/TriMesh_ArrayKernelT.hh>
#include <OpenMesh/Tools/Subdivider/Uniform/LoopT.hh>

#include <vector>

namespace obj_adapter::bench {

namespace {

struct DoubleTraits : OpenMesh::DefaultTraits {
    using Point = OpenMesh::Vec3d;
    using Normal = OpenMesh::Vec3d;
};

using PeerMesh = OpenMesh::TriMesh_ArrayKernelT<DoubleTraits>;

void build(const test::Mesh& mesh, PeerMesh& peer) {
    std::vector<PeerMesh::VertexHandle> handles;
    handles.reserve(mesh.points.size());
    for (const auto& [x, y, z] : mesh.points)
        handles.push_back(peer.add_vertex(OpenMesh::Vec3d(x, y, z)));
    for (const auto& [a, b, c] : mesh.triangles)
        peer.add_face(handles[static_cast<std::size_t>(a)], handles[static_cast<std::size_t>(b)],
                      handles[static_cast<std::size_t>(c)]);
}

}  // namespace

void subdivideWithOpenMesh(const Arguments& arguments, Measured& measured) {
    const test::Mesh mesh = makeBenchMesh(arguments.at(0), std::stoi(arguments.at(1)));
    const int rounds = std::stoi(arguments.at(2));
    PeerMesh peer;
    OpenMesh::Subdivider::Uniform::LoopT<PeerMesh, double> subdivider;
    measured.time("build", [&] {
        build(mesh, peer);
        subdivider.attach(peer);
    });
    for (int round = 1; round <= rounds; ++round)
        measured.time("round " + std::to_string(round), [&] { subdivider(1); });
    double sum = 0;
    for (const PeerMesh::VertexHandle vertex : peer.vertices()) {
        const OpenMesh::Vec3d& point = peer.point(vertex);
        sum += weighPosition(point[0], point[1], point[2]);
    }
    measured.setCount("sum", sum);
    measured.setCount("faces", static_cast<double>(peer.n_faces()));
    measured.setCount("vertices", static_cast<double>(peer.n_vertices()));
}

}  // namespace obj_adapter::bench
