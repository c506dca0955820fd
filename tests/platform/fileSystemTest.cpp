// Files by UTF-8 name: each function does what the platform's own one does.
#include "platform/fileSystem.h"

#include "support/temporaryDirectory.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <type_traits>
#include <vector>

#if defined(_WIN32)
#include <stdlib.h>
#else
#include <unistd.h>
#endif

namespace obj_adapter::test {

namespace {

// UTF-8 of every length, and what shells and formats find special.
const char* const NAMES[] = {
    "plain.obj",
    "two words.obj",
    "gr\xC3\xB6\xC3\x9Fte.obj",
    "\xE6\xA8\xA1\xE5\x9E\x8B.obj",
    "\xF0\x9F\x98\x80.obj",
    "a\xCC\x88.obj",
    "100%s$x#'.obj",
    ".hidden",
};

constexpr int EXISTS = 0;  // the mode of access() that asks for no more

std::string contentOf(std::ifstream& stream) {
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

// Gives the directory of the process back.
class WorkingDirectory {
public:
    explicit WorkingDirectory(const std::string& directoryName)
        : earlier(std::filesystem::current_path()) {
        std::filesystem::current_path(pathFromUtf8(directoryName));
    }
    ~WorkingDirectory() { std::filesystem::current_path(earlier); }
    WorkingDirectory(const WorkingDirectory&) = delete;
    WorkingDirectory& operator=(const WorkingDirectory&) = delete;

private:
    std::filesystem::path earlier;
};

void setVariable(const std::string& name, const std::string& value) {
#if defined(_WIN32)
    _wputenv_s(platform::toWide(name).c_str(), platform::toWide(value).c_str());
#else
    setenv(name.c_str(), value.c_str(), 1);
#endif
}

void removeVariable(const std::string& name) {
#if defined(_WIN32)
    _wputenv_s(platform::toWide(name).c_str(), L"");
#else
    unsetenv(name.c_str());
#endif
}

// Without the slash at the end, which some platforms take for a missing name.
std::string nameOf(const TemporaryDirectory& directory) {
    return directory.getPath().substr(0, directory.getPath().size() - 1);
}

// A component of more than 255 bytes, and a path of more than 4096.
std::vector<std::string> impossibleNames(const TemporaryDirectory& directory) {
    std::string deep = directory.getPath();
    while (deep.size() < 70000)
        deep += "directory/";
    return {directory.getPath() + std::string(300, 'x'), deep + "a.obj"};
}

}  // namespace

TEST(OpenForReading, fileOfAnyNameOpens) {
    const TemporaryDirectory directory;
    for (const char* name : NAMES) {
        SCOPED_TRACE(name);
        const std::string fileName = directory.write(name, std::string("content of ") + name);
        std::ifstream stream;
        EXPECT_TRUE(platform::openForReading(stream, fileName));
        EXPECT_TRUE(stream.good());
        EXPECT_EQ(contentOf(stream), std::string("content of ") + name);
    }
}

TEST(OpenForReading, emptyNameMakesNoCallAtAll) {
    std::ifstream stream;
    errno = 0;
    EXPECT_FALSE(platform::openForReading(stream, ""));
    EXPECT_EQ(errno, 0);
    EXPECT_TRUE(stream.good());
    EXPECT_FALSE(stream.is_open());

    stream.setstate(std::ios_base::eofbit);
    EXPECT_FALSE(platform::openForReading(stream, ""));
    EXPECT_EQ(stream.rdstate(), std::ios_base::eofbit);
}

TEST(OpenForReading, missingFileSetsTheStreamToFailed) {
    const TemporaryDirectory directory;
    std::ifstream stream;
    EXPECT_FALSE(platform::openForReading(stream, directory.getPath() + "none.obj"));
    EXPECT_TRUE(stream.fail());
    EXPECT_FALSE(stream.bad());
    EXPECT_FALSE(stream.is_open());
}

TEST(OpenForReading, namesThatCannotBeAreRefused) {
    const TemporaryDirectory directory;
    for (const std::string& name : impossibleNames(directory)) {
        std::ifstream stream;
        EXPECT_FALSE(platform::openForReading(stream, name));
        EXPECT_TRUE(stream.fail());
    }
}

TEST(OpenForReading, successClearsTheStreamsState) {
    const TemporaryDirectory directory;
    const std::string fileName = directory.write("a.obj", "abc");
    std::ifstream stream;
    EXPECT_FALSE(platform::openForReading(stream, directory.getPath() + "none.obj"));
    stream.setstate(std::ios_base::eofbit | std::ios_base::badbit);
    EXPECT_TRUE(platform::openForReading(stream, fileName));
    EXPECT_EQ(stream.rdstate(), std::ios_base::goodbit);
    EXPECT_EQ(contentOf(stream), "abc");
}

TEST(OpenForReading, streamThatIsOpenFails) {
    const TemporaryDirectory directory;
    const std::string fileName = directory.write("a.obj", "abc");
    std::ifstream stream;
    ASSERT_TRUE(platform::openForReading(stream, fileName));
    EXPECT_FALSE(platform::openForReading(stream, fileName));
    EXPECT_TRUE(stream.fail());
}

// Others may write meanwhile, and what they add is read.
TEST(OpenForReading, othersMayWriteTheOpenFile) {
    const TemporaryDirectory directory;
    const std::string fileName = directory.write("a.obj", "");
    std::ifstream stream;
    ASSERT_TRUE(platform::openForReading(stream, fileName));
    directory.write("a.obj", "later");
    EXPECT_EQ(contentOf(stream), "later");
}

TEST(FileSystem, fopenOpensByName) {
    const TemporaryDirectory directory;
    for (const char* name : NAMES) {
        SCOPED_TRACE(name);
        const std::string fileName = directory.getPath() + name;
        std::FILE* file = platform::fopen(fileName, "wb");
        ASSERT_NE(file, nullptr);
        EXPECT_EQ(std::fputs("abc", file) < 0, false);
        std::fclose(file);
        EXPECT_EQ(readFileBytes(fileName), "abc");

        file = platform::fopen(fileName, "ab");
        ASSERT_NE(file, nullptr);
        std::fputc('d', file);
        std::fclose(file);
        file = platform::fopen(fileName, "rb");
        ASSERT_NE(file, nullptr);
        char text[8] = {};
        EXPECT_EQ(std::fread(text, 1, sizeof text, file), 4U);
        EXPECT_STREQ(text, "abcd");
        std::fclose(file);
    }
}

TEST(FileSystem, fopenOfAMissingFileIsNull) {
    const TemporaryDirectory directory;
    errno = 0;
    EXPECT_EQ(platform::fopen(directory.getPath() + "none.obj", "rb"), nullptr);
    EXPECT_EQ(errno, ENOENT);
    for (const std::string& name : impossibleNames(directory))
        EXPECT_EQ(platform::fopen(name, "rb"), nullptr);
}

TEST(FileSystem, accessTellsWhatExists) {
    const TemporaryDirectory directory;
    for (const char* name : NAMES) {
        SCOPED_TRACE(name);
        const std::string fileName = directory.getPath() + name;
        errno = 0;
        EXPECT_EQ(platform::access(fileName, EXISTS), -1);
        EXPECT_EQ(errno, ENOENT);
        directory.write(name, "");
        EXPECT_EQ(platform::access(fileName, EXISTS), 0);
    }
    EXPECT_EQ(platform::access(nameOf(directory), EXISTS), 0);
    EXPECT_EQ(platform::access("", EXISTS), -1);
    for (const std::string& name : impossibleNames(directory))
        EXPECT_EQ(platform::access(name, EXISTS), -1);
}

TEST(FileSystem, statTellsSizeAndKind) {
    const TemporaryDirectory directory;
    for (const char* name : NAMES) {
        SCOPED_TRACE(name);
        const std::string fileName = directory.write(name, std::string(12345, 'x'));
        platform::FileStatus status;
        ASSERT_EQ(platform::stat(fileName, &status), 0);
        EXPECT_EQ(status.st_size, 12345);
        EXPECT_EQ(status.st_mode & S_IFMT, static_cast<decltype(status.st_mode)>(S_IFREG));
    }
    platform::FileStatus status;
    EXPECT_EQ(platform::stat(directory.getPath() + "none.obj", &status), -1);
    EXPECT_EQ(platform::stat("", &status), -1);
}

TEST(FileSystem, directoriesAreMadeAndRemoved) {
    const TemporaryDirectory directory;
    for (const char* name : NAMES) {
        SCOPED_TRACE(name);
        const std::string directoryName = directory.getPath() + name;
        EXPECT_FALSE(platform::isDirectory(directoryName));
        EXPECT_EQ(platform::mkdir(directoryName), 0);
        EXPECT_TRUE(std::filesystem::is_directory(pathFromUtf8(directoryName)));
        EXPECT_TRUE(platform::isDirectory(directoryName));
        errno = 0;
        EXPECT_EQ(platform::mkdir(directoryName), -1);
        EXPECT_EQ(errno, EEXIST);

        directory.write(std::string(name) + "/inside.obj", "v 1 2 3\n");
        EXPECT_EQ(platform::rmdir(directoryName), -1);
        EXPECT_TRUE(platform::isDirectory(directoryName));
        EXPECT_EQ(platform::remove(directoryName + "/inside.obj"), 0);
        EXPECT_EQ(platform::rmdir(directoryName), 0);
        EXPECT_FALSE(std::filesystem::exists(pathFromUtf8(directoryName)));
        EXPECT_EQ(platform::rmdir(directoryName), -1);
    }
    const std::string fileName = directory.write("file.obj", "");
    EXPECT_EQ(platform::rmdir(fileName), -1);
    EXPECT_TRUE(std::filesystem::exists(pathFromUtf8(fileName)));
    EXPECT_EQ(platform::mkdir(""), -1);
    EXPECT_EQ(platform::rmdir(""), -1);
    EXPECT_EQ(platform::mkdir(directory.getPath() + "none/below"), -1);
}

TEST(FileSystem, filesAreRemovedByName) {
    const TemporaryDirectory directory;
    for (const char* name : NAMES) {
        SCOPED_TRACE(name);
        const std::string fileName = directory.write(name, "x");
        EXPECT_EQ(platform::remove(fileName), 0);
        EXPECT_FALSE(std::filesystem::exists(pathFromUtf8(fileName)));
        errno = 0;
        EXPECT_EQ(platform::remove(fileName), -1);
        EXPECT_EQ(errno, ENOENT);
    }
    EXPECT_EQ(platform::remove(""), -1);
}

TEST(FileSystem, isDirectoryIsTrueForDirectoriesAlone) {
    const TemporaryDirectory directory;
    EXPECT_TRUE(platform::isDirectory(nameOf(directory)));
    EXPECT_TRUE(platform::isDirectory("."));
    EXPECT_FALSE(platform::isDirectory(directory.write("a.obj", "")));
    EXPECT_FALSE(platform::isDirectory(directory.getPath() + "none"));
    EXPECT_FALSE(platform::isDirectory(""));
    for (const std::string& name : impossibleNames(directory))
        EXPECT_FALSE(platform::isDirectory(name));
}

TEST(FileSystem, systemGivesTheCommandsResult) {
    EXPECT_EQ(platform::system("exit 0"), 0);
    EXPECT_NE(platform::system("exit 3"), 0);
    EXPECT_EQ(platform::system("exit 3"), std::system("exit 3"));

    const TemporaryDirectory directory;
    const WorkingDirectory inside(directory.getPath());
    EXPECT_EQ(platform::system("echo abc> \"\xC3\xBC.txt\""), 0);
    EXPECT_EQ(readFileBytes(directory.getPath() + "\xC3\xBC.txt").substr(0, 3), "abc");
}

TEST(FileSystem, getcwdGivesTheDirectoryInUtf8) {
    const TemporaryDirectory directory;
    for (const char* name : NAMES) {
        SCOPED_TRACE(name);
        ASSERT_EQ(platform::mkdir(directory.getPath() + name), 0);
        const WorkingDirectory inside(directory.getPath() + name);
        for (const int size : {0, 1, 5, 260, 5000}) {
            SCOPED_TRACE(size);
            const std::string current = platform::getcwd(size);
            EXPECT_EQ(pathFromUtf8(current), std::filesystem::current_path());
            EXPECT_TRUE(current.ends_with(name));
        }
    }
}

TEST(FileSystem, getenvGivesTheValueInUtf8) {
    const std::string name = "OBJ_ADAPTER_TEST_VARIABLE";
    removeVariable(name);
    EXPECT_EQ(platform::getenv(name), "");
    for (const char* value : NAMES) {
        SCOPED_TRACE(value);
        setVariable(name, value);
        EXPECT_EQ(platform::getenv(name), value);
    }
    setVariable(name, std::string(20000, 'x'));
    EXPECT_EQ(platform::getenv(name), std::string(20000, 'x'));
    removeVariable(name);
    EXPECT_EQ(platform::getenv(name), "");
}

#if defined(_WIN32)

TEST(WideNames, textsAreConvertedBothWays) {
    struct Row {
        const char* narrow;
        const wchar_t* wide;
    };
    const Row ROWS[] = {
        {"", L""},
        {"plain.obj", L"plain.obj"},
        {"gr\xC3\xB6\xC3\x9Fte", L"gr\u00F6\u00DFte"},
        {"\xE6\xA8\xA1\xE5\x9E\x8B", L"\u6A21\u578B"},
        {"\xF0\x9F\x98\x80", L"\xD83D\xDE00"},
    };
    for (const Row& row : ROWS) {
        SCOPED_TRACE(row.narrow);
        EXPECT_EQ(platform::toWide(row.narrow), row.wide);
        EXPECT_EQ(platform::toNarrow(row.wide), row.narrow);
    }
}

TEST(WideNames, invalidSequencesAreSubstituted) {
    EXPECT_EQ(platform::toWide("a\xFF"
                               "b"),
              L"a\uFFFDb");
    EXPECT_EQ(platform::toNarrow(L"a\xD83D"), "a\xEF\xBF\xBD");
}

TEST(WideNames, textsEndAtTheirFirstZero) {
    EXPECT_EQ(platform::toWide(std::string("a\0b", 3)), L"a");
    EXPECT_EQ(platform::toNarrow(std::wstring(L"a\0b", 3)), "a");
}

#else

TEST(FileSystem, namesAreBytesAndNeedNotBeUtf8) {
    const TemporaryDirectory directory;
    const std::string fileName = directory.getPath() + "\xFF\xC3\x28.obj";
    std::FILE* file = platform::fopen(fileName, "wb");
    ASSERT_NE(file, nullptr);
    std::fputs("abc", file);
    std::fclose(file);
    std::ifstream stream;
    EXPECT_TRUE(platform::openForReading(stream, fileName));
    EXPECT_EQ(contentOf(stream), "abc");
    EXPECT_EQ(platform::access(fileName, EXISTS), 0);
    EXPECT_EQ(platform::remove(fileName), 0);
}

TEST(FileSystem, longPathsAreTaken) {
    const TemporaryDirectory directory;
    std::string path = directory.getPath();
    for (int level = 0; level < 10; ++level) {
        path += std::string(100, static_cast<char>('a' + level)) + "/";
        ASSERT_EQ(platform::mkdir(path), 0);
    }
    path += "a.obj";
    std::FILE* file = platform::fopen(path, "wb");
    ASSERT_NE(file, nullptr);
    std::fputs("abc", file);
    std::fclose(file);
    std::ifstream stream;
    EXPECT_TRUE(platform::openForReading(stream, path));
    EXPECT_EQ(contentOf(stream), "abc");
}

TEST(FileSystem, newDirectoriesAreOpenAsFarAsTheProcessAllows) {
    const TemporaryDirectory directory;
    const ::mode_t earlier = ::umask(027);
    const int result = platform::mkdir(directory.getPath() + "a");
    ::umask(earlier);
    ASSERT_EQ(result, 0);
    platform::FileStatus status;
    ASSERT_EQ(platform::stat(directory.getPath() + "a", &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0750U);
}

TEST(FileSystem, directoryThatIsGoneHasNoName) {
    const TemporaryDirectory directory;
    ASSERT_EQ(platform::mkdir(directory.getPath() + "a"), 0);
    const WorkingDirectory inside(directory.getPath() + "a");
    ASSERT_EQ(platform::rmdir(directory.getPath() + "a"), 0);
    EXPECT_EQ(platform::getcwd(0), "");
}

static_assert(std::is_same_v<platform::FileStatus, struct ::stat>);

#endif

}  // namespace obj_adapter::test
