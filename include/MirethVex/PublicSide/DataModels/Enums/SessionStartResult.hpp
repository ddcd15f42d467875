// What `MirethSR::startRecording` answers.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "MirethVex/Base/Export.hpp"
#include "MirethVex/PublicSide/DataModels/ReplaySessionInfo.hpp"

namespace mireth {

struct SessionStartResult {
    enum class Kind {
        /// A session was created and is being recorded; `message` and `info` are set.
        success,
        /// The session could not be created; `reason` says why, if it is known.
        fail,
        /// A session is starting, running or paused; it goes on.
        alreadyStarted,
        /// `initializeProject` has not succeeded.
        notInitialized,
        /// The service records a sample of the sessions only, and this one is not in it.
        samplingRejected,
        /// The project does not have session replay switched on for mobile.
        sessionReplayNotEnabled,
        /// Only phones are recorded.
        unsupportedDevice
    };

    Kind kind = Kind::fail;
    std::string message;
    std::optional<ReplaySessionInfo> info;
    std::optional<std::string> reason;

    bool operator==(const SessionStartResult&) const = default;

    static SessionStartResult success(std::string message, ReplaySessionInfo info) {
        return {Kind::success, std::move(message), std::move(info), std::nullopt};
    }
    static SessionStartResult fail(std::optional<std::string> reason) {
        return {Kind::fail, {}, std::nullopt, std::move(reason)};
    }
    static SessionStartResult of(Kind kind) { return {kind, {}, std::nullopt, std::nullopt}; }
};

/// The case's name.
MIRETH_EXPORT std::string_view caseName(SessionStartResult::Kind kind) noexcept;

}  // namespace mireth
