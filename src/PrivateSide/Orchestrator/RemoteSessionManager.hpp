// The orchestrator's door to the session-replay service.
#pragma once

#include <functional>
#include <memory>
#include <optional>

#include "Platform/Async/Task.hpp"
#include "PrivateSide/Api/MApiClient.hpp"
#include "PrivateSide/Logger/MemoryUseLines.hpp"
#include "PrivateSide/Logger/MirethLog.hpp"
#include "PrivateSide/Logger/RemoteLog.hpp"
#include "PrivateSide/Orchestrator/RemoteResults.hpp"

namespace mireth {

/// Fetches the project's configuration, decides whether a session may be created, creates and closes it. Main
/// thread; an operation suspends while the network is used. No operation throws; every outcome is logged.
class RemoteSessionManager : public std::enable_shared_from_this<RemoteSessionManager> {
  public:
    /// Draws uniformly from the closed range between its arguments.
    using UniformReal = std::function<double(double, double)>;

    RemoteSessionManager(MirethLog& log, std::shared_ptr<MApiClient> apiClient,
                         std::shared_ptr<RemoteLog> remoteLogger, UniformReal uniformReal);

    Task<RemoteInitResult> initialize();
    /// Sends nothing when the project or the draw forbids the session.
    Task<RemoteCreateResult> createSession(SrConfigurationResponse srConfiguration);
    Task<RemoteCloseResult> closeSession(RemoteSessionInfo info);

  private:
    using Self = std::shared_ptr<RemoteSessionManager>;
    static Task<RemoteInitResult> fetchConfiguration(Self self);
    static Task<RemoteCreateResult> create(Self self, SrConfigurationResponse srConfiguration);
    static Task<RemoteCloseResult> close(Self self, RemoteSessionInfo info);

    static bool isSrEnabled(const std::optional<SREnablement>& srEnabled);
    /// The rate is a percentage: 100 always records, anything below 1 never does.
    bool isSampled(double samplingRate) const;
    RemoteCreateResult accept(const SrSessionInfo& sessionInfo,
                              const SrConfigurationResponse& srConfiguration);

    MirethLog& log_;
    const std::shared_ptr<MApiClient> apiClient_;
    const std::shared_ptr<RemoteLog> remoteLogger_;
    const UniformReal uniformReal_;
    const MemoryUseLines memoryUse_;
};

}  // namespace mireth
