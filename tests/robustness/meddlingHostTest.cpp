// Hosts that meddle with the converter and with the process while an import runs,
// or have set the process up in a way of their own: the model and the messages are
// those of a quiet host.
#include "support/countedMemory.h"
#include "support/generatedFile.h"
#include "support/importScenarios.h"
#include "support/printedModel.h"
#include "support/temporaryDirectory.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cfenv>
#include <clocale>
#include <cstddef>
#include <cstring>
#include <filesystem>
#include <functional>
#include <limits>
#include <locale>
#include <string>
#include <utility>
#include <vector>

#if defined(__SSE2__) || defined(_M_X64)
#define HAS_SSE_CONTROL
#include <xmmintrin.h>
#endif

namespace obj_adapter::test {
namespace {

struct Outcome {
    int code = 0;
    std::vector<std::string> messages;
    std::string model;

    bool operator==(const Outcome&) const = default;
};

// What the host does in its callback, and what it was told.
std::function<void()> hostCode;
std::vector<std::string> received;

void receive(int level, const char* text) {
    received.push_back(std::to_string(level) + "|" + text);
    if (hostCode)
        hostCode();
}

class MeddlingHost : public testing::TestWithParam<ImportScenario> {
protected:
    void SetUp() override {
        for (const auto& [name, content] : options().otherFiles)
            directory.write(name, content);
        fileName = directory.write(options().fileName, GetParam().objText);
        quiet = import();
        ASSERT_EQ(quiet.code, ObjConverter::CONVERTER_OK);
    }
    void TearDown() override { cleanUp(); }

    static void cleanUp() {
        hostCode = nullptr;
        received = {};
        ObjConverter::clearInstance();
    }

    static const ImportOptions& options() { return GetParam().options; }

    static void prepareConverter() {
        ObjConverter::clearInstance();
        received.clear();
        ObjConverter* converter = ObjConverter::getInstance();
        converter->setMsgCallback(&receive);
        converter->setDataCompaction(options().compaction);
        converter->setUseGroupNameHierarchy(options().hierarchy);
        converter->setHierarchyReverseGroupNames(options().reverse);
        converter->setHierarchyShowLastNamesOnly(options().showLastNamesOnly);
        converter->setSkipPolygonsWithoutEar(options().skipPolygonsWithoutEar);
        converter->setSubdivisionRounds(options().limitType.c_str(), options().rounds);
    }

    Outcome import() const {
        prepareConverter();
        Outcome outcome;
        outcome.code = ObjConverter::getInstance()->importObjDataFromFile(fileName.c_str());
        return finished(outcome);
    }

    static Outcome finished(Outcome outcome) {
        hostCode = nullptr;
        outcome.messages = received;
        outcome.model = printModel(viewOf(*ObjConverter::getInstance()));
        return outcome;
    }

    TemporaryDirectory directory;
    std::string fileName;
    Outcome quiet;
};

// Everything that an ended import offers, read to the last byte.
void readAll(ObjConverter& converter) {
    const std::string model = printModel(viewOf(converter));
    EXPECT_GE(model.size(), static_cast<std::size_t>(converter.getNumberOfVertices()));
}

TEST_P(MeddlingHost, readsTheModelAtEachMessage) {
    hostCode = [] { readAll(*ObjConverter::getInstance()); };
    EXPECT_TRUE(import() == quiet);
}

// The tree renames groups of one name, so the model need not be the same.
TEST_P(MeddlingHost, asksForTheTreeAtEachMessage) {
    hostCode = [] {
        ObjHierarchyNode* root = ObjConverter::getInstance()->getRootOfHierarchy();
        ASSERT_NE(root, nullptr);
        std::vector<ObjHierarchyNode*> nodes = {root};
        while (!nodes.empty()) {
            ObjHierarchyNode* node = nodes.back();
            nodes.pop_back();
            node->getName();
            node->getFullName();
            for (int child = 0; child < node->getNumberOfChildren(); ++child)
                nodes.push_back(node->getChild(child));
        }
    };
    const Outcome outcome = import();
    EXPECT_EQ(outcome.code, quiet.code);
    EXPECT_EQ(outcome.messages, quiet.messages);
    EXPECT_EQ(findViolations(viewOf(*ObjConverter::getInstance()),
                             expectedState(outcome.code, options())),
              "");
}

TEST_P(MeddlingHost, importsAndClearsAtEachMessage) {
    hostCode = [&] {
        ObjConverter* converter = ObjConverter::getInstance();
        EXPECT_EQ(converter->importObjDataFromFile(fileName.c_str()),
                  ObjConverter::CONVERTER_ERROR);
        EXPECT_EQ(converter->importObjDataFromFile(nullptr), ObjConverter::CONVERTER_ERROR);
        ObjConverter::clearInstance();
        EXPECT_EQ(ObjConverter::getInstance(), converter);
    };
    EXPECT_TRUE(import() == quiet);
}

TEST_P(MeddlingHost, removesItsCallbackAtEachMessage) {
    for (std::size_t number = 0; number < quiet.messages.size(); ++number) {
        SCOPED_TRACE(quiet.messages[number]);
        hostCode = [&] {
            if (received.size() == number + 1)
                ObjConverter::getInstance()->setMsgCallback(nullptr);
        };
        const Outcome outcome = import();
        EXPECT_EQ(outcome.messages.size(), number + 1);
        EXPECT_EQ(outcome.code, quiet.code);
        EXPECT_EQ(outcome.model, quiet.model);
    }
}

// The import ends, without a word, and takes its model along.
TEST_P(MeddlingHost, deletesTheConverterAtEachMessage) {
    for (std::size_t number = 0; number < quiet.messages.size(); ++number) {
        SCOPED_TRACE(testing::Message() << "message " << number);
        cleanUp();
        const std::size_t blocksBefore = getNumberOfBlocksInUse();
        prepareConverter();
        bool isDeleted = false;
        hostCode = [&] {
            if (!isDeleted && received.size() == number + 1) {
                isDeleted = true;
                delete ObjConverter::getInstance();
            }
        };
        const int code = ObjConverter::getInstance()->importObjDataFromFile(fileName.c_str());
        EXPECT_TRUE(isDeleted);
        EXPECT_EQ(code, ObjConverter::CONVERTER_OK);
        EXPECT_EQ(received.size(), number + 1);
        EXPECT_EQ(ObjConverter::getInstance()->getNumberOfVertices(), 0);
        cleanUp();
        EXPECT_EQ(getNumberOfBlocksInUse(), blocksBefore);
    }
}

// strtok, errno, the C locale and the current directory belong to the host: what
// it does to them changes nothing, and what it had set is there afterwards.
TEST_P(MeddlingHost, movesTheProcessAtEachMessage) {
    const std::filesystem::path directoryBefore = std::filesystem::current_path();
    // Not where the libraries are: they would be found by their bare names.
    const std::filesystem::path elsewhere = std::filesystem::temp_directory_path();
    bool isAway = false;
    hostCode = [&] {
        char other[] = "x y z";
        std::strtok(other, " ");
        errno = EDOM;
        std::setlocale(LC_ALL, isAway ? "C" : "");
        isAway = !isAway;
        std::filesystem::current_path(isAway ? elsewhere : directoryBefore);
    };
    const Outcome outcome = import();
    std::filesystem::current_path(directoryBefore);
    std::setlocale(LC_ALL, "C");
    EXPECT_TRUE(outcome == quiet);

    char text[] = "one two three";
    std::strtok(text, " ");
    errno = ENOENT;
    EXPECT_TRUE(import() == quiet);
    EXPECT_EQ(errno, ENOENT);
    EXPECT_STREQ(std::strtok(nullptr, " "), "two");
    EXPECT_EQ(std::filesystem::current_path(), directoryBefore);
    EXPECT_STREQ(std::setlocale(LC_ALL, nullptr), "C");
    errno = 0;
}

// A numeric facet with a comma and grouping, as a host's user may have.
class CommaNumbers : public std::numpunct<char> {
    char do_decimal_point() const override { return ','; }
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
};

TEST_P(MeddlingHost, hasALocaleOfItsOwn) {
    const std::locale before =
        std::locale::global(std::locale(std::locale::classic(), new CommaNumbers));
    const Outcome outcome = import();
    std::locale::global(before);
    EXPECT_TRUE(outcome == quiet);
}

// The same by the C library, where such a locale is installed; the test decimalComma
// makes one.
TEST_P(MeddlingHost, hasALocaleOfTheCLibraryOfItsOwn) {
    if (std::setlocale(LC_ALL, "de_DE.UTF-8") == nullptr)
        GTEST_SKIP() << "there is no such locale";
    const std::string decimalPoint = std::localeconv()->decimal_point;
    const Outcome outcome = import();
    const std::string nameAfter = std::setlocale(LC_ALL, nullptr);
    std::setlocale(LC_ALL, "C");
    EXPECT_EQ(decimalPoint, ",");
    EXPECT_EQ(nameAfter, "de_DE.UTF-8");
    EXPECT_TRUE(outcome == quiet);
}

INSTANTIATE_TEST_SUITE_P(Scenarios, MeddlingHost, testing::ValuesIn(importScenarios()),
                         [](const testing::TestParamInfo<ImportScenario>& scenario) {
                             return std::string(scenario.param.title);
                         });

// --- Floating-point modes ---------------------------------------------------------

// Sets a mode of the host's for as long as it lives.
class HostMode {
public:
    HostMode(int direction, unsigned sseSwitches) {
        std::fegetenv(&before);
#if defined(HAS_SSE_CONTROL)
        sseBefore = _mm_getcsr();
#endif
        std::fesetround(direction);
#if defined(HAS_SSE_CONTROL)
        _mm_setcsr(_mm_getcsr() | sseSwitches);
#else
        static_cast<void>(sseSwitches);
#endif
    }
    ~HostMode() {
        std::fesetenv(&before);
#if defined(HAS_SSE_CONTROL)
        _mm_setcsr(sseBefore);
#endif
    }
    HostMode(const HostMode&) = delete;
    HostMode& operator=(const HostMode&) = delete;

private:
    std::fenv_t before;
    unsigned sseBefore = 0;
};

constexpr unsigned FLUSH_SUBNORMALS = 0x8040;

struct ModeCase {
    const char* title;
    int direction;
    unsigned sseSwitches;
};

const ModeCase MODES[] = {
    {"upward", FE_UPWARD, 0},
    {"downward", FE_DOWNWARD, 0},
    {"toward zero", FE_TOWARDZERO, 0},
    {"to nearest, subnormal numbers flushed", FE_TONEAREST, FLUSH_SUBNORMALS},
    {"upward, subnormal numbers flushed", FE_UPWARD, FLUSH_SUBNORMALS},
};

// The model with every bit, and the messages: of the default mode, or of a host
// that has set another and whose callback sees it.
std::string importInMode(const std::string& fileName, const ImportOptions& options,
                         const ModeCase* mode) {
    if (mode == nullptr) {
        const ImportResult result = importFile(fileName, options);
        return result.allMessages + printModel(result.model);
    }
    ImportResult result;
    {
        const HostMode hostMode(mode->direction, mode->sseSwitches);
        result = importFile(fileName, options);
    }
    return result.allMessages + printModel(result.model);
}

void expectSameInAllModes(const std::string& fileName, const ImportOptions& options) {
    const std::string expected = importInMode(fileName, options, nullptr);
    for (const ModeCase& mode : MODES) {
        SCOPED_TRACE(fileName + ", " + mode.title);
        // Too long to print.
        EXPECT_TRUE(importInMode(fileName, options, &mode) == expected);
    }
}

TEST(HostInAnotherMode, getsTheBitsOfTheScenarios) {
    for (const ImportScenario& scenario : importScenarios()) {
        const TemporaryDirectory directory;
        for (const auto& [name, content] : scenario.options.otherFiles)
            directory.write(name, content);
        expectSameInAllModes(directory.write("a.obj", scenario.objText), scenario.options);
    }
    ObjConverter::clearInstance();
}

TEST(HostInAnotherMode, getsTheBitsOfTheSamples) {
    ImportOptions options;
    options.skipPolygonsWithoutEar = true;
    options.compaction = true;
    for (const auto& entry : std::filesystem::directory_iterator(OBJ_ADAPTER_SAMPLES)) {
        if (entry.path().extension() == ".obj")
            expectSameInAllModes(entry.path().string(), options);
    }
    ObjConverter::clearInstance();
}

TEST(HostInAnotherMode, getsTheBitsOfGeneratedFiles) {
    constexpr unsigned FILES = 60;
    ImportOptions options;
    options.skipPolygonsWithoutEar = true;
    const TemporaryDirectory directory;
    for (unsigned seed = 1; seed <= FILES; ++seed) {
        const GeneratedFile file = generateFile(seed);
        directory.write("generated.mtl", file.mtlText);
        // Conflicting faces keep most of them from a round.
        options.rounds = static_cast<int>(seed % 3);
        options.limitType = "ITERATIONS";
        options.compaction = seed % 4 != 0;
        expectSameInAllModes(directory.write("a.obj", file.objText), options);
    }
    ObjConverter::clearInstance();
}

// The modes of the cases are set, and change results.
TEST(HostInAnotherMode, computesDifferentlyItself) {
    const auto compute = [] {
        volatile double one = 1.0;
        volatile double three = 3.0;
        volatile double five = 5.0;
        volatile double smallest = std::numeric_limits<double>::min();
        volatile double results[] = {one / three, -one / three, one / five, smallest / three};
        return std::vector<double>(std::begin(results), std::end(results));
    };
    const std::vector<double> expected = compute();
    for (const ModeCase& mode : MODES) {
        std::vector<double> results;
        {
            const HostMode hostMode(mode.direction, mode.sseSwitches);
            results = compute();
        }
        EXPECT_NE(results, expected) << mode.title;
    }
}

}  // namespace
}  // namespace obj_adapter::test
