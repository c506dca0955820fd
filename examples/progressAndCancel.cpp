// Follows an import, and cancels it before a round of subdivision that would make more
// faces than the program wants to hold.
#include <obj_adapter/obj_adapter.h>

#include <cstdio>

using namespace obj_adapter;

namespace {

struct Budget {
    ObjConverter* converter;
    int greatestNumberOfFaces;
};

void showMessage(int level, const char* text) {
    if (level != ObjConverter::MESSAGE_INFORMATION)
        std::printf("%s\n", text);
}

// Called when a stage begins, with fraction 0, and again and again while it runs.
// false cancels the import.
bool followImport(void* userData, int stage, double fraction) {
    const Budget& budget = *static_cast<Budget*>(userData);
    if (fraction > 0.0)
        return true;
    switch (stage) {
        case ObjConverter::STAGE_READING:
            std::printf("reading\n");
            return true;
        case ObjConverter::STAGE_COMPACTION:
            std::printf("compacting\n");
            return true;
        default:
            break;
    }
    // Each round makes four faces of one. The table may be in the midst of a change,
    // so its length is all that is looked at.
    const int faces = budget.converter->getNumberOfFaces();
    std::printf("subdividing %d faces\n", faces);
    return faces <= budget.greatestNumberOfFaces / 4;
}

}  // namespace

int main(int argc, char** argv) {
    Budget budget = {ObjConverter::getInstance(), 10000};
    budget.converter->setSkipPolygonsWithoutEar(true);
    budget.converter->setSubdivisionRounds("ITERATIONS", 20);
    budget.converter->setMsgCallback(showMessage);
    budget.converter->setProgressCallback(followImport, &budget);
    const char* fileName = argc > 1 ? argv[1] : "examples/scene/scene.obj";
    const int code = budget.converter->importObjDataFromFile(fileName);
    // What was there before the round that did not run is still there, and whole.
    std::printf("%s, %d faces\n", code == ObjConverter::CONVERTER_OK ? "done" : "cancelled",
                budget.converter->getNumberOfFaces());
    ObjConverter::clearInstance();
    return 0;
}
