// Tokens to numbers. Covered by tests/obj/numberParsingTest.cpp.
#include "obj/numberParsing.h"

#include "obj/decimalConversion.h"
#include "obj/keywords.h"
#include "obj/ordinaryNumbers.h"

#include <algorithm>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <stdexcept>
#include <string>
#include <system_error>

namespace obj_adapter {

namespace {

bool isDigit(char character) noexcept {
    return character >= '0' && character <= '9';
}

bool isHexDigit(char character) noexcept {
    const char lower = lowerCase(character);
    return isDigit(character) || (lower >= 'a' && lower <= 'f');
}

// The value of a character that isHexDigit accepts.
unsigned hexDigitValue(char digit) noexcept {
    return static_cast<unsigned>(isDigit(digit) ? digit - '0' : lowerCase(digit) - 'a' + 10);
}

// isspace of the "C" locale.
bool isSpace(char character) noexcept {
    return character == ' ' || (character >= '\t' && character <= '\r');
}

const char* skipSpace(const char* position, const char* end) noexcept {
    while (position != end && isSpace(*position))
        ++position;
    return position;
}

// Moves behind a sign, if one stands there; true for a minus.
bool takeSign(const char*& position, const char* end) noexcept {
    if (position == end || (*position != '-' && *position != '+'))
        return false;
    return *position++ == '-';
}

bool startsWith(std::string_view text, std::string_view lowerCaseStart) noexcept {
    return equalsIgnoringCase(text.substr(0, lowerCaseStart.size()), lowerCaseStart);
}

[[noreturn]] void throwOutOfRange() {
    throw std::out_of_range("stod argument out of range");
}

// The exponent of ten, or of two, of a number. A text of any length fits: the
// exponent as written is cut off far beyond what all digits of the longest line
// can make up for.
using Exponent = std::int64_t;

// Moves behind an exponent, if a whole one stands there, and returns it: "1e"
// and "1e+" end before the letter.
Exponent takeExponent(const char*& position, const char* end, char lowerCaseLetter) noexcept {
    if (position == end || lowerCase(*position) != lowerCaseLetter)
        return 0;
    const char* digits = position + 1;
    const bool isNegative = takeSign(digits, end);
    if (digits == end || !isDigit(*digits))
        return 0;
    constexpr Exponent BEYOND_EVERY_LINE = 1'000'000'000'000;
    Exponent exponent = 0;
    for (; digits != end && isDigit(*digits); ++digits) {
        if (exponent < BEYOND_EVERY_LINE)
            exponent = 10 * exponent + (*digits - '0');
    }
    position = digits;
    return isNegative ? -exponent : exponent;
}

// The parts of a decimal number as they stand in the text.
struct DecimalParts {
    std::uint64_t mantissa = 0;  // all digits, without the point
    int digitCount = 0;          // of the mantissa, leading zeros left out
    Exponent exponent = 0;       // of ten
    bool hasDigits = false;
    bool hasNonzeroDigit = false;
    const char* end = nullptr;  // behind the number
};

DecimalParts readDecimal(const char* position, const char* end) noexcept {
    DecimalParts parts;
    const auto readDigits = [&] {
        const char* begin = position;
        for (; position != end && isDigit(*position); ++position) {
            const int digit = *position - '0';
            parts.mantissa = 10 * parts.mantissa + static_cast<unsigned>(digit);  // may wrap
            if (digit != 0)
                parts.hasNonzeroDigit = true;
            if (parts.hasNonzeroDigit && parts.digitCount <= MAX_MANTISSA_DIGITS)
                ++parts.digitCount;
        }
        parts.hasDigits = parts.hasDigits || position != begin;
        return position - begin;
    };
    readDigits();
    if (position != end && *position == '.') {
        ++position;
        parts.exponent = -Exponent{readDigits()};
    }
    if (parts.hasDigits)
        parts.exponent += takeExponent(position, end, 'e');
    parts.end = position;
    return parts;
}

double decimalValue(const char* begin, const DecimalParts& parts) {
    double value = 0.0;
    if (parts.digitCount <= MAX_MANTISSA_DIGITS &&
        convertDecimal(parts.mantissa, parts.exponent, value))
        return value;
    // A library may give infinity or zero with or without an error.
    const std::from_chars_result result = std::from_chars(begin, parts.end, value);
    if (result.ec != std::errc() || std::isinf(value) || (value == 0.0 && parts.hasNonzeroDigit))
        throwOutOfRange();
    return value;
}

// 0x and at least one digit, before or behind a point.
bool isHexadecimal(std::string_view text) noexcept {
    if (!startsWith(text, "0x"))
        return false;
    text.remove_prefix(2);
    if (!text.empty() && text.front() == '.')
        text.remove_prefix(1);
    return !text.empty() && isHexDigit(text.front());
}

// The parts of a hexadecimal number: mantissa * 2^exponent, and a little more if
// there is a rest.
struct HexadecimalParts {
    std::uint64_t mantissa = 0;
    Exponent exponent = 0;
    bool hasRest = false;  // a digit other than zero did not fit the mantissa
};

// Reads the digits behind 0x. Standard libraries differ in what they take for an
// exponent, and in how they round, so none is asked.
HexadecimalParts readHexadecimal(const char* position, const char* end) noexcept {
    constexpr int BITS_PER_DIGIT = 4;
    constexpr std::uint64_t NO_ROOM_FOR_A_DIGIT = std::uint64_t{1} << 60U;
    HexadecimalParts parts;
    bool hasPoint = false;
    for (; position != end; ++position) {
        if (*position == '.' && !hasPoint) {
            hasPoint = true;
            continue;
        }
        if (!isHexDigit(*position))
            break;
        const unsigned digit = hexDigitValue(*position);
        if (parts.mantissa < NO_ROOM_FOR_A_DIGIT) {
            parts.mantissa = parts.mantissa << 4U | digit;
            parts.exponent -= hasPoint ? BITS_PER_DIGIT : 0;
        } else {
            parts.hasRest = parts.hasRest || digit != 0;
            parts.exponent += hasPoint ? 0 : BITS_PER_DIGIT;
        }
    }
    parts.exponent += takeExponent(position, end, 'p');
    return parts;
}

// The nearest double; of two equally near ones the even.
double hexadecimalValue(const HexadecimalParts& parts) {
    constexpr Exponent MANTISSA_BITS = std::numeric_limits<double>::digits;
    constexpr Exponent HIGHEST_BIT = std::numeric_limits<double>::max_exponent - 1;
    constexpr Exponent LOWEST_BIT = std::numeric_limits<double>::min_exponent - MANTISSA_BITS;
    constexpr Exponent ALL_BITS = 64;

    if (parts.mantissa == 0)
        return 0.0;
    const auto bits = static_cast<Exponent>(std::bit_width(parts.mantissa));
    const Exponent firstBit = parts.exponent + bits - 1;
    if (firstBit > HIGHEST_BIT)
        throwOutOfRange();
    // Of the mantissa's bits a double keeps those down to lastBit.
    const Exponent lastBit = std::max(firstBit - MANTISSA_BITS + 1, LOWEST_BIT);
    const Exponent lostBits = lastBit - parts.exponent;
    if (lostBits <= 0)
        return std::ldexp(static_cast<double>(parts.mantissa), static_cast<int>(parts.exponent));
    if (lostBits > ALL_BITS)
        throwOutOfRange();

    const std::uint64_t half = std::uint64_t{1} << static_cast<unsigned>(lostBits - 1);
    const std::uint64_t lost = parts.mantissa & (half | (half - 1));
    // In two steps, because 64 bits cannot be shifted out in one.
    std::uint64_t kept = parts.mantissa >> static_cast<unsigned>(lostBits - 1) >> 1U;
    if (lost > half || (lost == half && (parts.hasRest || kept % 2 != 0)))
        ++kept;
    const double value = std::ldexp(static_cast<double>(kept), static_cast<int>(lastBit));
    if (kept == 0 || std::isinf(value))
        throwOutOfRange();
    return value;
}

double unsignedValue(const char* begin, const char* end) {
    const std::string_view text(begin, static_cast<std::size_t>(end - begin));
    if (isHexadecimal(text))
        return hexadecimalValue(readHexadecimal(begin + 2, end));
    const DecimalParts parts = readDecimal(begin, end);
    if (parts.hasDigits)
        return decimalValue(begin, parts);
    if (startsWith(text, "inf"))
        return std::numeric_limits<double>::infinity();
    if (startsWith(text, "nan"))
        return std::numeric_limits<double>::quiet_NaN();
    throw std::invalid_argument("invalid stod argument");
}

// Nearly all numbers are ordinary, and take a third of the time this way. Read from a
// copy, as nothing may be read behind the token.
bool isOrdinaryDouble(std::string_view text, double& value) noexcept {
    constexpr std::size_t MAX_LENGTH = 31;
    char copy[MAX_LENGTH + 1];
    if (text.size() > MAX_LENGTH)
        return false;
    std::memcpy(copy, text.data(), text.size());
    copy[text.size()] = '\n';
    return readOrdinaryDouble(copy, value) == copy + text.size();
}

}  // namespace

int parseInt(std::string_view text) {
    if (text.empty())
        throw std::runtime_error("No integer found");
    const char* end = text.data() + text.size();
    const char* position = skipSpace(text.data(), end);
    const bool isNegative = takeSign(position, end);
    if (position == end || !isDigit(*position))
        throw std::invalid_argument("invalid stoi argument");

    constexpr std::int64_t BEYOND = std::int64_t{1} << 32U;
    std::int64_t value = 0;
    for (; position != end && isDigit(*position); ++position) {
        if (value < BEYOND)
            value = 10 * value + (*position - '0');
    }
    if (isNegative)
        value = -value;
    if (value < std::numeric_limits<std::int32_t>::min() ||
        value > std::numeric_limits<std::int32_t>::max())
        throw std::out_of_range("stoi argument out of range");
    return static_cast<int>(value);
}

int parseInt(const Token& token) {
    if (token.isMissing())
        throw std::runtime_error("No integer found");
    return parseInt(token.view());
}

double parseDouble(const Token& token) {
    if (token.isMissing())
        throw std::runtime_error("No float value found");
    double value;
    if (isOrdinaryDouble(token.view(), value))
        return value;
    const char* position = skipSpace(token.begin, token.end);
    const bool isNegative = takeSign(position, token.end);
    const double magnitude = unsignedValue(position, token.end);
    return isNegative ? -magnitude : magnitude;
}

}  // namespace obj_adapter
