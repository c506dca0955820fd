// What a host is told of an import's progress, and how it cancels one.
#include "support/messageRecorder.h"
#include "support/printedModel.h"
#include "support/temporaryDirectory.h"

#include <obj_adapter/objConverter.h>

#include <gtest/gtest.h>

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

}  // namespace

}  // namespace obj_adapter::test
