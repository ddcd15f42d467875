// Where the one session is in its life.
#pragma once

#include <variant>

#include "PrivateSide/Configuration/RemoteSessionInfo.hpp"

namespace mireth {

struct SessionState {
    /// A remote session exists and recording runs.
    struct Started {
        RemoteSessionInfo session;
        bool operator==(const Started&) const = default;
    };
    /// A remote session exists and recording is paused.
    struct Paused {
        RemoteSessionInfo session;
        bool operator==(const Paused&) const = default;
    };
    struct Stopped {
        bool operator==(const Stopped&) const = default;
    };
    /// A start is in progress.
    struct Starting {
        bool operator==(const Starting&) const = default;
    };

    std::variant<Stopped, Starting, Started, Paused> value;
    bool operator==(const SessionState&) const = default;

    bool isStopped() const noexcept { return std::holds_alternative<Stopped>(value); }
    bool isStarted() const noexcept { return std::holds_alternative<Started>(value); }
    bool isPaused() const noexcept { return std::holds_alternative<Paused>(value); }

    /// The session of a started or paused state; null otherwise.
    const RemoteSessionInfo* session() const noexcept {
        if (const auto* started = std::get_if<Started>(&value)) {
            return &started->session;
        }
        const auto* paused = std::get_if<Paused>(&value);
        return paused == nullptr ? nullptr : &paused->session;
    }

    /// The case's name.
    const char* name() const noexcept {
        constexpr const char* names[] = {"stopped", "starting", "started", "paused"};
        return names[value.index()];
    }
};

}  // namespace mireth
