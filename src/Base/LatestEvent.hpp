// Streams of events that remember the last one.
#pragma once

#include <optional>

#include "MirethVex/Base/Published.hpp"

namespace mireth {

/// Empty before the first event. A new subscriber first gets the one that it remembers.
template <class T>
using LatestEvent = Published<std::optional<T>>;

/// Its events, the one that it remembers first.
template <class T>
AnyPublisher<T> events(const AnyPublisher<std::optional<T>>& latestEvent) {
    return latestEvent.compactMap([](const std::optional<T>& event) { return event; });
}

/// Its events from now on. What it remembers may be older than what the subscriber asks for.
template <class T>
AnyPublisher<T> newEvents(const AnyPublisher<std::optional<T>>& latestEvent) {
    return events(latestEvent.dropFirst());
}

}  // namespace mireth
