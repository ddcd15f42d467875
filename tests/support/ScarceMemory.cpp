#include "support/ScarceMemory.hpp"

#include <cstdlib>
#include <limits>
#include <new>

namespace {

thread_local std::size_t largestAllocation = std::numeric_limits<std::size_t>::max();

void* allocate(std::size_t size) noexcept {
    return size > largestAllocation ? nullptr : std::malloc(size == 0 ? 1 : size);
}

void* allocateOrThrow(std::size_t size) {
    if (void* const memory = allocate(size)) {
        return memory;
    }
    throw std::bad_alloc();
}

}  // namespace

// All forms but those of aligned memory: a sanitizer has forms of its own, and none may meet one of these.

void* operator new(std::size_t size) {
    return allocateOrThrow(size);
}
void* operator new[](std::size_t size) {
    return allocateOrThrow(size);
}
void* operator new(std::size_t size, const std::nothrow_t& /*tag*/) noexcept {
    return allocate(size);
}
void* operator new[](std::size_t size, const std::nothrow_t& /*tag*/) noexcept {
    return allocate(size);
}
void operator delete(void* memory) noexcept {
    std::free(memory);
}
void operator delete[](void* memory) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::size_t /*size*/) noexcept {
    std::free(memory);
}
void operator delete[](void* memory, std::size_t /*size*/) noexcept {
    std::free(memory);
}
void operator delete(void* memory, const std::nothrow_t& /*tag*/) noexcept {
    std::free(memory);
}
void operator delete[](void* memory, const std::nothrow_t& /*tag*/) noexcept {
    std::free(memory);
}

namespace mireth::test {

ScarceMemory::ScarceMemory(std::size_t largest) {
    largestAllocation = largest;
}

ScarceMemory::~ScarceMemory() {
    largestAllocation = std::numeric_limits<std::size_t>::max();
}

}  // namespace mireth::test
