// A host whose callback throws, at every single message of every scenario: what it
// throws takes the way of a failure at that place, and no further.
#include "support/countedMemory.h"
#include "support/importScenarios.h"
#include "support/temporaryDirectory.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <limits>
#include <new>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace obj_adapter::test {
namespace {

// What is thrown, and the text that it has, if it has one.
struct Thrown {
    const char* title;
    void (*raise)();
    const char* text;  // null: no standard exception
};

const Thrown THROWN[] = {
    {"an int", [] { throw 7; }, nullptr},
    {"a text", [] { throw "host failed"; }, nullptr},
    {"a standard exception", [] { throw std::runtime_error("host failed"); }, "host failed"},
    {"exhausted memory", [] { throw std::bad_alloc(); }, "bad allocation"},
};

// The messages behind one at which the host threw. "{text}" is its exception's.
struct Way {
    std::string_view message;  // "level|beginning"
    std::vector<std::string> afterStandardException;
    std::vector<std::string> afterAnythingElse;
    bool endsImport;  // nothing follows behind those
};

const char UNKNOWN[] = "1|Stopping conversion... Unknown exception";
const char NO_LIBRARY[] = "1|Could not find material library ";
const char NO_MAP[] = "2|Error processing texture map. Map will be skipped.";
const char NO_POLYGON[] = "1|Could not split non-triangular face. Skipping face.";

Way nothingFollows(std::string_view message) {
    return {message, {}, {}, true};
}
Way endsInPipeline(std::string_view message) {
    return {message, {"1|Stopping conversion... {text}"}, {UNKNOWN}, true};
}
Way endsInReader(std::string_view message) {
    return {
        message,
        {"1|Problem reading obj file {text}", "1|Stopping conversion... Unable to read obj file."},
        {UNKNOWN},
        true};
}
Way endsInLibrary(std::string_view message) {
    return {message, {"1|Problem with material library: {text}"}, {NO_LIBRARY}, false};
}
Way endsInNewMaterial(std::string_view message) {
    return {message,
            {"1|Error processing New Material: {text}",
             "1|Problem with material library: Could not proccess new material"},
            {NO_LIBRARY},
            false};
}
Way endsInMapOptions(std::string_view message) {
    return {message, {"1|Problem processing map options.{text}", NO_MAP}, {NO_MAP}, false};
}
Way continuesWith(std::string_view message, const char* next) {
    return {message, {next}, {next}, false};
}

// The first that fits.
const Way WAYS[] = {
    endsInLibrary("2|Error processing texture map. Map will be skipped."),
    endsInMapOptions("2|Invalid value for "),
    endsInMapOptions("2|Bad input values for "),
    endsInMapOptions("1|Map missing file name."),
    continuesWith("1|Problem processing map options.", NO_MAP),
    continuesWith("2|Reflection map is missing type. Map skipped.", NO_MAP),
    endsInNewMaterial("1|Error processing New Material: No name given."),
    endsInLibrary("1|Error processing New Material: "),
    endsInNewMaterial("2|Material with the name "),
    continuesWith("1|Problem with material library: ", NO_LIBRARY),
    continuesWith("3|Using Mtllib file: ", NO_LIBRARY),

    endsInReader("1|Error processing vertex"),
    endsInLibrary("1|Error processing "),

    continuesWith("1|Polygonal face has elements that cannot be processed.", NO_POLYGON),
    endsInReader("1|Could not "),
    endsInReader("1|Face does not have enough vertices."),
    endsInReader("1|No name given for material library."),
    endsInReader("1|usemtl with no material name."),
    endsInReader("2|Unrecognized statement: "),
    endsInReader("2|Number of faces where "),

    endsInPipeline("1|Problem reading obj file "),
    nothingFollows("1|Stopping conversion... "),
    endsInPipeline("1|The data contains at least one pair of faces"),
    endsInPipeline("2|Data compaction was turned off"),
    endsInPipeline("2|Invalid subdivision limit type."),
    endsInPipeline("3|"),
};

bool startsWith(std::string_view text, std::string_view start) {
    return text.substr(0, start.size()) == start;
}

const Way* wayFrom(std::string_view message) {
    for (const Way& way : WAYS) {
        if (startsWith(message, way.message))
            return &way;
    }
    return nullptr;
}

std::string withText(const std::string& message, const char* text) {
    const std::size_t at = message.find("{text}");
    return at == std::string::npos ? message : message.substr(0, at) + text;
}

constexpr std::size_t NEVER = std::numeric_limits<std::size_t>::max();

// The host: which message makes it throw, counted from 0, and whether the later
// ones do as well.
struct Host {
    std::size_t throwsAt = NEVER;
    bool throwsOn = false;
    void (*raise)() = nullptr;
    std::vector<std::string> messages;
};

Host host;

void receive(int level, const char* text) {
    const std::size_t number = host.messages.size();
    host.messages.push_back(std::to_string(level) + "|" + text);
    if (number == host.throwsAt || (host.throwsOn && number > host.throwsAt))
        host.raise();
}

class ThrowingHost : public testing::TestWithParam<ImportScenario> {
protected:
    void SetUp() override {
        for (const auto& [name, content] : options().otherFiles)
            directory.write(name, content);
        fileName = directory.write(options().fileName, GetParam().objText);
        host = {};
        ASSERT_EQ(import(), ObjConverter::CONVERTER_OK);
        undisturbed = host.messages;
        cleanUp();
    }
    void TearDown() override { cleanUp(); }

    static void cleanUp() {
        host = {};
        ObjConverter::clearInstance();
    }

    static const ImportOptions& options() { return GetParam().options; }

    int import() const {
        ObjConverter::clearInstance();
        ObjConverter* converter = ObjConverter::getInstance();
        converter->setMsgCallback(&receive);
        converter->setDataCompaction(options().compaction);
        converter->setUseGroupNameHierarchy(options().hierarchy);
        converter->setHierarchyReverseGroupNames(options().reverse);
        converter->setHierarchyShowLastNamesOnly(options().showLastNamesOnly);
        converter->setSkipPolygonsWithoutEar(options().skipPolygonsWithoutEar);
        converter->setSubdivisionRounds(options().limitType.c_str(), options().rounds);
        const int code = converter->importObjDataFromFile(fileName.c_str());
        EXPECT_EQ(findViolations(viewOf(*converter), expectedState(code, options())), "");
        return code;
    }

    void importThrowing(std::size_t number, bool throwsOn, const Thrown& thrown) {
        SCOPED_TRACE(testing::Message() << thrown.title << " at \"" << undisturbed[number]
                                        << "\", message " << number);
        const std::size_t blocksBefore = getNumberOfBlocksInUse();
        {
            host.throwsAt = number;
            host.throwsOn = throwsOn;
            host.raise = thrown.raise;
            const int code = import();
            if (!throwsOn)
                checkWay(code, number, thrown);
            // The converter is good for another import.
            host = {};
            ASSERT_EQ(ObjConverter::getInstance()->importObjDataFromFile(fileName.c_str()),
                      ObjConverter::CONVERTER_OK);
        }
        cleanUp();
        EXPECT_EQ(getNumberOfBlocksInUse(), blocksBefore);
    }

    void checkWay(int code, std::size_t number, const Thrown& thrown) const {
        const std::vector<std::string>& messages = host.messages;
        ASSERT_GT(messages.size(), number);
        for (std::size_t earlier = 0; earlier <= number; ++earlier)
            ASSERT_EQ(messages[earlier], undisturbed[earlier]);

        const Way* way = wayFrom(undisturbed[number]);
        ASSERT_NE(way, nullptr) << "no way is known";
        const std::vector<std::string>& expected =
            thrown.text != nullptr ? way->afterStandardException : way->afterAnythingElse;
        ASSERT_GE(messages.size(), number + 1 + expected.size());
        for (std::size_t step = 0; step < expected.size(); ++step) {
            EXPECT_TRUE(
                startsWith(messages[number + 1 + step], withText(expected[step], thrown.text)))
                << messages[number + 1 + step];
        }
        if (way->endsImport) {
            EXPECT_EQ(code, ObjConverter::CONVERTER_ERROR);
            EXPECT_EQ(messages.size(), number + 1 + expected.size());
        } else {
            EXPECT_EQ(code, ObjConverter::CONVERTER_OK);
            EXPECT_EQ(messages.back(), "3|Obj data import complete.");
        }
    }

    TemporaryDirectory directory;
    std::string fileName;
    std::vector<std::string> undisturbed;
};

TEST_P(ThrowingHost, atEachMessage) {
    for (std::size_t number = 0; number < undisturbed.size(); ++number) {
        for (const Thrown& thrown : THROWN)
            importThrowing(number, false, thrown);
    }
}

TEST_P(ThrowingHost, atEachMessageAndAllLaterOnes) {
    for (std::size_t number = 0; number < undisturbed.size(); ++number) {
        for (const Thrown& thrown : THROWN)
            importThrowing(number, true, thrown);
    }
}

INSTANTIATE_TEST_SUITE_P(Scenarios, ThrowingHost, testing::ValuesIn(importScenarios()),
                         [](const testing::TestParamInfo<ImportScenario>& scenario) {
                             return std::string(scenario.param.title);
                         });

// Together the scenarios send every message of an import, so that none is missed
// above. ("No input file specified." and a file that cannot be opened have tests of
// their own.)
TEST(ThrowingHostItself, scenariosSendEveryMessage) {
    std::string all;
    for (const ImportScenario& scenario : importScenarios())
        all += importText(scenario.objText, scenario.options).allMessages;
    static const char* const BEGINNINGS[] = {
        "1|Could not find material \"",
        "1|Could not find material library ",
        "1|Could not process face. ",
        "1|Could not split non-triangular face. Skipping face.",
        "1|Error processing Ambient color: ",
        "1|Error processing Diffuse color: ",
        "1|Error processing Dissolve: ",
        "1|Error processing Illumination Model: ",
        "1|Error processing New Material: Material name missing",
        "1|Error processing New Material: No name given.",
        "1|Error processing Optical Density: ",
        "1|Error processing Sharpness: ",
        "1|Error processing Specular Exponent: ",
        "1|Error processing Specular color: ",
        "1|Error processing Transmission Filter: ",
        "1|Error processing Transparency: ",
        "1|Error processing vertex normal: ",
        "1|Error processing vertex texture: ",
        "1|Error processing vertex: ",
        "1|Face does not have enough vertices. Skipping face.",
        "1|Map missing file name.",
        "1|No name given for material library. Materials will not be loaded.",
        "1|Polygonal face has elements that cannot be processed. It will be skipped.",
        "1|Problem processing map options.",
        "1|Problem with material library: ",
        "1|The data contains at least one pair of faces",
        "1|usemtl with no material name. No material will be assigned.",
        "2|Bad input values for -mm. Option skipped.",
        "2|Bad input values for -texres. Option skipped.",
        "2|Data compaction was turned off",
        "2|Error processing texture map. Map will be skipped.",
        "2|Invalid subdivision limit type. Assuming Iterations...",
        "2|Invalid value for -blendu. Option skipped.",
        "2|Invalid value for -blendv. Option skipped.",
        "2|Invalid value for -cc. Option skipped.",
        "2|Invalid value for -clamp. Option skipped.",
        "2|Invalid value for -imfchan. Option skipped.",
        "2|Invalid value for reflection map's -type.",
        "2|Material with the name \"",
        "2|Number of faces where ",
        "2|Reflection map is missing type. Map skipped.",
        "2|Unrecognized statement: ",
        "3|Compacting...",
        "3|Done Subdividing.",
        "3|Done compacting.",
        "3|Done reading input.",
        "3|Done reversing group names.",
        "3|Obj Converter Import:",
        "3|Obj data import complete.",
        "3|Reading input file...",
        "3|Reversing the order of group names...",
        "3|Subdividing to ",
        "3|Subdividing to up to ",
        "3|Subdividing...",
        "3|Subdivision ",
        "3|Using Mtllib file: ",
    };
    for (const char* beginning : BEGINNINGS)
        EXPECT_NE(("\n" + all).find(std::string("\n") + beginning), std::string::npos) << beginning;
    ObjConverter::clearInstance();
}

}  // namespace
}  // namespace obj_adapter::test
