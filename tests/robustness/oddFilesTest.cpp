// Files that are no plain files, that may not be read, that change while they are
// read, and names of any length.
#include "support/countedMemory.h"
#include "support/describe.h"
#include "support/importText.h"
#include "support/printedModel.h"
#include "support/temporaryDirectory.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>

#if !defined(_WIN32)
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>
#include <csignal>
#include <cstdio>
#include <thread>
#endif

namespace obj_adapter::test {
namespace {

const std::string BEGIN = "3|Obj Converter Import:\n3|Reading input file...\n";
const std::string CANNOT_OPEN = BEGIN + "1|Stopping conversion... Unable to open file\n";

class OddFiles : public testing::Test {
protected:
    void TearDown() override {
        hostCode = nullptr;
        ObjConverter::clearInstance();
    }

    // Imports with a callback that runs hostCode once, at the first message that
    // starts with the text.
    static int importWithHost(const std::string& fileName, const std::string& start,
                              std::function<void()> code) {
        hostCode = std::move(code);
        startOfMessage = start;
        messages.clear();
        ObjConverter::clearInstance();
        ObjConverter* converter = ObjConverter::getInstance();
        converter->setMsgCallback(&receive);
        converter->setDataCompaction(false);
        const int result = converter->importObjDataFromFile(fileName.c_str());
        EXPECT_EQ(hostCode, nullptr) << "the message never came";
        const bool isDone = result == ObjConverter::CONVERTER_OK;
        EXPECT_EQ(
            findViolations(viewOf(*converter), isDone ? ModelState::READ : ModelState::ENDED_EARLY),
            "");
        return result;
    }

    static void receive(int level, const char* text) {
        messages += std::to_string(level) + "|" + text + "\n";
        if (hostCode && std::string(text).starts_with(startOfMessage)) {
            const std::function<void()> code = std::move(hostCode);
            hostCode = nullptr;
            code();
        }
    }

    inline static std::function<void()> hostCode;
    inline static std::string startOfMessage;
    inline static std::string messages;

    TemporaryDirectory directory;
};

// Vertices (0 0 0), (1 0 0), (2 0 0), ... behind the first lines.
std::string withManyVertices(const std::string& firstLines, int vertices) {
    std::string text = firstLines;
    for (int vertex = 0; vertex < vertices; ++vertex)
        text += "v " + std::to_string(vertex) + " 0 0\n";
    return text;
}

// The vertices are the first of those above, whole but for the last, at which the
// file may have been cut.
void expectFirstVertices(const ModelView& model) {
    for (std::size_t vertex = 0; vertex + 1 < model.vertices.size(); ++vertex)
        ASSERT_EQ(model.vertices[vertex].x, static_cast<double>(vertex));
}

constexpr int MANY_VERTICES = 200000;

// A reader that took the file's pages for granted would be killed here.
TEST_F(OddFiles, fileThatIsCutWhileItIsRead) {
    for (const std::uintmax_t newSize :
         {std::uintmax_t{0}, std::uintmax_t{1000}, std::uintmax_t{100000}}) {
        SCOPED_TRACE(newSize);
        const std::string fileName =
            directory.write("cut.obj", withManyVertices("f 1 2\n", MANY_VERTICES));
        const int code = importWithHost(fileName, "Face does not have enough vertices", [&] {
            std::filesystem::resize_file(pathFromUtf8(fileName), newSize);
        });
        EXPECT_EQ(code, ObjConverter::CONVERTER_OK);
        const ModelView model = viewOf(*ObjConverter::getInstance());
        EXPECT_LT(model.vertices.size(), static_cast<std::size_t>(MANY_VERTICES));
        expectFirstVertices(model);
    }
}

TEST_F(OddFiles, libraryThatIsCutWhileItIsRead) {
    std::string library = "newmtl first\nNs x\n";
    for (int material = 0; material < 50000; ++material)
        library += "newmtl material_" + std::to_string(material) + "\nKd 1 0 0\n";
    const std::string libraryName = directory.write("cut.mtl", library);
    const int code = importWithHost(
        directory.write("a.obj", "mtllib cut.mtl\nv 1 2 3\n"), "Error processing Specular Exponent",
        [&] { std::filesystem::resize_file(pathFromUtf8(libraryName), 0); });
    EXPECT_EQ(code, ObjConverter::CONVERTER_OK);
    const ModelView model = viewOf(*ObjConverter::getInstance());
    EXPECT_LT(model.materials.size(), 50001U);
    EXPECT_EQ(model.vertices.size(), 1U);
    for (std::size_t material = 1; material + 1 < model.materials.size(); ++material)
        ASSERT_EQ(model.materials[material].name, "material_" + std::to_string(material - 1));
}

// What is there when the reader comes to it is read.
TEST_F(OddFiles, fileThatGrowsWhileItIsRead) {
    const std::string fileName =
        directory.write("grown.obj", withManyVertices("f 1 2\n", MANY_VERTICES));
    const int code = importWithHost(fileName, "Face does not have enough vertices", [&] {
        std::ofstream stream(pathFromUtf8(fileName), std::ios::binary | std::ios::app);
        for (int vertex = MANY_VERTICES; vertex < 2 * MANY_VERTICES; ++vertex)
            stream << "v " << vertex << " 0 0\n";
    });
    EXPECT_EQ(code, ObjConverter::CONVERTER_OK);
    const ModelView model = viewOf(*ObjConverter::getInstance());
    EXPECT_EQ(model.vertices.size(), static_cast<std::size_t>(2 * MANY_VERTICES));
    expectFirstVertices(model);
}

// --- Names ------------------------------------------------------------------------

// What Windows allows at the most.
constexpr std::size_t LONG_NAME = 32767;

TEST_F(OddFiles, namesOfGreatLengthAreRefusedByThePlatformAlone) {
    for (const std::string& name :
         {directory.getPath() + std::string(LONG_NAME, 'x'), std::string(LONG_NAME, 'y') + "/a.obj",
          directory.getPath() + std::string(LONG_NAME, '/') + "none.obj"}) {
        const ImportResult result = importFile(name);
        EXPECT_EQ(result.code, ObjConverter::CONVERTER_ERROR);
        EXPECT_EQ(result.allMessages, CANNOT_OPEN);
    }
}

TEST_F(OddFiles, namesOfGreatLengthInAFile) {
    const std::string longName(LONG_NAME, 'n');
    const std::string cut(100, 'n');
    ImportOptions options;
    options.otherFiles["a.mtl"] = "newmtl " + longName + "\nmap_Kd " + longName + ".png\n";
    const ImportResult result =
        importText("mtllib " + longName + "\nmtllib a.mtl\nusemtl " + longName + "\n" + longName +
                       " 1 2 3\ng " + longName + " " + longName +
                       "\nv 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\nusemtl n" + longName + "\n",
                   options);
    EXPECT_EQ(result.code, ObjConverter::CONVERTER_OK);
    EXPECT_EQ(result.readingMessages, "1|Could not find material library " + cut +
                                          "\n3|Using Mtllib file: {dir}a.mtl\n"
                                          "2|Unrecognized statement: \"" +
                                          cut +
                                          "\" was seen 1 times.\n"
                                          "1|Could not find material \"" +
                                          cut + "\" But saw 1 references.\n");
    EXPECT_EQ(describeFaces(result.model), "[0 1 2 m0]");
    ASSERT_EQ(result.model.groups.size(), 1U);
    EXPECT_EQ(result.model.groups[0].getFullName(), longName + "_" + longName);
    EXPECT_EQ(result.model.materials[0].name, longName);
    EXPECT_EQ(result.model.materials[0].getTextureMap(Material::MAP_KD).fileName,
              longName + ".png");
}

#if !defined(_WIN32)

// As long as a path may be, by way of the directory itself again and again.
TEST_F(OddFiles, pathOfTheGreatestLengthIsRead) {
    constexpr std::size_t LONGEST_PATH = 4095;
    directory.write("a.obj", "v 1 2 3\n");
    std::string path = directory.getPath();
    const std::string fileName = "a.obj";
    while (path.size() + 2 + fileName.size() <= LONGEST_PATH)
        path += "./";
    path += std::string(LONGEST_PATH - path.size() - fileName.size(), '/') + fileName;
    ASSERT_EQ(path.size(), LONGEST_PATH);
    EXPECT_EQ(describeVertices(importFile(path).model), "(1 2 3 w1)");
    EXPECT_EQ(importFile("/" + path).allMessages, CANNOT_OPEN);
}

// --- Not a plain file -------------------------------------------------------------

// Writes in pieces that end anywhere.
void feed(const std::string& pipe, const std::string& content) {
    std::ofstream stream(pipe, std::ios::binary);
    constexpr std::size_t PIECE = 977;
    for (std::size_t begin = 0; begin < content.size(); begin += PIECE)
        stream << content.substr(begin, PIECE) << std::flush;
}

TEST_F(OddFiles, pipesAreReadLikeFiles) {
    const std::string objText =
        withManyVertices("mtllib pipe.mtl\nusemtl m\nv 9 9 9\nf -1 -1 \\\n-1\n", 20000) + "vt 1 2";
    const std::string mtlText = "newmtl m\nKd 1 0 0\n" + std::string(100000, '#') + "\nNs 3";

    directory.write("pipe.mtl", mtlText);
    const ImportResult plain = importFile(directory.write("a.obj", objText));
    const std::string expected = plain.allMessages + printModel(plain.model);

    std::filesystem::remove(directory.getPath() + "pipe.mtl");
    const std::string objPipe = directory.getPath() + "pipe.obj";
    const std::string mtlPipe = directory.getPath() + "pipe.mtl";
    ASSERT_EQ(mkfifo(objPipe.c_str(), 0600), 0);
    ASSERT_EQ(mkfifo(mtlPipe.c_str(), 0600), 0);
    // One writer: the library's pipe is opened while the first lines are read.
    std::thread objWriter([&] { feed(objPipe, objText); });
    std::thread mtlWriter([&] { feed(mtlPipe, mtlText); });
    const ImportResult piped = importFile(objPipe);
    objWriter.join();
    mtlWriter.join();
    ASSERT_EQ(piped.model.groups.size(), 1U);
    EXPECT_EQ(piped.model.groups[0].name, "pipe");
    piped.model.groups[0].name = "a";
    EXPECT_TRUE(piped.allMessages + printModel(piped.model) == expected);
}

TEST_F(OddFiles, pipeWithoutAByteIsAnEmptyFile) {
    const std::string pipe = directory.getPath() + "pipe.obj";
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    std::thread writer([&] { std::ofstream stream(pipe); });
    const ImportResult result = importFile(pipe);
    writer.join();
    EXPECT_EQ(result.code, ObjConverter::CONVERTER_OK);
    EXPECT_EQ(result.readingMessages, "");
}

TEST_F(OddFiles, devicesAndDirectories) {
    EXPECT_EQ(importFile("/dev/null").code, ObjConverter::CONVERTER_OK);
    EXPECT_EQ(importFile("/dev").allMessages, CANNOT_OPEN);
    EXPECT_EQ(importFile("/dev/.").allMessages, CANNOT_OPEN);
    std::filesystem::create_symlink("loop.obj", directory.getPath() + "loop.obj");
    EXPECT_EQ(importFile(directory.getPath() + "loop.obj").allMessages, CANNOT_OPEN);

    const std::string socketName = directory.getPath() + "socket.obj";
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    ASSERT_LT(socketName.size(), sizeof address.sun_path);
    socketName.copy(address.sun_path, socketName.size());
    const int socket = ::socket(AF_UNIX, SOCK_STREAM, 0);
    ASSERT_GE(socket, 0);
    ASSERT_EQ(bind(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    EXPECT_EQ(importFile(socketName).allMessages, CANNOT_OPEN);
    close(socket);
}

TEST_F(OddFiles, directoryForALibrary) {
    std::filesystem::create_directory(directory.getPath() + "folder.mtl");
    const ImportResult result =
        importFile(directory.write("a.obj", "mtllib folder.mtl\nmtllib /dev\nv 1 2 3\n"));
    EXPECT_EQ(result.readingMessages,
              "1|Could not find material library folder.mtl\n"
              "1|Could not find material library /dev\n");
}

#if defined(__linux__)

// The memory of this process: it opens, and its first page cannot be read.
TEST_F(OddFiles, fileWithAReadError) {
    const ImportResult result = importFile("/proc/self/mem");
    EXPECT_EQ(result.code, ObjConverter::CONVERTER_ERROR);
    EXPECT_EQ(result.allMessages, BEGIN +
                                      "1|Problem reading obj file Unable to read file\n"
                                      "1|Stopping conversion... Unable to read obj file.\n");
}

TEST_F(OddFiles, libraryWithAReadError) {
    const ImportResult result = importText("mtllib /proc/self/mem\nv 1 2 3\n");
    EXPECT_EQ(result.code, ObjConverter::CONVERTER_OK);
    EXPECT_EQ(result.readingMessages,
              "3|Using Mtllib file: /proc/self/mem\n"
              "1|Problem with material library: Unable to read file\n");
    EXPECT_EQ(result.model.vertices.size(), 1U);
}

#endif

const std::string OUT_OF_MEMORY = BEGIN +
                                  "1|Problem reading obj file bad allocation\n"
                                  "1|Stopping conversion... Unable to read obj file.\n";

// One endless line of zeros, which ends with the memory for it.
TEST_F(OddFiles, endlessFileEndsWithTheMemory) {
    ObjConverter::clearInstance();
    ImportResult result;
    {
        const LargestBlock limit(std::size_t{64} * 1024 * 1024);
        result = importFile("/dev/zero");
    }
    EXPECT_EQ(result.code, ObjConverter::CONVERTER_ERROR);
    EXPECT_EQ(result.allMessages, OUT_OF_MEMORY);
}

TEST_F(OddFiles, endlessLibraryEndsWithTheMemory) {
    ImportResult result;
    const std::string fileName = directory.write("a.obj", "mtllib /dev/zero\nv 1 2 3\n");
    {
        const LargestBlock limit(std::size_t{64} * 1024 * 1024);
        result = importFile(fileName);
    }
    EXPECT_EQ(result.code, ObjConverter::CONVERTER_OK);
    EXPECT_EQ(result.readingMessages,
              "3|Using Mtllib file: /dev/zero\n"
              "1|Problem with material library: bad allocation\n");
    EXPECT_EQ(result.model.vertices.size(), 1U);
}

// Runs the code in a process of its own, and gives what it returned.
std::string inChildProcess(const std::function<std::string()>& code) {
    int ends[2] = {};
    if (pipe(ends) != 0)
        return "no pipe";
    const pid_t child = fork();
    if (child == 0) {
        const std::string text = code();
        const ssize_t written = write(ends[1], text.data(), text.size());
        _exit(written == static_cast<ssize_t>(text.size()) ? 0 : 1);
    }
    close(ends[1]);
    std::string text;
    char buffer[4096];
    for (ssize_t length = 0; (length = read(ends[0], buffer, sizeof buffer)) > 0;)
        text.append(buffer, static_cast<std::size_t>(length));
    close(ends[0]);
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) && WEXITSTATUS(status) == 0 ? text : text + "(the process failed)";
}

// A sanitizer takes more addresses than any limit leaves.
#if !defined(__SANITIZE_ADDRESS__)
TEST_F(OddFiles, endlessFileEndsWithTheProcessesOwnLimit) {
    const std::string childsMessages = inChildProcess([]() -> std::string {
        constexpr rlim_t LIMIT = rlim_t{512} * 1024 * 1024;
        const rlimit limit = {LIMIT, LIMIT};
        if (setrlimit(RLIMIT_AS, &limit) != 0)
            return "no limit";
        const PagesAllowed pages;
        return importFile("/dev/zero").allMessages;
    });
    EXPECT_EQ(childsMessages, OUT_OF_MEMORY);
}
#endif

TEST_F(OddFiles, fileThatMayNotBeRead) {
    const std::string fileName = directory.write("secret.obj", "v 1 2 3\n");
    directory.write("secret.mtl", "newmtl m\n");
    const std::string other = directory.write("a.obj", "mtllib secret.mtl\nv 1 2 3\n");
    for (const char* name : {"secret.obj", "secret.mtl"})
        std::filesystem::permissions(directory.getPath() + name, std::filesystem::perms::none);
    std::filesystem::permissions(directory.getPath(), std::filesystem::perms::all);
    const auto asNobody = [](const std::string& name) {
        return inChildProcess([&]() -> std::string {
            // The superuser may read all files, so it becomes somebody who may not.
            constexpr uid_t NOBODY = 65534;
            if (geteuid() == 0 && seteuid(NOBODY) != 0)
                return "no other user";
            return importFile(name).allMessages;
        });
    };
    EXPECT_EQ(asNobody(fileName), CANNOT_OPEN);
    EXPECT_EQ(asNobody(other), BEGIN +
                                   "1|Could not find material library secret.mtl\n"
                                   "3|Done reading input.\n3|Obj data import complete.\n");
}

#endif

}  // namespace
}  // namespace obj_adapter::test
