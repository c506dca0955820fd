// What crosses the border between host and library besides the records: file
// names, files that others hold open, exceptions.
#include "support/describe.h"
#include "support/importText.h"
#include "support/messageRecorder.h"
#include "support/temporaryDirectory.h"

#include <obj_adapter/obj_adapter.h>

#include <gtest/gtest.h>

#if defined(_WIN32)
#include <windows.h>
#endif

#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>

namespace obj_adapter::test {

namespace {

const std::string TRIANGLE = "mtllib a.mtl\nv 0 0 0\nv 1 0 0\nv 0 1 0\nusemtl red\nf 1 2 3\n";
const std::string TRIANGLE_FACES = "[0 1 2 m0]";

const char* const NAMES[] = {
    "gr\xC3\xB6\xC3\x9Fte \xC3\x84",                     // umlauts
    "\xE6\xA8\xA1\xE5\x9E\x8B",                          // CJK
    "\xF0\x9F\x98\x80",                                  // an emoji: two units of UTF-16
    "\xD0\xBC\xD0\xBE\xD0\xB4\xD0\xB5\xD0\xBB\xD1\x8C",  // Cyrillic
};

TEST(FileNames, filesAndDirectoriesOfAnyName) {
    for (const char* name : NAMES) {
        SCOPED_TRACE(name);
        const TemporaryDirectory directory;
        const std::string folder = std::string(name) + "/";
        std::filesystem::create_directory(pathFromUtf8(directory.getPath() + folder));
        directory.write(folder + "a.mtl", "newmtl red\n");
        const std::string fileName = directory.write(folder + name + ".obj", TRIANGLE);
        const ImportResult result = importFile(fileName);
        EXPECT_EQ(result.code, ObjConverter::CONVERTER_OK);
        EXPECT_EQ(result.readingMessages,
                  "3|Using Mtllib file: " + directory.getPath() + folder + "a.mtl\n");
        EXPECT_EQ(describeFaces(result.model), TRIANGLE_FACES);
        // The first group is called after the file.
        EXPECT_EQ(describeGroups(result.model), std::string(name) + ": 0");
    }
}

TEST(FileNames, librariesOfAnyName) {
    for (const char* name : NAMES) {
        if (std::string(name).find(' ') != std::string::npos)
            continue;  // names of libraries end at a blank
        SCOPED_TRACE(name);
        ImportOptions options;
        options.otherFiles[std::string(name) + ".mtl"] = "newmtl red\n";
        const ImportResult result =
            importText(std::string("mtllib ") + name + ".mtl\nv 1 2 3\n", options);
        EXPECT_EQ(result.readingMessages,
                  std::string("3|Using Mtllib file: {dir}") + name + ".mtl\n");
        EXPECT_EQ(result.model.materials.size(), 1U);
    }
}

TEST(FileNames, thoseThatCannotBeOpenedEndTheImport) {
    const TemporaryDirectory directory;
    for (const std::string& name :
         {directory.getPath() + "none.obj", directory.getPath() + "none/a.obj",
          directory.getPath() + "\xC3\x28\xFF.obj"}) {
        SCOPED_TRACE(name);
        const ImportResult result = importFile(name);
        EXPECT_EQ(result.code, ObjConverter::CONVERTER_ERROR);
        EXPECT_EQ(result.model.vertices.size(), 0U);
        EXPECT_EQ(result.allMessages,
                  "3|Obj Converter Import:\n3|Reading input file...\n"
                  "1|Stopping conversion... Unable to open file\n");
    }
    EXPECT_EQ(importFile("").code, ObjConverter::CONVERTER_ERROR);
}

// More than the 260 characters that Windows allows a program that does not ask
// for more: the import opens what the platform opens, and reports the rest.
TEST(FileNames, longPathsAreThePlatformsAffair) {
    const TemporaryDirectory directory;
    std::string path = directory.getPath();
    std::error_code failure;
    for (int level = 0; level < 4 && !failure; ++level) {
        path += std::string(100, static_cast<char>('a' + level)) + "/";
        std::filesystem::create_directory(pathFromUtf8(path), failure);
    }
    const std::string fileName = path + "a.obj";
    ASSERT_GT(fileName.size(), 400U);
    std::ofstream(pathFromUtf8(fileName), std::ios::binary) << "v 1 2 3\n";
    const bool platformOpensIt = std::ifstream(pathFromUtf8(fileName)).is_open();
    RecordProperty("platformOpensIt", platformOpensIt ? "yes" : "no");
#if !defined(_WIN32)
    EXPECT_TRUE(platformOpensIt);
#endif
    const ImportResult result = importFile(fileName);
    EXPECT_EQ(result.code,
              platformOpensIt ? ObjConverter::CONVERTER_OK : ObjConverter::CONVERTER_ERROR);
    EXPECT_EQ(describeVertices(result.model), platformOpensIt ? "(1 2 3 w1)" : "");
}

TEST(SharedFiles, aFileThatAnotherHasOpenForWritingIsRead) {
    const TemporaryDirectory directory;
    const std::string fileName = directory.write("a.obj", "v 1 2 3\n");
#if defined(_WIN32)
    // Whoever writes allows others to read and to write, and no more.
    const HANDLE writer = CreateFileW(pathFromUtf8(fileName).c_str(), GENERIC_READ | GENERIC_WRITE,
                                      FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING,
                                      FILE_ATTRIBUTE_NORMAL, nullptr);
    ASSERT_NE(writer, INVALID_HANDLE_VALUE);
#else
    std::ofstream writer(fileName, std::ios::app);
    ASSERT_TRUE(writer.is_open());
#endif
    const ImportResult result = importFile(fileName);
    EXPECT_EQ(result.code, ObjConverter::CONVERTER_OK);
    EXPECT_EQ(describeVertices(result.model), "(1 2 3 w1)");
#if defined(_WIN32)
    CloseHandle(writer);
#endif
}

// --- Inside the callback ---------------------------------------------------------

std::string fileInImport;
bool couldWrite = false;

TEST(SharedFiles, othersMayWriteAFileThatIsBeingRead) {
    const TemporaryDirectory directory;
    fileInImport = directory.write("a.obj", "v x\nv 1 2 3\n");
    ObjConverter::clearInstance();
    ObjConverter* converter = ObjConverter::getInstance();
    couldWrite = false;
    converter->setMsgCallback([](int /*level*/, const char* text) {
        if (std::string(text).rfind("Error processing vertex", 0) == 0) {
            std::ofstream stream(pathFromUtf8(fileInImport), std::ios::binary | std::ios::app);
            stream << "v 4 5 6\n";
            couldWrite = static_cast<bool>(stream.flush());
        }
    });
    EXPECT_EQ(converter->importObjDataFromFile(fileInImport.c_str()), ObjConverter::CONVERTER_OK);
    EXPECT_TRUE(couldWrite);
    EXPECT_EQ(readFileBytes(fileInImport), "v x\nv 1 2 3\nv 4 5 6\n");
    ObjConverter::clearInstance();
}

std::string received;

template <typename Failure>
void throwAtTheFirstMessage(int level, const char* text) {
    const bool isFirst = received.empty();
    received += std::to_string(level) + "|" + text + "\n";
    if (isFirst)
        throw Failure("host failed");
}

struct NoStandardException {
    explicit NoStandardException(const char* /*text*/) {}
};

int importWith(void (*callback)(int, const char*), const std::string& fileName) {
    ObjConverter::clearInstance();
    received.clear();
    ObjConverter::getInstance()->setMsgCallback(callback);
    const int code = ObjConverter::getInstance()->importObjDataFromFile(fileName.c_str());
    ObjConverter::clearInstance();
    return code;
}

TEST(Exceptions, whatTheCallbackThrowsStaysInside) {
    const TemporaryDirectory directory;
    const std::string fileName = directory.write("a.obj", "v 1 2 3\n");
    // Again and again: nothing is used up.
    for (int round = 0; round < 100; ++round) {
        EXPECT_EQ(importWith(&throwAtTheFirstMessage<std::runtime_error>, fileName),
                  ObjConverter::CONVERTER_ERROR);
        EXPECT_EQ(received, "3|Obj Converter Import:\n1|Stopping conversion... host failed\n");
        EXPECT_EQ(importWith(&throwAtTheFirstMessage<std::out_of_range>, fileName),
                  ObjConverter::CONVERTER_ERROR);
        EXPECT_EQ(received, "3|Obj Converter Import:\n1|Stopping conversion... host failed\n");
        EXPECT_EQ(importWith(&throwAtTheFirstMessage<NoStandardException>, fileName),
                  ObjConverter::CONVERTER_ERROR);
        EXPECT_EQ(received,
                  "3|Obj Converter Import:\n1|Stopping conversion... Unknown exception\n");
    }
}

}  // namespace

}  // namespace obj_adapter::test
