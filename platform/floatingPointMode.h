// Internal: computing in the default floating-point mode inside a host that may
// have set another.
#pragma once

#include <cfenv>

namespace obj_adapter::platform {

// Rounding to nearest, no trapping, subnormal numbers kept, from construction
// to destruction; then the host's own mode again, its exception flags included.
class DefaultFloatingPointMode {
public:
    DefaultFloatingPointMode() noexcept;
    ~DefaultFloatingPointMode();
    DefaultFloatingPointMode(const DefaultFloatingPointMode&) = delete;
    DefaultFloatingPointMode& operator=(const DefaultFloatingPointMode&) = delete;

    // The one made last that still lives; null when there is none.
    static DefaultFloatingPointMode* getInnermost() noexcept;

    // The host's mode, for as long as its callback runs inside an import.
    class HostInterlude {
    public:
        explicit HostInterlude(DefaultFloatingPointMode* mode) noexcept;
        ~HostInterlude();
        HostInterlude(const HostInterlude&) = delete;
        HostInterlude& operator=(const HostInterlude&) = delete;

    private:
        DefaultFloatingPointMode* interrupted;  // null: nothing to restore
    };

private:
    void leaveHostMode() noexcept;
    void restoreHostMode() const noexcept;

    DefaultFloatingPointMode* const outer;
    std::fenv_t hostMode;
    unsigned hostSseControl = 0;  // where there is one
};

}  // namespace obj_adapter::platform
