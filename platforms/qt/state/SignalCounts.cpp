#include "platforms/qt/state/SignalCounts.hpp"

#include "platforms/qt/objects/PassEntries.hpp"

namespace mireth::qt {

std::uint64_t SignalCounts::of(const QObject& sender, std::span<const int> indexes) {
    Kept& kept = kept_[&sender];
    kept.wasSeen = true;
    if (kept.counter == nullptr || !kept.counter->isOf(sender)) {
        kept.counter = std::make_unique<SignalCounter>(sender, indexes);
    }
    return kept.counter->count();
}

void SignalCounts::endPass() {
    eraseUnseen(kept_);
}

}  // namespace mireth::qt
