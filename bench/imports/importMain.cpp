// Imports as a host does, through the shared library, and times their stages by
// the messages that part them.
#include "measuring/answers.h"
#include "measuring/contender.h"

#include <obj_adapter/obj_adapter.h>

#include <stdexcept>
#include <string>
#include <vector>

namespace obj_adapter::bench {

namespace {

// What a run is to do, from the words behind the file's name.
struct ImportOptions {
    explicit ImportOptions(const Arguments& arguments) {
        for (const std::string& word : arguments) {
            if (word == "compacted")
                isCompacted = true;
            else if (word.starts_with("rounds="))
                rounds = std::stoi(word.substr(word.find('=') + 1));
            else if (word == "tree")
                hasTree = true;
            else
                throw std::runtime_error("what is " + word + "?");
        }
    }

    bool isCompacted = false;
    int rounds = 0;
    bool hasTree = false;
};

// When each message came, in CPU time.
struct StageClock {
    struct Mark {
        std::string text;
        double seconds;
    };
    static inline std::vector<Mark> marks;
    static inline std::string errors;

    static void receive(int level, const char* text) {
        const double now = cpuSeconds();
        if (level == ObjConverter::MESSAGE_INFORMATION)
            marks.push_back({text, now});
        else
            errors.append(text).append("\n");
    }

    static double at(const std::string& text) {
        for (const Mark& mark : marks) {
            if (mark.text == text)
                return mark.seconds;
        }
        throw std::runtime_error("no message: " + text);
    }
};

void addStageTimes(const ImportOptions& options, Measured& measured) {
    measured.addTime(
        "read", StageClock::at("Done reading input.") - StageClock::at("Reading input file..."));
    if (options.isCompacted || options.rounds > 0)
        measured.addTime("compact",
                         StageClock::at("Done compacting.") - StageClock::at("Compacting..."));
    for (int round = 1; round <= options.rounds; ++round) {
        const auto textOf = [](int number) {
            return "Subdivision " + std::to_string(number) + "...";
        };
        const double end =
            StageClock::at(round == options.rounds ? "Done Subdividing." : textOf(round + 1));
        measured.addTime("round " + std::to_string(round), end - StageClock::at(textOf(round)));
    }
}

ObjConverter& setUp(const ImportOptions& options) {
    StageClock::marks.reserve(100);
    ObjConverter* converter = ObjConverter::getInstance();
    converter->setMsgCallback(&StageClock::receive);
    converter->setDataCompaction(options.isCompacted || options.rounds > 0);
    converter->setSubdivisionRounds("ITERATIONS", options.rounds);
    converter->setUseGroupNameHierarchy(options.hasTree);
    converter->setSkipPolygonsWithoutEar(true);
    return *converter;
}

void run(const Arguments& arguments, Measured& measured,
         std::uint64_t (*hash)(const test::ModelView&)) {
    const std::string file = arguments.at(0);
    const ImportOptions options(Arguments(arguments.begin() + 1, arguments.end()));
    ObjConverter& converter = setUp(options);
    int code = ObjConverter::CONVERTER_ERROR;
    measured.time("import", [&] { code = converter.importObjDataFromFile(file.c_str()); });
    if (code != ObjConverter::CONVERTER_OK)
        throw std::runtime_error("cannot import " + file + "\n" + StageClock::errors);
    if (options.hasTree)
        measured.time("tree", [&] { converter.getRootOfHierarchy(); });

    addStageTimes(options, measured);
    const test::ModelView model = test::viewOf(converter);
    measured.setCount("vertices", converter.getNumberOfVertices());
    measured.setCount("texture points", converter.getNumberOfVertexTextures());
    measured.setCount("normals", converter.getNumberOfVertexNormals());
    measured.setCount("faces", converter.getNumberOfFaces());
    measured.setCount("groups", converter.getNumberOfGroups());
    measured.setCount("materials", converter.getNumberOfMaterials());
    measured.setCount("table bytes", static_cast<double>(tableBytes(model)));
    measured.setAnswer(hash(model));
}

void runImport(const Arguments& arguments, Measured& measured) {
    run(arguments, measured, &hashGeometry);
}

void runPrinted(const Arguments& arguments, Measured& measured) {
    run(arguments, measured, &hashPrintedModel);
}

constexpr Command COMMANDS[] = {
    {"import", "FILE [compacted] [rounds=N] [tree]", &runImport},
    {"printed", "FILE [compacted] [rounds=N] [tree]   (answer: of the printed model)", &runPrinted},
};

}  // namespace

}  // namespace obj_adapter::bench

int main(int argc, char** argv) {
    return obj_adapter::bench::runContender(argc, argv, obj_adapter::bench::COMMANDS);
}
