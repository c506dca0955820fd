// What a host may do inside the message callback, and what it finds after an
// import.
#include "converter/converterState.h"
#include "support/importText.h"
#include "support/printedModel.h"
#include "support/temporaryDirectory.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cfenv>
#include <clocale>
#include <cstring>
#include <filesystem>
#include <functional>
#include <locale>
#include <stdexcept>
#include <string>
#include <vector>

#if defined(__SSE2__) || defined(_M_X64)
#include <xmmintrin.h>
#endif

namespace obj_adapter::test {
namespace {

// The callback of the test that runs, and what it was told.
std::function<void(int, const std::string&)> hostCode;
std::vector<std::string> received;

void receive(int level, const char* text) {
    const std::string copy = text;
    received.push_back(std::to_string(level) + "|" + copy);
    if (hostCode)
        hostCode(level, copy);
}

std::string receivedText() {
    std::string text;
    for (const std::string& message : received)
        text += message + "\n";
    return text;
}

class HostCallbackTest : public testing::Test {
protected:
    void SetUp() override {
        hostCode = nullptr;
        received.clear();
        ObjConverter::clearInstance();
        converter = ObjConverter::getInstance();
        converter->setMsgCallback(&receive);
        converter->setDataCompaction(false);
    }
    void TearDown() override {
        hostCode = nullptr;
        ObjConverter::clearInstance();
    }

    int import(const std::string& text) {
        fileName = directory.write("a.obj", text);
        const int code = converter->importObjDataFromFile(fileName.c_str());
        // The converter that there is now: the callback may have deleted the other.
        const bool isDone = code == ObjConverter::CONVERTER_OK;
        if (currentConverterState() != nullptr) {
            EXPECT_EQ(findViolations(viewOf(*ObjConverter::getInstance()),
                                     isDone ? ModelState::READ : ModelState::ENDED_EARLY),
                      "");
        }
        return code;
    }

    // Throws from the callback at every message that starts with the text.
    template <typename Failure>
    static void throwAt(const std::string& start, Failure failure) {
        hostCode = [start, failure](int /*level*/, const std::string& text) {
            if (text.rfind(start, 0) == 0)
                throw failure;
        };
    }

    TemporaryDirectory directory;
    ObjConverter* converter = nullptr;
    std::string fileName;
};

const std::string BEGIN = "3|Obj Converter Import:\n3|Reading input file...\n";
const std::string TRIANGLE = "v 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\n";

TEST_F(HostCallbackTest, throwingAtTheFirstMessageEndsTheImport) {
    throwAt("Obj Converter", std::runtime_error("host failed"));
    EXPECT_EQ(import(TRIANGLE), ObjConverter::CONVERTER_ERROR);
    EXPECT_EQ(receivedText(), "3|Obj Converter Import:\n1|Stopping conversion... host failed\n");
    EXPECT_EQ(converter->getNumberOfVertices(), 0);
}

TEST_F(HostCallbackTest, throwingWithoutATextIsAnUnknownException) {
    throwAt("Obj Converter", std::runtime_error(""));
    EXPECT_EQ(import(TRIANGLE), ObjConverter::CONVERTER_ERROR);
    EXPECT_EQ(receivedText(),
              "3|Obj Converter Import:\n1|Stopping conversion... Unknown exception\n");
}

TEST_F(HostCallbackTest, throwingWhatIsNoStandardException) {
    throwAt("Obj Converter", 7);
    EXPECT_EQ(import(TRIANGLE), ObjConverter::CONVERTER_ERROR);
    EXPECT_EQ(receivedText(),
              "3|Obj Converter Import:\n1|Stopping conversion... Unknown exception\n");
}

TEST_F(HostCallbackTest, throwingBadAllocHasTheOneText) {
    throwAt("Done reading", std::bad_alloc());
    EXPECT_EQ(import(TRIANGLE), ObjConverter::CONVERTER_ERROR);
    EXPECT_EQ(receivedText(),
              BEGIN + "3|Done reading input.\n1|Stopping conversion... bad allocation\n");
    EXPECT_EQ(converter->getNumberOfFaces(), 1);
}

TEST_F(HostCallbackTest, throwingAtNoInputFile) {
    throwAt("No input", std::runtime_error("host failed"));
    EXPECT_EQ(converter->importObjDataFromFile(nullptr), ObjConverter::CONVERTER_ERROR);
    EXPECT_EQ(receivedText(), "1|No input file specified.\n1|Stopping conversion... host failed\n");
}

TEST_F(HostCallbackTest, throwingAtTheLastMessageIsDropped) {
    throwAt("", std::runtime_error("host failed"));
    EXPECT_EQ(import(TRIANGLE), ObjConverter::CONVERTER_ERROR);
    EXPECT_EQ(receivedText(), "3|Obj Converter Import:\n1|Stopping conversion... host failed\n");
    throwAt("", 3);
    EXPECT_EQ(import(TRIANGLE), ObjConverter::CONVERTER_ERROR);
}

TEST_F(HostCallbackTest, throwingAtABadVertexEndsTheReading) {
    throwAt("Error processing vertex", std::runtime_error("host failed"));
    EXPECT_EQ(import("v 1 2 3\nv x\nv 4 5 6\n"), ObjConverter::CONVERTER_ERROR);
    EXPECT_EQ(receivedText(), BEGIN +
                                  "1|Error processing vertex: invalid stod argument\n"
                                  "Vertex will be replaced by (0,0,0).\n"
                                  "1|Problem reading obj file host failed\n"
                                  "1|Stopping conversion... Unable to read obj file.\n");
    EXPECT_EQ(converter->getNumberOfVertices(), 1);
}

TEST_F(HostCallbackTest, throwingAnIntAtABadVertexPassesTheReader) {
    throwAt("Error processing vertex", 7);
    EXPECT_EQ(import("v x\n"), ObjConverter::CONVERTER_ERROR);
    EXPECT_EQ(receivedText(), BEGIN +
                                  "1|Error processing vertex: invalid stod argument\n"
                                  "Vertex will be replaced by (0,0,0).\n"
                                  "1|Stopping conversion... Unknown exception\n");
}

TEST_F(HostCallbackTest, throwingAtTheReadersOwnReport) {
    hostCode = [](int /*level*/, const std::string& text) {
        if (text.rfind("Error processing", 0) == 0)
            throw std::runtime_error("first");
        if (text.rfind("Problem reading", 0) == 0)
            throw std::runtime_error("second");
    };
    EXPECT_EQ(import("vn x\n"), ObjConverter::CONVERTER_ERROR);
    EXPECT_EQ(receivedText(), BEGIN +
                                  "1|Error processing vertex normal: invalid stod argument\n"
                                  "Vertex Normal will be replaced by (0,0,0).\n"
                                  "1|Problem reading obj file first\n"
                                  "1|Stopping conversion... second\n");
}

TEST_F(HostCallbackTest, throwingInsideATriangulationCountsAsItsFailure) {
    for (int round = 0; round < 2; ++round) {
        received.clear();
        if (round == 0)
            throwAt("Polygonal face", std::runtime_error("host failed"));
        else
            throwAt("Polygonal face", 7);
        EXPECT_EQ(import(TRIANGLE + "f 1 2 3 1\n"), ObjConverter::CONVERTER_OK);
        EXPECT_EQ(
            receivedText(),
            BEGIN +
                "1|Polygonal face has elements that cannot be processed. It will be skipped.\n"
                "1|Could not split non-triangular face. Skipping face.\n"
                "3|Done reading input.\n"
                "3|Obj data import complete.\n");
    }
}

TEST_F(HostCallbackTest, throwingInsideALibraryMakesItNotFound) {
    directory.write("a.mtl", "newmtl red\n");
    throwAt("Using Mtllib", 7);
    EXPECT_EQ(import("mtllib a.mtl\n" + TRIANGLE), ObjConverter::CONVERTER_OK);
    EXPECT_EQ(receivedText(), BEGIN + "3|Using Mtllib file: " + directory.getPath() +
                                  "a.mtl\n"
                                  "1|Could not find material library a.mtl\n"
                                  "3|Done reading input.\n"
                                  "3|Obj data import complete.\n");
}

TEST_F(HostCallbackTest, gettersAnswerWithWhatIsThere) {
    int vertices = -1;
    int faces = -1;
    hostCode = [&](int /*level*/, const std::string& text) {
        if (text.rfind("Face does not", 0) == 0) {
            vertices = converter->getNumberOfVertices();
            faces = converter->getNumberOfFaces();
        }
    };
    EXPECT_EQ(import(TRIANGLE + "f 1\n" + TRIANGLE), ObjConverter::CONVERTER_OK);
    EXPECT_EQ(vertices, 3);
    EXPECT_EQ(faces, 1);
}

// Every face stands in its group's list by the time of a message.
TEST_F(HostCallbackTest, groupsHoldTheFacesReadSoFar) {
    std::string seen;
    hostCode = [&](int /*level*/, const std::string& text) {
        if (text.rfind("Error", 0) != 0 && text.rfind("Polygonal", 0) != 0)
            return;
        EXPECT_EQ(findViolations(viewOf(*converter), ModelState::ENDED_EARLY), "");
        for (int group = 0; group < converter->getNumberOfGroups(); ++group)
            seen += std::to_string(converter->getGroup(group)->getNumberOfFaces()) + " ";
        seen += "of " + std::to_string(converter->getNumberOfFaces()) + "; ";
    };
    import(
        "v 0 0 0\nv 1 0 0\nv 1 1 0\nf 1 2 3\nv x\nf 1 2 3\nf 3 2 1\nv x\ng a\nf 1 2 3\nf 1 2 3 1\n"
        "f 2 3 1\nf 1 2 9\nf 2 1 3\nv x\n");
    EXPECT_EQ(seen, "1 of 1; 3 of 3; 3 1 of 4; 3 4 of 7; ");
}

// What the host writes into a face while the file is read is repaired like what the
// file says, also through a pointer lent at an earlier message.
TEST_F(HostCallbackTest, indicesWrittenInsideAreRepaired) {
    for (const bool isLentEarlier : {false, true}) {
        SCOPED_TRACE(isLentEarlier);
        SetUp();
        Face* face = nullptr;
        hostCode = [&](int /*level*/, const std::string& text) {
            if (text.rfind("Error", 0) == 0 && isLentEarlier)
                face = converter->getFace(0);
            if (text.rfind("Unrecognized", 0) != 0)
                return;
            if (!isLentEarlier)
                face = converter->getFace(0);
            face->getElement(1).vertexIndex = 99;
        };
        import("v 0 0 0\nv 1 0 0\nv 1 1 0\nf 1 2 3\nv x\nunknown\n");
        EXPECT_EQ(converter->getFace(0)->elements[1].vertexIndex, 3);
        EXPECT_NE(receivedText().find("being out of range: 1\n"), std::string::npos);
    }
}

// And what it wrote between two imports.
TEST_F(HostCallbackTest, indicesWrittenBetweenImportsAreRepaired) {
    import("v 0 0 0\nv 1 0 0\nv 1 1 0\nf 1 2 3\n");
    converter->getFace(0)->getElement(1).vertexIndex = 99;
    import("v 0 0 0\n");
    EXPECT_EQ(converter->getFace(0)->elements[1].vertexIndex, 3);
}

TEST_F(HostCallbackTest, aSecondImportInsideIsRefusedSilently) {
    int innerResult = -1;
    hostCode = [&](int /*level*/, const std::string& text) {
        if (text.rfind("Face does not", 0) == 0)
            innerResult = converter->importObjDataFromFile("./other.obj");
    };
    EXPECT_EQ(import(TRIANGLE + "f 1\n"), ObjConverter::CONVERTER_OK);
    EXPECT_EQ(innerResult, ObjConverter::CONVERTER_ERROR);
    EXPECT_EQ(receivedText(), BEGIN +
                                  "1|Face does not have enough vertices. Skipping face.\n"
                                  "3|Done reading input.\n"
                                  "3|Obj data import complete.\n");
    EXPECT_EQ(currentConverterState()->settings.inputFile, "a.obj");
}

TEST_F(HostCallbackTest, clearInstanceInsideDoesNothing) {
    hostCode = [](int /*level*/, const std::string& /*text*/) { ObjConverter::clearInstance(); };
    EXPECT_EQ(import(TRIANGLE), ObjConverter::CONVERTER_OK);
    EXPECT_EQ(ObjConverter::getInstance(), converter);
    EXPECT_EQ(converter->getNumberOfFaces(), 1);
}

TEST_F(HostCallbackTest, deletingTheConverterInsideLetsTheImportEnd) {
    bool isDeleted = false;
    hostCode = [&](int /*level*/, const std::string& /*text*/) {
        if (!isDeleted) {
            isDeleted = true;
            delete converter;
        }
    };
    EXPECT_EQ(import(TRIANGLE), ObjConverter::CONVERTER_OK);
    EXPECT_EQ(receivedText(), "3|Obj Converter Import:\n");
    EXPECT_EQ(ObjConverter::getInstance()->getNumberOfFaces(), 0);
}

TEST_F(HostCallbackTest, aNewConverterInsideStandsByItself) {
    bool isDeleted = false;
    int innerResult = -1;
    const std::string other = directory.write("b.obj", TRIANGLE + TRIANGLE);
    hostCode = [&](int /*level*/, const std::string& /*text*/) {
        if (isDeleted)
            return;
        isDeleted = true;
        delete converter;
        innerResult = ObjConverter::getInstance()->importObjDataFromFile(other.c_str());
    };
    EXPECT_EQ(import(TRIANGLE), ObjConverter::CONVERTER_OK);
    EXPECT_EQ(innerResult, ObjConverter::CONVERTER_OK);
    EXPECT_EQ(ObjConverter::getInstance()->getNumberOfVertices(), 3);
}

TEST_F(HostCallbackTest, settingsTakeEffectWhereTheyAreReadNext) {
    hostCode = [&](int /*level*/, const std::string& text) {
        if (text == "Reading input file...")
            converter->setInput("elsewhere/other.obj");
        if (text == "Done reading input.")
            converter->setDataCompaction(true);
        if (text == "Done compacting.")
            converter->setSubdivisionRounds("ITERATIONS", 1);
        if (text == "Done Subdividing.")
            converter->setMsgCallback(nullptr);
    };
    EXPECT_EQ(import(TRIANGLE), ObjConverter::CONVERTER_ERROR);
    received.clear();
    hostCode = [&](int /*level*/, const std::string& text) {
        if (text == "Done reading input.")
            converter->setDataCompaction(true);
        if (text == "Done compacting.")
            converter->setSubdivisionRounds("ITERATIONS", 1);
        if (text == "Done Subdividing.")
            converter->setMsgCallback(nullptr);
    };
    EXPECT_EQ(import(TRIANGLE), ObjConverter::CONVERTER_OK);
    EXPECT_EQ(receivedText(), BEGIN +
                                  "3|Done reading input.\n"
                                  "3|Compacting...\n"
                                  "3|Done compacting.\n"
                                  "3|Subdividing...\n"
                                  "3|Subdivision 1...\n"
                                  "3|Done Subdividing.\n");
}

TEST_F(HostCallbackTest, materialsRenamedInsideAreFoundByTheirNewNames) {
    directory.write("a.mtl", "newmtl red\nnewmtl blue\n");
    hostCode = [&](int /*level*/, const std::string& text) {
        if (text.rfind("Face does not", 0) == 0) {
            converter->getMaterial(0)->name = "blue";
            converter->getMaterial(1)->name = "green";
        }
    };
    EXPECT_EQ(import("mtllib a.mtl\nusemtl blue\nv 0 0 0\nf 1 1 1\nf 1\nusemtl blue\nf 1 1 1\n"
                     "usemtl green\nf 1 1 1\nusemtl red\nf 1 1 1\n"),
              ObjConverter::CONVERTER_OK);
    EXPECT_EQ(converter->getFace(0)->getMaterialIndex(), 1);
    EXPECT_EQ(converter->getFace(1)->getMaterialIndex(), 0);
    EXPECT_EQ(converter->getFace(2)->getMaterialIndex(), 1);
    EXPECT_EQ(converter->getFace(3)->getMaterialIndex(), NO_INDEX);
}

TEST_F(HostCallbackTest, materialsRenamedBetweenImportsAreFoundByTheirNewNames) {
    directory.write("a.mtl", "newmtl red\n");
    converter->setMsgCallback(nullptr);
    EXPECT_EQ(import("mtllib a.mtl\nusemtl red\n"), ObjConverter::CONVERTER_OK);
    Material* material = converter->getMaterial(0);
    EXPECT_EQ(import("usemtl red\nv 0 0 0\nf 1 1 1\n"), ObjConverter::CONVERTER_OK);
    material->name = "blue";
    EXPECT_EQ(import("usemtl blue\nf 1 1 1\nusemtl red\nf 1 1 1\n"), ObjConverter::CONVERTER_OK);
    EXPECT_EQ(converter->getFace(0)->getMaterialIndex(), 0);
    EXPECT_EQ(converter->getFace(1)->getMaterialIndex(), 0);
    EXPECT_EQ(converter->getFace(2)->getMaterialIndex(), NO_INDEX);
}

TEST_F(HostCallbackTest, theHostsOwnTokeniserAndErrnoMeetNothingOfOurs) {
    char text[] = "one two three";
    EXPECT_STREQ(std::strtok(text, " "), "one");
    hostCode = [](int /*level*/, const std::string& /*text*/) {
        char other[] = "x y";
        std::strtok(other, " ");
        errno = EDOM;
        std::setlocale(LC_ALL, "C");
    };
    errno = ENOENT;
    EXPECT_EQ(import("v 1 x 3\nv 4 5 6 7\nf 1 2\nf 1 1 2\n"), ObjConverter::CONVERTER_OK);
    EXPECT_EQ(errno, ENOENT);
    EXPECT_EQ(converter->getVertex(1)->w, 7.0);
    errno = 0;
}

TEST_F(HostCallbackTest, anImportLeavesStrtokAlone) {
    char text[] = "one two three";
    EXPECT_STREQ(std::strtok(text, " "), "one");
    EXPECT_EQ(import(TRIANGLE), ObjConverter::CONVERTER_OK);
    EXPECT_STREQ(std::strtok(nullptr, " "), "two");
}

TEST_F(HostCallbackTest, anImportLeavesDirectoryAndLocaleAlone) {
    const auto directoryBefore = std::filesystem::current_path();
    const std::string localeBefore = std::setlocale(LC_ALL, nullptr);
    EXPECT_EQ(import(TRIANGLE), ObjConverter::CONVERTER_OK);
    EXPECT_EQ(std::filesystem::current_path(), directoryBefore);
    EXPECT_EQ(std::setlocale(LC_ALL, nullptr), localeBefore);
}

// A numeric facet with a comma and grouping, as a host's user may have.
class CommaNumbers : public std::numpunct<char> {
    char do_decimal_point() const override { return ','; }
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
};

TEST_F(HostCallbackTest, theHostsLocaleChangesNothing) {
    const std::locale before =
        std::locale::global(std::locale(std::locale::classic(), new CommaNumbers));
    std::string text = "v 1.5 2.25 1234.5\n";
    for (int line = 0; line < 1234; ++line)
        text += "xx\n";
    EXPECT_EQ(import(text), ObjConverter::CONVERTER_OK);
    std::locale::global(before);
    EXPECT_EQ(converter->getVertex(0)->x, 1.5);
    EXPECT_EQ(converter->getVertex(0)->z, 1234.5);
    EXPECT_EQ(received.at(2), "2|Unrecognized statement: \"xx\" was seen 1234 times.");
}

// A model with numbers that need rounding, and the one that comes of it in the
// default mode.
TEST_F(HostCallbackTest, theHostsRoundingModeChangesNothingAndStays) {
    const std::string text =
        "v 0.1 0.2 0.3\nv 1.7e-5 123456789.123456789 3.3\nv 2.7 0.7 1e22\nv 5.5 1e-310 7.77\n"
        "f 1 2 3\nf 1 3 4\nf 1 4 2\nf 2 4 3\n";
    converter->setSubdivisionRounds("ITERATIONS", 2);
    ASSERT_EQ(import(text), ObjConverter::CONVERTER_OK);
    const std::string expected = printModel(viewOf(*converter));

    for (const int mode : {FE_UPWARD, FE_DOWNWARD, FE_TOWARDZERO}) {
        SCOPED_TRACE(mode);
        ObjConverter::clearInstance();
        converter = ObjConverter::getInstance();
        converter->setMsgCallback(&receive);
        converter->setSubdivisionRounds("ITERATIONS", 2);
        bool callbackSawHostMode = true;
        hostCode = [&](int /*level*/, const std::string& /*text*/) {
            callbackSawHostMode = callbackSawHostMode && std::fegetround() == mode;
        };
        std::fesetround(mode);
        const int result = import(text);
        const int modeAfter = std::fegetround();
        std::fesetround(FE_TONEAREST);
        EXPECT_EQ(result, ObjConverter::CONVERTER_OK);
        EXPECT_EQ(modeAfter, mode);
        EXPECT_TRUE(callbackSawHostMode);
        EXPECT_EQ(printModel(viewOf(*converter)), expected);
    }
}

TEST_F(HostCallbackTest, theHostsModeIsSeenByAConverterMadeInside) {
    bool isDeleted = false;
    bool alwaysSawHostMode = true;
    hostCode = [&](int /*level*/, const std::string& /*text*/) {
        alwaysSawHostMode = alwaysSawHostMode && std::fegetround() == FE_UPWARD;
        if (isDeleted)
            return;
        isDeleted = true;
        delete converter;
        ObjConverter::getInstance()->setMsgCallback(&receive);
    };
    std::fesetround(FE_UPWARD);
    const int result = import(TRIANGLE);
    std::fesetround(FE_TONEAREST);
    EXPECT_EQ(result, ObjConverter::CONVERTER_OK);
    EXPECT_TRUE(alwaysSawHostMode);
    EXPECT_GT(received.size(), 2U);
}

#if defined(__SSE2__) || defined(_M_X64)

// Both switches of the SSE unit that replace subnormal numbers by zero.
TEST_F(HostCallbackTest, theHostsFlushingToZeroChangesNothingAndStays) {
    constexpr unsigned FLUSHING = 0x8040;
    const unsigned before = _mm_getcsr();
    _mm_setcsr(before | FLUSHING);
    const int result = import("v 4e-310 1e-320 -5e-324\n");
    const unsigned after = _mm_getcsr();
    _mm_setcsr(before);
    EXPECT_EQ(result, ObjConverter::CONVERTER_OK);
    EXPECT_EQ(after & FLUSHING, FLUSHING);
    EXPECT_EQ(converter->getVertex(0)->x, 4e-310);
    EXPECT_EQ(converter->getVertex(0)->y, 1e-320);
    EXPECT_EQ(converter->getVertex(0)->z, -5e-324);
}

#endif

}  // namespace
}  // namespace obj_adapter::test
