// What `MirethSR::stopRecording` answers.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "MirethVex/Base/Export.hpp"

namespace mireth {

struct SessionCloseResult {
    enum class Kind {
        /// The session is closed, here and at the service.
        success,
        /// The session is closed here, but the service could not be told; `reason` says why.
        fail,
        /// No session is running, or one is still starting.
        notStarted,
        /// `initializeProject` has not succeeded.
        notInitialized
    };

    Kind kind = Kind::fail;
    std::optional<std::string> reason;

    bool operator==(const SessionCloseResult&) const = default;

    static SessionCloseResult fail(std::optional<std::string> reason) {
        return {Kind::fail, std::move(reason)};
    }
    static SessionCloseResult of(Kind kind) { return {kind, std::nullopt}; }
};

/// The case's name.
MIRETH_EXPORT std::string_view caseName(SessionCloseResult::Kind kind) noexcept;

}  // namespace mireth
