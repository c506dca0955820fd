// Internal: decimal digits and a power of ten to the nearest double.
#pragma once

#include <cstdint>

namespace obj_adapter {

// 64 bits hold every number of so many digits.
constexpr int MAX_MANTISSA_DIGITS = 19;

// The powers of ten that a double holds exactly.
constexpr int MAX_EXACT_POWER_OF_TEN = 22;
constexpr double EXACT_POWERS_OF_TEN[MAX_EXACT_POWER_OF_TEN + 1] = {
    1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,  1e10, 1e11,
    1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};

// Every whole number up to here is a double.
constexpr std::uint64_t MAX_EXACT_MANTISSA = std::uint64_t{1} << 53U;

// The double nearest to mantissa * 10^exponent, of two equally near ones the
// even. False, and no value, where this method cannot tell, or where the result
// would not be a normal number: the caller asks a slower one then.
bool convertByPowersOfFive(std::uint64_t mantissa, std::int64_t exponent, double& value) noexcept;

// The same; numbers as files have them take one division or multiplication,
// which rounds correctly as both operands are exact.
inline bool convertDecimal(std::uint64_t mantissa, std::int64_t exponent, double& value) noexcept {
    if (mantissa <= MAX_EXACT_MANTISSA) {
        if (exponent <= 0 && exponent >= -MAX_EXACT_POWER_OF_TEN) {
            value = static_cast<double>(mantissa) / EXACT_POWERS_OF_TEN[-exponent];
            return true;
        }
        if (exponent > 0 && exponent <= MAX_EXACT_POWER_OF_TEN) {
            value = static_cast<double>(mantissa) * EXACT_POWERS_OF_TEN[exponent];
            return true;
        }
    }
    return convertByPowersOfFive(mantissa, exponent, value);
}

}  // namespace obj_adapter
