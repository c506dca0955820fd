// CGAL subdivides.
#include "meshes/benchMeshes.h"
#include "peers/subdividers.h"

#include <CGAL/Simple_cartesian.h>
#include <CGAL/Surface_mesh.h>
#include <CGAL/subdivision_method_3.h>

#include <vector>

namespace obj_adapter::bench {

namespace {

using Kernel = CGAL::Simple_cartesian<double>;
using PeerMesh = CGAL::Surface_mesh<Kernel::Point_3>;

void build(const test::Mesh& mesh, PeerMesh& peer) {
    std::vector<PeerMesh::Vertex_index> handles;
    handles.reserve(mesh.points.size());
    for (const auto& [x, y, z] : mesh.points)
        handles.push_back(peer.add_vertex(Kernel::Point_3(x, y, z)));
    for (const auto& [a, b, c] : mesh.triangles)
        peer.add_face(handles[static_cast<std::size_t>(a)], handles[static_cast<std::size_t>(b)],
                      handles[static_cast<std::size_t>(c)]);
}

}  // namespace

void subdivideWithCgal(const Arguments& arguments, Measured& measured) {
    const test::Mesh mesh = makeBenchMesh(arguments.at(0), std::stoi(arguments.at(1)));
    const int rounds = std::stoi(arguments.at(2));
    PeerMesh peer;
    measured.time("build", [&] { build(mesh, peer); });
    for (int round = 1; round <= rounds; ++round) {
        measured.time("round " + std::to_string(round), [&] {
            CGAL::Subdivision_method_3::Loop_subdivision(peer,
                                                         CGAL::parameters::number_of_iterations(1));
        });
    }
    double sum = 0;
    for (const PeerMesh::Vertex_index vertex : peer.vertices()) {
        const Kernel::Point_3& point = peer.point(vertex);
        sum += weighPosition(point.x(), point.y(), point.z());
    }
    measured.setCount("sum", sum);
    measured.setCount("faces", static_cast<double>(peer.number_of_faces()));
    measured.setCount("vertices", static_cast<double>(peer.number_of_vertices()));
}

}  // namespace obj_adapter::bench
