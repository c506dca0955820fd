// OpenMesh reads.
#include "peers/readers.h"

#include <OpenMesh/Core/IO/MeshIO.hh>
#include <OpenMesh/Core/Mesh/TriMesh_ArrayKernelT.hh>

#include <stdexcept>

namespace obj_adapter::bench {

namespace {

struct DoubleTraits : OpenMesh::DefaultTraits {
    using Point = OpenMesh::Vec3d;
    using Normal = OpenMesh::Vec3d;
};

}  // namespace

void readWithOpenMesh(const Arguments& arguments, Measured& measured) {
    OpenMesh::TriMesh_ArrayKernelT<DoubleTraits> mesh;
    bool isRead = false;
    // It reports every face that makes the mesh no manifold.
    omerr().disable();
    measured.time("import", [&] { isRead = OpenMesh::IO::read_mesh(mesh, arguments.at(0)); });
    if (!isRead)
        throw std::runtime_error("OpenMesh cannot read the file");
    measured.setCount("faces", static_cast<double>(mesh.n_faces()));
    measured.setCount("vertices", static_cast<double>(mesh.n_vertices()));
}

}  // namespace obj_adapter::bench
