// The reading of OBJ texts and their libraries against the slow twins: every record,
// group, material and message.
//
// The input is a text. Each line "%mtl" begins a library, the first called "0.mtl", the
// next "1.mtl".
#include "fuzzing.h"
#include "model/objModel.h"
#include "support/modelView.h"
#include "support/printedModel.h"
#include "support/slowObjReader.h"

#include <obj_adapter/obj_adapter.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace {

using obj_adapter::test::SlowMaterials;

std::string messages;

void receive(int level, const char* text) {
    messages += std::to_string(level) + "|" + text + "\n";
}

bool openLibrary(void* materials, const char* name, const char** text, std::size_t* size) {
    const auto& libraries = static_cast<const SlowMaterials*>(materials)->libraries;
    const auto library = libraries.find(name);
    if (library == libraries.end())
        return false;
    *text = library->second.data();
    *size = library->second.size();
    return true;
}

// Takes the libraries off the end of the text.
void takeLibraries(std::string& text, SlowMaterials& materials) {
    constexpr std::string_view BEGIN = "%mtl\n";
    std::size_t end = text.find(BEGIN);
    const std::string all = end == std::string::npos ? "" : text.substr(end);
    text.resize(std::min(end, text.size()));
    for (std::size_t begin = 0; begin < all.size(); begin = end) {
        end = std::min(all.find(BEGIN, begin + BEGIN.size()), all.size());
        const std::size_t number = materials.libraries.size();
        materials.libraries[std::to_string(number) + ".mtl"] =
            all.substr(begin + BEGIN.size(), end - begin - BEGIN.size());
    }
}

}  // namespace

// The twin's polygons are cubic, so the longest lines are left out.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace obj_adapter;
    std::string text(reinterpret_cast<const char*>(data), size);
    constexpr std::size_t LONGEST_LINE = 400;
    for (std::size_t begin = 0; begin < size;) {
        const std::size_t end = std::min(text.find('\n', begin), size);
        if (end - begin > LONGEST_LINE)
            return 0;
        begin = end + 1;
    }

    SlowMaterials materials;
    takeLibraries(text, materials);
    ObjModel twin;
    const std::string expected = test::readObjSlowly(text, "name.obj", twin, materials);

    messages.clear();
    ObjConverter::clearInstance();
    ObjConverter* converter = ObjConverter::getInstance();
    converter->setDataCompaction(false);
    converter->setSkipPolygonsWithoutEar(true);
    converter->setMsgCallback(&receive);
    const int code = converter->importObjDataFromMemory("name.obj", text.data(), text.size(),
                                                        &openLibrary, &materials);
    fuzz::require(code == ObjConverter::CONVERTER_OK, "the import ended early");
    fuzz::requireEqual(messages,
                       "3|Obj Converter Import:\n3|Reading input file...\n" + expected +
                           "3|Done reading input.\n3|Obj data import complete.\n",
                       "messages");
    test::ModelView expectedModel = test::viewOfModel(twin);
    expectedModel.materials = materials.materials;
    fuzz::requireEqual(test::printModel(test::viewOf(*converter)), test::printModel(expectedModel),
                       "model");
    ObjConverter::clearInstance();
    return 0;
}
