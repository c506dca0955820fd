// Opening text files, and their logical lines from sources of every kind.
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

Lines linesOfSource(TextSource& source) {
    LogicalLineReader reader(source);
    return linesOf(reader);
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
// then ends or fails. Bytes of no text stand behind each piece, for a reader that
// goes too far.
class PieceSource : public TextSource {
public:
    PieceSource(std::string wholeText, std::vector<std::size_t> sizes, bool failsAtEnd = false)
        : text(std::move(wholeText)), pieceSizes(std::move(sizes)), isFailing(failsAtEnd) {}

    std::size_t read(char* to, std::size_t room) override {
        EXPECT_GT(room, 0U);
        std::fill_n(to, std::min(room, std::size_t{64}), '\n');
        if (taken == text.size()) {
            if (isFailing)
                throw std::runtime_error("Unable to read file");
            return 0;
        }
        const std::size_t size = pieceSizes[std::min(pieceCount, pieceSizes.size() - 1)];
        ++pieceCount;
        const std::size_t length = std::min({size, room, text.size() - taken});
        std::copy_n(text.data() + taken, length, to);
        taken += length;
        return length;
    }

private:
    std::string text;
    std::vector<std::size_t> pieceSizes;
    bool isFailing;
    std::size_t taken = 0;
    std::size_t pieceCount = 0;
};

Lines linesOfText(const std::string& text) {
    PieceSource source(text, {std::string::npos});
    return linesOfSource(source);
}

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

TEST(LogicalLines, sourcesThatGiveLittleGiveTheSameLines) {
    for (const LineCase& row : lineCases()) {
        SCOPED_TRACE(row.title);
        for (const std::size_t pieceSize : {1U, 2U, 3U}) {
            PieceSource pieces(row.text, {pieceSize});
            expectLines(linesOfSource(pieces), row.lines);
        }
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
        PieceSource source(text, sizes);
        ASSERT_EQ(linesOfSource(source), linesByGetline(text)) << "round " << round;
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
        PieceSource pieces(text, {65536, 1, 65535, 7, 65537, 1000});
        expectLines(linesOfSource(pieces), expected);
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
    PieceSource source(std::string(LENGTH, 'x') + "\ny", {1});
    const Lines lines = linesOfSource(source);
    ASSERT_EQ(lines.size(), 2U);
    EXPECT_TRUE(lines[0] == std::string(LENGTH, 'x'));
    EXPECT_EQ(lines[1], "y");
}

TEST(LogicalLines, millionsOfEmptyLinesAreRead) {
    constexpr int COUNT = 5000000;
    PieceSource source(std::string(COUNT, '\n'), {std::string::npos});
    LogicalLineReader reader(source);
    std::string_view line;
    int count = 0;
    while (reader.next(line)) {
        ASSERT_TRUE(line.empty());
        ++count;
    }
    EXPECT_EQ(count, COUNT);
}

TEST(LogicalLines, lineHoldsUntilTheNextCall) {
    PieceSource source("first\\\n line\nsecond\n", {std::string::npos});
    LogicalLineReader reader(source);
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
    PieceSource source("a\n", {std::string::npos});
    LogicalLineReader reader(source);
    std::string_view line;
    EXPECT_TRUE(reader.next(line));
    for (int call = 0; call < 3; ++call)
        EXPECT_FALSE(reader.next(line));
}

// All that came before the failure is handed out as far as it is whole lines.
TEST(LogicalLines, failingSourceGivesItsCompleteLinesFirst) {
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
        for (const std::size_t pieceSize : {1U, 3U, 65536U, 1000000U}) {
            SCOPED_TRACE(testing::Message() << row.title << ", " << pieceSize);
            PieceSource source(row.text, {pieceSize}, true);
            LogicalLineReader reader(source);
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

// Ready lines and single ones take turns in every way.
TEST(LogicalLines, readyLinesAreThoseThatFollow) {
    RandomSource random(32);
    for (int round = 0; round < 5000; ++round) {
        SCOPED_TRACE(round);
        std::string text;
        for (int i = random.below(60); i > 0; --i)
            text += random.oneIn(4) ? '\n' : static_cast<char>('a' + random.below(3));
        std::vector<std::size_t> sizes;
        for (int i = 0; i < 10; ++i)
            sizes.push_back(static_cast<std::size_t>(random.between(1, 20)));
        PieceSource source(text, sizes);
        LogicalLineReader reader(source);
        Lines lines;
        std::string_view line;
        do {
            const std::string_view ready = reader.getReadyLines();
            ASSERT_TRUE(ready.empty() || ready.back() == '\n');
            std::size_t length = 0;
            while (length < ready.size() && !random.oneIn(3)) {
                const std::size_t lineFeed = ready.find('\n', length);
                lines.emplace_back(ready.substr(length, lineFeed - length));
                length = lineFeed + 1;
            }
            reader.skipReadyLines(length);
            if (!reader.next(line))
                break;
            lines.emplace_back(line);
        } while (true);
        expectLines(lines, linesByGetline(text));
    }
}

// A statement at the end of the block is read in steps of several bytes.
TEST(LogicalLines, bytesBehindReadyLinesMayBeRead) {
    for (const std::size_t length : BORDER_LENGTHS) {
        PieceSource source(std::string(length, 'a') + "\n", {std::string::npos});
        LogicalLineReader reader(source);
        std::string_view line;
        ASSERT_TRUE(reader.next(line));
        const std::string_view ready = reader.getReadyLines();
        ASSERT_TRUE(ready.empty());
        for (std::size_t i = 0; i < LogicalLineReader::BYTES_BEHIND_LINES; ++i)
            EXPECT_EQ(ready.data()[i], '\0');
    }
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
    platform::InputFile file;
    EXPECT_EQ(failureOf([&] { openTextFile(file, ""); }), "File Name empty");
    EXPECT_FALSE(file.isOpen());
    EXPECT_EQ(failureOf([] { TextFile(""); }), "File Name empty");
}

TEST(OpenTextFile, missingFileIsRefused) {
    const TemporaryDirectory directory;
    platform::InputFile file;
    EXPECT_EQ(failureOf([&] { openTextFile(file, directory.getPath() + "none.obj"); }),
              "Unable to open file");
    EXPECT_FALSE(file.isOpen());
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
        platform::InputFile file;
        EXPECT_EQ(failureOf([&] { openTextFile(file, name); }), "Unable to open file");
        EXPECT_FALSE(file.isOpen());
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
    platform::InputFile file;
    EXPECT_EQ(failureOf([&] { openTextFile(file, fileName); }), "no failure");
    EXPECT_TRUE(file.isOpen());
    EXPECT_FALSE(file.hasEnded());
    expectLines(linesOfFile(fileName), {});
}

// Opening reads nothing, so it must not be an earlier file's end that counts.
TEST(OpenTextFile, endOfAnEarlierFileDoesNotCount) {
    const TemporaryDirectory directory;
    const std::string fileName = directory.write("a.obj", "a\n");
    platform::InputFile file;
    char bytes[8] = {};
    for (int time = 0; time < 2; ++time) {
        EXPECT_EQ(failureOf([&] { openTextFile(file, fileName); }), "no failure");
        EXPECT_EQ(file.read(bytes, sizeof bytes), 2);
        EXPECT_EQ(file.read(bytes, sizeof bytes), 0);
        EXPECT_TRUE(file.hasEnded());
    }
    EXPECT_STREQ(bytes, "a\n");
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
