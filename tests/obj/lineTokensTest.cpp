// Cutting lines into tokens, and keywords that ignore ASCII letter case.
#include "obj/lineTokens.h"

#include "obj/keywords.h"
#include "support/randomSource.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#if defined(_MSC_VER)
#pragma warning(disable : 4996)  // strtok is called unsafe; it is what we compare with
#endif

namespace obj_adapter::test {

namespace {

std::vector<std::string> tokensOf(std::string_view line) {
    LineTokens tokens(line);
    std::vector<std::string> texts;
    for (Token token = tokens.next(); !token.isMissing(); token = tokens.next())
        texts.push_back(token.text());
    return texts;
}

// The same by the C library, whose text ends at its first zero.
std::vector<std::string> strtokTokensOf(const std::string& line) {
    std::vector<char> text(line.begin(), line.end());
    text.push_back('\0');
    std::vector<std::string> texts;
    for (const char* token = std::strtok(text.data(), " \t\n\r\\"); token != nullptr;
         token = std::strtok(nullptr, " \t\n\r\\"))
        texts.emplace_back(token);
    return texts;
}

struct LineCase {
    const char* title;
    std::string_view line;
    std::vector<std::string> tokens;
};

}  // namespace

TEST(LineTokens, lineIsCutAtRunsOfDelimiters) {
    using namespace std::string_view_literals;
    const LineCase CASES[] = {
        {"empty line", "", {}},
        {"one token", "v", {"v"}},
        {"blanks between", "v 1 2 3", {"v", "1", "2", "3"}},
        {"each delimiter parts", "a b\tc\nd\re\\f", {"a", "b", "c", "d", "e", "f"}},
        {"a run counts as one", "a \t\n\r\\ b", {"a", "b"}},
        {"delimiters in front and behind", "\\ \ta b\r\n", {"a", "b"}},
        {"only delimiters", " \t\n\r\\", {}},
        {"vertical tab and form feed are text", "a\vb\fc d", {"a\vb\fc", "d"}},
        {"slashes, commas and quotes are text",
         "f 1/2/3 \"a b\",c",
         {"f", "1/2/3", "\"a", "b\",c"}},
        {"bytes above ASCII are text",
         "g r\xC3\xA4\xC2\xA0\x85\xFF x",
         {"g", "r\xC3\xA4\xC2\xA0\x85\xFF", "x"}},
        {"the line ends at a zero", "a b\0 c"sv, {"a", "b"}},
        {"a zero after a delimiter", "a \0b c"sv, {"a"}},
        {"a zero in front", "\0a"sv, {}},
    };
    for (const LineCase& row : CASES) {
        SCOPED_TRACE(row.title);
        EXPECT_EQ(tokensOf(row.line), row.tokens);
    }
}

TEST(LineTokens, lineOfDelimitersHasNoFirstToken) {
    LineTokens tokens(" \t\r\n\\ ");
    const Token token = tokens.next();
    EXPECT_TRUE(token.isMissing());
    EXPECT_EQ(token.begin, nullptr);
    EXPECT_EQ(token.view(), "");
    EXPECT_EQ(token.text(), "");
}

TEST(LineTokens, lineWithoutTextAtAllHasNoToken) {
    LineTokens tokens{std::string_view()};
    EXPECT_TRUE(tokens.next().isMissing());
    EXPECT_TRUE(tokens.next().isMissing());
}

TEST(LineTokens, exhaustedLineStaysExhausted) {
    using namespace std::string_view_literals;
    for (const std::string_view line : {"a"sv, "a "sv, "a\0b"sv, "a \0b c"sv}) {
        LineTokens tokens(line);
        EXPECT_EQ(tokens.next().view(), "a");
        for (int call = 0; call < 3; ++call)
            EXPECT_TRUE(tokens.next().isMissing());
    }
}

TEST(LineTokens, tokensPointIntoTheLine) {
    const std::string line = "  v  10";
    LineTokens tokens(line);
    const Token keyword = tokens.next();
    const Token number = tokens.next();
    EXPECT_EQ(keyword.begin, line.data() + 2);
    EXPECT_EQ(keyword.end, line.data() + 3);
    EXPECT_EQ(number.begin, line.data() + 5);
    EXPECT_EQ(number.end, line.data() + 7);
    EXPECT_EQ(line, "  v  10");
}

// Nothing behind the view is looked at, delimiter, zero or text.
TEST(LineTokens, lineEndsWithItsView) {
    const std::string text = "v 12345";
    EXPECT_EQ(tokensOf(std::string_view(text).substr(0, 4)), (std::vector<std::string>{"v", "12"}));
}

TEST(LineTokens, generatedLinesAreCutAsStrtokCutsThem) {
    RandomSource random(20240311);
    using namespace std::string_view_literals;
    const std::string_view alphabet = "  \t\n\r\\\\abc/1.\v\f#\0\xFF"sv;
    for (int round = 0; round < 100000; ++round) {
        std::string line;
        const int length = random.below(24);
        for (int i = 0; i < length; ++i)
            line +=
                alphabet[static_cast<std::size_t>(random.below(static_cast<int>(alphabet.size())))];
        ASSERT_EQ(tokensOf(line), strtokTokensOf(line)) << "round " << round << ": " << line;
    }
}

TEST(LineTokens, everyByteIsDelimiterTextOrEnd) {
    for (int byte = 0; byte < 256; ++byte) {
        SCOPED_TRACE(byte);
        const std::string line = std::string("a") + static_cast<char>(byte) + "b";
        EXPECT_EQ(tokensOf(line), strtokTokensOf(line));
    }
}

TEST(Keywords, onlyAsciiLettersIgnoreCase) {
    struct Row {
        const char* a;
        const char* b;
        bool isEqual;
    };
    const Row ROWS[] = {
        {"", "", true},
        {"v", "V", true},
        {"MtLlIb", "mTlLiB", true},
        {"azAZ", "AZaz", true},
        {"map_Kd", "MAP_kD", true},
        {"v", "vt", false},
        {"vt", "v", false},
        {"", "v", false},
        {"vn", "vt", false},
        {"@", "`", false},
        {"[", "{", false},
        {"\\", "|", false},
        {"]", "}", false},
        {"^", "~", false},
        {"_", "\x7F", false},
        {"1", "\x11", false},
        {"0", "P", false},
        {"\xC4", "\xE4", false},
        {"\xC3\x84", "\xC3\xA4", false},
        {"\xC1", "A", false},
        {"\xE1", "a", false},
        {"\xFF", "\xFF", true},
    };
    for (const Row& row : ROWS) {
        SCOPED_TRACE(testing::Message() << row.a << " and " << row.b);
        EXPECT_EQ(equalsIgnoringCase(row.a, row.b), row.isEqual);
        EXPECT_EQ(equalsIgnoringCase(row.b, row.a), row.isEqual);
    }
}

TEST(Keywords, everyPairOfBytesComparesAsAsciiSays) {
    for (int a = 0; a < 256; ++a) {
        for (int b = 0; b < 256; ++b) {
            const bool areLettersOfOneKind =
                ((a >= 'A' && a <= 'Z') && b == a + 32) || ((b >= 'A' && b <= 'Z') && a == b + 32);
            const char left = static_cast<char>(a);
            const char right = static_cast<char>(b);
            ASSERT_EQ(equalsIgnoringCase({&left, 1}, {&right, 1}), a == b || areLettersOfOneKind)
                << a << " and " << b;
        }
    }
}

TEST(Keywords, zerosInsideAreCompared) {
    using namespace std::string_view_literals;
    EXPECT_FALSE(equalsIgnoringCase("a\0b"sv, "a\0c"sv));
    EXPECT_FALSE(equalsIgnoringCase("a\0"sv, "a"sv));
}

TEST(Keywords, tableIsSearchedByWholeKeywords) {
    static constexpr KeywordRow<int> TABLE[] = {
        {"v", 1},        {"vt", 2}, {"sharpness", 3},  {"mtllib", 4},      {"map_aat", 5},
        {"sharpnes", 6}, {"V", 7},  {"reflection", 8}, {"reflections", 9}, {"abcdefgh", 10},
    };
    struct Row {
        std::string_view keyword;
        int handler;  // 0: none
    };
    using namespace std::string_view_literals;
    const Row ROWS[] = {
        {"v", 1},        {"V", 1},          {"vt", 2},          {"VT", 2},         {"vtx", 0},
        {"", 0},         {"t", 0},          {"sharpness", 3},   {"SHARPNESS", 3},  {"sharpnesX", 0},
        {"sharpnes", 6}, {"SharpNes", 6},   {"sharpne", 0},     {"sharpnessy", 0}, {"mtllib", 4},
        {"mtllib2", 0},  {"reflection", 8}, {"reflections", 9}, {"reflectioN", 8}, {"reflectio", 0},
        {"reflect", 0},  {"abcdefgh", 10},  {"abcdefghi", 0},   {"xabcdefgh", 0},  {"\0v"sv, 0},
        {"v\0"sv, 0},    {"\0"sv, 0},
    };
    for (const Row& row : ROWS) {
        SCOPED_TRACE(row.keyword);
        const KeywordRow<int>* found = findKeyword(TABLE, row.keyword);
        EXPECT_EQ(found == nullptr ? 0 : found->handler, row.handler);
    }
}

}  // namespace obj_adapter::test
