// Statements read the short way against the same statements read the plain way.
#include "obj/ordinaryStatements.h"

#include "converter/converterState.h"
#include "groups/groupStatement.h"
#include "groups/groupTable.h"
#include "model/objModel.h"
#include "obj/faceReader.h"
#include "obj/lineTokens.h"
#include "obj/textSource.h"
#include "support/damagedText.h"
#include "support/describe.h"
#include "support/importText.h"
#include "support/printedModel.h"
#include "support/randomSource.h"
#include "support/textMode.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <string>
#include <string_view>

namespace obj_adapter::test {
namespace {

using namespace std::literals;

// A model with something to name, and room for more in every table.
class OrdinaryLines : public testing::Test {
protected:
    OrdinaryLines() {
        addInitialGroup(model);
        for (const double x : {0.0, 1.0, 2.0, 3.0}) {
            Vertex vertex(x, x * x, 0.0);
            model.addVertex(vertex);
            TexturePoint texturePoint;
            texturePoint.u = texturePoint.v = x;
            model.addTexturePoint(texturePoint);
            NormalPoint normal;
            normal.x = normal.y = normal.z = x;
            model.addNormalPoint(normal);
        }
        for (const char* name : {"red", "a_material_with_a_long_name"})
            model.materialTable.addMaterial(name);
        makeRoom();
    }

    void makeRoom() {
        model.vertices.reserve(1000);
        model.texturePoints.reserve(1000);
        model.normalPoints.reserve(1000);
        model.faces.reserve(1000);
    }

    // How many bytes of the lines are read.
    std::size_t read(const std::string& lines) {
        const std::string text = "# A line for the reader to begin with\n" + lines;
        MemoryText memory(text);
        std::string_view comment;
        memory.getLines().next(comment);
        const std::size_t ready = memory.getLines().getReadyLines().size();
        statements.read(memory.getLines(), material);
        return ready - memory.getLines().getReadyLines().size();
    }

    std::size_t countRecords() const {
        return model.vertices.size() + model.texturePoints.size() + model.normalPoints.size() +
               model.faces.size();
    }

    ObjModel model;
    ConverterSettings settings;
    FaceReader faceReader{model, settings};
    OrdinaryStatements statements{model, faceReader};
    int material = NO_INDEX;
};

TEST_F(OrdinaryLines, areReadToTheirEnd) {
    const std::string LINES[] = {
        "v 1 2 3\n",
        "v 1 2 3 4\n",
        "v 1 2 3 4 5 6\n",
        "v 1 2 3 4 what ever\n",
        "v  1\t2  3 \r\n",
        "v\t-1.5 .5 5.\n",
        "v 1e5 2E-3 3.25e+2\r\n",
        "v 0.12345678901234567 1234567890123456789 0.1e-300\n",
        "vt 0.5 0.25\n",
        "vt 0.5 0.25 1\n",
        "vt 0.5 0.25 1 x\r\n",
        "vn 0 0 1\n",
        "vn 0 0 1 x\n",
        "f 1 2 3\n",
        "f -1 -2 -3\r\n",
        "f  1/1  2/2\t3/3 \n",
        "f 1//1 2//-1 3//4\n",
        "f 1/1/1 2/2/2 3/3/3\n",
        "f 1 2/2 3//3\n",
        "f 1 2 3 4\n",
        "usemtl red\n",
        "usemtl  a_material_with_a_long_name \r\n",
        "usemtl red blue\n",
        "\n",
        "\r\n",
        " \t \n",
        "#\n",
        "# what ever\r\n",
        "g a\n",
        "g  a\tb \r\n",
        "g \n",
        "g a\\b\n",
        "g a\0b\n"s,
        "g a b\\ \n",
        "o a\n",
    };
    std::string all;
    for (const std::string& line : LINES) {
        EXPECT_EQ(read(line), line.size()) << line;
        all += line;
    }
    EXPECT_EQ(read(all), all.size());
    EXPECT_EQ(material, 0);
    EXPECT_EQ(describeGroups(viewOfModel(model)).substr(0, 24), "Obj File: 0 1 2 3 4 5 6 ");
}

TEST_F(OrdinaryLines, endBeforeEveryOther) {
    const std::string LINES[] = {
        " # x\n",
        "# x\\\n",
        "#\\\n",
        " \\\n",
        "\r\r\n",
        "v\n",
        "V 1 2 3\n",
        " v 1 2 3\n",
        "v 1 2\n",
        "v 1 2 \n",
        "v 1 2 x\n",
        "v 1 2 3 x\n",
        "v 1 2 3\\\n",
        "v 1 2 3 4\\\n",
        "v 1 2 3 4 5 \\\n",
        "v 1 2 3\\ \n",
        "v 1 2 3\v\n",
        "v +1 2 3\n",
        "v 1 2 0x3\n",
        "v 1 2 inf\n",
        "v 1 2 nan\n",
        "v 1 2 1e999\n",
        "v 1 2 1e-999\n",
        "v 1 2 3\0\n"s,
        "v 1 2\0 3\n"s,
        "v 1 2 3f\n",
        "v 1 2,5 3\n",
        "v 1 2 3 \r4\n",
        "vp 1 2\n",
        "vt 1\n",
        "vt 1 2 x\n",
        "vt1 2\n",
        "VT 1 2\n",
        "vn 1 2\n",
        "vn 1 2 x\n",
        "vn 1 2 3\\\n",
        "vn1 2 3\n",
        "f\n",
        "f 1 2\n",
        "f 1 2 0\n",
        "f 1 2 5\n",
        "f 1 2 -5\n",
        "f 1 2 -0\n",
        "f 1 2 +3\n",
        "f 1/5 2 3\n",
        "f 1//5 2 3\n",
        "f 1/ 2 3\n",
        "f 1// 2 3\n",
        "f 1/1/ 2 3\n",
        "f 1/1/1/1 2 3\n",
        "f /1 2 3\n",
        "f 1 2 3.\n",
        "f 1 2 3\\\n",
        "f 1 2 3 \\\n",
        "f 1 2 3\0\n"s,
        "f 1 2 3\v\n",
        "f 1 2 4294967297\n",
        "f 1 2 0000000003\n",
        "f 1 2 3 \r4\n",
        "F 1 2 3\n",
        "usemtl\n",
        "usemtl \n",
        "usemtl Red\n",
        "usemtl re\n",
        "usemtl redd\n",
        "usemtl red\\\n",
        "usemtl red \\\n",
        "usemtl red\0\n"s,
        "usemtlred\n",
        "Usemtl red\n",
        "g\n",
        "g\r\n",
        "g a\\\n",
        "g \\\n",
        "ga b\n",
        " g a\n",
        "G a\n",
        "O a\n",
        "s 1\n",
    };
    const std::size_t records = countRecords();
    for (const std::string& line : LINES) {
        EXPECT_EQ(read(line), 0U) << line;
        EXPECT_EQ(countRecords(), records) << line;
        EXPECT_EQ(material, NO_INDEX) << line;
    }
    // What stands before is read all the same.
    for (const std::string& line : LINES)
        EXPECT_EQ(read("f 1 2 3\nf 3 2 1\n" + line), 16U) << line;
}

// A full table is the plain way's matter, which can say that memory has run out.
TEST_F(OrdinaryLines, askForNoMemory) {
    model.vertices.shrink_to_fit();
    model.texturePoints.shrink_to_fit();
    model.normalPoints.shrink_to_fit();
    model.faces.shrink_to_fit();
    for (const char* line : {"v 1 2 3\n", "vt 1 2\n", "vn 1 2 3\n", "f 1 2 3\n"})
        EXPECT_EQ(read(line), 0U) << line;
    makeRoom();
    model.vertices.resize(model.vertices.capacity() - 1);
    EXPECT_EQ(read("v 1 2 3\nv 4 5 6\n"), 8U);
}

TEST_F(OrdinaryLines, facesJoinTheirGroupInOrder) {
    EXPECT_EQ(read("f 1 2 3\nf 2 3 4\n"), 16U);
    addGroup(model, "second");
    EXPECT_EQ(read("f 1 2 3\nf 1 2 3 4\nf 1 3 4\n"), 26U);
    EXPECT_EQ(read("f 3 2 1\n"), 8U);
    EXPECT_EQ(describeGroups(viewOfModel(model)), "Obj File: 0 1; second: 2 3 4 5 6");
    for (const Face& face : model.faces)
        EXPECT_EQ(face.groupIndex, &face < &model.faces[2] ? 0 : 1);
}

TEST_F(OrdinaryLines, groupsAreWhatThePlainWayMakes) {
    const std::string NAMES[] = {"a",      " a\tb ",   "",          "a\\b", "a\0b"s,
                                 "a b\\ ", "\xC3\xA4", "a/b # c\r", "o g",  std::string(40, 'x')};
    for (const std::string& name : NAMES) {
        SCOPED_TRACE(name);
        ObjModel plain;
        LineTokens tokens(name);
        handleGroupStatement(plain, tokens);
        const std::string line = "g " + name + "\n";
        model.hierarchyValid = true;
        EXPECT_EQ(read(line), line.size());
        EXPECT_EQ(model.groups.back().name, plain.groups.back().name);
        EXPECT_EQ(model.groups.back().names, plain.groups.back().names);
        EXPECT_FALSE(model.hierarchyValid);
    }
}

TEST_F(OrdinaryLines, facesJoinTheGroupBeforeThem) {
    const std::string lines = "f 1 2 3\ng a\nf 2 3 4\nf 1 2 3 4\no b c\n# x\n\nf 3 2 1\n";
    EXPECT_EQ(read(lines), lines.size());
    EXPECT_EQ(describeGroups(viewOfModel(model)), "Obj File: 0; a: 1 2 3; b/c: 4");
    const int groups[] = {0, 1, 1, 1, 2};
    for (std::size_t face = 0; face < std::size(groups); ++face)
        EXPECT_EQ(model.faces[face].groupIndex, groups[face]);
}

// The plain way for every statement: a blank before the keyword is not ordinary,
// and changes nothing else of a line that is a statement.
std::string indented(const std::string& text) {
    std::string result;
    for (std::size_t begin = 0; begin < text.size();) {
        const auto endOfLine = [&](std::size_t from) {
            return std::min(text.find('\n', from), text.size());
        };
        std::size_t end = endOfLine(begin);
        std::string logicalLine = text.substr(begin, end - begin);
        if (!logicalLine.empty() && logicalLine.back() == '\\') {
            logicalLine.pop_back();
            const std::size_t continuation = std::min(end + 1, text.size());
            end = endOfLine(continuation);
            logicalLine += text.substr(continuation, end - continuation);
        }
        if (logicalLine.size() >= 2 && logicalLine.front() != '#')
            result += ' ';
        result += text.substr(begin, end + 1 - begin);
        begin = end + 1;
    }
    return result;
}

std::string number(RandomSource& random) {
    std::string text = random.oneIn(3) ? "-" : "";
    text += std::to_string(random.below(random.oneIn(3) ? 100000 : 10));
    if (!random.oneIn(4)) {
        text += '.';
        for (int i = random.below(random.oneIn(5) ? 18 : 7); i > 0; --i)
            text += static_cast<char>('0' + random.below(10));
    }
    if (random.oneIn(10))
        text += "e" + std::to_string(random.between(-40, 40));
    return text;
}

std::string blanks(RandomSource& random) {
    return random.oneIn(10) ? "  \t"s.substr(static_cast<std::size_t>(random.below(3))) : " ";
}

std::string numbers(RandomSource& random, int count) {
    std::string text;
    for (int i = 0; i < count; ++i)
        text += blanks(random) + number(random);
    return text;
}

std::string index(RandomSource& random, int count) {
    const int value = random.between(1, std::max(count, 1));
    return std::to_string(random.oneIn(3) ? -value : value);
}

struct Counts {
    int vertices = 0;
    int texturePoints = 0;
    int normals = 0;
};

std::string face(RandomSource& random, const Counts& counts) {
    std::string text = "f";
    const int form = random.below(4);
    for (int corners = random.oneIn(4) ? random.between(4, 7) : 3; corners > 0; --corners) {
        text += blanks(random) + index(random, counts.vertices);
        if (form == 1 || form == 3)
            text += "/" + index(random, counts.texturePoints);
        if (form >= 2)
            text += (form == 2 ? "//" : "/") + index(random, counts.normals);
    }
    return text;
}

std::string line(RandomSource& random, Counts& counts) {
    const int kind = random.below(100);
    if (kind < 40)
        return ++counts.vertices, "v" + numbers(random, random.oneIn(6) ? random.between(2, 7) : 3);
    if (kind < 50)
        return ++counts.texturePoints, "vt" + numbers(random, random.between(1, 4));
    if (kind < 60)
        return ++counts.normals, "vn" + numbers(random, random.oneIn(6) ? 2 : 3);
    if (kind < 90)
        return face(random, counts);
    if (kind < 95)
        return "usemtl m" + std::to_string(random.below(4));
    if (kind < 98)
        return (random.oneIn(2) ? "g" : "o") + blanks(random) + "part" +
               std::to_string(random.below(3)) + (random.oneIn(2) ? blanks(random) + "left" : "");
    return random.oneIn(2) ? "" : "# comment";
}

constexpr std::string_view DAMAGING_BYTES =
    "0123456789 \t\r\n\\\\//--++..eExXinf#vVtg\v\f\0\x1B\xFF"sv;

TEST(OrdinaryStatements, generatedLinesGiveWhatThePlainWayGives) {
    constexpr int FILES = 300;
    constexpr int LINES = 600;
    ImportOptions options;
    options.skipPolygonsWithoutEar = true;
    options.otherFiles["a.mtl"] = "newmtl m0\nnewmtl m1\nnewmtl m2\n";
    RandomSource random(51);
    for (int file = 0; file < FILES; ++file) {
        std::string text = "mtllib a.mtl\n";
        Counts counts;
        for (int i = 0; i < LINES; ++i) {
            std::string next = line(random, counts) + (random.oneIn(8) ? "\r\n" : "\n");
            while (random.oneIn(6) && !next.empty())
                damage(random, DAMAGING_BYTES, next);
            text += next;
        }
        // What the platform would translate decides which lines are joined.
        for (std::size_t end; TEXT_IS_TRANSLATED && (end = text.find("\r\n")) != text.npos;)
            text.erase(end, 1);
        const ImportResult fast = importText(text, options);
        const std::string model = printModel(fast.model);
        const ImportResult plain = importText(indented(text), options);
        ASSERT_EQ(fast.allMessages, plain.allMessages) << "file " << file;
        ASSERT_TRUE(model == printModel(plain.model)) << "file " << file << "\n" << text;
    }
}

}  // namespace
}  // namespace obj_adapter::test
