// How stages speak to the host.
#include "converter/messages.h"

#include "support/messageRecorder.h"

#include <gtest/gtest.h>
#include <obj_adapter/obj_adapter.h>

#include <new>
#include <stdexcept>
#include <string>

namespace obj_adapter::test {
namespace {

TEST(Messages, haveThreeLevels) {
    MessageRecorder recorder;
    reportError("a");
    reportWarning("b");
    reportInformation("c");
    reportError(std::string("d"));
    reportWarning(std::string("e"));
    reportInformation(std::string("f"));
    EXPECT_EQ(recorder.getText(), "1|a\n2|b\n3|c\n1|d\n2|e\n3|f\n");
}

TEST(Messages, areDroppedWithoutACallback) {
    ObjConverter::clearInstance();
    reportError("no converter");
    ObjConverter::getInstance();
    reportError("no callback");

    MessageRecorder recorder;
    ObjConverter::getInstance()->setMsgCallback(nullptr);
    reportError("removed");
    EXPECT_EQ(recorder.getText(), "");
}

TEST(Messages, failuresHaveTwoParts) {
    MessageRecorder recorder;
    reportFailure("Stopping conversion... ", "File Name empty");
    const std::string longReason(2000, 'x');
    reportFailure("Problem: ", longReason.c_str());
    EXPECT_EQ(recorder.getText(),
              "1|Stopping conversion... File Name empty\n1|Problem: " + longReason + "\n");
}

TEST(Messages, exhaustedMemoryHasOneTextOnEveryPlatform) {
    EXPECT_STREQ(failureText(std::bad_alloc()), "bad allocation");
    EXPECT_STREQ(failureText(std::bad_array_new_length()), "bad allocation");
    EXPECT_STREQ(failureText(std::runtime_error("other")), "other");
}

TEST(Messages, citeAtMostAHundredBytesOfAName) {
    EXPECT_EQ(reportedName("abc"), "abc");
    EXPECT_EQ(reportedName(std::string(100, 'a')), std::string(100, 'a'));
    EXPECT_EQ(reportedName(std::string(101, 'a')), std::string(100, 'a'));
}

}  // namespace
}  // namespace obj_adapter::test
