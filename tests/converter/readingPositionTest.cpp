// Which file and line a host finds when it asks inside a callback.
#include "support/temporaryDirectory.h"

#include <obj_adapter/objConverter.h>

#include <gtest/gtest.h>

#include <string>

namespace obj_adapter::test {

namespace {

std::string receivedText;

// Each message with the place where it came: "file:line text", by the last part of
// the file's name.
void receive(int, const char* text) {
    const ObjConverter& converter = *ObjConverter::getInstance();
    const char* fileName = converter.getCurrentFileName();
    std::string place = "-";
    if (fileName != nullptr) {
        place = fileName;
        place.erase(0, place.find_last_of('/') + 1);
    }
    receivedText +=
        place + ":" + std::to_string(converter.getCurrentLineNumber()) + " " + text + "\n";
}

class ReadingPositionTest : public testing::Test {
protected:
    ReadingPositionTest() {
        ObjConverter::clearInstance();
        receivedText.clear();
        converter().setMsgCallback(&receive);
        converter().setDataCompaction(false);
        converter().setSkipPolygonsWithoutEar(true);
    }
    ~ReadingPositionTest() override { ObjConverter::clearInstance(); }

    static ObjConverter& converter() { return *ObjConverter::getInstance(); }

    // What came between the first two messages and the last two.
    std::string messagesOf(const std::string& objText) {
        receivedText.clear();
        const std::string file = directory.write("a.obj", objText);
        EXPECT_EQ(converter().importObjDataFromFile(file.c_str()), ObjConverter::CONVERTER_OK);
        const std::string begin = "-:0 Obj Converter Import:\n-:0 Reading input file...\n";
        const std::string end = "-:0 Done reading input.\n-:0 Obj data import complete.\n";
        EXPECT_EQ(receivedText.substr(0, begin.size()), begin);
        EXPECT_EQ(receivedText.substr(receivedText.size() - end.size()), end);
        return receivedText.substr(begin.size(), receivedText.size() - begin.size() - end.size());
    }

    TemporaryDirectory directory;
};

struct PositionCase {
    const char* title;
    const char* objText;
    const char* messages;
};

const PositionCase POSITION_CASES[] = {
    {"the first line", "f 1 2\n", "a.obj:1 Face does not have enough vertices. Skipping face.\n"},
    {"behind lines that are nothing", "#\n\n  \nxy\nf 1 2\n",
     "a.obj:5 Face does not have enough vertices. Skipping face.\n"
     "a.obj:0 Unrecognized statement: \"xy\" was seen 1 times.\n"},
    {"behind ordinary lines", "v 1 2 3\nv 1 2 4\nvt 0 1\nvn 0 0 1\nf 1 2 1\nf 1 2\n",
     "a.obj:6 Face does not have enough vertices. Skipping face.\n"},
    {"two among ordinary lines", "v 1 2 3\nv 1 2\nv 1 2 4\nv 1\nv 1 2 3\n",
     "a.obj:2 Error processing vertex: No float value found\n"
     "Vertex will be replaced by (0,0,0).\n"
     "a.obj:4 Error processing vertex: No float value found\n"
     "Vertex will be replaced by (0,0,0).\n"},
    {"a last line without a line feed", "v 1 2 3\nf 1 2",
     "a.obj:2 Face does not have enough vertices. Skipping face.\n"},
    {"joined lines count from the first", "v 1 \\\n2\nf 1 2\n",
     "a.obj:1 Error processing vertex: No float value found\n"
     "Vertex will be replaced by (0,0,0).\n"
     "a.obj:3 Face does not have enough vertices. Skipping face.\n"},
    {"lines joined and whole", "v 1 \\\n2 3\nv 1 2 3\nf 1 2\n",
     "a.obj:4 Face does not have enough vertices. Skipping face.\n"},
    {"a backslash at the end", "f 1 2 \\",
     "a.obj:1 Face does not have enough vertices. Skipping face.\n"},
    {"ordinary polygons too",
     "v 0 1 0\nv 3 0 0\nv 1 0 0\nv 2 0 0\nv 0 0 0\nf 1 2 3\nf 1 2 3 4 5\nf 1 2 4\n",
     "a.obj:7 Could not split non-triangular face. Skipping face.\n"},
    {"what was tallied has no line", "f 7 8 9\nusemtl red\n",
     "a.obj:0 Could not find material \"red\" But saw 1 references.\n"
     "a.obj:0 Number of faces where vertex, texture, or normal indices had to be changed due to "
     "being out of range: 1\n"},
    {"a library that is not there", "v 1 2 3\nmtllib missing.mtl\n",
     "a.obj:2 Could not find material library missing.mtl\n"},
};

TEST_F(ReadingPositionTest, isThatOfTheMessagesLine) {
    for (const PositionCase& row : POSITION_CASES) {
        SCOPED_TRACE(row.title);
        EXPECT_EQ(messagesOf(row.objText), row.messages);
        ObjConverter::clearInstance();
        converter().setMsgCallback(&receive);
        converter().setDataCompaction(false);
        converter().setSkipPolygonsWithoutEar(true);
    }
}

TEST_F(ReadingPositionTest, isInTheLibraryWhileThatIsRead) {
    directory.write("b.mtl", "newmtl red\n# comment\nKd 1\nillum x\n");
    EXPECT_EQ(messagesOf("v 1 2 3\nmtllib b.mtl\nv 1\n"),
              "a.obj:2 Using Mtllib file: " + directory.getPath() +
                  "b.mtl\n"
                  "b.mtl:3 Error processing Diffuse color: No float value found\n"
                  "b.mtl:4 Error processing Illumination Model: invalid stoi argument\n"
                  "a.obj:3 Error processing vertex: No float value found\n"
                  "Vertex will be replaced by (0,0,0).\n");
}

TEST_F(ReadingPositionTest, countsAcrossBlocks) {
    std::string text;
    for (int line = 1; line <= 30'000; ++line)
        text += line % 10'000 == 0 ? "v 1\n" : "v 1.5 2.5 3.5\n";
    EXPECT_EQ(messagesOf(text),
              "a.obj:10000 Error processing vertex: No float value found\n"
              "Vertex will be replaced by (0,0,0).\n"
              "a.obj:20000 Error processing vertex: No float value found\n"
              "Vertex will be replaced by (0,0,0).\n"
              "a.obj:30000 Error processing vertex: No float value found\n"
              "Vertex will be replaced by (0,0,0).\n");
}

TEST_F(ReadingPositionTest, isNothingOutsideOfAnImport) {
    messagesOf("v 1 2 3\n");
    EXPECT_EQ(converter().getCurrentFileName(), nullptr);
    EXPECT_EQ(converter().getCurrentLineNumber(), 0);
}

}  // namespace

}  // namespace obj_adapter::test
