// Part of a program: makes it one that the system gives no threads to.
#include <pthread.h>

#include <cerrno>

// NOLINTNEXTLINE(readability-inconsistent-declaration-parameter-name)
[[gnu::visibility("default")]] int pthread_create(pthread_t* /*thread*/, const pthread_attr_t* /*attributes*/,
                                                  void* (*)(void*), void* /*argument*/) noexcept {
    return EAGAIN;
}
