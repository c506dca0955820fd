// Decimal numbers to doubles by one wide product with a power of five. Covered by
// tests/obj/decimalConversionTest.cpp and numberParsingTest.cpp.
//
// Method and proofs: Daniel Lemire, Number Parsing at a Gigabyte per Second,
// Software: Practice and Experience 51 (8), 2021; Noble Mushtak and Daniel Lemire,
// Fast Number Parsing Without Fallback, 2023.
#include "obj/decimalConversion.h"

#include <array>
#include <bit>
#include <cstddef>

#if defined(_MSC_VER) && defined(_M_X64)
#include <intrin.h>
#endif

namespace obj_adapter {

namespace {

struct Product {
    std::uint64_t high;
    std::uint64_t low;
};

Product multiply(std::uint64_t a, std::uint64_t b) noexcept {
#if defined(_MSC_VER) && defined(_M_X64)
    Product product{};
    product.low = _umul128(a, b, &product.high);
    return product;
#else
    // Four narrow products; standard C++ has no wide one.
    constexpr unsigned HALF = 32;
    constexpr std::uint64_t LOW_HALF = 0xFFFFFFFF;
    const std::uint64_t aLow = a & LOW_HALF;
    const std::uint64_t aHigh = a >> HALF;
    const std::uint64_t bLow = b & LOW_HALF;
    const std::uint64_t bHigh = b >> HALF;
    const std::uint64_t low = aLow * bLow;
    const std::uint64_t middle = aHigh * bLow + (low >> HALF);
    const std::uint64_t otherMiddle = aLow * bHigh + (middle & LOW_HALF);
    return {aHigh * bHigh + (middle >> HALF) + (otherMiddle >> HALF),
            (otherMiddle << HALF) | (low & LOW_HALF)};
#endif
}

// Beyond these every mantissa of 19 digits gives zero or infinity.
constexpr int LOWEST_POWER = -342;
constexpr int HIGHEST_POWER = 308;

// The 128 highest bits of a power of five, the first of them set.
struct PowerOfFive {
    std::uint64_t high = 0;
    std::uint64_t low = 0;
};

// A whole number in pieces of 32 bits, the lowest first, for the table alone.
constexpr std::size_t WIDE_PIECES = 32;
constexpr unsigned PIECE_BITS = 32;
using WideNumber = std::array<std::uint32_t, WIDE_PIECES>;

constexpr std::uint32_t BASE = 5;

constexpr void multiplyByFive(WideNumber& number) noexcept {
    std::uint64_t carry = 0;
    for (std::uint32_t& piece : number) {
        carry += std::uint64_t{piece} * BASE;
        piece = static_cast<std::uint32_t>(carry);
        carry >>= PIECE_BITS;
    }
}

// Rounds down.
constexpr void divideByFive(WideNumber& number) noexcept {
    std::uint64_t rest = 0;
    for (std::size_t i = number.size(); i-- > 0;) {
        rest = rest << PIECE_BITS | number[i];
        number[i] = static_cast<std::uint32_t>(rest / BASE);
        rest %= BASE;
    }
}

constexpr PowerOfFive highestBits(const WideNumber& number) noexcept {
    std::size_t top = number.size() - 1;
    while (number[top] == 0)
        --top;
    // Five pieces hold 128 bits wherever the first bit stands in the topmost.
    const auto pieceAt = [&](std::size_t below) {
        return std::uint64_t{top >= below ? number[top - below] : 0U};
    };
    const auto shift = static_cast<unsigned>(std::countl_zero(number[top]));
    PowerOfFive bits;
    bits.high =
        (pieceAt(0) << PIECE_BITS | pieceAt(1)) << shift | pieceAt(2) >> (PIECE_BITS - shift);
    bits.low =
        (pieceAt(2) << PIECE_BITS | pieceAt(3)) << shift | pieceAt(4) >> (PIECE_BITS - shift);
    return bits;
}

// Powers of five are cut off behind their bits; their inverses too, but rounded up
// where the power is below 2^64, for which the proofs ask.
constexpr auto makePowersOfFive() noexcept {
    constexpr int LOWEST_ROUNDED_UP = -27;
    std::array<PowerOfFive, HIGHEST_POWER - LOWEST_POWER + 1> powers{};
    WideNumber number{};
    number[0] = 1;
    for (int power = 0; power <= HIGHEST_POWER; ++power) {
        powers[static_cast<std::size_t>(power - LOWEST_POWER)] = highestBits(number);
        multiplyByFive(number);
    }
    // 2^992, more than 128 bits longer than 5^342; dividing again and again rounds
    // down to the same as dividing at once.
    number = {};
    number.back() = 1;
    for (int power = -1; power >= LOWEST_POWER; --power) {
        divideByFive(number);
        PowerOfFive bits = highestBits(number);
        if (power >= LOWEST_ROUNDED_UP && ++bits.low == 0)
            ++bits.high;
        powers[static_cast<std::size_t>(power - LOWEST_POWER)] = bits;
    }
    return powers;
}

constexpr auto POWERS_OF_FIVE = makePowersOfFive();

// floor(log2(10^power)), exactly in the range of the table.
constexpr int binaryExponentOf(int power) noexcept {
    return (217706 * power) >> 16;
}

}  // namespace

bool convertByPowersOfFive(std::uint64_t mantissa, std::int64_t exponent, double& value) noexcept {
    constexpr std::uint64_t ALL_BITS = ~std::uint64_t{0};
    constexpr int STORED_BITS = 52;
    constexpr int EXPONENT_OF_ONE = 1023;
    constexpr int HIGHEST_NORMAL = 2046;
    // The double's bits, one to round by, and two that the product may lack.
    constexpr int BITS_WANTED = STORED_BITS + 3;
    constexpr std::uint64_t BITS_BEHIND = ALL_BITS >> BITS_WANTED;

    if (mantissa == 0 || exponent < LOWEST_POWER || exponent > HIGHEST_POWER)
        return false;
    const int power = static_cast<int>(exponent);
    const int leadingZeros = std::countl_zero(mantissa);
    const std::uint64_t shifted = mantissa << leadingZeros;
    const PowerOfFive& five = POWERS_OF_FIVE[static_cast<std::size_t>(power - LOWEST_POWER)];

    Product product = multiply(shifted, five.high);
    if ((product.high & BITS_BEHIND) == BITS_BEHIND) {
        // The rest of the power may carry into the bits that count.
        const Product rest = multiply(shifted, five.low);
        product.low += rest.high;
        if (product.low < rest.high)
            ++product.high;
        if (product.low == ALL_BITS)
            return false;
    }
    const int upperBit = static_cast<int>(product.high >> 63U);
    const int shift = upperBit + 64 - BITS_WANTED;
    std::uint64_t bits = product.high >> shift;
    const int storedExponent =
        binaryExponentOf(power) + 63 + upperBit - leadingZeros + EXPONENT_OF_ONE;
    if (storedExponent <= 0 || storedExponent > HIGHEST_NORMAL)
        return false;
    // It may lie exactly between two doubles.
    if (product.low <= 1 && (bits & 3U) == 1 && bits << shift == product.high)
        return false;

    bits = (bits + (bits & 1U)) >> 1U;
    // A mantissa that is rounded up to the next power of two carries into the
    // exponent by itself.
    constexpr std::uint64_t HIDDEN_BIT = std::uint64_t{1} << STORED_BITS;
    const std::uint64_t whole =
        (static_cast<std::uint64_t>(storedExponent) << STORED_BITS) + (bits - HIDDEN_BIT);
    if (whole >= static_cast<std::uint64_t>(HIGHEST_NORMAL + 1) << STORED_BITS)
        return false;
    value = std::bit_cast<double>(whole);
    return true;
}

}  // namespace obj_adapter
