// What the remote session manager answers, and how it reads on the public side.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <variant>

#include "MirethVex/PublicSide/DataModels/Enums/SessionCloseResult.hpp"
#include "MirethVex/PublicSide/DataModels/Enums/SessionStartResult.hpp"
#include "PrivateSide/Api/ApiResponse.hpp"
#include "PrivateSide/Api/Models/SrConfigurationResponse.hpp"
#include "PrivateSide/Configuration/RemoteSessionInfo.hpp"

namespace mireth {

/// The project's configuration, or why it could not be had.
using RemoteInitResult = ApiResult<SrConfigurationResponse>;

struct RemoteCreateResult {
    enum class Kind {
        success,
        alreadyExists,
        failParseDate,
        errorResponseFromTheApi,
        fail,
        samplingRejected,
        sessionReplayNotEnabled
    };

    Kind kind = Kind::fail;
    /// Set for success.
    RemoteSessionInfo session;
    /// The service's status, for `errorResponseFromTheApi`.
    std::string statusCode;
    /// Why, for `fail`.
    std::optional<std::string> reason;

    static RemoteCreateResult success(RemoteSessionInfo session);
    static RemoteCreateResult errorResponse(std::string statusCode);
    static RemoteCreateResult fail(std::string reason);
    static RemoteCreateResult of(Kind kind);

    SessionStartResult asSessionStartResult() const;
};

/// The result in words, for log lines.
std::string description(const RemoteCreateResult& result);

struct RemoteCloseResult {
    enum class Kind { success, noSession, fail };

    Kind kind = Kind::success;
    std::optional<std::string> reason;

    SessionCloseResult asSessionCloseResult() const;
};

}  // namespace mireth
