// Files read block by block: what opens, what comes, and how reading ends.
#include "platform/inputFile.h"

#include "support/temporaryDirectory.h"
#include "support/textMode.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <filesystem>
#include <string>
#include <utility>

#if !defined(_WIN32)
#include <thread>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace obj_adapter::test {
namespace {

// All that comes, in blocks of that size.
std::string readAll(platform::InputFile& file, std::size_t blockSize) {
    std::string all;
    std::string block(blockSize, '\0');
    for (;;) {
        const std::ptrdiff_t length = file.read(block.data(), block.size());
        EXPECT_GE(length, 0);
        EXPECT_EQ(file.hasEnded(), length == 0);
        if (length <= 0)
            return all;
        all.append(block, 0, static_cast<std::size_t>(length));
    }
}

TEST(InputFile, comesInBlocksOfEverySize) {
    const TemporaryDirectory directory;
    std::string text;
    for (int line = 0; line < 1000; ++line)
        text += "v " + std::to_string(line) + " 0 0\n";
    const std::string fileName = directory.write("a.obj", text);
    for (const std::size_t blockSize : {1U, 2U, 7U, 4096U, 1000000U}) {
        SCOPED_TRACE(blockSize);
        platform::InputFile file;
        ASSERT_TRUE(file.open(fileName));
        EXPECT_TRUE(file.isOpen());
        EXPECT_FALSE(file.isDirectory());
        EXPECT_FALSE(file.hasEnded());
        EXPECT_EQ(readAll(file, blockSize), text);
        // And stays at its end.
        EXPECT_EQ(readAll(file, blockSize), "");
    }
}

TEST(InputFile, isReadInThePlatformsTextMode) {
    const TemporaryDirectory directory;
    const std::string fileName = directory.write("a.obj", "a\r\nb\rc\r\r\n\x1A after\n");
    for (const std::size_t blockSize : {1U, 2U, 3U, 100U}) {
        SCOPED_TRACE(blockSize);
        platform::InputFile file;
        ASSERT_TRUE(file.open(fileName));
        EXPECT_EQ(readAll(file, blockSize),
                  TEXT_IS_TRANSLATED ? "a\nb\rc\r\n" : "a\r\nb\rc\r\r\n\x1A after\n");
    }
}

TEST(InputFile, whatIsNotThereDoesNotOpen) {
    const TemporaryDirectory directory;
    platform::InputFile file;
    for (const std::string& name :
         {std::string(), directory.getPath() + "none.obj", directory.getPath() + "none/none.obj"}) {
        EXPECT_FALSE(file.open(name)) << name;
        EXPECT_FALSE(file.isOpen()) << name;
    }
}

TEST(InputFile, opensOneFileAfterTheOther) {
    const TemporaryDirectory directory;
    const std::string first = directory.write("w\xC3\xBCrfel.obj", "first");
    const std::string second = directory.write("two words.obj", "second");
    platform::InputFile file;
    ASSERT_TRUE(file.open(first));
    EXPECT_EQ(readAll(file, 100), "first");
    ASSERT_TRUE(file.open(second));
    EXPECT_FALSE(file.hasEnded());
    EXPECT_EQ(readAll(file, 100), "second");
    // A file that does not open leaves none open.
    EXPECT_FALSE(file.open(directory.getPath() + "none.obj"));
    EXPECT_FALSE(file.isOpen());
    file.close();
    EXPECT_FALSE(file.isOpen());
}

// Windows would not let a file go that is still open.
TEST(InputFile, closedFileIsGivenBack) {
    const TemporaryDirectory directory;
    const std::string fileName = directory.write("a.obj", "a");
    {
        platform::InputFile file;
        ASSERT_TRUE(file.open(fileName));
    }
    platform::InputFile file;
    ASSERT_TRUE(file.open(fileName));
    file.close();
    EXPECT_TRUE(std::filesystem::remove(pathFromUtf8(fileName)));
}

#if !defined(_WIN32)

TEST(InputFile, directoryTellsItselfAndFailsToBeRead) {
    const TemporaryDirectory directory;
    platform::InputFile file;
    ASSERT_TRUE(file.open(directory.getPath()));
    EXPECT_TRUE(file.isDirectory());
    char byte = 0;
    EXPECT_LT(file.read(&byte, 1), 0);
    EXPECT_FALSE(file.hasEnded());
}

TEST(InputFile, descriptorsAreNotLostNorInherited) {
    const TemporaryDirectory directory;
    const std::string fileName = directory.write("a.obj", "a");
    const int firstFree = ::open("/dev/null", O_RDONLY);
    ::close(firstFree);
    for (int time = 0; time < 3; ++time) {
        platform::InputFile file;
        ASSERT_TRUE(file.open(fileName));
        ASSERT_TRUE(file.open(fileName));
        EXPECT_EQ(::fcntl(firstFree, F_GETFD), FD_CLOEXEC);
        EXPECT_EQ(::fcntl(firstFree + 1, F_GETFD), -1);
    }
    EXPECT_EQ(::fcntl(firstFree, F_GETFD), -1);
}

TEST(InputFile, pipeGivesWhatStandsReady) {
    const TemporaryDirectory directory;
    const std::string fileName = directory.getPath() + "pipe.obj";
    ASSERT_EQ(mkfifo(fileName.c_str(), 0600), 0);
    std::thread writer([&] {
        const int pipe = ::open(fileName.c_str(), O_WRONLY);
        const std::string text(200000, 'x');
        std::size_t written = 0;
        while (written < text.size()) {
            const ssize_t length = ::write(pipe, text.data() + written, text.size() - written);
            if (length <= 0)
                break;
            written += static_cast<std::size_t>(length);
        }
        ::close(pipe);
    });
    platform::InputFile file;
    ASSERT_TRUE(file.open(fileName));
    EXPECT_EQ(readAll(file, 1000000), std::string(200000, 'x'));
    writer.join();
}

#endif

}  // namespace
}  // namespace obj_adapter::test
