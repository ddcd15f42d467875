// The bodies with which sessions are created and closed and chunks are acknowledged.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "PrivateSide/Api/Json.hpp"

namespace mireth {

/// Every upload is of this version of the playback format.
inline constexpr int playbackDataVersion = 1;

struct SrCreateSessionRequestBody {
    std::string brandId;
    std::string brandDc;
    std::string projectId;
    bool isTestSession = false;
};
Json toJson(const SrCreateSessionRequestBody& body);

struct SrCloseSessionRequestBody {
    std::string brandId;
    std::string projectId;
};
Json toJson(const SrCloseSessionRequestBody& body);

struct SrChunkInfo {
    std::string brandId;
    std::string brandDc;
    std::string projectId;
    std::string sessionId;
    std::int64_t chunkNumber = 0;
    int playbackDataVersion = mireth::playbackDataVersion;
    /// The chunk's end, in milliseconds since the Unix epoch.
    std::int64_t chunkTimestamp = 0;
};
Json toJson(const SrChunkInfo& info);

enum class SrResponseStatus { success, throttled, error };
/// "SUCCESS", "THROTTLED" or "ERROR".
std::string_view rawValue(SrResponseStatus status) noexcept;

struct SrSessionInfo {
    std::string sessionId;
    /// An ISO 8601 time stamp; its key on the wire is "sessionStartTime".
    std::string sessionStartTimeISO;
    std::string creationDataCenter;
    bool isTestSession = false;
};

struct SrSessionResponse {
    SrResponseStatus status = SrResponseStatus::error;
    SrSessionInfo sessionInfo;
};

struct SrCloseSessionResponse {
    SrResponseStatus status = SrResponseStatus::error;
};

struct SrRecordPlaybackResponse {
    std::optional<SrResponseStatus> status;
};

}  // namespace mireth
