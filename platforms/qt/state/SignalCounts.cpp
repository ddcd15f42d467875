#include "platforms/qt/state/SignalCounts.hpp"

#include <iterator>
#include <utility>

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
    for (auto entry = kept_.begin(); entry != kept_.end();) {
        const bool wasSeen = std::exchange(entry->second.wasSeen, false);
        entry = wasSeen ? std::next(entry) : kept_.erase(entry);
    }
}

}  // namespace mireth::qt
