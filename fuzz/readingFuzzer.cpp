// The reading of OBJ texts against its slow twin: every record, group and message.
#include "fuzzing.h"
#include "model/objModel.h"
#include "support/modelView.h"
#include "support/printedModel.h"
#include "support/slowObjReader.h"

#include <obj_adapter/obj_adapter.h>

#include <algorithm>
#include <cstdint>
#include <string>

namespace {

std::string messages;

void receive(int level, const char* text) {
    messages += std::to_string(level) + "|" + text + "\n";
}

}  // namespace

// The twin's polygons are cubic, so the longest lines are left out.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace obj_adapter;
    const std::string text(reinterpret_cast<const char*>(data), size);
    constexpr std::size_t LONGEST_LINE = 400;
    for (std::size_t begin = 0; begin < size;) {
        const std::size_t end = std::min(text.find('\n', begin), size);
        if (end - begin > LONGEST_LINE)
            return 0;
        begin = end + 1;
    }

    ObjModel twin;
    const std::string expected = test::readObjSlowly(text, "name.obj", twin);

    messages.clear();
    ObjConverter::clearInstance();
    ObjConverter* converter = ObjConverter::getInstance();
    converter->setDataCompaction(false);
    converter->setSkipPolygonsWithoutEar(true);
    converter->setMsgCallback(&receive);
    const int code =
        converter->importObjDataFromMemory("name.obj", text.data(), size, nullptr, nullptr);
    fuzz::require(code == ObjConverter::CONVERTER_OK, "the import ended early");
    fuzz::requireEqual(messages,
                       "3|Obj Converter Import:\n3|Reading input file...\n" + expected +
                           "3|Done reading input.\n3|Obj data import complete.\n",
                       "messages");
    fuzz::requireEqual(test::printModel(test::viewOf(*converter)),
                       test::printModel(test::viewOfModel(twin)), "model");
    ObjConverter::clearInstance();
    return 0;
}
