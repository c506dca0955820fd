// Computing in the default mode inside hosts that have set another.
#include "platform/floatingPointMode.h"

#include <gtest/gtest.h>

#include <bit>
#include <cfenv>
#include <cstdint>
#include <limits>

#if defined(__SSE2__) || defined(_M_X64)
#define HAS_SSE_CONTROL
#include <xmmintrin.h>
#endif

namespace obj_adapter::test {

namespace {

using platform::DefaultFloatingPointMode;

constexpr std::uint64_t THIRD = 0x3FD5555555555555;
constexpr std::uint64_t THIRD_UPWARD = 0x3FD5555555555556;
constexpr std::uint64_t FIFTH = 0x3FC999999999999A;
constexpr std::uint64_t FIFTH_DOWNWARD = 0x3FC9999999999999;
constexpr std::uint64_t HALF_OF_LOWEST_NORMAL = 0x0008000000000000;
constexpr std::uint64_t SIGN = 0x8000000000000000;

// Computed when called, in the mode of that moment: nothing here is known to the
// compiler.
std::uint64_t quotientBits(double dividend, double divisor) {
    volatile double a = dividend;
    volatile double b = divisor;
    volatile double quotient = a / b;
    return std::bit_cast<std::uint64_t>(static_cast<double>(quotient));
}

// A subnormal result of normal numbers.
std::uint64_t subnormalResultBits() {
    return quotientBits(std::numeric_limits<double>::min(), 2.0);
}

// A normal result of a subnormal number.
std::uint64_t subnormalOperandBits() {
    volatile double a = std::numeric_limits<double>::denorm_min();
    volatile double product = a * 0x1p1000;
    return std::bit_cast<std::uint64_t>(static_cast<double>(product));
}

void expectDefaultMode() {
    EXPECT_EQ(std::fegetround(), FE_TONEAREST);
    EXPECT_EQ(quotientBits(1, 3), THIRD);
    EXPECT_EQ(quotientBits(-1, 3), THIRD | SIGN);
    EXPECT_EQ(quotientBits(1, 5), FIFTH);
    EXPECT_EQ(quotientBits(-1, 5), FIFTH | SIGN);
    EXPECT_EQ(subnormalResultBits(), HALF_OF_LOWEST_NORMAL);
    EXPECT_EQ(subnormalOperandBits(), std::bit_cast<std::uint64_t>(0x1p-74));
}

struct RoundingCase {
    const char* title;
    int direction;
    std::uint64_t third;
    std::uint64_t minusThird;
    std::uint64_t fifth;
};

const RoundingCase ROUNDING_CASES[] = {
    {"to nearest", FE_TONEAREST, THIRD, THIRD | SIGN, FIFTH},
    {"upward", FE_UPWARD, THIRD_UPWARD, THIRD | SIGN, FIFTH},
    {"downward", FE_DOWNWARD, THIRD, THIRD_UPWARD | SIGN, FIFTH_DOWNWARD},
    {"toward zero", FE_TOWARDZERO, THIRD, THIRD | SIGN, FIFTH_DOWNWARD},
};

void expectRounding(const RoundingCase& row) {
    EXPECT_EQ(std::fegetround(), row.direction);
    EXPECT_EQ(quotientBits(1, 3), row.third);
    EXPECT_EQ(quotientBits(-1, 3), row.minusThird);
    EXPECT_EQ(quotientBits(1, 5), row.fifth);
}

// Leaves the test program in the mode in which it was.
class FloatingPointMode : public testing::Test {
protected:
    void SetUp() override {
        std::fegetenv(&earlier);
#if defined(HAS_SSE_CONTROL)
        earlierSseControl = _mm_getcsr();
#endif
        std::fesetenv(FE_DFL_ENV);
    }
    void TearDown() override {
        std::fesetenv(&earlier);
#if defined(HAS_SSE_CONTROL)
        _mm_setcsr(earlierSseControl);
#endif
    }

private:
    std::fenv_t earlier;
    unsigned earlierSseControl = 0;
};

}  // namespace

TEST_F(FloatingPointMode, hostsRoundingIsSetAsideAndComesBack) {
    for (const RoundingCase& row : ROUNDING_CASES) {
        SCOPED_TRACE(row.title);
        ASSERT_EQ(std::fesetround(row.direction), 0);
        expectRounding(row);
        {
            const DefaultFloatingPointMode mode;
            expectDefaultMode();
        }
        expectRounding(row);
    }
}

TEST_F(FloatingPointMode, callbackRunsInTheHostsRounding) {
    for (const RoundingCase& row : ROUNDING_CASES) {
        SCOPED_TRACE(row.title);
        ASSERT_EQ(std::fesetround(row.direction), 0);
        {
            DefaultFloatingPointMode mode;
            for (int call = 0; call < 2; ++call) {
                {
                    const DefaultFloatingPointMode::HostInterlude interlude(&mode);
                    expectRounding(row);
                }
                expectDefaultMode();
            }
        }
        expectRounding(row);
    }
}

TEST_F(FloatingPointMode, whatTheCallbackSetsStaysWithTheHost) {
    for (const RoundingCase& row : ROUNDING_CASES) {
        SCOPED_TRACE(row.title);
        std::fesetround(FE_DOWNWARD);
        {
            DefaultFloatingPointMode mode;
            {
                const DefaultFloatingPointMode::HostInterlude interlude(&mode);
                EXPECT_EQ(std::fegetround(), FE_DOWNWARD);
                std::fesetround(row.direction);
            }
            expectDefaultMode();
            {
                const DefaultFloatingPointMode::HostInterlude interlude(&mode);
                expectRounding(row);
            }
        }
        expectRounding(row);
    }
}

// A callback may import again.
TEST_F(FloatingPointMode, modesNest) {
    std::fesetround(FE_UPWARD);
    {
        DefaultFloatingPointMode outer;
        {
            const DefaultFloatingPointMode::HostInterlude interlude(&outer);
            {
                const DefaultFloatingPointMode inner;
                expectDefaultMode();
            }
            EXPECT_EQ(quotientBits(1, 3), THIRD_UPWARD);
        }
        expectDefaultMode();
    }
    EXPECT_EQ(quotientBits(1, 3), THIRD_UPWARD);
}

TEST_F(FloatingPointMode, interludeOfNothingChangesNothing) {
    std::fesetround(FE_UPWARD);
    {
        const DefaultFloatingPointMode::HostInterlude interlude(nullptr);
        EXPECT_EQ(quotientBits(1, 3), THIRD_UPWARD);
        std::fesetround(FE_DOWNWARD);
    }
    EXPECT_EQ(std::fegetround(), FE_DOWNWARD);
    EXPECT_EQ(quotientBits(1, 5), FIFTH_DOWNWARD);
}

TEST_F(FloatingPointMode, exceptionFlagsOfTheHostAreItsOwn) {
    std::feclearexcept(FE_ALL_EXCEPT);
    std::feraiseexcept(FE_INVALID);
    {
        DefaultFloatingPointMode mode;
        EXPECT_EQ(std::fetestexcept(FE_ALL_EXCEPT), 0);
        quotientBits(1, 0);
        EXPECT_EQ(std::fetestexcept(FE_ALL_EXCEPT), FE_DIVBYZERO);
        {
            const DefaultFloatingPointMode::HostInterlude interlude(&mode);
            EXPECT_EQ(std::fetestexcept(FE_ALL_EXCEPT), FE_INVALID);
            std::feraiseexcept(FE_OVERFLOW);
            std::feclearexcept(FE_INVALID);
        }
        quotientBits(1, 0);
    }
    EXPECT_EQ(std::fetestexcept(FE_DIVBYZERO | FE_INVALID | FE_OVERFLOW), FE_OVERFLOW);
}

#if defined(HAS_SSE_CONTROL)

namespace {

constexpr unsigned FLUSH_TO_ZERO = 0x8000;
constexpr unsigned DENORMALS_ARE_ZERO = 0x0040;
constexpr unsigned FLAGS = 0x003F;

}  // namespace

TEST_F(FloatingPointMode, subnormalNumbersAreKeptInsideAndNotByTheHost) {
    const unsigned plain = _mm_getcsr();
    for (const unsigned switches :
         {FLUSH_TO_ZERO, DENORMALS_ARE_ZERO, FLUSH_TO_ZERO | DENORMALS_ARE_ZERO}) {
        SCOPED_TRACE(switches);
        const std::uint64_t hostResult =
            (switches & FLUSH_TO_ZERO) != 0 ? 0 : HALF_OF_LOWEST_NORMAL;
        const std::uint64_t hostProduct =
            (switches & DENORMALS_ARE_ZERO) != 0 ? 0 : std::bit_cast<std::uint64_t>(0x1p-74);
        const auto expectHostMode = [&] {
            EXPECT_EQ(_mm_getcsr() & ~FLAGS, (plain | switches) & ~FLAGS);
            EXPECT_EQ(subnormalResultBits(), hostResult);
            EXPECT_EQ(subnormalOperandBits(), hostProduct);
        };
        _mm_setcsr(plain | switches);
        expectHostMode();
        {
            DefaultFloatingPointMode mode;
            expectDefaultMode();
            {
                const DefaultFloatingPointMode::HostInterlude interlude(&mode);
                expectHostMode();
            }
            expectDefaultMode();
        }
        expectHostMode();
    }
}

// Every combination of direction, switches, unmasked exceptions and flags comes
// back as it was. (Flags stand while their exceptions are unmasked: only a
// computation traps.)
TEST_F(FloatingPointMode, everyBitOfTheHostsControlComesBack) {
    constexpr unsigned ALL_BITS = 0xFFFF;
    for (unsigned control = 0; control <= ALL_BITS; control += 37) {
        unsigned inside = 0;
        unsigned interludes = 0;
        _mm_setcsr(control);
        {
            DefaultFloatingPointMode mode;
            inside = _mm_getcsr();
            {
                const DefaultFloatingPointMode::HostInterlude interlude(&mode);
                interludes = _mm_getcsr();
            }
            inside |= _mm_getcsr();
        }
        const unsigned after = _mm_getcsr();
        _mm_setcsr(0x1F80);
        ASSERT_EQ(inside, 0x1F80U);
        ASSERT_EQ(interludes, control);
        ASSERT_EQ(after, control);
    }
}

TEST_F(FloatingPointMode, trappingHostIsNotTrappedInside) {
    constexpr unsigned DIVISION_BY_ZERO_MASK = 0x0200;
    const unsigned plain = _mm_getcsr();
    _mm_setcsr(plain & ~DIVISION_BY_ZERO_MASK);
    std::uint64_t bits = 0;
    {
        const DefaultFloatingPointMode mode;
        bits = quotientBits(1, 0);
    }
    const unsigned after = _mm_getcsr();
    _mm_setcsr(plain);
    EXPECT_EQ(bits, std::bit_cast<std::uint64_t>(std::numeric_limits<double>::infinity()));
    EXPECT_EQ(after, plain & ~DIVISION_BY_ZERO_MASK);
}

#endif

}  // namespace obj_adapter::test
