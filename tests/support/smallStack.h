// Running code with little stack, as hosts' worker threads have it.
#pragma once

#include <cstddef>
#include <functional>

namespace obj_adapter::test {

// What the code may use, on top of what a sanitizer's own frames take.
inline constexpr std::size_t SMALL_STACK = std::size_t{64} * 1024;

// Runs the code on a thread of its own with a stack of that size, and waits for
// it. Where threads cannot be made so small, it is called as it is.
void runWithSmallStack(const std::function<void()>& code);

}  // namespace obj_adapter::test
