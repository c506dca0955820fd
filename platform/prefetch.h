// Internal: asks for memory that is needed soon, so that less is waited for it then.
#pragma once

#include <cstddef>
#include <cstdint>

#if defined(__SSE2__) || defined(_M_X64)
#define OBJ_ADAPTER_HAS_PREFETCH
#include <xmmintrin.h>
#endif

namespace obj_adapter::platform {

// Of the cache line so many bytes behind the address. Changes nothing but the time, so
// there need not be anything.
inline void prefetchBehind([[maybe_unused]] const void* address,
                           [[maybe_unused]] std::size_t bytes) noexcept {
#if defined(OBJ_ADAPTER_HAS_PREFETCH)
    const auto place = reinterpret_cast<std::uintptr_t>(address) + bytes;
    // A pointer may not be moved to where there is nothing; a number may.
    // NOLINTNEXTLINE(performance-no-int-to-ptr)
    _mm_prefetch(reinterpret_cast<const char*>(place), _MM_HINT_T0);
#endif
}

}  // namespace obj_adapter::platform
