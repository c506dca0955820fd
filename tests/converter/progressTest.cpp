// What a host is told of an import's progress, and how it cancels one.
#include "support/messageRecorder.h"
#include "support/modelChecker.h"
#include "support/modelView.h"
#include "support/printedModel.h"
#include "support/temporaryDirectory.h"

#include <obj_adapter/objConverter.h>

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

namespace obj_adapter::test {

namespace {

const char* const TWO_FACES =
    "v 0 0 0\nv 1 0 0\nv 0 1 0\nv 1 1 0\n"
    "f 1 2 3\nf 2 4 3\n";

struct Call {
    int stage = 0;
    double fraction = 0.0;
};

// A host that keeps what it is told, and answers as it was told to.
struct Host {
    std::vector<Call> calls;
    std::function<bool(const Call&)> answer;

    static bool ask(void* userData, int stage, double fraction) {
        Host& host = *static_cast<Host*>(userData);
        host.calls.push_back({stage, fraction});
        return !host.answer || host.answer(host.calls.back());
    }

    std::string stages() const {
        std::string text;
        for (const Call& call : calls)
            text += std::to_string(call.stage);
        return text;
    }
};

class ProgressTest : public testing::Test {
protected:
    ProgressTest() {
        ObjConverter::clearInstance();
        converter().setProgressCallback(&Host::ask, &host);
        recorder.install();
    }
    ~ProgressTest() override { ObjConverter::clearInstance(); }

    static ObjConverter& converter() { return *ObjConverter::getInstance(); }

    int import(const std::string& objText) {
        return converter().importObjDataFromFile(directory.write("test.obj", objText).c_str());
    }

    TemporaryDirectory directory;
    MessageRecorder recorder;
    Host host;
};

TEST_F(ProgressTest, tellsWhenAStageBegins) {
    ASSERT_EQ(import(TWO_FACES), ObjConverter::CONVERTER_OK);
    EXPECT_EQ(host.stages(), "12");
    for (const Call& call : host.calls)
        EXPECT_EQ(call.fraction, 0.0);
}

TEST_F(ProgressTest, tellsOfNoStageThatIsLeftOut) {
    converter().setDataCompaction(false);
    ASSERT_EQ(import(TWO_FACES), ObjConverter::CONVERTER_OK);
    EXPECT_EQ(host.stages(), "1");
}

TEST_F(ProgressTest, theHostsNoEndsTheImportWithOneMessage) {
    host.answer = [](const Call&) { return false; };
    EXPECT_EQ(import(TWO_FACES), ObjConverter::CONVERTER_ERROR);
    EXPECT_EQ(recorder.getText(),
              "3|Obj Converter Import:\n"
              "3|Reading input file...\n"
              "1|Stopping conversion... Cancelled by host\n");
    EXPECT_EQ(host.stages(), "1");
    EXPECT_EQ(converter().getNumberOfVertices(), 0);
}

TEST_F(ProgressTest, whatIsThrownCountsAsNo) {
    for (int kind = 0; kind < 2; ++kind) {
        recorder.clear();
        host.answer = [kind](const Call& call) -> bool {
            if (call.stage != ObjConverter::STAGE_COMPACTION)
                return true;
            if (kind == 0)
                throw std::runtime_error("no message of ours");
            throw 5;
        };
        EXPECT_EQ(import(TWO_FACES), ObjConverter::CONVERTER_ERROR);
        EXPECT_EQ(recorder.getText(),
                  "3|Obj Converter Import:\n"
                  "3|Reading input file...\n"
                  "3|Done reading input.\n"
                  "3|Compacting...\n"
                  "1|Stopping conversion... Cancelled by host\n");
    }
}

TEST_F(ProgressTest, theNextImportIsNotCancelled) {
    host.answer = [](const Call&) { return false; };
    EXPECT_EQ(import(TWO_FACES), ObjConverter::CONVERTER_ERROR);
    host.answer = nullptr;
    EXPECT_EQ(import(TWO_FACES), ObjConverter::CONVERTER_OK);
    EXPECT_EQ(converter().getNumberOfFaces(), 2);
}

TEST_F(ProgressTest, isNotToldWithoutACallback) {
    converter().setProgressCallback(nullptr, nullptr);
    EXPECT_EQ(import(TWO_FACES), ObjConverter::CONVERTER_OK);
    EXPECT_TRUE(host.calls.empty());
}

TEST_F(ProgressTest, theCallbackMayRemoveItself) {
    host.answer = [](const Call&) {
        converter().setProgressCallback(nullptr, nullptr);
        return true;
    };
    EXPECT_EQ(import(TWO_FACES), ObjConverter::CONVERTER_OK);
    EXPECT_EQ(host.stages(), "1");
}

TEST_F(ProgressTest, callsInsideTheCallbackChangeNothing) {
    host.answer = [](const Call&) {
        EXPECT_EQ(converter().importObjDataFromFile(nullptr), ObjConverter::CONVERTER_ERROR);
        ObjConverter::clearInstance();
        return true;
    };
    EXPECT_EQ(import(TWO_FACES), ObjConverter::CONVERTER_OK);
    EXPECT_EQ(host.stages(), "12");
    EXPECT_EQ(converter().getNumberOfFaces(), 2);
}

TEST_F(ProgressTest, aHostMayDestroyTheConverterAndCancel) {
    host.answer = [](const Call&) {
        delete ObjConverter::getInstance();
        return false;
    };
    EXPECT_EQ(import(TWO_FACES), ObjConverter::CONVERTER_ERROR);
    EXPECT_EQ(host.stages(), "1");
    EXPECT_EQ(converter().getNumberOfVertices(), 0);
}

// A text of many lines, of about so many bytes: a strip of triangles.
std::string longText(std::size_t bytes) {
    std::string text;
    int vertices = 0;
    while (text.size() < bytes) {
        text += "v " + std::to_string(vertices) + " 0.25 " + std::to_string(vertices % 7) + "\n";
        if (++vertices >= 3)
            text += "f " + std::to_string(vertices) + " " + std::to_string(vertices - 1) + " " +
                    std::to_string(vertices - 2) + "\n";
    }
    return text;
}

constexpr std::size_t LONG_TEXT = 5'000'000;

TEST_F(ProgressTest, tellsOfReadingAboutEveryMillionBytes) {
    converter().setDataCompaction(false);
    ASSERT_EQ(import(longText(LONG_TEXT)), ObjConverter::CONVERTER_OK);
    ASSERT_EQ(host.stages(), "11111");
    for (std::size_t call = 1; call < host.calls.size(); ++call)
        EXPECT_NEAR(host.calls[call].fraction, 0.2 * static_cast<double>(call), 0.06);
}

TEST_F(ProgressTest, aCancelledReadingKeepsWhatWasRead) {
    const std::string text = longText(LONG_TEXT);
    ASSERT_EQ(import(text), ObjConverter::CONVERTER_OK);
    const int allFaces = converter().getNumberOfFaces();
    ObjConverter::clearInstance();
    converter().setProgressCallback(&Host::ask, &host);
    recorder.install();
    recorder.clear();

    host.answer = [](const Call& call) { return call.fraction < 0.5; };
    EXPECT_EQ(import(text), ObjConverter::CONVERTER_ERROR);
    EXPECT_EQ(recorder.getText(),
              "3|Obj Converter Import:\n"
              "3|Reading input file...\n"
              "1|Stopping conversion... Cancelled by host\n");
    EXPECT_GT(converter().getNumberOfFaces(), allFaces / 2);
    EXPECT_LT(converter().getNumberOfFaces(), allFaces);
    EXPECT_EQ(findViolations(viewOf(converter()), ModelState::ENDED_EARLY), "");
}

// One triangle, again and again.
std::string repeatedFace(int count) {
    std::string text = "v 0 0 0\nv 1 0 0\nv 0 1 0\n";
    for (int face = 0; face < count; ++face)
        text += "f 1 2 3\n";
    return text;
}

constexpr int MANY_FACES = 1'250'000;

TEST_F(ProgressTest, tellsOfCompactionAboutEveryMillionRecords) {
    ASSERT_EQ(import(repeatedFace(MANY_FACES)), ObjConverter::CONVERTER_OK);
    std::string compaction;
    for (const Call& call : host.calls) {
        if (call.stage == ObjConverter::STAGE_COMPACTION)
            compaction += std::to_string(std::lround(10 * call.fraction)) + " ";
    }
    // Each face twice, so two and a half million in all.
    EXPECT_EQ(compaction, "0 4 8 ");
    EXPECT_EQ(converter().getNumberOfFaces(), 1);
}

TEST_F(ProgressTest, aCancelledCompactionIsWhole) {
    host.answer = [](const Call& call) {
        return call.stage != ObjConverter::STAGE_COMPACTION || call.fraction == 0.0;
    };
    EXPECT_EQ(import(repeatedFace(MANY_FACES)), ObjConverter::CONVERTER_ERROR);
    EXPECT_EQ(recorder.getText(),
              "3|Obj Converter Import:\n"
              "3|Reading input file...\n"
              "3|Done reading input.\n"
              "3|Compacting...\n"
              "1|Stopping conversion... Cancelled by host\n");
    EXPECT_EQ(converter().getNumberOfFaces(), 1);
    EXPECT_EQ(findViolations(viewOf(converter()), ModelState::COMPACTED), "");
}

TEST_F(ProgressTest, tellsOfEveryRoundOfSubdivision) {
    converter().setSubdivisionRounds("ITERATIONS", 3);
    ASSERT_EQ(import(TWO_FACES), ObjConverter::CONVERTER_OK);
    EXPECT_EQ(host.stages(), "12333");
}

TEST_F(ProgressTest, aRoundThatIsCancelledAtItsBeginningIsNotRun) {
    converter().setSubdivisionRounds("ITERATIONS", 5);
    host.answer = [rounds = 0](const Call& call) mutable {
        return call.stage != ObjConverter::STAGE_SUBDIVISION || ++rounds < 3;
    };
    EXPECT_EQ(import(TWO_FACES), ObjConverter::CONVERTER_ERROR);
    EXPECT_EQ(recorder.getMessages().back(), "1|Stopping conversion... Cancelled by host");
    EXPECT_EQ(recorder.getMessages()[recorder.getMessages().size() - 2], "3|Subdivision 3...");
    EXPECT_EQ(converter().getNumberOfFaces(), 32);
    EXPECT_EQ(findViolations(viewOf(converter()), ModelState::SUBDIVIDED), "");
}

TEST_F(ProgressTest, aRoundThatIsCancelledWhileItRunsIsWhole) {
    converter().setSubdivisionRounds("ITERATIONS", 12);
    host.answer = [](const Call& call) { return call.fraction == 0.0; };
    EXPECT_EQ(import(TWO_FACES), ObjConverter::CONVERTER_ERROR);
    EXPECT_EQ(recorder.getMessages().back(), "1|Stopping conversion... Cancelled by host");
    EXPECT_EQ(recorder.getMessages()[recorder.getMessages().size() - 2], "3|Subdivision 10...");
    // The tenth round is the first to add more than a million.
    EXPECT_EQ(converter().getNumberOfFaces(), 2 << 20);
    for (const int face : {0, 1'000'000, 2'000'000}) {
        for (int corner = 0; corner < 3; ++corner)
            EXPECT_LT(converter().getFace(face)->getElement(corner).vertexIndex,
                      converter().getNumberOfVertices());
    }
}

// The host leaves a polygon that would keep the import for ever.
TEST_F(ProgressTest, theEndlessPassCanBeCancelled) {
    const std::string text =
        "v 0 1 0\nv 3 0 0\nv 1 0 0\nv 2 0 0\nv 0 0 0\n"
        "f 1 2 3\nf 1 2 3 4 5\nf 2 3 4\n";
    int calls = 0;
    host.answer = [&calls](const Call& call) {
        EXPECT_EQ(call.stage, ObjConverter::STAGE_READING);
        return ++calls < 5;
    };
    EXPECT_EQ(import(text), ObjConverter::CONVERTER_ERROR);
    EXPECT_EQ(recorder.getText(),
              "3|Obj Converter Import:\n"
              "3|Reading input file...\n"
              "1|Stopping conversion... Cancelled by host\n");
    EXPECT_EQ(converter().getNumberOfFaces(), 1);
    EXPECT_EQ(converter().getGroup(0)->getNumberOfFaces(), 1);
    EXPECT_EQ(findViolations(viewOf(converter()), ModelState::ENDED_EARLY), "");
}

// A comb: every other corner lies low.
TEST_F(ProgressTest, isToldWhileALargePolygonIsSplit) {
    constexpr int TEETH = 2000;
    std::string text;
    std::string face = "f";
    for (int tooth = 0; tooth < TEETH; ++tooth) {
        text += "v " + std::to_string(2 * tooth) + " 0 0\nv " + std::to_string(2 * tooth + 1) +
                " 10 0\n";
        face += " " + std::to_string(2 * tooth + 1) + " " + std::to_string(2 * tooth + 2);
    }
    text += "v 4000 -1 0\nv -1 -1 0\n";
    face += " 4001 4002\n";
    ASSERT_EQ(import(text + face), ObjConverter::CONVERTER_OK);
    EXPECT_EQ(converter().getNumberOfFaces(), 2 * TEETH);
    EXPECT_GT(host.calls.size(), 4U);
}

// A library that is read when the host cancels is no missing library.
TEST_F(ProgressTest, cancellingInALibraryGivesNoOtherMessage) {
    std::string library;
    for (int material = 0; library.size() < 3'000'000; ++material)
        library += "newmtl material" + std::to_string(material) + "\nKd 0.5 0.25 0.125\n";
    const std::string path = directory.write("many.mtl", library);
    host.answer = [calls = 0](const Call&) mutable { return ++calls < 3; };
    EXPECT_EQ(import("mtllib many.mtl\n" + std::string(TWO_FACES)), ObjConverter::CONVERTER_ERROR);
    EXPECT_EQ(recorder.getText(),
              "3|Obj Converter Import:\n"
              "3|Reading input file...\n"
              "3|Using Mtllib file: " +
                  path +
                  "\n"
                  "1|Stopping conversion... Cancelled by host\n");
    EXPECT_GT(converter().getNumberOfMaterials(), 1000);
    EXPECT_EQ(converter().getNumberOfVertices(), 0);
}

}  // namespace

}  // namespace obj_adapter::test
