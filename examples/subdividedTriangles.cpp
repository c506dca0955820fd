// Subdivides a model and writes a plain list of triangles: nine numbers in a line, the
// positions of the three corners.
//
//     subdividedTriangles FILE.obj [ROUNDS]
#include <obj_adapter/obj_adapter.h>

#include <cstdio>
#include <cstdlib>

using namespace obj_adapter;

int main(int argc, char** argv) {
    ObjConverter* converter = ObjConverter::getInstance();
    converter->setSkipPolygonsWithoutEar(true);
    converter->setSubdivisionRounds("ITERATIONS", argc > 2 ? std::atoi(argv[2]) : 1);
    const char* fileName = argc > 1 ? argv[1] : "examples/scene/scene.obj";
    if (converter->importObjDataFromFile(fileName) != ObjConverter::CONVERTER_OK)
        return 1;
    for (int index = 0; index < converter->getNumberOfFaces(); ++index) {
        const Face& face = *converter->getFace(index);
        for (int corner = 0; corner < CORNERS_PER_FACE; ++corner) {
            const int position = face.elements[corner].getVertexIndex();
            const Vertex& vertex = *converter->getVertex(position);
            std::printf("%s%.4f %.4f %.4f", corner == 0 ? "" : "  ", vertex.x, vertex.y, vertex.z);
        }
        std::printf("\n");
    }
    ObjConverter::clearInstance();
    return 0;
}
