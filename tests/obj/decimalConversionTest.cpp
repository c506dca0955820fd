// Digits and a power of ten to a double, against the C library, and numbers read in
// one pass against those of the plain way.
#include "obj/decimalConversion.h"

#include "obj/numberParsing.h"
#include "obj/ordinaryNumbers.h"
#include "support/randomSource.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <iterator>
#include <limits>
#include <string>

namespace obj_adapter::test {
namespace {

std::string decimalText(std::uint64_t mantissa, int exponent) {
    return std::to_string(mantissa) + "e" + std::to_string(exponent);
}

// Whether the method decides; what it says must be what the C library says.
bool isDecided(std::uint64_t mantissa, int exponent) {
    double value = 0.0;
    if (!convertDecimal(mantissa, exponent, value))
        return false;
    const std::string text = decimalText(mantissa, exponent);
    EXPECT_EQ(std::bit_cast<std::uint64_t>(value),
              std::bit_cast<std::uint64_t>(std::strtod(text.c_str(), nullptr)))
        << text;
    return true;
}

std::uint64_t anyMantissa(RandomSource& random, int digits) {
    std::uint64_t mantissa = 0;
    for (int i = 0; i < digits; ++i)
        mantissa = 10 * mantissa + static_cast<std::uint64_t>(random.below(10));
    return mantissa;
}

TEST(DecimalConversion, generatedNumbersGiveWhatStrtodGives) {
    RandomSource random(41);
    int undecided = 0;
    constexpr int ROUNDS = 1500000;
    for (int round = 0; round < ROUNDS && !testing::Test::HasFailure(); ++round) {
        const int digits = random.oneIn(2) ? random.between(15, 19) : random.between(1, 19);
        const std::uint64_t mantissa = anyMantissa(random, digits);
        const int exponent =
            random.oneIn(2) ? random.between(-30, 10) : random.between(-300, 308 - digits);
        if (mantissa != 0)
            undecided += isDecided(mantissa, exponent) ? 0 : 1;
    }
    // Those lie exactly between two doubles, or below the normal numbers.
    EXPECT_LT(undecided, ROUNDS / 1000);
}

TEST(DecimalConversion, doublesComeBackFromTheirDigits) {
    RandomSource random(42);
    int undecided = 0;
    constexpr int ROUNDS = 500000;
    for (int round = 0; round < ROUNDS && !testing::Test::HasFailure(); ++round) {
        const std::uint64_t bits = static_cast<std::uint64_t>(random.fraction() * 0x1p52) |
                                   static_cast<std::uint64_t>(random.between(1, 2046)) << 52U;
        const double number = std::bit_cast<double>(bits);
        char text[40];
        std::snprintf(text, sizeof text, "%.*e", random.between(16, 18), number);
        std::uint64_t mantissa = 0;
        int decimals = 0;
        const char* character = text;
        for (; *character != 'e'; ++character) {
            if (*character == '.')
                continue;
            mantissa = 10 * mantissa + static_cast<std::uint64_t>(*character - '0');
            ++decimals;
        }
        const int exponent = std::atoi(character + 1) - (decimals - 1);
        double value = 0.0;
        if (!convertDecimal(mantissa, exponent, value)) {
            ++undecided;
            continue;
        }
        EXPECT_EQ(std::bit_cast<std::uint64_t>(value), bits) << text;
    }
    EXPECT_LT(undecided, ROUNDS / 100);
}

// Around every power of ten and of two, and at the ends of the range.
TEST(DecimalConversion, edgesGiveWhatStrtodGives) {
    const std::uint64_t MANTISSAS[] = {1,
                                       2,
                                       3,
                                       5,
                                       9,
                                       10,
                                       17976931348623157,
                                       17976931348623158,
                                       1797693134862315807U,
                                       1797693134862315808U,
                                       22250738585072014,
                                       22250738585072011,
                                       4940656458412465442U,
                                       2470328229206232720U,
                                       (std::uint64_t{1} << 53U) - 1,
                                       std::uint64_t{1} << 53U,
                                       (std::uint64_t{1} << 53U) + 1,
                                       (std::uint64_t{1} << 53U) + 2,
                                       (std::uint64_t{1} << 54U) + 2,
                                       (std::uint64_t{1} << 54U) + 6,
                                       (std::uint64_t{1} << 63U) - 512,
                                       (std::uint64_t{1} << 63U) - 513,
                                       (std::uint64_t{1} << 63U) - 511,
                                       std::numeric_limits<std::uint64_t>::max(),
                                       std::numeric_limits<std::uint64_t>::max() - 1023,
                                       std::numeric_limits<std::uint64_t>::max() - 1024,
                                       9999999999999999999U};
    int decided = 0;
    for (int exponent = -400; exponent <= 400; ++exponent) {
        for (const std::uint64_t mantissa : MANTISSAS)
            decided += isDecided(mantissa, exponent) ? 1 : 0;
    }
    EXPECT_GT(decided, 600 * static_cast<int>(std::size(MANTISSAS)));
}

// Numbers exactly between two doubles, or next to the middle.
TEST(DecimalConversion, halvesGiveWhatStrtodGives) {
    RandomSource random(43);
    for (int round = 0; round < 300000 && !testing::Test::HasFailure(); ++round) {
        std::uint64_t mantissa = std::uint64_t{1} << 53U | 1U;
        mantissa |= static_cast<std::uint64_t>(random.fraction() * 0x1p53);
        // Halves of it again: 5^4 is the most for which 64 bits suffice.
        const int halvings = random.below(5);
        for (int i = 0; i < halvings; ++i)
            mantissa *= 5;
        mantissa += static_cast<std::uint64_t>(random.between(-1, 1));
        isDecided(mantissa, -halvings);
        isDecided(mantissa, random.between(-5, 24));
    }
}

TEST(DecimalConversion, whatItCannotTellItLeavesOpen) {
    const struct {
        const char* title;
        std::uint64_t mantissa;
        std::int64_t exponent;
    } CASES[] = {
        {"zero with a large exponent", 0, 100},
        {"an infinite value", 1, 309},
        {"the first number that rounds to infinity", 17976931348623159, 292},
        {"an exponent beyond every table", 1, 1000000000000},
        {"an exponent below every table", 1, -1000000000000},
        {"the lowest normal number is the last", 22250738585072011, -324},
        {"a number that rounds to zero", 1, -330},
        {"exactly between two doubles", (std::uint64_t{1} << 54U) + 2, 0},
    };
    for (const auto& row : CASES) {
        double value = 7.0;
        EXPECT_FALSE(convertDecimal(row.mantissa, row.exponent, value)) << row.title;
        EXPECT_EQ(value, 7.0) << row.title;
    }
}

// "value bits" of parseDouble, which also says what is no number.
std::string plainResult(const std::string& text) {
    try {
        const double value = parseDouble({text.data(), text.data() + text.size()});
        return std::to_string(std::bit_cast<std::uint64_t>(value));
    } catch (const std::exception& failure) {
        return failure.what();
    }
}

TEST(OrdinaryDouble, tableOfTexts) {
    const struct {
        const char* text;
        std::ptrdiff_t length;  // of the number, 0: not ordinary
    } CASES[] = {
        {"1 ", 1},
        {"-1 ", 2},
        {"0.5\n", 3},
        {".5\r", 2},
        {"5.\t", 2},
        {"-0 ", 2},
        {"00000000000000000000000001.5 ", 28},
        {"0.0000000000000000000000001 ", 27},
        {"1234567890123456789 ", 19},
        {"0.1234567890123456789 ", 21},
        {"1e5 ", 3},
        {"1E+05 ", 5},
        {"1.5e-300 ", 8},
        {"1x", 1},   // the delimiter is the caller's matter
        {"1/2", 1},  // likewise
        {"1e0005 ", 5},
        {"", 0},
        {" ", 0},
        {"-\n", 0},
        {"+1 ", 0},
        {". ", 0},
        {"-.\n", 0},
        {"x", 0},
        {"inf ", 0},
        {"nan ", 0},
        {"1e ", 0},
        {"1e+ ", 0},
        {"12345678901234567890 ", 0},
        {"1.2345678901234567890 ", 0},
        {"1e400 ", 0},
        {"1e-400 ", 0},
        {"--1 ", 0},
    };
    for (const auto& row : CASES) {
        // A buffer that says what was read too far.
        const std::string text = row.text;
        double value = 7.0;
        const char* end = readOrdinaryDouble(text.c_str(), value);
        ASSERT_EQ(end == nullptr ? 0 : end - text.c_str(), row.length) << row.text;
        EXPECT_EQ(value == 7.0, end == nullptr) << row.text;
    }
}

// Whatever ends like a token has the value that the plain way gives it.
TEST(OrdinaryDouble, generatedTextsGiveWhatThePlainWayGives) {
    RandomSource random(44);
    int taken = 0;
    constexpr int ROUNDS = 1000000;
    for (int round = 0; round < ROUNDS; ++round) {
        std::string text = random.oneIn(3) ? "-" : "";
        for (int i = random.below(random.oneIn(4) ? 22 : 6); i > 0; --i)
            text += static_cast<char>('0' + random.below(10));
        if (!random.oneIn(4)) {
            text += '.';
            for (int i = random.below(random.oneIn(4) ? 22 : 8); i > 0; --i)
                text += static_cast<char>('0' + random.below(10));
        }
        if (random.oneIn(3))
            text += (random.oneIn(2) ? "e" : "E") + std::to_string(random.between(-340, 320));
        if (random.oneIn(20) && !text.empty()) {
            const auto place =
                static_cast<std::size_t>(random.below(static_cast<int>(text.size())));
            text[place] = "+-.eE0x/\\\v\f#"[random.below(12)];
        }
        const std::string line = text + " 1";
        double value = 0.0;
        const char* end = readOrdinaryDouble(line.c_str(), value);
        if (end == nullptr || *end != ' ')
            continue;
        ++taken;
        ASSERT_EQ(end - line.c_str(), static_cast<std::ptrdiff_t>(text.size())) << text;
        ASSERT_EQ(std::to_string(std::bit_cast<std::uint64_t>(value)), plainResult(text)) << text;
    }
    EXPECT_GT(taken, ROUNDS / 2);
}

}  // namespace
}  // namespace obj_adapter::test
