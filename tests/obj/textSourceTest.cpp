// Opening text files, and their logical lines from streams of every kind.
#include "obj/textSource.h"

#include "obj/lineTokens.h"
#include "support/randomSource.h"
#include "support/temporaryDirectory.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <locale>
#include <sstream>
#include <stdexcept>
#include <streambuf>
#include <string>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

#if !defined(_WIN32)
#include <sys/stat.h>
#endif

namespace obj_adapter::test {

namespace {

using Lines = std::vector<std::string>;

Lines linesOf(LogicalLineReader& reader) {
    Lines lines;
    std::string_view line;
    while (reader.next(line))
        lines.emplace_back(line);
    return lines;
}

Lines linesOfStream(std::istream& stream) {
    LogicalLineReader reader(stream);
    return linesOf(reader);
}

Lines linesOfText(const std::string& text) {
    std::istringstream stream(text);
    return linesOfStream(stream);
}

Lines linesOfFile(const std::string& fileName) {
    TextFile file(fileName);
    return linesOf(file.getLines());
}

// The text of the std::runtime_error that the action throws.
std::string failureOf(const std::function<void()>& action) {
    try {
        action();
    } catch (const std::runtime_error& failure) {
        return failure.what();
    }
    return "no failure";
}

// Hands out a text in pieces of given sizes, the last size again and again, and
// then ends or fails.
class PieceBuffer : public std::streambuf {
public:
    PieceBuffer(std::string wholeText, std::vector<std::size_t> sizes, bool failsAtEnd = false)
        : text(std::move(wholeText)), pieceSizes(std::move(sizes)), isFailing(failsAtEnd) {}

protected:
    int_type underflow() override {
        if (taken == text.size()) {
            if (isFailing)
                throw std::ios_base::failure("the device is gone");
            return traits_type::eof();
        }
        const std::size_t size = pieceSizes[std::min(pieceCount, pieceSizes.size() - 1)];
        ++pieceCount;
        const std::size_t length = std::min(size, text.size() - taken);
        setg(text.data() + taken, text.data() + taken, text.data() + taken + length);
        taken += length;
        return traits_type::to_int_type(*gptr());
    }

private:
    std::string text;
    std::vector<std::size_t> pieceSizes;
    bool isFailing;
    std::size_t taken = 0;
    std::size_t pieceCount = 0;
};

// Has no buffer at all: every character is asked for by itself.
class BareBuffer : public std::streambuf {
public:
    explicit BareBuffer(std::string wholeText, bool failsAtEnd = false)
        : text(std::move(wholeText)), isFailing(failsAtEnd) {}

protected:
    int_type underflow() override {
        if (position == text.size() && isFailing)
            throw std::ios_base::failure("the device is gone");
        return position == text.size() ? traits_type::eof()
                                       : traits_type::to_int_type(text[position]);
    }
    int_type uflow() override {
        const int_type character = underflow();
        if (!traits_type::eq_int_type(character, traits_type::eof()))
            ++position;
        return character;
    }

private:
    std::string text;
    bool isFailing;
    std::size_t position = 0;
};

// Reading one line after the other as plainly as can be.
Lines linesByGetline(const std::string& text) {
    std::istringstream stream(text);
    Lines lines;
    std::string line;
    while (std::getline(stream, line)) {
        if (!line.empty() && line.back() == '\\') {
            line.pop_back();
            std::string continuation;
            std::getline(stream, continuation);
            line += continuation;
        }
        lines.push_back(line);
    }
    return lines;
}

// Shortens what would fill a screen.
std::string described(const Lines& lines) {
    std::string text;
    for (const std::string& line : lines) {
        text += "[" + line.substr(0, 20) + "|" + std::to_string(line.size()) + "|" +
                line.substr(line.size() < 20 ? 0 : line.size() - 20) + "]";
        if (text.size() > 2000)
            return text + "...";
    }
    return text;
}

void expectLines(const Lines& lines, const Lines& expected) {
    EXPECT_TRUE(lines == expected)
        << "expected " << described(expected) << "\n     got " << described(lines);
}

struct LineCase {
    const char* title;
    std::string text;
    Lines lines;
};

std::vector<LineCase> lineCases() {
    using namespace std::string_literals;
    return {
        {"no text", "", {}},
        {"one line", "v 1 2 3\n", {"v 1 2 3"}},
        {"last line without line feed", "a\nb", {"a", "b"}},
        {"empty lines", "\n\na\n\n", {"", "", "a", ""}},
        {"line feed alone", "\n", {""}},
        {"blank before the backslash stays", "v 1 2 \\\n3\n", {"v 1 2 3"}},
        {"nothing comes between joined lines", "v 1 2\\\n3\n", {"v 1 23"}},
        {"joined once: the second backslash stays", "a\\\nb\\\nc\n", {"ab\\", "c"}},
        {"four lines, joined in pairs", "a\\\nb\\\nc\\\nd\n", {"ab\\", "cd"}},
        {"backslash alone", "\\\na\n", {"a"}},
        {"backslash, then an empty line", "a\\\n\nb\n", {"a", "b"}},
        {"two backslashes lose one", "a\\\\\nb\n", {"a\\b"}},
        {"backslash inside a line stays", "a\\b\n", {"a\\b"}},
        {"backslash before a blank stays", "a\\ \nb\n", {"a\\ ", "b"}},
        {"backslash at the end of the text", "a\\", {"a"}},
        {"backslash and line feed at the end", "a\\\n", {"a"}},
        {"joined with a last line without line feed", "a\\\nb", {"ab"}},
        {"joined with a last backslash", "a\\\nb\\", {"ab\\"}},
        {"backslash is all of the text", "\\", {""}},
        {"carriage return stays", "a\r\nb\r\n", {"a\r", "b\r"}},
        {"carriage return alone ends no line", "a\rb\n", {"a\rb"}},
        {"backslash before a carriage return joins nothing", "a\\\r\nb\n", {"a\\\r", "b"}},
        {"zero bytes stay", "a\0b\n\0\n"s, {"a\0b"s, "\0"s}},
        {"all other bytes stay",
         "\x1A\x7F\x80\xEF\xBB\xBF\xFF\v\f\t\n",
         {"\x1A\x7F\x80\xEF\xBB\xBF\xFF\v\f\t"}},
    };
}

// Around the size of a block, where reading has to go on in the next one.
const std::size_t BORDER_LENGTHS[] = {1,      65533,  65534,  65535,  65536,  65537,  65538, 131070,
                                      131071, 131072, 131073, 200000, 262143, 262144, 262145};

}  // namespace

TEST(LogicalLines, tableOfTexts) {
    for (const LineCase& row : lineCases()) {
        SCOPED_TRACE(row.title);
        expectLines(linesOfText(row.text), row.lines);
    }
}

TEST(LogicalLines, streamsThatGiveLittleGiveTheSameLines) {
    for (const LineCase& row : lineCases()) {
        SCOPED_TRACE(row.title);
        PieceBuffer oneByOne(row.text, {1});
        std::istream oneByOneStream(&oneByOne);
        expectLines(linesOfStream(oneByOneStream), row.lines);

        BareBuffer bare(row.text);
        std::istream bareStream(&bare);
        expectLines(linesOfStream(bareStream), row.lines);
    }
}

TEST(LogicalLines, filesGiveTheSameLines) {
    const TemporaryDirectory directory;
    for (const LineCase& row : lineCases()) {
        SCOPED_TRACE(row.title);
#if defined(_WIN32)
        // Read in the platform's text mode, which has its own way with these.
        if (row.text.find_first_of("\r\x1A") != std::string::npos)
            continue;
#endif
        expectLines(linesOfFile(directory.write("lines.obj", row.text)), row.lines);
    }
}

TEST(LogicalLines, generatedTextsAreReadAsByGetline) {
    RandomSource random(31);
    using namespace std::string_view_literals;
    const std::string_view alphabet = "aab \\\\\n\n\r\0"sv;
    for (int round = 0; round < 20000; ++round) {
        std::string text;
        const int length = random.below(40);
        for (int i = 0; i < length; ++i)
            text +=
                alphabet[static_cast<std::size_t>(random.below(static_cast<int>(alphabet.size())))];
        std::vector<std::size_t> sizes;
        for (int i = 0; i < 10; ++i)
            sizes.push_back(static_cast<std::size_t>(random.between(1, 8)));
        PieceBuffer buffer(text, sizes);
        std::istream stream(&buffer);
        ASSERT_EQ(linesOfStream(stream), linesByGetline(text)) << "round " << round;
    }
}

TEST(LogicalLines, linesCrossTheBordersOfBlocks) {
    const TemporaryDirectory directory;
    for (const std::size_t length : BORDER_LENGTHS) {
        SCOPED_TRACE(length);
        const std::string first = std::string(length - 1, 'a') + "A";
        const std::string third = std::string(length, 'c');
        const std::string text = first + "\nB\n" + third + "\n\nD";
        const Lines expected = {first, "B", third, "", "D"};
        expectLines(linesOfText(text), expected);
        expectLines(linesOfFile(directory.write("long.obj", text)), expected);
        PieceBuffer pieces(text, {65536, 1, 65535, 7, 65537, 1000});
        std::istream stream(&pieces);
        expectLines(linesOfStream(stream), expected);
    }
}

TEST(LogicalLines, joinedLinesCrossTheBordersOfBlocks) {
    const TemporaryDirectory directory;
    for (const std::size_t length : BORDER_LENGTHS) {
        SCOPED_TRACE(length);
        const std::string first(length, 'a');
        const std::string second(length, 'b');
        const std::string text = first + "\\\n" + second + "\\\nc\n" + first + "\\";
        const Lines expected = {first + second + "\\", "c", first};
        expectLines(linesOfText(text), expected);
        expectLines(linesOfFile(directory.write("joined.obj", text)), expected);
    }
}

TEST(LogicalLines, manyLinesOfGrowingLengthAreRead) {
    Lines expected;
    std::string text;
    for (std::size_t length = 0; length < 2000; ++length) {
        expected.push_back(std::string(length, static_cast<char>('a' + length % 26)));
        text += expected.back() + "\n";
    }
    expectLines(linesOfText(text), expected);
    const TemporaryDirectory directory;
    expectLines(linesOfFile(directory.write("growing.obj", text)), expected);
}

// A method that takes the square of the length would not end here.
TEST(LogicalLines, lineOfTwentyMegabytesIsRead) {
    constexpr std::size_t LENGTH = 20000000;
    const TemporaryDirectory directory;
    const std::string line(LENGTH, 'x');
    const std::string fileName = directory.write("huge.obj", line + "\\\n" + line + "\nshort\n");
    TextFile file(fileName);
    std::string_view read;
    ASSERT_TRUE(file.getLines().next(read));
    ASSERT_EQ(read.size(), 2 * LENGTH);
    EXPECT_EQ(read.find_first_not_of('x'), std::string_view::npos);
    ASSERT_TRUE(file.getLines().next(read));
    EXPECT_EQ(read, "short");
    EXPECT_FALSE(file.getLines().next(read));
}

// Looking through the whole line again after every byte would take many minutes.
TEST(LogicalLines, longLineByteByByteIsRead) {
    constexpr std::size_t LENGTH = 8000000;
    PieceBuffer buffer(std::string(LENGTH, 'x') + "\ny", {1});
    std::istream stream(&buffer);
    const Lines lines = linesOfStream(stream);
    ASSERT_EQ(lines.size(), 2U);
    EXPECT_TRUE(lines[0] == std::string(LENGTH, 'x'));
    EXPECT_EQ(lines[1], "y");
}

TEST(LogicalLines, millionsOfEmptyLinesAreRead) {
    constexpr int COUNT = 5000000;
    std::istringstream stream(std::string(COUNT, '\n'));
    LogicalLineReader reader(stream);
    std::string_view line;
    int count = 0;
    while (reader.next(line)) {
        ASSERT_TRUE(line.empty());
        ++count;
    }
    EXPECT_EQ(count, COUNT);
}

TEST(LogicalLines, lineHoldsUntilTheNextCall) {
    std::istringstream stream("first\\\n line\nsecond\n");
    LogicalLineReader reader(stream);
    std::string_view line;
    ASSERT_TRUE(reader.next(line));
    LineTokens tokens(line);
    EXPECT_EQ(tokens.next().view(), "first");
    EXPECT_EQ(tokens.next().view(), "line");
    EXPECT_TRUE(tokens.next().isMissing());
    ASSERT_TRUE(reader.next(line));
    EXPECT_EQ(line, "second");
}

TEST(LogicalLines, endStaysTheEnd) {
    std::istringstream stream("a\n");
    LogicalLineReader reader(stream);
    std::string_view line;
    EXPECT_TRUE(reader.next(line));
    for (int call = 0; call < 3; ++call)
        EXPECT_FALSE(reader.next(line));
}

// All that came before the failure is handed out as far as it is whole lines.
TEST(LogicalLines, failingStreamGivesItsCompleteLinesFirst) {
    struct Row {
        const char* title;
        std::string text;
        Lines lines;
    };
    const std::string longLine(100000, 'x');
    const Row ROWS[] = {
        {"nothing came", "", {}},
        {"a piece of a line came", "v 1", {}},
        {"whole lines and a piece", "a\nb\nc", {"a", "b"}},
        {"whole lines alone", "a\nb\n", {"a", "b"}},
        {"half of a joined line", "a\nb\\\nc", {"a"}},
        {"a line that waits for its second half", "a\nb\\\n", {"a"}},
        {"long lines", longLine + "\nb\n" + longLine, {longLine, "b"}},
    };
    for (const Row& row : ROWS) {
        for (const std::size_t pieceSize : {std::size_t{1}, std::size_t{3}, std::size_t{65536},
                                            std::size_t{1000000}, std::size_t{0}}) {
            SCOPED_TRACE(testing::Message() << row.title << ", " << pieceSize);
            PieceBuffer pieces(row.text, {pieceSize}, true);
            BareBuffer bare(row.text, true);
            std::istream stream(pieceSize == 0 ? static_cast<std::streambuf*>(&bare) : &pieces);
            LogicalLineReader reader(stream);
            Lines lines;
            const auto readAll = [&] {
                std::string_view line;
                while (reader.next(line))
                    lines.emplace_back(line);
            };
            EXPECT_EQ(failureOf(readAll), "Unable to read file");
            expectLines(lines, row.lines);
            EXPECT_EQ(failureOf(readAll), "Unable to read file");
            expectLines(lines, row.lines);
        }
    }
}

TEST(LogicalLines, streamThatHasFailedBeforeIsNotReadable) {
    for (const std::ios_base::iostate state : {std::ios_base::failbit, std::ios_base::badbit,
                                               std::ios_base::badbit | std::ios_base::eofbit}) {
        std::istringstream stream("a\n");
        stream.setstate(state);
        EXPECT_EQ(failureOf([&] { linesOfStream(stream); }), "Unable to read file");
    }
}

// Promises characters that it has not got, or has none to give after all.
TEST(LogicalLines, streamThatPromisesTooMuchEnds) {
    class Boaster : public BareBuffer {
    public:
        explicit Boaster(bool fails) : BareBuffer("a\nb", fails) {}

    protected:
        std::streamsize showmanyc() override { return 1000; }
    };
    Boaster ending(false);
    std::istream endingStream(&ending);
    expectLines(linesOfStream(endingStream), {"a", "b"});

    Boaster failing(true);
    std::istream failingStream(&failing);
    EXPECT_EQ(failureOf([&] { linesOfStream(failingStream); }), "Unable to read file");

    class Refuser : public BareBuffer {
    public:
        Refuser() : BareBuffer("a\nb") {}

    protected:
        int_type uflow() override { return traits_type::eof(); }
    };
    Refuser refusing;
    std::istream refusingStream(&refusing);
    expectLines(linesOfStream(refusingStream), {});
}

TEST(CheckedLineLength, linesUpToTheHighestIntAreTaken) {
    EXPECT_EQ(MAX_LINE_LENGTH, 2147483647U);
    for (const std::size_t length :
         {std::size_t{0}, std::size_t{1}, MAX_LINE_LENGTH - 1, MAX_LINE_LENGTH})
        EXPECT_EQ(checkedLineLength(length), length);
    for (const std::size_t length : {MAX_LINE_LENGTH + 1, static_cast<std::size_t>(-1)}) {
        try {
            checkedLineLength(length);
            FAIL() << length << " was taken";
        } catch (const std::length_error& failure) {
            EXPECT_STREQ(failure.what(), "Line too long");
        }
    }
}

TEST(OpenTextFile, emptyNameIsRefused) {
    std::ifstream stream;
    EXPECT_EQ(failureOf([&] { openTextFile(stream, ""); }), "File Name empty");
    EXPECT_FALSE(stream.is_open());
    EXPECT_EQ(failureOf([] { TextFile(""); }), "File Name empty");
}

TEST(OpenTextFile, missingFileIsRefused) {
    const TemporaryDirectory directory;
    std::ifstream stream;
    EXPECT_EQ(failureOf([&] { openTextFile(stream, directory.getPath() + "none.obj"); }),
              "Unable to open file");
    EXPECT_FALSE(stream.is_open());
    EXPECT_EQ(failureOf([&] { TextFile(directory.getPath() + "none/none.obj"); }),
              "Unable to open file");
    EXPECT_EQ(failureOf([&] { TextFile(directory.getPath() + std::string(100000, 'x')); }),
              "Unable to open file");
}

TEST(OpenTextFile, directoryIsRefused) {
    const TemporaryDirectory directory;
    std::filesystem::create_directory(pathFromUtf8(directory.getPath() + "models.obj"));
    for (const std::string& name : {directory.getPath(), directory.getPath() + "models.obj",
                                    std::string("."), std::string("/")}) {
        SCOPED_TRACE(name);
        std::ifstream stream;
        EXPECT_EQ(failureOf([&] { openTextFile(stream, name); }), "Unable to open file");
        EXPECT_FALSE(stream.is_open());
    }
}

TEST(OpenTextFile, fileBelowAFileIsRefused) {
    const TemporaryDirectory directory;
    const std::string fileName = directory.write("a.obj", "v 1 2 3\n");
    EXPECT_EQ(failureOf([&] { TextFile(fileName + "/b.obj"); }), "Unable to open file");
    EXPECT_EQ(failureOf([&] { TextFile(fileName + "/"); }), "Unable to open file");
}

TEST(OpenTextFile, zeroLengthFileOpensAndGivesNoLines) {
    const TemporaryDirectory directory;
    const std::string fileName = directory.write("empty.obj", "");
    std::ifstream stream;
    EXPECT_EQ(failureOf([&] { openTextFile(stream, fileName); }), "no failure");
    EXPECT_TRUE(stream.is_open());
    EXPECT_FALSE(stream.eof());
    expectLines(linesOfStream(stream), {});
    expectLines(linesOfFile(fileName), {});
}

// Opening reads nothing, so it must not be a stream's earlier end that counts.
TEST(OpenTextFile, endOfAnEarlierFileDoesNotCount) {
    const TemporaryDirectory directory;
    const std::string fileName = directory.write("a.obj", "a\n");
    std::ifstream stream;
    stream.setstate(std::ios_base::eofbit | std::ios_base::failbit);
    EXPECT_EQ(failureOf([&] { openTextFile(stream, fileName); }), "no failure");
    expectLines(linesOfStream(stream), {"a"});
}

TEST(OpenTextFile, namesAreUtf8) {
    const TemporaryDirectory directory;
    for (const char* name : {"w\xC3\xBCrfel.obj", "\xE6\xA8\xA1\xE5\x9E\x8B.obj",
                             "\xF0\x9F\x98\x80.obj", "two words.obj", "#+%.obj"}) {
        SCOPED_TRACE(name);
        expectLines(linesOfFile(directory.write(name, std::string("o ") + name + "\n")),
                    {std::string("o ") + name});
    }
}

TEST(OpenTextFile, unreadableFileIsRefused) {
    const TemporaryDirectory directory;
    const std::string fileName = directory.write("secret.obj", "v 1 2 3\n");
    std::filesystem::permissions(pathFromUtf8(fileName), std::filesystem::perms::none);
    if (std::ifstream(pathFromUtf8(fileName)).is_open())
        GTEST_SKIP() << "this user may read every file";
    EXPECT_EQ(failureOf([&] { TextFile file(fileName); }), "Unable to open file");
}

namespace {

// Reads every character as its neighbour in the alphabet.
class ShiftingConversion : public std::codecvt<char, char, std::mbstate_t> {
protected:
    bool do_always_noconv() const noexcept override { return false; }
    int do_encoding() const noexcept override { return 1; }
    result do_in(std::mbstate_t&, const char* from, const char* fromEnd, const char*& fromNext,
                 char* to, char* toEnd, char*& toNext) const override {
        while (from != fromEnd && to != toEnd)
            *to++ = static_cast<char>(*from++ + 1);
        fromNext = from;
        toNext = to;
        return from == fromEnd ? ok : partial;
    }
};

class GlobalLocale {
public:
    explicit GlobalLocale(const std::locale& locale) : earlier(std::locale::global(locale)) {}
    ~GlobalLocale() { std::locale::global(earlier); }
    GlobalLocale(const GlobalLocale&) = delete;
    GlobalLocale& operator=(const GlobalLocale&) = delete;

private:
    std::locale earlier;
};

}  // namespace

TEST(OpenTextFile, localeOfTheHostDoesNotConvertTheBytes) {
    const TemporaryDirectory directory;
    const std::string fileName = directory.write("a.obj", "abc\n");
    const GlobalLocale locale(std::locale(std::locale::classic(), new ShiftingConversion));
    {
        // Without our care the locale does change what is read.
        std::ifstream stream(pathFromUtf8(fileName));
        ASSERT_EQ(std::string(std::istreambuf_iterator<char>(stream), {}), "bcd\v");
    }
    expectLines(linesOfFile(fileName), {"abc"});
}

// Windows has no pipes in its directories.
#if !defined(_WIN32)
TEST(OpenTextFile, pipeIsReadToItsEnd) {
    const TemporaryDirectory directory;
    const std::string fileName = directory.getPath() + "pipe.obj";
    ASSERT_EQ(mkfifo(fileName.c_str(), 0600), 0);
    const std::string longLine(200000, 'x');
    std::thread writer([&] {
        std::ofstream stream(fileName, std::ios::binary);
        stream << "a\n" << std::flush << "b\\" << std::flush << "\nc\n" << longLine << "\nend";
    });
    Lines lines;
    EXPECT_EQ(failureOf([&] { lines = linesOfFile(fileName); }), "no failure");
    writer.join();
    expectLines(lines, {"a", "bc", longLine, "end"});
}
#endif

}  // namespace obj_adapter::test
