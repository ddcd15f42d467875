// Reads and writes the JSON of the wire models.
#include <array>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <utility>

#include "PrivateSide/Api/JSONCodec.hpp"
#include "PrivateSide/Api/Models/PostLogModels.hpp"
#include "PrivateSide/Api/Models/SrConfigurationResponse.hpp"
#include "PrivateSide/Api/Models/SrSessionModels.hpp"

namespace mireth {

namespace {

template <class Case, std::size_t count>
using CaseNames = std::array<std::pair<Case, std::string_view>, count>;

constexpr CaseNames<SrResponseStatus, 3> responseStatuses{{
    {SrResponseStatus::success, "SUCCESS"},
    {SrResponseStatus::throttled, "THROTTLED"},
    {SrResponseStatus::error, "ERROR"},
}};

constexpr CaseNames<SREnablement, 5> enablements{{
    {SREnablement::unknown, "SR_UNKNOWN"},
    {SREnablement::disabled, "SR_DISABLED"},
    {SREnablement::enabledForWebOnly, "SR_ENABLED_FOR_WEB_ONLY"},
    {SREnablement::enabledForMobileOnly, "SR_ENABLED_FOR_MOBILE_ONLY"},
    {SREnablement::enabledForWebAndMobile, "SR_ENABLED_FOR_WEB_AND_MOBILE"},
}};

constexpr CaseNames<PostLogResponseStatus, 2> postLogStatuses{{
    {PostLogResponseStatus::Success, "Success"},
    {PostLogResponseStatus::Failure, "Failure"},
}};

template <class Case, std::size_t count>
std::string_view nameOf(const CaseNames<Case, count>& names, Case wanted) noexcept {
    for (const auto& [value, name] : names) {
        if (value == wanted) {
            return name;
        }
    }
    return "";
}

/// The value under `key`, read as a `T`; throws with the key and the reason when it is absent or of another
/// type.
template <class T>
T require(const ParsedJson& object, const char* key) {
    try {
        return object.at(key).get<T>();
    } catch (const ParsedJson::exception& error) {
        throw std::runtime_error("\"" + std::string(key) + "\": " + error.what());
    }
}

template <class Case, std::size_t count>
Case requireCase(const ParsedJson& object, const char* key, const CaseNames<Case, count>& names) {
    const auto text = require<std::string>(object, key);
    for (const auto& [value, name] : names) {
        if (name == text) {
            return value;
        }
    }
    throw std::runtime_error("\"" + std::string(key) + "\" has the unknown value \"" + text + "\".");
}

bool isPresent(const ParsedJson& object, const char* key) {
    const auto found = object.find(key);
    return found != object.end() && !found->is_null();
}

/// Parses the text and reads a model from it; every failure becomes words.
template <class Model, class Read>
std::expected<Model, std::string> decodeWith(std::string_view text, Read read) {
    try {
        const ParsedJson json = parseUntrustedJson(text);
        if (!json.is_object()) {
            return std::unexpected("The answer is not a JSON object.");
        }
        return read(json);
    } catch (const std::exception& error) {
        return std::unexpected(std::string(error.what()));
    }
}

}  // namespace

std::string_view rawValue(SrResponseStatus status) noexcept {
    return nameOf(responseStatuses, status);
}

std::string_view rawValue(SREnablement enablement) noexcept {
    return nameOf(enablements, enablement);
}

std::string description(const SrConfigurationResponse& configuration) {
    return "SrConfigurationResponse(srEnabled: " +
           (configuration.srEnabled ? std::string(rawValue(*configuration.srEnabled)) : std::string("nil")) +
           ", dataCenter: " + configuration.dataCenter +
           ", samplingRate: " + jsonText(jsonNumber(configuration.samplingRate)) +
           ", customSignal: " + jsonText(Json(configuration.customSignal)) + ")";
}

Json toJson(const SrCreateSessionRequestBody& body) {
    Json json = Json::object();
    json["brandId"] = body.brandId;
    json["brandDc"] = body.brandDc;
    json["projectId"] = body.projectId;
    json["isTestSession"] = body.isTestSession;
    return json;
}

Json toJson(const SrCloseSessionRequestBody& body) {
    Json json = Json::object();
    json["brandId"] = body.brandId;
    json["projectId"] = body.projectId;
    return json;
}

Json toJson(const SrChunkInfo& info) {
    Json json = Json::object();
    json["brandId"] = info.brandId;
    json["brandDc"] = info.brandDc;
    json["projectId"] = info.projectId;
    json["sessionId"] = info.sessionId;
    json["chunkNumber"] = info.chunkNumber;
    json["playbackDataVersion"] = info.playbackDataVersion;
    json["chunkTimestamp"] = info.chunkTimestamp;
    return json;
}

template <>
std::expected<SrSessionResponse, std::string> decodeModel(std::string_view text) {
    return decodeWith<SrSessionResponse>(text, [](const ParsedJson& json) {
        SrSessionResponse response;
        response.status = requireCase(json, "status", responseStatuses);
        const auto info = require<ParsedJson>(json, "sessionInfo");
        response.sessionInfo.sessionId = require<std::string>(info, "sessionId");
        response.sessionInfo.sessionStartTimeISO = require<std::string>(info, "sessionStartTime");
        response.sessionInfo.creationDataCenter = require<std::string>(info, "creationDataCenter");
        response.sessionInfo.isTestSession = require<bool>(info, "isTestSession");
        return response;
    });
}

template <>
std::expected<SrCloseSessionResponse, std::string> decodeModel(std::string_view text) {
    return decodeWith<SrCloseSessionResponse>(text, [](const ParsedJson& json) {
        return SrCloseSessionResponse{requireCase(json, "status", responseStatuses)};
    });
}

template <>
std::expected<SrRecordPlaybackResponse, std::string> decodeModel(std::string_view text) {
    return decodeWith<SrRecordPlaybackResponse>(text, [](const ParsedJson& json) {
        SrRecordPlaybackResponse response;
        if (isPresent(json, "status")) {
            response.status = requireCase(json, "status", responseStatuses);
        }
        return response;
    });
}

template <>
std::expected<SrConfigurationResponse, std::string> decodeModel(std::string_view text) {
    return decodeWith<SrConfigurationResponse>(text, [](const ParsedJson& json) {
        SrConfigurationResponse response;
        if (isPresent(json, "srEnabled")) {
            response.srEnabled = requireCase(json, "srEnabled", enablements);
        }
        response.dataCenter = require<std::string>(json, "dataCenter");
        response.samplingRate = require<double>(json, "samplingRate");
        response.customSignal =
            require<std::vector<std::map<std::string, std::string>>>(json, "customSignal");
        return response;
    });
}

template <>
std::expected<PostLogResponse, std::string> decodeModel(std::string_view text) {
    return decodeWith<PostLogResponse>(text, [](const ParsedJson& json) {
        return PostLogResponse{requireCase(json, "status", postLogStatuses)};
    });
}

}  // namespace mireth
