#include "platforms/linux/media/MappedPixels.hpp"

#include <sys/mman.h>

#include <limits>
#include <new>

namespace mireth::platform {

std::shared_ptr<std::uint32_t> mapPixels(std::size_t count) noexcept {
    if (count == 0 || count > std::numeric_limits<std::size_t>::max() / sizeof(std::uint32_t)) {
        return nullptr;
    }
    const std::size_t bytes = count * sizeof(std::uint32_t);
    // All of it is drawn on: at once it costs less than page by page.
    void* const memory =
        ::mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_POPULATE, -1, 0);
    if (memory == MAP_FAILED) {
        return nullptr;
    }
    try {
        return {static_cast<std::uint32_t*>(memory),
                [bytes](std::uint32_t* words) { ::munmap(words, bytes); }};
    } catch (const std::bad_alloc&) {
        // The deleter has run.
        return nullptr;
    }
}

}  // namespace mireth::platform
