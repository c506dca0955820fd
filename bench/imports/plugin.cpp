// The plugin that bench_start loads.
#include <obj_adapter/obj_adapter.h>

extern "C" __attribute__((visibility("default"))) int importOnce(const char* fileName);

int importOnce(const char* fileName) {
    using obj_adapter::ObjConverter;
    ObjConverter* converter = ObjConverter::getInstance();
    const int code = converter->importObjDataFromFile(fileName);
    const int faces = converter->getNumberOfFaces();
    ObjConverter::clearInstance();
    return code == ObjConverter::CONVERTER_OK ? faces : -1;
}
