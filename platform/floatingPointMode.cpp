// The default floating-point mode. Covered by
// tests/platform/floatingPointModeTest.cpp.
#include "platform/floatingPointMode.h"

#if defined(__SSE2__) || defined(_M_X64)
#define OBJ_ADAPTER_HAS_SSE_CONTROL
#include <xmmintrin.h>
#endif

namespace obj_adapter::platform {

namespace {

// Doubles are computed by the SSE unit on x86-64. C runtimes differ in whether
// FE_DFL_ENV and fesetenv cover its two switches that replace subnormal numbers
// by zero, as the C standard knows nothing of them; so its register is saved and
// set by hand besides.
#if defined(OBJ_ADAPTER_HAS_SSE_CONTROL)
// As the processor starts: all exceptions masked, to nearest, subnormals kept.
constexpr unsigned DEFAULT_SSE_CONTROL = 0x1F80;

unsigned getSseControl() noexcept {
    return _mm_getcsr();
}
void setSseControl(unsigned control) noexcept {
    _mm_setcsr(control);
}
#else
constexpr unsigned DEFAULT_SSE_CONTROL = 0;

unsigned getSseControl() noexcept {
    return 0;
}
void setSseControl(unsigned) noexcept {}
#endif

DefaultFloatingPointMode* innermost = nullptr;

}  // namespace

DefaultFloatingPointMode* DefaultFloatingPointMode::getInnermost() noexcept {
    return innermost;
}

void DefaultFloatingPointMode::leaveHostMode() noexcept {
    std::fegetenv(&hostMode);
    hostSseControl = getSseControl();
    std::fesetenv(FE_DFL_ENV);
    setSseControl(DEFAULT_SSE_CONTROL);
}

void DefaultFloatingPointMode::restoreHostMode() const noexcept {
    std::fesetenv(&hostMode);
    setSseControl(hostSseControl);
}

DefaultFloatingPointMode::DefaultFloatingPointMode() noexcept : outer(innermost) {
    innermost = this;
    leaveHostMode();
}

DefaultFloatingPointMode::~DefaultFloatingPointMode() {
    restoreHostMode();
    innermost = outer;
}

DefaultFloatingPointMode::HostInterlude::HostInterlude(DefaultFloatingPointMode* mode) noexcept
    : interrupted(mode) {
    if (interrupted != nullptr)
        interrupted->restoreHostMode();
}

DefaultFloatingPointMode::HostInterlude::~HostInterlude() {
    // What the host changed meanwhile is its own choice and stays.
    if (interrupted != nullptr)
        interrupted->leaveHostMode();
}

}  // namespace obj_adapter::platform
