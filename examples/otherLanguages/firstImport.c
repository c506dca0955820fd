/* A complete host in C: imports an OBJ file and prints what came of it. */
#include <obj_adapter/obj_adapter_c.h>

#include <stdio.h>

static void showMessage(void* userData, int32_t level, const char* text) {
    (void)userData;
    if (level != OBJ_ADAPTER_MESSAGE_INFORMATION)
        fprintf(stderr, "%s\n", text);
}

int main(int argc, char** argv) {
    const char* fileName = argc > 1 ? argv[1] : "examples/scene/scene.obj";
    int32_t vertexCount, faceCount, nodeCount, result, node;
    const ObjAdapterTreeNode* tree;

    ObjAdapterSettings* settings = objAdapterCreateSettings();
    if (settings == NULL)
        return 1;
    objAdapterSetSkipPolygonsWithoutEar(settings, 1);
    objAdapterSetUseGroupNameHierarchy(settings, 1);
    objAdapterSetMessageCallback(settings, showMessage, NULL);
    result = objAdapterImportFile(settings, fileName);
    objAdapterDestroySettings(settings);
    if (result != OBJ_ADAPTER_OK)
        return 1;

    objAdapterGetVertices(&vertexCount);
    objAdapterGetFaces(&faceCount);
    printf("%d vertices, %d faces, %d materials\n", (int)vertexCount, (int)faceCount,
           (int)objAdapterGetNumberOfMaterials());
    tree = objAdapterGetTree(&nodeCount);
    for (node = 0; node < nodeCount; ++node)
        printf("node %s\n", tree[node].name);
    objAdapterClear();
    return 0;
}
