// A shortage of memory, for tests of what is done about it. A test program that uses it links
// ScarceMemory.cpp, which puts the process's allocation functions in its place.
#pragma once

#include <cstddef>

namespace mireth::test {

/// While one lives, an allocation of more than `largest` bytes on this thread throws std::bad_alloc. One at a
/// time.
class ScarceMemory {
  public:
    explicit ScarceMemory(std::size_t largest);
    ~ScarceMemory();
    ScarceMemory(const ScarceMemory&) = delete;
    ScarceMemory& operator=(const ScarceMemory&) = delete;
};

}  // namespace mireth::test
