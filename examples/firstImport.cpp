// A complete host: imports an OBJ file and adds up the area of its faces.
#include <obj_adapter/obj_adapter.h>

#include <cmath>
#include <cstdio>

using namespace obj_adapter;

static void showMessage(int level, const char* text) {
    if (level != ObjConverter::MESSAGE_INFORMATION)
        std::fprintf(stderr, "%s\n", text);
}

int main(int argc, char** argv) {
    ObjConverter* converter = ObjConverter::getInstance();
    converter->setMsgCallback(showMessage);
    converter->setSkipPolygonsWithoutEar(true);
    const char* fileName = argc > 1 ? argv[1] : "examples/scene/scene.obj";
    if (converter->importObjDataFromFile(fileName) != ObjConverter::CONVERTER_OK)
        return 1;

    double area = 0.0;
    for (int index = 0; index < converter->getNumberOfFaces(); ++index) {
        Face* face = converter->getFace(index);
        const Vertex& a = *converter->getVertex(face->getElement(0).getVertexIndex());
        const Vertex& b = *converter->getVertex(face->getElement(1).getVertexIndex());
        const Vertex& c = *converter->getVertex(face->getElement(2).getVertexIndex());
        const double x = (b.y - a.y) * (c.z - a.z) - (b.z - a.z) * (c.y - a.y);
        const double y = (b.z - a.z) * (c.x - a.x) - (b.x - a.x) * (c.z - a.z);
        const double z = (b.x - a.x) * (c.y - a.y) - (b.y - a.y) * (c.x - a.x);
        area += std::sqrt(x * x + y * y + z * z) / 2.0;
    }
    std::printf("%d faces, area %.3f\n", converter->getNumberOfFaces(), area);
    ObjConverter::clearInstance();
    return 0;
}
