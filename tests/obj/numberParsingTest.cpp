// Tokens to numbers: tables of texts, and generated texts against the C and C++
// library's own conversions.
#include "obj/numberParsing.h"

#include "support/randomSource.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <clocale>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <locale>
#include <stdexcept>
#include <string>
#include <string_view>
#include <typeinfo>
#include <vector>

namespace obj_adapter::test {

namespace {

constexpr std::string_view NO_NUMBER = "invalid_argument|invalid stod argument";
constexpr std::string_view OUT_OF_RANGE = "out_of_range|stod argument out of range";
constexpr std::string_view NO_INTEGER = "invalid_argument|invalid stoi argument";
constexpr std::string_view INTEGER_OUT_OF_RANGE = "out_of_range|stoi argument out of range";

// "type|text" of an exception of exactly one of the promised types.
std::string describeFailure(const std::exception& failure) {
    std::string type = "another type";
    if (typeid(failure) == typeid(std::runtime_error))
        type = "runtime_error";
    if (typeid(failure) == typeid(std::invalid_argument))
        type = "invalid_argument";
    if (typeid(failure) == typeid(std::out_of_range))
        type = "out_of_range";
    return type + "|" + failure.what();
}

// Every bit of a number; a NaN by its sign alone.
std::string describeBits(double value) {
    if (std::isnan(value))
        return std::signbit(value) ? "-nan" : "nan";
    char text[64];
    std::snprintf(text, sizeof text, "%a", value);
    return text;
}

Token tokenOf(std::string_view text) {
    Token token;
    token.begin = text.data();
    token.end = text.data() + text.size();
    return token;
}

std::string doubleFrom(std::string_view text) {
    try {
        return describeBits(parseDouble(tokenOf(text)));
    } catch (const std::exception& failure) {
        return describeFailure(failure);
    }
}

std::string integerFrom(std::string_view text) {
    try {
        return std::to_string(parseInt(text));
    } catch (const std::exception& failure) {
        return describeFailure(failure);
    }
}

// What the C library makes of the text. Its range error also tells of subnormal
// results, which are values to us.
std::string strtodResult(const std::string& text) {
    char* end = nullptr;
    errno = 0;
    const double value = std::strtod(text.c_str(), &end);
    const bool hasRangeError = errno == ERANGE;
    if (end == text.c_str())
        return std::string(NO_NUMBER);
    if (hasRangeError && (std::isinf(value) || value == 0.0))
        return std::string(OUT_OF_RANGE);
    return describeBits(value);
}

std::string stoiResult(const std::string& text) {
    if (text.empty())
        return "runtime_error|No integer found";
    try {
        return std::to_string(std::stoi(text));
    } catch (const std::invalid_argument&) {
        return std::string(NO_INTEGER);
    } catch (const std::out_of_range&) {
        return std::string(INTEGER_OUT_OF_RANGE);
    }
}

struct DoubleCase {
    const char* title;
    const char* text;
    double value;
};

struct TextCase {
    const char* title;
    std::string_view text;
    std::string_view result;
};

}  // namespace

TEST(ParseInt, tableOfTexts) {
    using namespace std::string_view_literals;
    const TextCase CASES[] = {
        {"plain", "12", "12"},
        {"trailing text is ignored", "12abc", "12"},
        {"no digits", "abc", NO_INTEGER},
        {"empty text", "", "runtime_error|No integer found"},
        {"plus", "+7", "7"},
        {"minus", "-7", "-7"},
        {"zero", "0", "0"},
        {"minus zero", "-0", "0"},
        {"leading zeros", "0000000000000000000000000012", "12"},
        {"no octal", "010", "10"},
        {"no hexadecimal", "0x10", "0"},
        {"fraction is ignored", "3.9", "3"},
        {"exponent is ignored", "3e2", "3"},
        {"slash ends it", "5/6", "5"},
        {"white space in front", " \t\n\v\f\r8", "8"},
        {"white space alone", "\v\f", NO_INTEGER},
        {"sign alone", "-", NO_INTEGER},
        {"plus alone", "+", NO_INTEGER},
        {"two signs", "+-1", NO_INTEGER},
        {"blank behind the sign", "- 1", NO_INTEGER},
        {"point in front", ".5", NO_INTEGER},
        {"a zero byte ends it", "1\0002"sv, "1"},
        {"a zero byte alone", "\0"sv, NO_INTEGER},
        {"byte above ASCII", "\xA0\x31", NO_INTEGER},
        {"highest", "2147483647", "2147483647"},
        {"lowest", "-2147483648", "-2147483648"},
        {"one too high", "2147483648", INTEGER_OUT_OF_RANGE},
        {"one too low", "-2147483649", INTEGER_OUT_OF_RANGE},
        {"ten times the lowest", "-21474836480", INTEGER_OUT_OF_RANGE},
        {"2^32", "4294967296", INTEGER_OUT_OF_RANGE},
        {"2^32 + 1", "4294967297", INTEGER_OUT_OF_RANGE},
        {"2^63", "9223372036854775808", INTEGER_OUT_OF_RANGE},
        {"2^64 + 1", "18446744073709551617", INTEGER_OUT_OF_RANGE},
        {"far too low", "-99999999999999999999999999", INTEGER_OUT_OF_RANGE},
        {"too high, with text behind", "99999999999x", INTEGER_OUT_OF_RANGE},
    };
    for (const TextCase& row : CASES) {
        SCOPED_TRACE(row.title);
        EXPECT_EQ(integerFrom(row.text), row.result);
    }
}

TEST(ParseInt, missingTokenIsNoInteger) {
    try {
        const int value = parseInt(Token());
        FAIL() << "gave " << value;
    } catch (const std::exception& failure) {
        EXPECT_EQ(describeFailure(failure), "runtime_error|No integer found");
    }
}

TEST(ParseInt, tokenIsReadToItsEnd) {
    const std::string text = "12345";
    EXPECT_EQ(parseInt(tokenOf(text)), 12345);
    EXPECT_EQ(parseInt(tokenOf(std::string_view(text).substr(0, 2))), 12);
    EXPECT_EQ(parseInt(std::string_view(text).substr(1, 3)), 234);
}

TEST(ParseInt, generatedTextsGiveWhatStoiGives) {
    RandomSource random(77);
    const std::string alphabet = "0123456789012345678901234567890123456789++--  \t\v\fx.";
    for (int round = 0; round < 200000; ++round) {
        std::string text;
        const int length = random.below(14);
        for (int i = 0; i < length; ++i)
            text +=
                alphabet[static_cast<std::size_t>(random.below(static_cast<int>(alphabet.size())))];
        ASSERT_EQ(integerFrom(text), stoiResult(text)) << "round " << round << ": " << text;
    }
}

TEST(ParseDouble, tableOfNumbers) {
    constexpr double SUBNORMAL = std::numeric_limits<double>::denorm_min();
    constexpr double INFINITE = std::numeric_limits<double>::infinity();
    const DoubleCase CASES[] = {
        {"integer", "12", 12.0},
        {"fraction", "1.5", 1.5},
        {"text behind is ignored", "1.5abc", 1.5},
        {"no digit behind the point", "1.", 1.0},
        {"no digit before the point", ".5", 0.5},
        {"point, then exponent", "5.e3", 5000.0},
        {"fraction with exponent", ".25e1", 2.5},
        {"capital exponent", "2E2", 200.0},
        {"signed exponents", "2e+2", 200.0},
        {"negative exponent", "2e-2", 0.02},
        {"exponent without digits", "1e", 1.0},
        {"exponent with a sign alone", "1e+", 1.0},
        {"exponent with two signs", "1e+-5", 1.0},
        {"exponent with a fraction", "1e2.5", 100.0},
        {"second point ends it", "0.0.1", 0.0},
        {"comma ends it", "1,5", 1.0},
        {"slash ends it", "1/2", 1.0},
        {"plus", "+3", 3.0},
        {"minus", "-3", -3.0},
        {"minus zero", "-0", -0.0},
        {"minus zero with exponent", "-0e99999999999999999999", -0.0},
        {"zero whatever the exponent", "0.000e-99999999999999999999", 0.0},
        {"white space in front", "\t\n\v\f\r 4", 4.0},
        {"infinity", "inf", INFINITE},
        {"long infinity", "InFiNiTy", INFINITE},
        {"infinity with text behind", "infx", INFINITE},
        {"half an infinity", "infini", INFINITE},
        {"minus infinity", "-INF", -INFINITE},
        {"hexadecimal", "0x1F", 31.0},
        {"capital X", "0X1p3", 8.0},
        {"hexadecimal with exponent", "0x1.8P+1", 3.0},
        {"hexadecimal without digits", "0x", 0.0},
        {"hexadecimal with a point alone", "0x.", 0.0},
        {"hexadecimal without digits but exponent", "0x.p1", 0.0},
        {"hexadecimal from the point", "0x.8p1", 1.0},
        {"hexadecimal with no digit behind the point", "0x1.p3", 8.0},
        {"hexadecimal exponent without digits", "0x1p", 1.0},
        {"hexadecimal exponent with a sign alone", "0x1p-", 1.0},
        {"hexadecimal exponent with two signs", "0x1p+-5", 1.0},
        {"hexadecimal second point ends it", "0x0.0.1", 0.0},
        {"hexadecimal e is a digit", "0x1e2", 482.0},
        {"hexadecimal sign behind the x", "0x-1", 0.0},
        {"hexadecimal letter g ends it", "0x1.8g", 1.5},
        {"minus hexadecimal zero", "-0x0p5", -0.0},
        {"hexadecimal zero whatever the exponent", "0x0p99999999999999999999", 0.0},
        {"lowest number", "4.9406564584124654e-324", SUBNORMAL},
        {"just more than half of it", "2.4703282292062328e-324", SUBNORMAL},
        {"hexadecimal lowest number", "0x1p-1074", SUBNORMAL},
        {"hexadecimal half of it and a bit", "0x1.0000000000000000001p-1075", SUBNORMAL},
        {"subnormal is a value", "1e-310", 1e-310},
        {"minus subnormal is a value", "-1e-310", -1e-310},
        {"subnormal tie goes to even", "0x1.8p-1074", 2 * SUBNORMAL},
        {"subnormal just above a tie", "0x0.0100000000001008p-1023", 0x0.0080000000001p-1022},
        {"subnormal rounds up to normal", "0x1.fffffffffffffp-1023", 0x1p-1022},
        {"lowest normal", "2.2250738585072014e-308", 0x1p-1022},
        {"famous hanging number", "2.2250738585072011e-308", 0x0.fffffffffffffp-1022},
        {"highest number", "1.7976931348623157e308", 0x1.fffffffffffffp1023},
        {"rounds down to the highest", "1.7976931348623158e308", 0x1.fffffffffffffp1023},
        {"hexadecimal rounds down to the highest", "0x1.fffffffffffff7p1023",
         0x1.fffffffffffffp1023},
        {"tie goes down to even", "9007199254740993", 9007199254740992.0},
        {"tie goes up to even", "9007199254740995", 9007199254740996.0},
        {"a digit breaks the tie", "9007199254740993.00000000000000000000001", 9007199254740994.0},
        {"hexadecimal tie goes down", "0x1.00000000000008p0", 1.0},
        {"hexadecimal tie goes up", "0x1.00000000000018p0", 0x1.0000000000002p0},
        {"a hexadecimal digit breaks the tie", "0x1.0000000000000800000000000001p0",
         0x1.0000000000001p0},
        {"hexadecimal rounds up to the next power", "0x1.fffffffffffff8p0", 2.0},
        {"0.1 + 0.2 as printed", "0.30000000000000004", 0x1.3333333333334p-2},
        {"nineteen digits", "1234567890123456789", 1234567890123456768.0},
        {"twenty digits", "18446744073709551616", 0x1p64},
        {"power of ten that is still exact", "1e22", 1e22},
        {"power of ten that is not", "1e23", 1e23},
    };
    for (const DoubleCase& row : CASES) {
        SCOPED_TRACE(row.title);
        EXPECT_EQ(doubleFrom(row.text), describeBits(row.value)) << row.text;
    }
}

TEST(ParseDouble, notANumberIsRead) {
    const TextCase CASES[] = {
        {"plain", "nan", "nan"},
        {"mixed case", "NaN", "nan"},
        {"plus", "+nan", "nan"},
        {"minus", "-nan", "-nan"},
        {"with a tag", "nan(0x123)", "nan"},
        {"with an unfinished tag", "-NAN(ab", "-nan"},
        {"with text behind", "nanx", "nan"},
    };
    for (const TextCase& row : CASES) {
        SCOPED_TRACE(row.title);
        EXPECT_EQ(doubleFrom(row.text), row.result);
    }
}

TEST(ParseDouble, tableOfFailures) {
    using namespace std::string_view_literals;
    const TextCase CASES[] = {
        {"word", "abc", NO_NUMBER},
        {"empty", "", NO_NUMBER},
        {"point", ".", NO_NUMBER},
        {"plus", "+", NO_NUMBER},
        {"minus and point", "-.", NO_NUMBER},
        {"two signs", "--1", NO_NUMBER},
        {"mixed signs", "+-1", NO_NUMBER},
        {"blank behind the sign", "- 1", NO_NUMBER},
        {"exponent alone", "e5", NO_NUMBER},
        {"point and exponent", ".e5", NO_NUMBER},
        {"comma", ",5", NO_NUMBER},
        {"white space alone", "\v\f", NO_NUMBER},
        {"piece of infinity", "in", NO_NUMBER},
        {"piece of nan", "na", NO_NUMBER},
        {"letter x", "x1", NO_NUMBER},
        {"zero byte", "\0001"sv, NO_NUMBER},
        {"no-break space", "\xC2\xA0\x31", NO_NUMBER},
        {"overflow", "1e309", OUT_OF_RANGE},
        {"minus overflow", "-1e309", OUT_OF_RANGE},
        {"half a step above the highest", "1.7976931348623159e308", OUT_OF_RANGE},
        {"overflow by digits",
         "1797693134862315800000000000000000000000000000000000000000000000000"
         "000000000000000000000000000000000000000000000000000000000000000000"
         "000000000000000000000000000000000000000000000000000000000000000000"
         "000000000000000000000000000000000000000000000000000000000000000000"
         "0000000000000000000000000000000000000000000000000",
         OUT_OF_RANGE},
        {"overflow by far", "1e99999999999999999999", OUT_OF_RANGE},
        {"rounds to zero", "1e-324", OUT_OF_RANGE},
        {"rounds to minus zero", "-1e-324", OUT_OF_RANGE},
        {"just less than half the lowest", "2.4703282292062327e-324", OUT_OF_RANGE},
        {"rounds to zero by far", "1e-99999999999999999999", OUT_OF_RANGE},
        {"hexadecimal overflow", "0x1p1024", OUT_OF_RANGE},
        {"hexadecimal rounds to overflow", "0x1.fffffffffffff8p1023", OUT_OF_RANGE},
        {"hexadecimal overflow by far", "0x1p99999999999999999999", OUT_OF_RANGE},
        {"hexadecimal half the lowest", "0x1p-1075", OUT_OF_RANGE},
        {"hexadecimal rounds to zero", "0x1.8p-1080", OUT_OF_RANGE},
        {"hexadecimal with all bits lost", "0xffffffffffffffffp-1139", OUT_OF_RANGE},
        {"hexadecimal rounds to zero by far", "-0x1p-99999999999999999999", OUT_OF_RANGE},
        {"overflow with text behind", "1e999abc", OUT_OF_RANGE},
    };
    for (const TextCase& row : CASES) {
        SCOPED_TRACE(row.title);
        EXPECT_EQ(doubleFrom(row.text), row.result) << row.text;
    }
}

// 64 bits of a hexadecimal number that lie on both sides of the lowest bit.
TEST(ParseDouble, hexadecimalBitsThatAllStandBelowTheLowestStillRound) {
    EXPECT_EQ(doubleFrom("0xffffffffffffffffp-1138"), describeBits(0x1p-1074));
    EXPECT_EQ(doubleFrom("0x8000000000000001p-1138"), describeBits(0x1p-1074));
    EXPECT_EQ(doubleFrom("0x8000000000000000p-1138"), OUT_OF_RANGE);
    EXPECT_EQ(doubleFrom("0x8000000000000000.1p-1138"), describeBits(0x1p-1074));
    EXPECT_EQ(doubleFrom("0x7fffffffffffffffp-1138"), OUT_OF_RANGE);
}

TEST(ParseDouble, missingTokenIsNoFloat) {
    try {
        const double value = parseDouble(Token());
        FAIL() << "gave " << value;
    } catch (const std::exception& failure) {
        EXPECT_EQ(describeFailure(failure), "runtime_error|No float value found");
    }
}

TEST(ParseDouble, tokenIsReadToItsEnd) {
    const std::string text = "12.5e2x";
    const std::string_view view = text;
    EXPECT_EQ(parseDouble(tokenOf(view.substr(0, 6))), 1250.0);
    EXPECT_EQ(parseDouble(tokenOf(view.substr(0, 5))), 12.5);
    EXPECT_EQ(parseDouble(tokenOf(view.substr(0, 3))), 12.0);
    EXPECT_EQ(parseDouble(tokenOf(view.substr(0, 1))), 1.0);
    EXPECT_EQ(parseDouble(tokenOf(std::string_view("0x1p12").substr(0, 5))), 2.0);
    EXPECT_EQ(parseDouble(tokenOf(std::string_view("0x12").substr(0, 2))), 0.0);
    EXPECT_EQ(doubleFrom(std::string_view("-inf").substr(0, 3)), NO_NUMBER);
}

// Many decimals and a large exponent that all but cancel; once such a number was
// taken for a short one.
TEST(ParseDouble, decimalsAndExponentCancelExactly) {
    for (const int zeros : {10, 100, 999, 1000, 1001, 2000, 50000, 100000, 1000000}) {
        SCOPED_TRACE(zeros);
        const std::string small = "0." + std::string(static_cast<std::size_t>(zeros), '0') + "1e";
        const std::string large = "1" + std::string(static_cast<std::size_t>(zeros), '0') + "e-";
        for (int rest = -3; rest <= 3; ++rest) {
            const double expected[] = {1e-3, 1e-2, 1e-1, 1.0, 1e1, 1e2, 1e3};
            const std::string value = describeBits(expected[rest + 3]);
            EXPECT_EQ(doubleFrom(small + std::to_string(zeros + 1 + rest)), value) << rest;
            EXPECT_EQ(doubleFrom(large + std::to_string(zeros - rest)), value) << rest;
        }
        EXPECT_EQ(doubleFrom(small + std::to_string(zeros + 400)), OUT_OF_RANGE);
        EXPECT_EQ(doubleFrom(large + std::to_string(zeros + 400)), OUT_OF_RANGE);
    }
    EXPECT_EQ(doubleFrom("0." + std::string(2000, '0') + "1e1010"), OUT_OF_RANGE);
}

TEST(ParseDouble, hexadecimalDigitsAndExponentCancelExactly) {
    const std::string zeros(1000000, '0');
    EXPECT_EQ(doubleFrom("0x1" + zeros + "p-4000000"), describeBits(1.0));
    EXPECT_EQ(doubleFrom("0x." + zeros + "1p4000004"), describeBits(1.0));
    EXPECT_EQ(doubleFrom("0x" + zeros + "1.8"), describeBits(1.5));
    EXPECT_EQ(doubleFrom("0x1" + zeros), OUT_OF_RANGE);
    EXPECT_EQ(doubleFrom("0x." + zeros + "1"), OUT_OF_RANGE);
}

// A method that takes the square of the length would not end here.
TEST(ParseDouble, numbersOfAMegabyteAreRead) {
    const std::string threes(1000000, '3');
    EXPECT_EQ(doubleFrom("0." + threes), describeBits(1.0 / 3.0));
    EXPECT_EQ(doubleFrom(threes + "e-1000000"), describeBits(1.0 / 3.0));
    EXPECT_EQ(doubleFrom(threes), OUT_OF_RANGE);
    EXPECT_EQ(doubleFrom("0x." + threes), describeBits(0.2));
    EXPECT_EQ(doubleFrom(std::string(1000000, '0') + "7"), describeBits(7.0));
    EXPECT_EQ(doubleFrom("7." + std::string(1000000, '0')), describeBits(7.0));
    EXPECT_EQ(doubleFrom("1e" + std::string(1000000, '0') + "5"), describeBits(1e5));
    EXPECT_EQ(doubleFrom("1e" + std::string(1000000, '9')), OUT_OF_RANGE);
    EXPECT_EQ(doubleFrom("9007199254740993." + std::string(1000000, '0') + "1"),
              describeBits(9007199254740994.0));
    EXPECT_EQ(doubleFrom(std::string(1000000, ' ') + "7"), describeBits(7.0));
    EXPECT_EQ(integerFrom(std::string(1000000, '0') + "7"), "7");
    EXPECT_EQ(integerFrom(threes), INTEGER_OUT_OF_RANGE);
}

namespace {

char pick(RandomSource& random, std::string_view characters) {
    return characters[static_cast<std::size_t>(random.below(static_cast<int>(characters.size())))];
}

std::string pickText(RandomSource& random, const std::vector<std::string>& texts) {
    return texts[static_cast<std::size_t>(random.below(static_cast<int>(texts.size())))];
}

std::string digits(RandomSource& random, int count, std::string_view characters = "0123456789") {
    std::string text;
    for (int i = 0; i < count; ++i)
        text += pick(random, characters);
    return text;
}

std::string exponentText(RandomSource& random, std::string_view letters, int low, int high) {
    std::string text(1, pick(random, letters));
    return text += std::to_string(random.between(low, high));
}

// Short and long digit strings; exponents near one, near the ends of the range
// and beyond.
std::string decimalText(RandomSource& random) {
    const int longest = random.oneIn(20) ? 900 : 22;
    std::string text = digits(random, random.below(longest));
    if (!random.oneIn(3))
        text += "." + digits(random, random.below(longest));
    const int length = static_cast<int>(text.size());
    switch (random.below(5)) {
        case 0:
            text += exponentText(random, "eE", -30, 30);
            break;
        case 1:
            text += exponentText(random, "eE", 290 - length, 311);
            break;
        case 2:
            text += exponentText(random, "eE", -345 - length, -285);
            break;
        case 3:
            text += exponentText(random, "eE", -1100, 1100);
            break;
        default:
            break;
    }
    return text;
}

std::string hexadecimalText(RandomSource& random) {
    // Runs of 0 and f, and an 8 or 7 behind them, make ties and near ties.
    const bool isEven = random.oneIn(2);
    const std::string_view characters = isEven ? "000000008f1" : "0123456789abcdefABCDEF";
    std::string text = random.oneIn(2) ? "0x" : "0X";
    text += digits(random, random.below(random.oneIn(10) ? 40 : 4), characters);
    if (!random.oneIn(4))
        text += "." + digits(random, random.below(24), characters);
    switch (random.below(5)) {
        case 0:
            text += exponentText(random, "pP", -20, 20);
            break;
        case 1:
            text += exponentText(random, "pP", 1000, 1030);
            break;
        case 2:
            text += exponentText(random, "pP", -1160, -1000);
            break;
        case 3:
            text += pickText(random, {"p", "p+", "P-", "p+-5", "pp", "p+9999999999999999999",
                                      "p-9999999999999999999", "p.5", "e5"});
            break;
        default:
            break;
    }
    return text;
}

std::string namedText(RandomSource& random) {
    std::string text = pickText(
        random, {"inf", "infinity", "infinit", "infx", "in", "nan", "nan()", "nan(123)",
                 "nan(abc_1)", "nan(", "nan(!)", "na", "n", "i", "ind", "infinityinfinity"});
    for (char& character : text) {
        if (character >= 'a' && character <= 'z' && random.oneIn(2))
            character = static_cast<char>(character - 'a' + 'A');
    }
    return text;
}

std::string anyText(RandomSource& random) {
    std::string text;
    const int length = random.below(12);
    for (int i = 0; i < length; ++i)
        text += pick(random, "00112589..eEpPxX+-infa ");
    return text;
}

// A decimal integer of any length, least part first.
class LongInteger {
public:
    explicit LongInteger(std::uint64_t value) {
        for (; value != 0; value /= BASE)
            parts.push_back(value % BASE);
    }

    void multiply(std::uint64_t factor, std::uint64_t summand = 0) {
        std::uint64_t carry = summand;
        for (std::uint64_t& part : parts) {
            const std::uint64_t product = part * factor + carry;
            part = product % BASE;
            carry = product / BASE;
        }
        for (; carry != 0; carry /= BASE)
            parts.push_back(carry % BASE);
    }

    std::string text() const {
        std::string digitsOfAll;
        for (auto part = parts.rbegin(); part != parts.rend(); ++part) {
            std::string nine = std::to_string(*part);
            if (!digitsOfAll.empty())
                nine.insert(0, 9 - nine.size(), '0');
            digitsOfAll += nine;
        }
        return digitsOfAll;
    }

private:
    static constexpr std::uint64_t BASE = 1000000000;
    std::vector<std::uint64_t> parts;
};

// The middle between two neighbouring doubles with all its digits, or a number
// just above or just below it.
std::string halfwayText(RandomSource& random) {
    // One bit more than a double keeps, and that bit is set.
    std::uint64_t mantissa = std::uint64_t{1} << 53U | 1U;
    mantissa |= static_cast<std::uint64_t>(random.below(1 << 30)) << 22U;
    mantissa |= static_cast<std::uint64_t>(random.below(1 << 22));
    int exponent = random.between(-1100, 970);
    constexpr int HALF_THE_LOWEST = -1075;
    if (exponent < HALF_THE_LOWEST) {  // subnormal: fewer bits
        mantissa >>= static_cast<unsigned>(HALF_THE_LOWEST - exponent);
        mantissa |= 1U;
        exponent = HALF_THE_LOWEST;
    }
    LongInteger number(mantissa);
    for (int i = 0; i < exponent; ++i)
        number.multiply(2);
    for (int i = exponent; i < 0; ++i)
        number.multiply(5);
    std::string text = number.text();
    int powerOfTen = exponent < 0 ? exponent : 0;

    const int change = random.below(3);
    if (change == 0)
        text += ".0000000000000000000000001";
    if (change == 1 && text.back() != '0') {
        --text.back();
        text += ".9999999999999999999";
    }
    if (text.find('.') == std::string::npos && random.oneIn(2)) {
        const int place = random.between(1, static_cast<int>(text.size()));
        powerOfTen += static_cast<int>(text.size()) - place;
        text.insert(static_cast<std::size_t>(place), 1, '.');
    }
    return powerOfTen == 0 ? text : text + "e" + std::to_string(powerOfTen);
}

void expectAsStrtod(const std::string& text, int round) {
    ASSERT_EQ(doubleFrom(text), strtodResult(text)) << "round " << round << ": " << text;
}

// The same number with all its decimal digits; for numbers other than zero.
std::string decimalOfHexadecimal(const std::string& text) {
    const std::size_t digitsBegin = text.find_first_of("xX") + 1;
    const std::string sign = text.find('-') < digitsBegin ? "-" : "";
    LongInteger number(0);
    int exponent = 0;
    bool hasPoint = false;
    std::size_t place = digitsBegin;
    for (; place < text.size(); ++place) {
        if (text[place] == '.' && !hasPoint) {
            hasPoint = true;
            continue;
        }
        if (std::string_view("0123456789abcdefABCDEF").find(text[place]) == std::string_view::npos)
            break;
        number.multiply(16, std::stoul(text.substr(place, 1), nullptr, 16));
        exponent -= hasPoint ? 4 : 0;
    }
    if (place < text.size() && (text[place] == 'p' || text[place] == 'P'))
        exponent += static_cast<int>(std::strtol(text.c_str() + place + 1, nullptr, 10));
    for (int i = 0; i < exponent; ++i)
        number.multiply(2);
    for (int i = exponent; i < 0; ++i)
        number.multiply(5);
    return sign + number.text() + "e" + std::to_string(exponent < 0 ? exponent : 0);
}

std::string dressed(RandomSource& random, const std::string& number) {
    std::string text;
    if (random.oneIn(8))
        text += pickText(random, {"\v", "\f", " ", "\t\n\v\f\r", "\v\v\v"});
    text += pickText(random, {"", "", "", "+", "-", "-", "--", "+-"});
    text += number;
    if (random.oneIn(4))
        text += pickText(random, {"abc", "e", "e+", "E-", "p1", ".", ".5", "x", "f", "L", ",5",
                                  "/3", " 7", "\v", "\xC3\xA4", "_", "'000", "d5"});
    return text;
}

}  // namespace

TEST(ParseDouble, generatedDecimalsGiveWhatStrtodGives) {
    RandomSource random(1);
    for (int round = 0; round < 250000; ++round)
        ASSERT_NO_FATAL_FAILURE(expectAsStrtod(dressed(random, decimalText(random)), round));
}

// C libraries have been seen to round subnormal hexadecimal numbers the wrong
// way; where theirs is another result, the number written in decimals decides.
TEST(ParseDouble, generatedHexadecimalsGiveWhatStrtodGives) {
    RandomSource random(2);
    for (int round = 0; round < 150000; ++round) {
        const std::string text = dressed(random, hexadecimalText(random));
        const std::string result = doubleFrom(text);
        if (result != strtodResult(text)) {
            ASSERT_EQ(result, strtodResult(decimalOfHexadecimal(text)))
                << "round " << round << ": " << text;
        }
    }
}

// Around the lowest bit, where fewer and fewer bits are kept.
TEST(ParseDouble, subnormalHexadecimalsGiveWhatTheirDecimalsGive) {
    RandomSource random(7);
    for (int round = 0; round < 5000; ++round) {
        std::string text = random.oneIn(2) ? "-0x1" : "0x1";
        text += digits(random, random.below(20), "00000008f1");
        const int digitCount = static_cast<int>(text.size());
        text += exponentText(random, "p", -1085 - 4 * digitCount, -1015);
        ASSERT_EQ(doubleFrom(text), strtodResult(decimalOfHexadecimal(text)))
            << "round " << round << ": " << text;
    }
}

TEST(ParseDouble, generatedNamesGiveWhatStrtodGives) {
    RandomSource random(3);
    for (int round = 0; round < 20000; ++round)
        ASSERT_NO_FATAL_FAILURE(expectAsStrtod(dressed(random, namedText(random)), round));
}

TEST(ParseDouble, generatedMixturesGiveWhatStrtodGives) {
    RandomSource random(4);
    for (int round = 0; round < 150000; ++round)
        ASSERT_NO_FATAL_FAILURE(expectAsStrtod(anyText(random), round));
}

TEST(ParseDouble, halfwayNumbersGiveWhatStrtodGives) {
    RandomSource random(5);
    for (int round = 0; round < 3000; ++round)
        ASSERT_NO_FATAL_FAILURE(expectAsStrtod(halfwayText(random), round));
}

TEST(ParseDouble, printedDoublesComeBack) {
    RandomSource random(6);
    for (int round = 0; round < 100000; ++round) {
        std::uint64_t bits = 0;
        for (int part = 0; part < 4; ++part)
            bits = bits << 16U | static_cast<std::uint64_t>(random.below(65536));
        if (round % 4 == 0)
            bits &= ~(std::uint64_t{0x7FF} << 52U);  // subnormal
        double value;
        std::memcpy(&value, &bits, sizeof value);
        if (!std::isfinite(value))
            continue;
        char text[64];
        std::snprintf(text, sizeof text, "%.17g", value);
        ASSERT_EQ(doubleFrom(text), describeBits(value)) << text;
        std::snprintf(text, sizeof text, "%a", value);
        ASSERT_EQ(doubleFrom(text), describeBits(value)) << text;
    }
}

namespace {

// A locale of the process that writes a comma for the point, and groups.
class CommaPunctuation : public std::numpunct<char> {
protected:
    char do_decimal_point() const override { return ','; }
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
};

// Gives both libraries' locales back.
class LocaleKeeper {
public:
    LocaleKeeper() : cLocale(std::setlocale(LC_ALL, nullptr)) {}
    ~LocaleKeeper() {
        std::locale::global(cppLocale);
        std::setlocale(LC_ALL, cLocale.c_str());
    }
    LocaleKeeper(const LocaleKeeper&) = delete;
    LocaleKeeper& operator=(const LocaleKeeper&) = delete;

private:
    std::locale cppLocale;
    std::string cLocale;
};

void expectNumbersOfTheClassicLocale() {
    EXPECT_EQ(doubleFrom("1.5"), describeBits(1.5));
    EXPECT_EQ(doubleFrom("1,5"), describeBits(1.0));
    EXPECT_EQ(doubleFrom(",5"), NO_NUMBER);
    EXPECT_EQ(doubleFrom("1.234.567"), describeBits(1.234));
    EXPECT_EQ(doubleFrom("0x1.8"), describeBits(1.5));
    EXPECT_EQ(doubleFrom("1.00000000000000000000000000001e300"), describeBits(1e300));
    EXPECT_EQ(integerFrom("1.234"), "1");
    EXPECT_EQ(integerFrom("1,234"), "1");
}

}  // namespace

TEST(ParseDouble, localeOfTheStandardLibraryChangesNothing) {
    const LocaleKeeper keeper;
    std::locale::global(std::locale(std::locale::classic(), new CommaPunctuation));
    ASSERT_EQ(std::use_facet<std::numpunct<char>>(std::locale()).decimal_point(), ',');
    expectNumbersOfTheClassicLocale();
}

TEST(ParseDouble, localeOfTheCLibraryChangesNothing) {
    const LocaleKeeper keeper;
    const char* const NAMES[] = {"de_DE.UTF-8", "de_DE.utf8", "de_DE",  "fr_FR.UTF-8",
                                 "fr_FR.utf8",  "fr_FR",      "German", "nl_NL.UTF-8"};
    bool hasComma = false;
    for (const char* name : NAMES)
        hasComma = hasComma || (std::setlocale(LC_ALL, name) != nullptr &&
                                std::strcmp(std::localeconv()->decimal_point, ",") == 0);
    if (!hasComma)
        GTEST_SKIP() << "no locale with a decimal comma is installed";
    expectNumbersOfTheClassicLocale();
}

}  // namespace obj_adapter::test
