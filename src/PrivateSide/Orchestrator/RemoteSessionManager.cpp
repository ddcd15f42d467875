#include "PrivateSide/Orchestrator/RemoteSessionManager.hpp"

#include <utility>

#include "MirethVex/Base/Date.hpp"
#include "PrivateSide/Configuration/SessionIdentifier.hpp"

namespace mireth {

namespace {

constexpr double lowestDraw = 1.0;
constexpr double highestDraw = 100.0;

}  // namespace

RemoteSessionManager::RemoteSessionManager(MirethLog& log, std::shared_ptr<MApiClient> apiClient,
                                           std::shared_ptr<RemoteLog> remoteLogger, UniformReal uniformReal)
    : log_(log),
      apiClient_(std::move(apiClient)),
      remoteLogger_(std::move(remoteLogger)),
      uniformReal_(std::move(uniformReal)),
      memoryUse_(log, "PrivateSide/Orchestrator/RemoteSessionManager") {}

Task<RemoteInitResult> RemoteSessionManager::initialize() {
    return fetchConfiguration(shared_from_this());
}

Task<RemoteCreateResult> RemoteSessionManager::createSession(SrConfigurationResponse srConfiguration) {
    return create(shared_from_this(), std::move(srConfiguration));
}

Task<RemoteCloseResult> RemoteSessionManager::closeSession(RemoteSessionInfo info) {
    return close(shared_from_this(), std::move(info));
}

Task<RemoteInitResult> RemoteSessionManager::fetchConfiguration(Self self) {
    self->log_.info(LogTag::network, "Initializing RemoteSessionManager");
    auto configuration = co_await self->apiClient_->getSrConfiguration();
    if (!configuration) {
        self->log_.error(LogTag::network, "Failed to initialize a session.",
                         {{"reason", text(configuration.error())}});
        co_return std::unexpected(configuration.error());
    }
    self->log_.info(LogTag::network, "Successfully Initialized " + description(configuration->data));
    co_return std::move(configuration->data);
}

Task<RemoteCreateResult> RemoteSessionManager::create(Self self, SrConfigurationResponse srConfiguration) {
    if (!isSrEnabled(srConfiguration.srEnabled)) {
        self->log_.info(
            LogTag::network,
            "Session creation was rejected because Session Replay is not enabled for this project");
        co_return RemoteCreateResult::of(RemoteCreateResult::Kind::sessionReplayNotEnabled);
    }
    if (!self->isSampled(srConfiguration.samplingRate)) {
        self->log_.info(LogTag::network, "Session creation rejected due to sampling");
        co_return RemoteCreateResult::of(RemoteCreateResult::Kind::samplingRejected);
    }
    const auto response = co_await self->apiClient_->createSession();
    if (!response) {
        self->log_.error(LogTag::network, "API request for creating session failed.",
                         {{"reason", text(response.error())}});
        co_return RemoteCreateResult::fail(text(response.error()));
    }
    if (response->data.status != SrResponseStatus::success) {
        const std::string status(rawValue(response->data.status));
        self->log_.error(LogTag::network, "Failed to initialize mireth SDK.", {{"statusCode", status}});
        co_return RemoteCreateResult::errorResponse(status);
    }
    co_return self->accept(response->data.sessionInfo, srConfiguration);
}

RemoteCreateResult RemoteSessionManager::accept(const SrSessionInfo& sessionInfo,
                                                const SrConfigurationResponse& srConfiguration) {
    if (!isValidSessionIdentifier(sessionInfo.sessionId)) {
        const std::string reason = "The service answered with a session id that cannot be used.";
        log_.error(LogTag::network, "API request for creating session failed.", {{"reason", reason}});
        return RemoteCreateResult::fail(reason);
    }
    log_.info(LogTag::network, "Successfully created session.", {{"sessionId", sessionInfo.sessionId}});
    RemoteLog::SessionData sessionData;
    sessionData.brandDc = srConfiguration.dataCenter;
    sessionData.sessionId = sessionInfo.sessionId;
    remoteLogger_->setSessionData(std::move(sessionData));
    const auto startTime = Date::fromIso8601(sessionInfo.sessionStartTimeISO);
    if (!startTime) {
        return RemoteCreateResult::of(RemoteCreateResult::Kind::failParseDate);
    }
    return RemoteCreateResult::success({sessionInfo.sessionId, startTime->toTimestampMillis()});
}

Task<RemoteCloseResult> RemoteSessionManager::close(Self self, RemoteSessionInfo info) {
    const auto response = co_await self->apiClient_->closeSession(info.sessionId);
    RemoteCloseResult result;
    if (response) {
        self->log_.info(LogTag::network, "Successfully closed session.");
    } else {
        self->log_.error(LogTag::network, "API request for closing session failed.",
                         {{"reason", text(response.error())}});
        result.kind = RemoteCloseResult::Kind::fail;
        result.reason = text(response.error());
    }
    co_return result;
}

bool RemoteSessionManager::isSrEnabled(const std::optional<SREnablement>& srEnabled) {
    return srEnabled == SREnablement::enabledForMobileOnly ||
           srEnabled == SREnablement::enabledForWebAndMobile;
}

bool RemoteSessionManager::isSampled(double samplingRate) const {
    return uniformReal_(lowestDraw, highestDraw) <= samplingRate;
}

}  // namespace mireth
