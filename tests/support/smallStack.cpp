#include "support/smallStack.h"

#include <gtest/gtest.h>

#if defined(__linux__)
#include <pthread.h>
#endif

namespace obj_adapter::test {

#if defined(__linux__)

namespace {

#if defined(__SANITIZE_ADDRESS__)
// Its frames are several times as large.
constexpr std::size_t STACK_SIZE = 4 * SMALL_STACK;
#else
constexpr std::size_t STACK_SIZE = SMALL_STACK;
#endif

void* callCode(void* code) {
    (*static_cast<const std::function<void()>*>(code))();
    return nullptr;
}

}  // namespace

void runWithSmallStack(const std::function<void()>& code) {
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    ASSERT_EQ(pthread_attr_setstacksize(&attributes, STACK_SIZE), 0);
    pthread_t thread;
    const int failure =
        pthread_create(&thread, &attributes, &callCode,
                       const_cast<void*>(static_cast<const void*>(&code)));  // only called
    pthread_attr_destroy(&attributes);
    ASSERT_EQ(failure, 0);
    pthread_join(thread, nullptr);
}

#else

void runWithSmallStack(const std::function<void()>& code) {
    code();
}

#endif

}  // namespace obj_adapter::test
