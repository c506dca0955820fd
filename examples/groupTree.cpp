// Prints the tree of group names of an OBJ file with the faces of each group: "g house
// roof left" hangs under "roof" under "house".
#include <obj_adapter/obj_adapter.h>

#include <cstdio>
#include <utility>
#include <vector>

using namespace obj_adapter;

int main(int argc, char** argv) {
    ObjConverter* converter = ObjConverter::getInstance();
    converter->setSkipPolygonsWithoutEar(true);
    converter->setUseGroupNameHierarchy(true);
    const char* fileName = argc > 1 ? argv[1] : "examples/scene/scene.obj";
    if (converter->importObjDataFromFile(fileName) != ObjConverter::CONVERTER_OK)
        return 1;

    // A list of what is still to do, as a file may nest names deeper than the call
    // stack reaches. The tree holds until the next call of getRootOfHierarchy().
    std::vector<std::pair<ObjHierarchyNode*, int>> waiting;
    if (ObjHierarchyNode* root = converter->getRootOfHierarchy())
        waiting.push_back({root, 0});
    while (!waiting.empty()) {
        const auto [node, depth] = waiting.back();
        waiting.pop_back();
        std::printf("%*s%s", 2 * depth, "", node->getName().c_str());
        if (const std::vector<int>* faces = node->getFaceIndices())
            std::printf(": %zu faces", faces->size());
        std::printf("\n");
        // Backwards, so that the first child comes out first.
        for (int child = node->getNumberOfChildren() - 1; child >= 0; --child)
            waiting.push_back({node->getChild(child), depth + 1});
    }
    ObjConverter::clearInstance();
    return 0;
}
