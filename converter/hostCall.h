// Internal: the frame of every call into the host, its message callback and its
// other ones.
#pragma once

#include "platform/floatingPointMode.h"

namespace obj_adapter {

// While it lives, host code runs, with the host's own floating-point mode; then
// the library goes on, also when the host has thrown. The mode is that of the
// running import, which need not be one of the present converter: the host may
// have put a new one in its place.
class HostCall {
public:
    HostCall() noexcept : interlude(platform::DefaultFloatingPointMode::getInnermost()) {}
    ~HostCall();
    HostCall(const HostCall&) = delete;
    HostCall& operator=(const HostCall&) = delete;

private:
    platform::DefaultFloatingPointMode::HostInterlude interlude;
};

}  // namespace obj_adapter
