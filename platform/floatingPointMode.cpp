// The default floating-point mode. Covered by
// tests/platform/floatingPointModeTest.cpp.
#include "platform/floatingPointMode.h"

namespace obj_adapter::platform {

DefaultFloatingPointMode::DefaultFloatingPointMode() noexcept {
    std::fegetenv(&hostMode);
    std::fesetenv(FE_DFL_ENV);
}

DefaultFloatingPointMode::~DefaultFloatingPointMode() {
    std::fesetenv(&hostMode);
}

DefaultFloatingPointMode::HostInterlude::HostInterlude(DefaultFloatingPointMode* mode) noexcept
    : interrupted(mode) {
    if (interrupted != nullptr)
        std::fesetenv(&interrupted->hostMode);
}

DefaultFloatingPointMode::HostInterlude::~HostInterlude() {
    if (interrupted == nullptr)
        return;
    // What the host changed meanwhile is its own choice and stays.
    std::fegetenv(&interrupted->hostMode);
    std::fesetenv(FE_DFL_ENV);
}

}  // namespace obj_adapter::platform
