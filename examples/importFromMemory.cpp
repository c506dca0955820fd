// Imports texts that are in no file, as from an archive or a network: the host hands out
// the material libraries itself, and no file is opened.
#include <obj_adapter/obj_adapter.h>

#include <cstddef>
#include <cstdio>
#include <map>
#include <string>

using namespace obj_adapter;

namespace {

using Texts = std::map<std::string, std::string>;

const Texts ARCHIVE = {
    {"sign.obj",
     "mtllib paint.mtl\n"
     "mtllib missing.mtl\n"
     "v 0 0 0\nv 2 0 0\nv 2 1 0\nv 0 1 0\n"
     "usemtl red\n"
     "f 1 2 3 4\n"},
    {"paint.mtl", "newmtl red\nKd 0.8 0.1 0.1\n"},
};

// The text holds until the import returns.
bool openLibrary(void* userData, const char* libraryName, const char** text, std::size_t* size) {
    const Texts& texts = *static_cast<const Texts*>(userData);
    const auto found = texts.find(libraryName);
    if (found == texts.end())
        return false;
    *text = found->second.data();
    *size = found->second.size();
    return true;
}

void showMessage(int level, const char* text) {
    if (level != ObjConverter::MESSAGE_INFORMATION)
        std::printf("message: %s\n", text);
}

}  // namespace

int main() {
    ObjConverter* converter = ObjConverter::getInstance();
    converter->setMsgCallback(showMessage);
    Texts texts = ARCHIVE;
    const std::string& text = texts.at("sign.obj");
    if (converter->importObjDataFromMemory("sign.obj", text.data(), text.size(), openLibrary,
                                           &texts) != ObjConverter::CONVERTER_OK)
        return 1;
    for (int index = 0; index < converter->getNumberOfFaces(); ++index) {
        const Face& face = *converter->getFace(index);
        const Material& material = *converter->getMaterial(face.getMaterialIndex());
        std::printf("face %d: %s\n", index, material.name.c_str());
    }
    ObjConverter::clearInstance();
    return 0;
}
