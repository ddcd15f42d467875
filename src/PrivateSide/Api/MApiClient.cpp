#include "PrivateSide/Api/MApiClient.hpp"

#include <boost/url/encode.hpp>
#include <boost/url/rfc/pchars.hpp>
#include <nlohmann/json.hpp>
#include <utility>

#include "PrivateSide/Api/LogHost.hpp"
#include "PrivateSide/Api/UrlParser.hpp"
#include "PrivateSide/Configuration/UnknownValue.hpp"

namespace mireth {

namespace {

namespace keys = platform::information_keys;

constexpr const char* ingestionPath = "/mobile-sr-ingestion/v1/sessions/";

/// One segment of a path, whatever characters it has.
std::string pathSegment(const std::string& text) {
    return boost::urls::encode(text, boost::urls::pchars);
}

}  // namespace

ServiceOrigins ServiceOrigins::defaults() {
    return {MIRETH_SR_ENDPOINT, MIRETH_KELDA_ENDPOINT};
}

MApiClient::MApiClient(MirethLog& log, std::string brandId, std::string projectId, Environment environment)
    : log_(log),
      brandId_(std::move(brandId)),
      projectId_(std::move(projectId)),
      environment_(std::move(environment)),
      srApiBasedUrl_(information(keys::srEndpointUrl, ServiceOrigins::defaults().sessionReplay)),
      keldaApiBasedUrl_(information(keys::keldaEndpointUrl, ServiceOrigins::defaults().kelda)),
      memoryUse_(log, "PrivateSide/Api/MApiClient") {
    installDefaultParameters();
}

Task<ApiResponseResult<SrSessionResponse>> MApiClient::createSession() {
    return runOn(environment_.background, sendCreateSession(shared_from_this()));
}

Task<ApiResponseResult<SrCloseSessionResponse>> MApiClient::closeSession(std::string sessionId) {
    return runOn(environment_.background, sendCloseSession(shared_from_this(), std::move(sessionId)));
}

Task<ApiResponseResult<SrRecordPlaybackResponse>> MApiClient::recordPlayback(
    std::string sessionId, std::int64_t chunkNumber, std::vector<SrTimelineEvent> timelineEvents,
    std::filesystem::path playbackURL, std::int64_t playbackTimestamp) {
    SrChunkInfo info;
    info.brandId = brandId_;
    info.projectId = projectId_;
    info.sessionId = std::move(sessionId);
    info.chunkNumber = chunkNumber;
    info.chunkTimestamp = playbackTimestamp;
    return runOn(environment_.background, sendPlayback(shared_from_this(), std::move(info),
                                                       std::move(timelineEvents), std::move(playbackURL)));
}

Task<ApiResponseResult<SrConfigurationResponse>> MApiClient::getSrConfiguration() {
    return runOn(environment_.background, fetchSrConfiguration(shared_from_this()));
}

Task<ApiResponseResult<PostLogResponse>> MApiClient::postLog(std::string message, std::string level) {
    PostLogRequestBody body;
    body.message = std::move(message);
    body.levelName = std::move(level);
    return runOn(environment_.background, sendLog(shared_from_this(), std::move(body)));
}

MApiClient::Result<SrSessionResponse> MApiClient::sendCreateSession(Self self) {
    ApiResponseResult<SrSessionResponse> result = std::unexpected(ApiError::brandDcIsNotPresent);
    if (const auto brandDc = self->getBrandDc()) {
        SrCreateSessionRequestBody body;
        body.brandId = self->brandId_;
        body.brandDc = *brandDc;
        body.projectId = self->projectId_;
        const Json json = toJson(body);
        result = co_await self->environment_.network->post<SrSessionResponse>(
            self->srApiBasedUrl_ + ingestionPath + "create", &json);
    }
    if (!result) {
        self->log_.error(LogTag::network, "Unexpected error during session creation",
                         {{"error", text(result.error())}});
    }
    co_return result;
}

MApiClient::Result<SrCloseSessionResponse> MApiClient::sendCloseSession(Self self, std::string sessionId) {
    SrCloseSessionRequestBody body;
    body.brandId = self->brandId_;
    body.projectId = self->projectId_;
    const Json json = toJson(body);
    auto result = co_await self->environment_.network->post<SrCloseSessionResponse>(
        self->srApiBasedUrl_ + ingestionPath + pathSegment(sessionId) + "/close-session", &json);
    if (!result) {
        self->log_.error(LogTag::network, "Unexpected error during session closure",
                         {{"sessionId", sessionId}, {"error", text(result.error())}});
    }
    co_return result;
}

MApiClient::Result<SrRecordPlaybackResponse> MApiClient::sendPlayback(
    Self self, SrChunkInfo info, std::vector<SrTimelineEvent> timelineEvents,
    std::filesystem::path playbackURL) {
    ApiResponseResult<SrRecordPlaybackResponse> result = std::unexpected(ApiError::brandDcIsNotPresent);
    if (auto brandDc = self->getBrandDc()) {
        info.brandDc = std::move(*brandDc);
        MediaData video;
        video.fileURL = std::move(playbackURL);
        video.contentType = "video/mp4";
        FormData parts;
        parts.emplace_back("timeline", std::make_shared<const Json>(toJson(timelineEvents)));
        parts.emplace_back("info", std::make_shared<const Json>(toJson(info)));
        parts.emplace_back("playback", std::move(video));
        result = co_await self->environment_.network->putWithFormData<SrRecordPlaybackResponse>(
            self->srApiBasedUrl_ + ingestionPath + "record-playback", parts, "chunk");
    }
    if (result) {
        // Asked for only where the line is written: it is as long as the upload without the video.
        self->log_.info(LogTag::network, "Playback successfully recorded.",
                        [&] { return AdditionalInfo{{"timelineEvents", jsonText(toJson(timelineEvents))}}; });
    } else {
        self->log_.error(LogTag::network, "Unexpected error during playback recording",
                         {{"sessionId", info.sessionId},
                          {"chunkNumber", std::to_string(info.chunkNumber)},
                          {"error", text(result.error())}});
    }
    co_return result;
}

MApiClient::Result<SrConfigurationResponse> MApiClient::fetchSrConfiguration(Self self) {
    auto result = co_await self->environment_.network->get<SrConfigurationResponse>(
        self->keldaApiBasedUrl_ + "/app-insights/v1/" + pathSegment(self->brandId_) + "/" +
        pathSegment(self->projectId_) + "/sessionReplayConfig");
    if (!result) {
        self->log_.error(
            LogTag::network, "Unexpected error while getting SR configuration",
            {{"brandId", self->brandId_}, {"projectId", self->projectId_}, {"error", text(result.error())}});
        co_return result;
    }
    self->setBrandDc(UrlParser::extractBrandDc(result->data.dataCenter));
    // The response's header fields are not the caller's business.
    ApiResponse<SrConfigurationResponse> configuration;
    configuration.data = std::move(result->data);
    co_return configuration;
}

MApiClient::Result<PostLogResponse> MApiClient::sendLog(Self self, PostLogRequestBody body) {
    ApiResponseResult<PostLogResponse> result = std::unexpected(ApiError::brandDcIsNotPresent);
    if (const auto brandDc = self->getBrandDc()) {
        if (const auto url = logUrl(*brandDc, self->keldaApiBasedUrl_)) {
            TextPairs fields;
            fields.emplace_back("Message", std::move(body.message));
            fields.emplace_back("LevelName", std::move(body.levelName));
            QueryItems query;
            query.emplace_back("action", "ClientLog");
            result = co_await self->environment_.network->postWithUrlEncodedBody<PostLogResponse>(
                *url, fields, query, ErrorPosting::off);
        } else {
            result = std::unexpected(ApiError::invalidURL);
        }
    }
    if (!result) {
        self->log_.error(LogTag::network, "Unexpected error while posting log",
                         {{"error", text(result.error())}}, false);
    }
    co_return result;
}

std::string MApiClient::information(std::string_view key, std::string otherwise) const {
    return environment_.information->string(key).value_or(std::move(otherwise));
}

void MApiClient::installDefaultParameters() const {
    QueryItems items;
    items.emplace_back("M_CLIENTVERSION", information(keys::vexVersion, unknownValue));
    items.emplace_back("M_DEVICEOS", environment_.systemVersion);
    items.emplace_back("M_CLIENTTYPE", rawValue(environment_.clientDetails->getClientType()));
    items.emplace_back("M_ZoneID", projectId_);
    items.emplace_back("M_BID", brandId_);
    environment_.network->setDefaultParameters(std::move(items));
}

ApiResult<std::string> MApiClient::getBrandDc() const {
    const std::lock_guard lock(mutex_);
    if (!brandDc_ || brandDc_->empty()) {
        return std::unexpected(ApiError::brandDcIsNotPresent);
    }
    return *brandDc_;
}

void MApiClient::setBrandDc(std::string brandDc) {
    const std::lock_guard lock(mutex_);
    brandDc_ = std::move(brandDc);
}

}  // namespace mireth
