// Whole imports: OBJ and MTL texts, all settings, several imports into one converter,
// then all that a host can read. Everything happens twice and must come out the same.
//
// The input is a text. A line "%set" with letters and numbers chooses settings for
// all imports (see Settings), each line "%obj" begins a further file to import and
// each "%mtl" a library, the first called "0.mtl", the next "1.mtl".
#include "fuzzing.h"
#include "support/modelChecker.h"
#include "support/printedModel.h"

#include <obj_adapter/obj_adapter.h>

#include <cstdint>
#include <new>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace obj_adapter::fuzz {
namespace {

struct Settings {
    bool compacts = true;        // "c": no
    bool hasHierarchy = false;   // "h"
    bool reverses = false;       // "r"
    bool showsLastNames = true;  // "l": no
    const char* limitType = "";  // "I", "F", "V"
    int number = 0;              // "1" to "9": rounds, or so many times sixty records
    int limit = 0;               // what the type and the number say together
    int throwsAt = -1;           // "t" with a letter behind it: at message 0 to 25
    int cancelsAt = -1;          // "p" with a letter: at that call for progress
    bool asksInside = false;     // "g": getters and tree at each message
};

struct Input {
    Settings settings;
    std::vector<std::string> objTexts;
    std::vector<std::string> libraries;
};

void readSettings(std::string_view text, Settings& settings) {
    const auto numberBehind = [&](std::size_t letter) {
        return letter + 1 < text.size() && text[letter + 1] >= 'a' && text[letter + 1] <= 'z'
                   ? text[letter + 1] - 'a'
                   : 0;
    };
    for (std::size_t place = 0; place < text.size(); ++place) {
        const char letter = text[place];
        if (letter >= '1' && letter <= '9')
            settings.number = letter - '0';
        switch (letter) {
            case 'c':
                settings.compacts = false;
                break;
            case 'h':
                settings.hasHierarchy = true;
                break;
            case 'r':
                settings.reverses = true;
                break;
            case 'l':
                settings.showsLastNames = false;
                break;
            case 'g':
                settings.asksInside = true;
                break;
            case 'I':
                settings.limitType = "ITERATIONS";
                break;
            case 'F':
                settings.limitType = "FACE_COUNT";
                break;
            case 'V':
                settings.limitType = "VERTEX_COUNT";
                break;
            case 't':
                settings.throwsAt = numberBehind(place++);
                break;
            case 'p':
                settings.cancelsAt = numberBehind(place++);
                break;
            default:
                break;
        }
    }
    constexpr int RECORDS = 60;
    constexpr int MOST_ROUNDS = 2;
    const bool countsRecords = *settings.limitType == 'F' || *settings.limitType == 'V';
    settings.limit =
        countsRecords ? settings.number * RECORDS : settings.number % (MOST_ROUNDS + 1);
}

Input readInput(std::string_view text) {
    Input input;
    input.objTexts.emplace_back();
    std::string* part = &input.objTexts.back();
    while (!text.empty()) {
        const std::size_t length = text.find('\n');
        const std::string_view line = text.substr(0, length);
        text.remove_prefix(length == std::string_view::npos ? text.size() : length + 1);
        if (line.starts_with("%set")) {
            readSettings(line.substr(4), input.settings);
        } else if (line == "%obj") {
            part = &input.objTexts.emplace_back();
        } else if (line == "%mtl") {
            part = &input.libraries.emplace_back();
        } else {
            part->append(line);
            if (length != std::string_view::npos)
                part->push_back('\n');
        }
    }
    return input;
}

// The host of the import that runs.
struct Host {
    const Settings* settings = nullptr;
    int messageCount = 0;
    int progressCount = 0;
    std::string messages;
};

Host host;

// Every line of the tree is used, so none can be left out.
std::string describeTree(ObjHierarchyNode& root) {
    std::string text;
    std::vector<ObjHierarchyNode*> nodes = {&root};
    while (!nodes.empty()) {
        ObjHierarchyNode* node = nodes.back();
        nodes.pop_back();
        text += node->getName() + "/" + node->getFullName();
        if (const std::vector<int>* faces = node->getFaceIndices())
            text += " " + std::to_string(faces->size());
        text += "\n";
        for (int child = 0; child < node->getNumberOfChildren(); ++child)
            nodes.push_back(node->getChild(child));
    }
    return text;
}

std::string describeMaterials(ObjConverter& converter) {
    std::string text;
    for (int index = 0; index < converter.getNumberOfMaterials(); ++index) {
        Material& material = *converter.getMaterial(index);
        text += materialToText(material) + dissolveToText(material);
        for (MaterialColor* color : {&material.getAmbient(), &material.getDiffuse(),
                                     &material.getSpecular(), &material.getFilter()}) {
            text += colorToText(*color) + colorDescription(*color);
            color->toColorArray();
            text += colorToText(*color);
        }
        for (int slot = -1; slot <= Material::REFL + 1; ++slot) {
            const auto name = static_cast<Material::TextureMapName>(slot);
            if (material.hasTextureMap(name))
                text += material.getTextureMap(name).textureMapString();
        }
    }
    return text;
}

void receive(int level, const char* text) {
    // Every message of a large model would be asked about all of it.
    constexpr int MOST_MESSAGES_ASKED_IN = 12;
    host.messages += std::to_string(level) + "|" + text + "\n";
    if (host.settings->asksInside && host.messageCount < MOST_MESSAGES_ASKED_IN) {
        ObjConverter& converter = *ObjConverter::getInstance();
        host.messages += std::to_string(test::printModel(test::viewOf(converter)).size()) + "\n";
        if (ObjHierarchyNode* root = converter.getRootOfHierarchy())
            host.messages += describeTree(*root);
    }
    if (host.messageCount++ == host.settings->throwsAt) {
        switch (host.settings->throwsAt % 3) {
            case 0:
                throw 7;
            case 1:
                throw std::bad_alloc();
            default:
                throw std::runtime_error("thrown by the host");
        }
    }
}

bool goOn(void*, int stage, double fraction) {
    require(stage >= ObjConverter::STAGE_READING && stage <= ObjConverter::STAGE_SUBDIVISION &&
                fraction >= 0.0 && fraction <= 1.0,
            "progress out of range");
    return host.progressCount++ != host.settings->cancelsAt;
}

bool openLibrary(void* input, const char* name, const char** text, std::size_t* size) {
    const auto& libraries = static_cast<const Input*>(input)->libraries;
    for (std::size_t library = 0; library < libraries.size(); ++library) {
        if (std::to_string(library) + ".mtl" == name) {
            *text = libraries[library].data();
            *size = libraries[library].size();
            return true;
        }
    }
    return false;
}

void prepare(const Settings& settings) {
    host = {};
    host.settings = &settings;
    ObjConverter::clearInstance();
    ObjConverter* converter = ObjConverter::getInstance();
    converter->setSkipPolygonsWithoutEar(true);
    converter->setDataCompaction(settings.compacts);
    converter->setUseGroupNameHierarchy(settings.hasHierarchy);
    converter->setHierarchyReverseGroupNames(settings.reverses);
    converter->setHierarchyShowLastNamesOnly(settings.showsLastNames);
    converter->setSubdivisionRounds(settings.limitType, settings.limit);
    converter->setMsgCallback(&receive);
    converter->setProgressCallback(&goOn, nullptr);
}

test::ModelState stateAfter(int code, const Settings& settings) {
    if (code != ObjConverter::CONVERTER_OK)
        return test::ModelState::ENDED_EARLY;
    if (settings.limit > 0)
        return test::ModelState::SUBDIVIDED;
    return settings.compacts ? test::ModelState::COMPACTED : test::ModelState::READ;
}

std::string runOnce(Input& input) {
    prepare(input.settings);
    ObjConverter& converter = *ObjConverter::getInstance();
    std::string outcome;
    // Subdivision quadruples the model, and the next import all of that again.
    constexpr int MOST_FACES = 500;
    for (const std::string& text : input.objTexts) {
        if (converter.getNumberOfFaces() > MOST_FACES)
            break;
        const int code = converter.importObjDataFromMemory("name.obj", text.data(), text.size(),
                                                           &openLibrary, &input);
        const test::ModelView model = test::viewOf(converter);
        requireEqual(test::findViolations(model, stateAfter(code, input.settings)), "",
                     "the model is not whole");
        outcome += std::to_string(code) + "\n" + test::printModel(model);
        ObjHierarchyNode* root = converter.getRootOfHierarchy();
        require(root != nullptr, "no tree");
        outcome += describeTree(*root);
    }
    outcome += describeMaterials(converter);
    outcome += host.messages;
    ObjConverter::clearInstance();
    return outcome;
}

}  // namespace
}  // namespace obj_adapter::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace obj_adapter::fuzz;
    Input input = readInput({reinterpret_cast<const char*>(data), size});
    const std::string first = runOnce(input);
    requireEqual(runOnce(input), first, "the second run differs");
    return 0;
}
