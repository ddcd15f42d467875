// In batches, so that uploads get their turn in between.
#include "service/Retention.hpp"

namespace mireth::receiver {
namespace {

constexpr std::int64_t batch = 50;
constexpr std::int64_t dayMillis = 86'400'000;
// A session that something came in of lately is being recorded: it goes last, when it is quiet.
constexpr std::int64_t livelyMillis = 600'000;

}  // namespace

std::int64_t Retention::removeBatch(std::int64_t millis, std::int64_t most) {
    const auto ids = services_.store.quietSince(millis, most);
    if (!ids) {
        services_.environment.report(ids.error());
        return 0;
    }
    if (ids->empty()) {
        return 0;
    }
    const auto removed = services_.store.removeSessions(*ids);
    if (!removed) {
        services_.environment.report(removed.error());
        return 0;
    }
    return *removed;
}

std::int64_t Retention::removeOld(std::int64_t days) {
    const auto millis = services_.environment.wallMillis() - days * dayMillis;
    std::int64_t all = 0;
    while (const auto removed = removeBatch(millis, batch)) {
        all += removed;
    }
    if (const auto cleared = services_.store.removeStrayLogLines(millis); !cleared) {
        services_.environment.report(cleared.error());
    }
    return all;
}

std::int64_t Retention::removeSurplus(std::uint64_t bytes) {
    const auto millis = services_.environment.wallMillis() - livelyMillis;
    std::int64_t all = 0;
    for (;;) {
        const auto stats = services_.store.stats();
        if (!stats) {
            services_.environment.report(stats.error());
            return all;
        }
        if (stats->videoBytes + stats->databaseBytes <= bytes) {
            return all;
        }
        // One by one: what a session takes is known only once it is gone.
        const auto removed = removeBatch(millis, 1);
        if (removed == 0) {
            return all;
        }
        all += removed;
    }
}

std::int64_t Retention::enforce() {
    const auto& rules = services_.config.retention;
    std::int64_t removed = rules.days ? removeOld(*rules.days) : 0;
    removed += rules.bytes ? removeSurplus(*rules.bytes) : 0;
    // Also what viewers removed.
    if (const auto finished = services_.store.finishRemovals(); !finished) {
        services_.environment.report(finished.error());
    }
    if (removed > 0) {
        services_.metrics.countExpired(removed);
        services_.environment.report("removed " + std::to_string(removed) +
                                     " sessions by the rules of retention");
    }
    return removed;
}

}  // namespace mireth::receiver
