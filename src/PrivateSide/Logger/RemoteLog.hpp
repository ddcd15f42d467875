// Sends a sample of the library's error lines to the service, so that failures in the field can be seen.
#pragma once

#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "MirethVex/Platform/Device.hpp"
#include "MirethVex/Platform/InformationDictionary.hpp"
#include "MirethVex/Platform/RandomSource.hpp"
#include "Platform/Async/Task.hpp"
#include "PrivateSide/Api/MApiClient.hpp"
#include "PrivateSide/Api/NetworkStateProvider.hpp"
#include "PrivateSide/Configuration/ClientDetailsProvider.hpp"
#include "PrivateSide/Logger/LogMessagesSampler.hpp"
#include "PrivateSide/Logger/MemoryUseLines.hpp"
#include "PrivateSide/Logger/MirethLog.hpp"

namespace mireth {

/// One for the process. Any thread. The draw and the metadata are taken where `post` is called; the rest
/// happens in the background, and its outcome is dropped.
class RemoteLog final : public RemoteLogPoster {
  public:
    struct ProjectData {
        std::string projectId;
        std::string brandId;
    };
    struct SessionData {
        /// The project's data centre.
        std::string brandDc;
        std::string sessionId;
    };
    struct Environment {
        std::shared_ptr<platform::InformationDictionary> information;
        std::shared_ptr<platform::Device> device;
        std::shared_ptr<const ClientDetailsProvider> clientDetails;
        std::shared_ptr<platform::RandomSource> random;
        Executor background;
    };

    RemoteLog(MirethLog& log, Environment environment);

    /// Asks, once, for what every line says of the client and the device. Apart from the construction, since
    /// the services are the host's and may call the library; lines that are logged before go without it.
    void askServices();

    void initialize(std::shared_ptr<MApiClient> apiClient, std::shared_ptr<NetworkStateProvider> networkState,
                    ProjectData projectData);
    void setSessionData(SessionData sessionData);

    void post(LogLevel level, LogTag tag, const std::string& message, const AdditionalInfo& additionalInfo,
              bool ignoreSampling) override;

    /// Removes the client and the network state and draws with a new sampler; project and session data stay.
    void resetState();

    /// Replace the client or the sampler.
    void mockApiClient(std::shared_ptr<MApiClient> api);
    void mockLogSampler(std::shared_ptr<const LogMessagesSampler> logSampler);

    /// The line as a JSON object. The metadata never overwrite the message or the tag; an additional entry
    /// overwrites whatever has its key.
    std::string generateLog(const std::string& message, LogTag tag,
                            const AdditionalInfo& additionalInfo) const;

  private:
    using Entries = std::vector<std::pair<std::string, std::string>>;

    static Entries buildStaticMetadata(const Environment& environment);
    Entries buildMetadata() const;
    static Task<void> send(std::shared_ptr<MApiClient> apiClient, std::string text, std::string level);

    const Environment environment_;
    const MemoryUseLines memoryUse_;

    mutable std::mutex mutex_;
    Entries staticMetadata_;                                // guarded by mutex_
    std::optional<ProjectData> projectData_;                // guarded by mutex_
    std::optional<SessionData> sessionData_;                // guarded by mutex_
    std::shared_ptr<MApiClient> apiClient_;                 // guarded by mutex_
    std::shared_ptr<NetworkStateProvider> networkState_;    // guarded by mutex_
    std::shared_ptr<const LogMessagesSampler> logSampler_;  // guarded by mutex_
};

}  // namespace mireth
