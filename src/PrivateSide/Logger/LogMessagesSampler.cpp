#include "PrivateSide/Logger/LogMessagesSampler.hpp"

#include <utility>

#include "MirethVex/Base/FatalError.hpp"

namespace mireth {

LogMessagesSampler::LogMessagesSampler(RandomProvider randomProvider, std::int64_t samplingRate)
    : randomProvider_(std::move(randomProvider)), samplingRate_(samplingRate) {}

LogMessagesSampler::RandomProvider LogMessagesSampler::uniform(
    std::shared_ptr<platform::RandomSource> random) {
    return [random = std::move(random)](std::int64_t bound) -> std::int64_t {
        if (bound < 0) {
            fatalError("The upper bound of a random number is negative");
        }
        return bound == 0 ? 0 : random->uniformBelow(bound);
    };
}

bool LogMessagesSampler::check() const {
    return randomProvider_(100) <= samplingRate_;
}

}  // namespace mireth
