// The memory of a picture, apart from the heap.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

namespace mireth::platform {

/// `count` words of zero, at least one. They go back to the system at once with the last copy: in the heap
/// they would stay with the process, two or three pictures of a megabyte and more each. Null when there is no
/// memory.
std::shared_ptr<std::uint32_t> mapPixels(std::size_t count) noexcept;

}  // namespace mireth::platform
