// What depends on the platform's text mode, and that nothing else does: each row
// has what comes out where line ends are translated and where they are not.
#include "support/describe.h"
#include "support/importText.h"
#include "support/printedModel.h"
#include "support/textMode.h"

#include <gtest/gtest.h>

#include <string>

namespace obj_adapter::test {
namespace {

struct Outcome {
    const char* vertices;
    const char* groups;
    const char* messages;
};

struct TextModeCase {
    const char* title;
    std::string objText;
    Outcome everyByte;   // the file as its bytes say
    Outcome translated;  // CR LF is a line feed, 0x1A the end
};

const std::string CTRL_Z = "\x1A";

const TextModeCase TEXT_MODE_CASES[] = {
    {"line ends of either kind are alike",
     "v 1 2 3\r\nv 4 5 6\n",
     {"(1 2 3 w1) (4 5 6 w1)", "test:", ""},
     {"(1 2 3 w1) (4 5 6 w1)", "test:", ""}},
    {"a carriage return alone is a delimiter",
     "v 1\r2\r3\n",
     {"(1 2 3 w1)", "test:", ""},
     {"(1 2 3 w1)", "test:", ""}},
    {"a backslash before CR LF continues the line only when translated",
     "v 1 2 3\\\r\n 4\n",
     {"(1 2 3 w1)", "test:", "2|Unrecognized statement: \"4\" was seen 1 times.\n"},
     {"(1 2 3 w4)", "test:", ""}},
    {"a carriage return counts as a character",
     "x\r\n",
     {"", "test:", "2|Unrecognized statement: \"x\" was seen 1 times.\n"},
     {"", "test:", ""}},
    {"a group without a name",
     "v 1 2 3\ng\r\nf 1 1 1\r\n",
     {"(1 2 3 w1)", "default: 0", ""},
     {"(1 2 3 w1)", "test: 0", ""}},
    {"two carriage returns: one is translated",
     "x\r\r\n",
     {"", "test:", "2|Unrecognized statement: \"x\" was seen 1 times.\n"},
     {"", "test:", "2|Unrecognized statement: \"x\" was seen 1 times.\n"}},
    {"the text ends at 0x1A",
     "v 1 2 3\n" + CTRL_Z + "\nv 4 5 6\n",
     {"(1 2 3 w1) (4 5 6 w1)", "test:", ""},
     {"(1 2 3 w1)", "test:", ""}},
    {"and within a line too",
     "v 1 2 3\nv 4 5 6" + CTRL_Z + " 7\nv 8 9 10\n",
     {"(1 2 3 w1) (4 5 6 w7) (8 9 10 w1)", "test:", ""},
     {"(1 2 3 w1) (4 5 6 w1)", "test:", ""}},
};

TEST(TextMode, eachDifferenceIsKnown) {
    for (const TextModeCase& row : TEXT_MODE_CASES) {
        SCOPED_TRACE(row.title);
        const Outcome& expected = TEXT_IS_TRANSLATED ? row.translated : row.everyByte;
        const ImportResult result = importText(row.objText);
        EXPECT_EQ(result.code, ObjConverter::CONVERTER_OK);
        EXPECT_EQ(describeVertices(result.model), expected.vertices);
        EXPECT_EQ(describeGroups(result.model), expected.groups);
        EXPECT_EQ(result.readingMessages, expected.messages);
    }
}

// A library is a text file as well.
TEST(TextMode, librariesAreReadAlike) {
    ImportOptions options;
    options.otherFiles["a.mtl"] = "newmtl a\r\nNs 5\r\n" + CTRL_Z + "\nnewmtl b\n";
    const ImportResult result = importText("mtllib a.mtl\r\n", options);
    ASSERT_EQ(result.model.materials.size(), TEXT_IS_TRANSLATED ? 1U : 2U);
    EXPECT_EQ(result.model.materials[0].name, "a");
    EXPECT_EQ(result.model.materials[0].specularExponent, 5.0);
}

// A block of the reader may end between the two bytes of a line end.
TEST(TextMode, longFilesWithEitherLineEndGiveTheSameModel) {
    std::string unixText;
    std::string windowsText;
    for (int vertex = 0; vertex < 20000; ++vertex) {
        const std::string line = "v " + std::to_string(vertex) + " 2 " +
                                 std::string(static_cast<std::size_t>(vertex % 7), ' ') + "3";
        unixText += line + "\n";
        windowsText += line + "\r\n";
    }
    EXPECT_EQ(printModel(importText(windowsText).model), printModel(importText(unixText).model));
}

}  // namespace
}  // namespace obj_adapter::test
