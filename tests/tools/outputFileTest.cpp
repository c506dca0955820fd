// Files are there as a whole or not at all.
#include "outputFile.h"

#include "support/temporaryDirectory.h"

#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <stdexcept>

namespace obj_adapter::test {

namespace {

int countFiles(const std::string& folder) {
    int count = 0;
    for (const auto& entry : std::filesystem::directory_iterator(pathFromUtf8(folder)))
        count += entry.exists() ? 1 : 0;
    return count;
}

TEST(OutputFileTest, CommittedItReplacesWhatWasThere) {
    const TemporaryDirectory directory;
    const std::string name = directory.write("größe.bin", "old and longer");
    tool::OutputFile file(pathFromUtf8(name));
    file.write("ne");
    file.write("w\n");
    EXPECT_EQ(readFileBytes(name), "old and longer");
    file.commit();
    EXPECT_EQ(readFileBytes(name), "new\n");
    EXPECT_EQ(countFiles(directory.getPath()), 1);
}

TEST(OutputFileTest, NotCommittedItLeavesWhatWasThere) {
    const TemporaryDirectory directory;
    const std::string name = directory.write("a.bin", "old");
    { tool::OutputFile(pathFromUtf8(name)).write("new"); }
    EXPECT_EQ(readFileBytes(name), "old");
    EXPECT_EQ(countFiles(directory.getPath()), 1);
}

// In a process of its own, as an interrupt stays noted.
TEST(OutputFileDeathTest, InterruptedItLeavesNothing) {
    const TemporaryDirectory directory;
    const std::string name = directory.getPath() + "a.bin";
    const auto writeInterrupted = [&] {
        try {
            tool::OutputFile file(pathFromUtf8(name));
            file.write("half");
            std::raise(SIGINT);
            file.write("the rest");
            file.commit();
        } catch (const tool::Interrupted&) {
            std::exit(countFiles(directory.getPath()));
        }
        std::exit(100);
    };
    EXPECT_EXIT(writeInterrupted(), testing::ExitedWithCode(0), "");
}

TEST(OutputFileTest, AFolderThatIsNotThere) {
    const TemporaryDirectory directory;
    const std::string name = directory.getPath() + "none/a.bin";
    try {
        tool::OutputFile file(pathFromUtf8(name));
        FAIL() << "opened";
    } catch (const std::runtime_error& failure) {
        EXPECT_EQ(std::string(failure.what()), "cannot write " + name);
    }
}

}  // namespace

}  // namespace obj_adapter::test
