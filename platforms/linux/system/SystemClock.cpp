#include "platforms/linux/system/SystemClock.hpp"

#include <time.h>

#include <cstdint>

namespace mireth::platform {

namespace {

std::int64_t nanoseconds(clockid_t clock) {
    timespec time{};
    clock_gettime(clock, &time);
    return static_cast<std::int64_t>(time.tv_sec) * 1'000'000'000 + time.tv_nsec;
}

}  // namespace

Date SystemClock::now() const {
    return Date::fromNanoseconds(nanoseconds(CLOCK_REALTIME));
}

double SystemClock::uptimeSeconds() const {
    return static_cast<double>(nanoseconds(CLOCK_BOOTTIME)) / 1e9;
}

}  // namespace mireth::platform
