#include "MirethVex/Base/AnyCancellable.hpp"

#include "Base/GuardedRun.hpp"

namespace mireth {

void AnyCancellable::cancel() noexcept {
    if (auto action = std::exchange(cancelAction_, nullptr)) {
        runGuarded("the end of a subscription", action);
    }
}

}  // namespace mireth
