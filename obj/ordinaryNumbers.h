// Internal: numbers as nearly every file writes them, read from the text in one
// pass. What these functions do not take is no fault: whoever asks reads the line
// again with LineTokens and obj/numberParsing.h, which say what it means.
#pragma once

#include "obj/decimalConversion.h"

#include <cstddef>
#include <cstdint>

namespace obj_adapter {

// The value of a digit, and more than 9 for every other character.
inline unsigned digitOf(char character) noexcept {
    return static_cast<unsigned char>(character) - unsigned{'0'};
}

inline bool isBlank(char character) noexcept {
    return character == ' ' || character == '\t';
}

inline const char* skipBlanks(const char* position) noexcept {
    while (isBlank(*position))
        ++position;
    return position;
}

// Behind the line feed of a line that has nothing more than blanks; null if it has.
inline const char* skipEndOfLine(const char* position) noexcept {
    position = skipBlanks(position);
    position += *position == '\r' ? 1 : 0;
    return *position == '\n' ? position + 1 : nullptr;
}

inline bool isLineFeed(char character) noexcept {
    return character == '\n';
}

// Behind the line feed of a line whose statement is complete at position; null where
// the next line belongs to this one. What stands there is ignored.
inline const char* skipRestOfLine(const char* position) noexcept {
    if (isLineFeed(*position))
        return position + 1;
    if (position[0] == '\r' && isLineFeed(position[1]))
        return position + 2;
    while (!isLineFeed(*position))
        ++position;
    return position[-1] == '\\' ? nullptr : position + 1;
}

inline bool isEndOfToken(char character) noexcept {
    return isBlank(character) || character == '\r' || isLineFeed(character);
}

// Moves behind a run of digits, each of which is put behind those of the value.
//
// Several in a turn, without a jump between: files are read in 0.96 of the time.
template <typename Number>
inline const char* readDigits(const char* position, Number& value) noexcept {
    constexpr unsigned DECIMAL = 10;
    constexpr std::ptrdiff_t DIGITS_OF_A_TURN = 4;
    for (;; position += DIGITS_OF_A_TURN) {
        for (std::ptrdiff_t place = 0; place < DIGITS_OF_A_TURN; ++place) {
            const unsigned digit = digitOf(position[place]);
            if (digit >= DECIMAL)
                return position + place;
            value = DECIMAL * value + digit;
        }
    }
}

// [-] digits [. digits] [e [+|-] digits], as parseDouble reads them: at most 19
// digits after leading zeros. Moves behind the number; null where there is none
// such, or where the value takes a closer look. The text must hold a character that
// is no digit, and a minus must not be its last.
// NOLINTNEXTLINE(readability-function-cognitive-complexity): one pass, part by part
inline const char* readOrdinaryDouble(const char* position, double& value) noexcept {
    constexpr unsigned DECIMAL = 10;
    constexpr std::ptrdiff_t MAX_EXPONENT_DIGITS = 3;

    const bool isNegative = *position == '-';
    position += isNegative ? 1 : 0;
    const char* begin = position;
    std::uint64_t mantissa = 0;
    unsigned digit;
    position = readDigits(position, mantissa);
    std::ptrdiff_t digitCount = position - begin;
    std::int64_t exponent = 0;
    if (*position == '.') {
        const char* point = position++;
        position = readDigits(position, mantissa);
        exponent = point + 1 - position;
        digitCount -= exponent;
    }
    if (digitCount == 0)
        return nullptr;
    if (digitCount > MAX_MANTISSA_DIGITS) {
        for (; *begin == '0' || *begin == '.'; ++begin)
            digitCount -= *begin == '0' ? 1 : 0;
        if (digitCount > MAX_MANTISSA_DIGITS)
            return nullptr;
    }
    if (*position == 'e' || *position == 'E') {
        ++position;
        const bool isExponentNegative = *position == '-';
        position += isExponentNegative || *position == '+' ? 1 : 0;
        begin = position;
        int written = 0;
        for (; (digit = digitOf(*position)) < DECIMAL && position - begin < MAX_EXPONENT_DIGITS;
             ++position)
            written = static_cast<int>(DECIMAL) * written + static_cast<int>(digit);
        if (position == begin)
            return nullptr;
        exponent += isExponentNegative ? -written : written;
    }
    double magnitude;
    if (!convertDecimal(mantissa, exponent, magnitude))
        return nullptr;
    value = isNegative ? -magnitude : magnitude;
    return position;
}

}  // namespace obj_adapter
