// Internal: two doubles that are computed with at once. Covered by
// tests/platform/doublePairTest.cpp.
#pragma once

#if defined(__SSE2__) || defined(_M_X64)
#include <emmintrin.h>
#define OBJ_ADAPTER_PAIRS_IN_REGISTERS 1
#else
#define OBJ_ADAPTER_PAIRS_IN_REGISTERS 0
#endif

namespace obj_adapter::platform {

// Each operation gives, in both places, the bits that it gives for a double: what
// every x86-64 processor does in one register, other processors do one by one.
class DoublePair {
public:
#if OBJ_ADAPTER_PAIRS_IN_REGISTERS
    explicit DoublePair(double both) noexcept : pair(_mm_set1_pd(both)) {}

    static DoublePair load(const double* two) noexcept {
        return DoublePair(_mm_loadu_pd(two));
    }

    friend DoublePair operator+(DoublePair a, DoublePair b) noexcept {
        return DoublePair(_mm_add_pd(a.pair, b.pair));
    }
    friend DoublePair operator-(DoublePair a, DoublePair b) noexcept {
        return DoublePair(_mm_sub_pd(a.pair, b.pair));
    }
    friend DoublePair operator*(DoublePair a, DoublePair b) noexcept {
        return DoublePair(_mm_mul_pd(a.pair, b.pair));
    }

    // A bit for each place, the first one lowest, where that holds.
    friend unsigned areEqual(DoublePair a, DoublePair b) noexcept {
        return static_cast<unsigned>(_mm_movemask_pd(_mm_cmpeq_pd(a.pair, b.pair)));
    }

    // The same where no value is negative or not a number.
    friend unsigned areNotNegative(DoublePair a, DoublePair b, DoublePair c) noexcept {
        const __m128d zero = _mm_setzero_pd();
        return static_cast<unsigned>(_mm_movemask_pd(
            _mm_and_pd(_mm_and_pd(_mm_cmpge_pd(a.pair, zero), _mm_cmpge_pd(b.pair, zero)),
                       _mm_cmpge_pd(c.pair, zero))));
    }

private:
    explicit DoublePair(__m128d ownPair) noexcept : pair(ownPair) {}

    __m128d pair;
#else
    explicit DoublePair(double both) noexcept : DoublePair(both, both) {}

    static DoublePair load(const double* two) noexcept {
        return DoublePair(two[0], two[1]);
    }

    friend DoublePair operator+(DoublePair a, DoublePair b) noexcept {
        return DoublePair(a.first + b.first, a.second + b.second);
    }
    friend DoublePair operator-(DoublePair a, DoublePair b) noexcept {
        return DoublePair(a.first - b.first, a.second - b.second);
    }
    friend DoublePair operator*(DoublePair a, DoublePair b) noexcept {
        return DoublePair(a.first * b.first, a.second * b.second);
    }

    friend unsigned areEqual(DoublePair a, DoublePair b) noexcept {
        return (a.first == b.first ? 1U : 0U) | (a.second == b.second ? 2U : 0U);
    }

    friend unsigned areNotNegative(DoublePair a, DoublePair b, DoublePair c) noexcept {
        const unsigned first = a.first >= 0.0 && b.first >= 0.0 && c.first >= 0.0 ? 1U : 0U;
        const unsigned second = a.second >= 0.0 && b.second >= 0.0 && c.second >= 0.0 ? 2U : 0U;
        return first | second;
    }

private:
    DoublePair(double ownFirst, double ownSecond) noexcept : first(ownFirst), second(ownSecond) {}

    double first;
    double second;
#endif
};

}  // namespace obj_adapter::platform
