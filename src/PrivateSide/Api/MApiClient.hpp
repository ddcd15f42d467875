// The client of the session-replay, configuration and log services.
#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "MirethVex/Platform/InformationDictionary.hpp"
#include "Platform/Async/Task.hpp"
#include "PrivateSide/Api/Models/PostLogModels.hpp"
#include "PrivateSide/Api/Models/SrConfigurationResponse.hpp"
#include "PrivateSide/Api/Models/SrSessionModels.hpp"
#include "PrivateSide/Api/Models/SrTimelineEvent.hpp"
#include "PrivateSide/Api/NetworkManager.hpp"
#include "PrivateSide/Configuration/ClientDetailsProvider.hpp"
#include "PrivateSide/Logger/MemoryUseLines.hpp"

namespace mireth {

/// Where the services are when the information dictionary does not say, set when the library is built.
struct ServiceOrigins {
    std::string sessionReplay;
    std::string kelda;
    static ServiceOrigins defaults();
};

/// Knows every address and body of the services. One client an initialised project. Any thread; an operation
/// may be awaited on any executor and does its work on the background one. No operation throws; each failure
/// is logged here once.
class MApiClient : public std::enable_shared_from_this<MApiClient> {
  public:
    struct Environment {
        std::shared_ptr<NetworkManager> network;
        std::shared_ptr<platform::InformationDictionary> information;
        std::shared_ptr<const ClientDetailsProvider> clientDetails;
        /// The operating system's version.
        std::string systemVersion;
        Executor background;
    };

    /// Also replaces the query items that every request of the process carries.
    MApiClient(MirethLog& log, std::string brandId, std::string projectId, Environment environment);

    Task<ApiResponseResult<SrSessionResponse>> createSession();
    Task<ApiResponseResult<SrCloseSessionResponse>> closeSession(std::string sessionId);
    Task<ApiResponseResult<SrRecordPlaybackResponse>> recordPlayback(
        std::string sessionId, std::int64_t chunkNumber, std::vector<SrTimelineEvent> timelineEvents,
        std::filesystem::path playbackURL, std::int64_t playbackTimestamp);
    /// A success also sets the brand's data centre.
    Task<ApiResponseResult<SrConfigurationResponse>> getSrConfiguration();
    /// Nothing that is logged on the way is posted itself.
    Task<ApiResponseResult<PostLogResponse>> postLog(std::string message, std::string level);

  private:
    template <class R>
    using Result = Task<ApiResponseResult<R>>;
    using Self = std::shared_ptr<MApiClient>;

    static Result<SrSessionResponse> sendCreateSession(Self self);
    static Result<SrCloseSessionResponse> sendCloseSession(Self self, std::string sessionId);
    static Result<SrRecordPlaybackResponse> sendPlayback(Self self, SrChunkInfo info,
                                                         std::vector<SrTimelineEvent> timelineEvents,
                                                         std::filesystem::path playbackURL);
    static Result<SrConfigurationResponse> fetchSrConfiguration(Self self);
    static Result<PostLogResponse> sendLog(Self self, PostLogRequestBody body);

    std::string information(std::string_view key, std::string otherwise) const;
    void installDefaultParameters() const;
    /// The brand's data centre; fails while none is known.
    ApiResult<std::string> getBrandDc() const;
    void setBrandDc(std::string brandDc);

    MirethLog& log_;
    const std::string brandId_;
    const std::string projectId_;
    const Environment environment_;
    const std::string srApiBasedUrl_;
    const std::string keldaApiBasedUrl_;
    const MemoryUseLines memoryUse_;

    mutable std::mutex mutex_;
    std::optional<std::string> brandDc_;  // guarded by mutex_
};

}  // namespace mireth
