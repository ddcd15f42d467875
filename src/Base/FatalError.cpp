#include "MirethVex/Base/FatalError.hpp"

#include <cstdio>
#include <cstdlib>

namespace mireth {

void fatalError(std::string_view message) noexcept {
    std::fprintf(stderr, "Fatal error: %.*s\n", static_cast<int>(message.size()), message.data());
    std::fflush(stderr);
    std::abort();
}

}  // namespace mireth
