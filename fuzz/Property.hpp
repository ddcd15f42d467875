// What a fuzzed input must not break beyond crashing. A broken property ends the process, which is what the
// fuzzer and the replaying test look for.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string_view>

namespace mireth::fuzz {

inline void require(bool holds, const char* property) {
    if (!holds) {
        std::fprintf(stderr, "Broken: %s\n", property);
        std::abort();
    }
}

inline std::string_view textOf(const std::uint8_t* data, std::size_t size) {
    return {reinterpret_cast<const char*>(data), size};
}

}  // namespace mireth::fuzz

/// The entry that libFuzzer calls: one input; returns 0.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);
