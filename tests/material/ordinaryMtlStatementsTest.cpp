// Material statements read the short way: which are, what they leave, and that all give
// what the slow twin gives.
#include "material/ordinaryMtlStatements.h"

#include "material/readMtlText.h"
#include "obj/textSource.h"
#include "support/countedMemory.h"
#include "support/damagedText.h"
#include "support/randomSource.h"
#include "support/slowMtlReader.h"

#include <obj_adapter/geometryRecords.h>

#include <gtest/gtest.h>

#include <cstddef>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

namespace obj_adapter::test {
namespace {

using namespace std::literals;

// How much of the lines is read the short way.
struct Taken {
    std::size_t bytes;
    std::size_t lines;
};

Taken readOrdinary(const std::string& lines, MaterialTable& table) {
    const std::string text = "# A line for the reader to begin with\n" + lines;
    MemoryText memory(text);
    LogicalLineReader& reader = memory.getLines();
    std::string_view comment;
    reader.next(comment);
    const std::size_t ready = reader.getReadyLines().size();
    readOrdinaryMtlStatements(reader, table);
    return {ready - reader.getReadyLines().size(), reader.getLineNumber() - 1};
}

struct OrdinaryCase {
    std::string line;
    const char* material;  // describeMaterials() form of what it leaves of "newmtl a"
};

TEST(OrdinaryMtlLines, areReadToTheirEnd) {
    const OrdinaryCase ROWS[] = {
        {"\n", "a{}"},
        {"\r\n", "a{}"},
        {" \t\n", "a{}"},
        {" \r\n", "a{}"},
        {"# what ever 1 2 3\n", "a{}"},
        {"\t# what ever\n", "a{}"},
        {"#\n", "a{}"},
        {"# what\\ ever\r\n", "a{}"},
        {"Ka 1 0.5 .25\n", "a{Ka(rgb 1 0.5 0.25 1)}"},
        {"Kd\t1  0.5\t0.25 \r\n", "a{Kd(rgb 1 0.5 0.25 1)}"},
        {"Ks 1 -0.5 0.25 4 x\n", "a{Ks(rgb 1 -0.5 0.25 1)}"},
        {"Tf 5. 1e2 2.5E-1\r\n", "a{Tf(rgb 5 100 0.25 1)}"},
        {"Kd 1e39 0 0\n", "a{Kd(rgb inf 0 0 1)}"},
        {"\tKd 1 1 1\n", "a{Kd(rgb 1 1 1 1)}"},
        {"  Kd 1 1 1\n", "a{Kd(rgb 1 1 1 1)}"},
        {"Ke 1 1 1\n", "a{}"},
        {"Ke -what ever\r\n", "a{}"},
        {"Ns 96.5\n", "a{Ns=96.5}"},
        {"Ns -2 3\r\n", "a{Ns=-2}"},
        {"Ni 1.5\n", "a{Ni=1.5}"},
        {"d 0.25\n", "a{d=0.25}"},
        {"d  .5 x\n", "a{d=0.5}"},
        {"Tr 0.25\n", "a{d=0.75}"},
        {"illum 2\n", "a{illum=2}"},
        {"illum \t010 1\r\n", "a{illum=10}"},
        {"illum 000000012\n", "a{illum=12}"},
        {"map_Ka a.png\n", "a{map_Ka(a.png)}"},
        {"map_Kd  textures/a.png \t\r\n", "a{map_Kd(textures/a.png)}"},
        {"map_Ks a-b.png\n", "a{map_Ks(a-b.png)}"},
        {"map_Ns a\n", "a{map_Ns(a)}"},
        {"map_d #\n", "a{map_d(#)}"},
        {"bump a.png\n", "a{bump(a.png)}"},
        {"\tbump a.png\n", "a{bump(a.png)}"},
        {"newmtl b\n", "a{} b{}"},
        {" newmtl c\n", "a{} c{}"},
        {"newmtl\tA  a \r\n", "a{} A{}"},
    };
    std::string all = "newmtl a\n";
    std::size_t count = 1;
    for (const OrdinaryCase& row : ROWS) {
        SCOPED_TRACE(row.line);
        const std::string lines = "newmtl a\n" + row.line;
        MaterialTable table;
        const Taken taken = readOrdinary(lines, table);
        EXPECT_EQ(taken.bytes, lines.size());
        EXPECT_EQ(taken.lines, 2U);
        EXPECT_EQ(describeMaterials(table), row.material);
        all += row.line;
        ++count;
    }
    MaterialTable table;
    const Taken taken = readOrdinary(all, table);
    EXPECT_EQ(taken.bytes, all.size());
    EXPECT_EQ(taken.lines, count);
    EXPECT_EQ(table.getNumberOfMaterials(), 4);
    EXPECT_EQ(table.findMaterial("b"), 1);
    EXPECT_EQ(table.findMaterial("c"), 2);
    EXPECT_EQ(table.findMaterial("A"), 3);
}

TEST(OrdinaryMtlLines, endBeforeEveryOther) {
    const std::string LINES[] = {
        "\r\r\n",
        " \\\n",
        "\t# x\\\n",
        "# x\\\n",
        "\\# x\n",
        "#\\\n",
        "K\n",
        "Ka\n",
        "Ka \n",
        "Ka 1\n",
        "Ka 1 1\n",
        "Ka 1 1 x\n",
        "Ka 1 1 1x\n",
        "Ka 1 1 1\\\n",
        "Ka 1 1 1 \\\n",
        "Ka 1 1 1 x\\\n",
        "Ka 1 1 1\v\n",
        "Ka 1 1 1\0\n"s,
        "Ka 1 1\0 1\n"s,
        "Ka -1 1 1\n",
        "Ka  -1 1 1\n",
        "Ka +1 1 1\n",
        "Ka 1 +1 1\n",
        "Ka . 1 1\n",
        "Ka 1,5 1 1\n",
        "Ka 0x1 1 1\n",
        "Ka 1e999 1 1\n",
        "Ka 1 nan 1\n",
        "Ka xyz 1 1 1\n",
        "Ka spectral a.rfl\n",
        "Ka1 1 1\n",
        "KA 1 1 1\n",
        "ka 1 1 1\n",
        "Kb 1 1 1\n",
        "Ke\n",
        "Ke 1 1 1\\\n",
        "Kee 1 1 1\n",
        "\\Ka 1 1 1\n",
        " Ka 1 1 1 \\\n",
        "\vKa 1 1 1\n",
        " d\n",
        " \0Ka 1 1 1\n"s,
        "TF 1 1 1\n",
        "Ns\n",
        "Ns x\n",
        "Ns 1e-999\n",
        "Ns 1\\\n",
        "Nsx 1\n",
        "NS 1\n",
        "ns 1\n",
        "d\n",
        "d \n",
        "d x\n",
        "d -halo 1\n",
        "d\t1\n",
        "d 1\\\n",
        "D 1\n",
        "Tr\n",
        "Tr x\n",
        "TR 1\n",
        "Ni\n",
        "illum\n",
        "illum x\n",
        "illum -1\n",
        "illum +1\n",
        "illum 2.5\n",
        "illum 2x\n",
        "illum 2\\\n",
        "illum 1000000000\n",
        "illum 9999999999\n",
        "illum2\n",
        "Illum 2\n",
        "sharpness 60\n",
        "map_Kd\n",
        "map_Kd \n",
        "map_Kd -clamp on a.png\n",
        "map_Kd a.png -clamp on\n",
        "map_Kd a.png b.png\n",
        "map_Kd -\n",
        "map_Kd a\\b.png\n",
        "map_Kd a.png\\\n",
        "map_Kd a.png \\\n",
        "map_Kd a.png\0\n"s,
        "map_Kda.png\n",
        "map_kd a.png\n",
        "map_Kx a.png\n",
        "map_d\ta.png\n",
        "map_aat on\n",
        "map_\n",
        "Map_Kd a.png\n",
        "bump\n",
        "bumpa.png\n",
        "bump -bm 1 a.png\n",
        "Bump a.png\n",
        "disp a.png\n",
        "decal a.png\n",
        "refl a.png\n",
        "refl -type sphere a.png\n",
        "newmtl\n",
        "newmtl \n",
        "newmtl a\n",
        "newmtl b\\\n",
        "newmtl b \\\n",
        "newmtl b\0\n"s,
        "newmtl b\\c\n",
        "newmtlb\n",
        "Newmtl b\n",
        "nonsense\n",
        "unknown 1\n",
    };
    const std::string before = "newmtl a\nKd 1 1 1\n";
    for (const std::string& line : LINES) {
        SCOPED_TRACE(line);
        MaterialTable table;
        const Taken taken = readOrdinary(before + line + "Kd 0 0 0\n", table);
        EXPECT_EQ(taken.bytes, before.size());
        EXPECT_EQ(taken.lines, 2U);
        EXPECT_EQ(describeMaterials(table), "a{Kd(rgb 1 1 1 1)}");
    }
}

TEST(OrdinaryMtlLines, needAMaterial) {
    for (const char* line :
         {"Ka 1 1 1\n", "Ns 1\n", "d 1\n", "Tr 1\n", "illum 1\n", "map_Kd a\n", "bump a\n"}) {
        MaterialTable table;
        EXPECT_EQ(readOrdinary(line, table).bytes, 0U) << line;
        EXPECT_EQ(readOrdinary("\n# x\n"s + line, table).bytes, 5U) << line;
    }
}

TEST(OrdinaryMtlLines, colorsAndMapsTakeTheFormerOnesPlace) {
    MaterialTable table;
    EXPECT_EQ(readMtlText("newmtl a\nKd spectral a.rfl 0.5\nmap_Kd -clamp on -s 2 2 2 a.png\n"
                          "Kd 0.25 0.5 0.75\nmap_Kd b.png\n",
                          table),
              "");
    EXPECT_EQ(describeMaterials(table), "a{Kd(rgb 0.25 0.5 0.75 1) map_Kd(b.png)}");
}

// The names that the host has given count, whether it holds a pointer still or not.
TEST(OrdinaryMtlLines, newNamesAreToldByWhatTheHostHasWritten) {
    MaterialTable table;
    table.addMaterial("a");
    table.lendMaterial(0)->name = "b";
    EXPECT_EQ(readOrdinary("newmtl b\n", table).bytes, 0U);
    EXPECT_EQ(readOrdinary("newmtl a\n", table).bytes, 9U);
    EXPECT_EQ(table.findMaterial("a"), 1);
    EXPECT_EQ(table.findMaterial("b"), 0);
}

// The plain way tries again and says what is wrong.
TEST(OrdinaryMtlLines, endWhereMemoryRunsOut) {
    const std::string longName(40, 'x');
    for (const std::string& keyword : {"newmtl "s, "map_Kd "s, "bump "s}) {
        SCOPED_TRACE(keyword);
        MaterialTable table;
        table.addMaterial("a");
        const std::string text = "# x\nNs 5\n" + keyword + longName + "\n";
        MemoryText memory(text);
        std::string_view comment;
        memory.getLines().next(comment);
        failAllocationAfter(0);
        readOrdinaryMtlStatements(memory.getLines(), table);
        EXPECT_TRUE(stopFailingAllocations());
        EXPECT_EQ(memory.getLines().getReadyLines(), text.substr(9));
        EXPECT_EQ(memory.getLines().getLineNumber(), 2U);
        EXPECT_EQ(describeMaterials(table), "a{Ns=5}");
        EXPECT_EQ(table.findMaterial(longName), NO_INDEX);
    }
}

std::string number(RandomSource& random) {
    std::string text = random.oneIn(8) ? "-" : "";
    text += random.oneIn(8) ? "" : std::to_string(random.below(random.oneIn(3) ? 100000 : 2));
    if (!random.oneIn(4)) {
        text += '.';
        for (int i = random.below(random.oneIn(5) ? 20 : 7); i > 0; --i)
            text += static_cast<char>('0' + random.below(10));
    }
    if (random.oneIn(10))
        text += "e" + std::to_string(random.between(-60, 60));
    return text;
}

std::string line(RandomSource& random) {
    static constexpr std::string_view COLORS[] = {"Ka ", "Kd ", "Ks ", "Tf "};
    static constexpr std::string_view SCALARS[] = {"Ns ", "Ni ", "d ", "Tr "};
    static constexpr std::string_view MAPS[] = {"map_Ka ", "map_Kd ", "map_Ks ", "map_Ns ",
                                                "map_d ",  "bump ",   "disp ",   "refl "};
    const auto one = [&](const auto& pieces) {
        return std::string(pieces[random.below(static_cast<int>(std::size(pieces)))]);
    };
    switch (random.below(6)) {
        case 0:
            return one(COLORS) + number(random) + " " + number(random) + "\t" + number(random);
        case 1:
            return one(SCALARS) + number(random);
        case 2:
            return (random.oneIn(2) ? "illum " : "sharpness ") +
                   std::to_string(random.below(random.oneIn(4) ? 2000000000 : 12));
        case 3:
            return one(MAPS) + (random.oneIn(6) ? "-clamp on " : "") + "picture" +
                   std::to_string(random.below(10)) + ".png";
        case 4:
            return random.oneIn(2) ? "" : (random.oneIn(2) ? "# comment" : "Ke 0 0 0");
        default:
            return "newmtl m" + std::to_string(random.below(30));
    }
}

constexpr std::string_view DAMAGING_BYTES =
    "0123456789 \t\r\n\\\\//--++..eExXinf#KadsTNrlmp_\v\f\0\x1B\xFF"sv;

TEST(OrdinaryMtlStatements, generatedLinesGiveWhatTheSlowTwinGives) {
    constexpr int FILES = 2000;
    constexpr int LINES = 100;
    RandomSource random(52);
    for (int file = 0; file < FILES; ++file) {
        const std::string_view lineEnd = random.oneIn(3) ? "\r\n" : "\n";
        std::string text = random.oneIn(10) ? "" : "newmtl m0\n";
        for (int i = 0; i < LINES; ++i)
            text += (random.oneIn(10) ? "\t" : "") + line(random).append(lineEnd);
        for (int i = random.oneIn(3) ? 0 : random.below(10); i > 0; --i)
            damage(random, DAMAGING_BYTES, text);
        MaterialTable table;
        std::vector<Material> twin;
        MessageRecorder recorder;
        obj_adapter::readMtlText("name.mtl", text, table);
        ASSERT_EQ(recorder.getText(), "3|Using Mtllib file: name.mtl\n" + readMtlSlowly(text, twin))
            << text;
        ASSERT_EQ(printMaterials(table.getMaterials()), printMaterials(twin)) << text;
    }
}

}  // namespace
}  // namespace obj_adapter::test
