// An ingestion service in memory: answers as it is told and keeps what came in.
#pragma once

#include <functional>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "MirethVex/Platform/HttpClient.hpp"

namespace mireth::test {

/// One upload, taken apart.
struct UploadedChunk {
    nlohmann::ordered_json timeline;
    nlohmann::ordered_json info;
    std::string video;
};

class IngestionFake {
  public:
    using Answer = std::function<platform::HttpResult(const platform::HttpRequest&)>;

    static platform::HttpResult ok(const std::string& body) {
        platform::UrlResponse response;
        response.status = 200;
        response.headers["x-transaction-id"] = "T";
        response.headers["x-request-id"] = "R";
        response.body = body;
        return response;
    }
    static platform::HttpResult failure(int status) {
        platform::UrlResponse response;
        response.status = status;
        return response;
    }
    static platform::HttpResult unreachable() {
        return std::unexpected(platform::TransportError{"connection refused"});
    }

    Answer configuration = [this](const auto&) {
        return ok(R"({"srEnabled":")" + enablement + R"(","dataCenter":"us-west.example","samplingRate":)" +
                  std::to_string(samplingRate) + R"(,"customSignal":[]})");
    };
    Answer create = [this](const auto&) {
        const std::string id = sessionIdPrefix + std::to_string(++created);
        return ok(R"({"status":"SUCCESS","sessionInfo":{"sessionId":")" + id +
                  R"(","sessionStartTime":"2023-11-14T22:13:20.000Z","creationDataCenter":"us-west",)" +
                  R"("isTestSession":false}})");
    };
    Answer close = [this](const auto&) {
        ++closed;
        return ok(R"({"status":"SUCCESS"})");
    };
    Answer record = [](const auto&) { return ok(R"({"status":"SUCCESS"})"); };
    Answer log = [](const auto&) { return ok(R"({"status":"Success"})"); };

    std::string enablement = "SR_ENABLED_FOR_MOBILE_ONLY";
    int samplingRate = 100;
    std::string sessionIdPrefix = "S";
    int created = 0;
    int closed = 0;
    std::vector<UploadedChunk> chunks;

    /// The ids of the interactions and signals in all chunks, in their order.
    std::vector<std::string> interactionsAndSignals() const {
        std::vector<std::string> ids;
        for (const auto& chunk : chunks) {
            for (const auto& event : chunk.timeline) {
                const auto details = event.value("eventDetails", nlohmann::ordered_json::object());
                for (const char* key : {"interactionId", "signalId"}) {
                    if (details.contains(key)) {
                        ids.push_back(details[key]);
                    }
                }
            }
        }
        return ids;
    }
    std::vector<std::string> logBodies;
    /// "GET …config", "POST …create" and so on, in order.
    std::vector<std::string> calls;

    platform::HttpResult operator()(const platform::HttpRequest& request) {
        const auto has = [&request](const char* part) { return request.url.find(part) != std::string::npos; };
        if (has("/sessionReplayConfig")) {
            calls.emplace_back("configuration");
            return configuration(request);
        }
        if (has("/sessions/create")) {
            calls.emplace_back("create");
            return create(request);
        }
        if (has("/close-session")) {
            calls.emplace_back("close");
            return close(request);
        }
        if (has("/record-playback")) {
            calls.emplace_back("record");
            chunks.push_back(takeApart(request.body.value_or("")));
            return record(request);
        }
        if (has("/WRTarrowEngine/Ajax.php")) {
            logBodies.push_back(request.body.value_or(""));
            return log(request);
        }
        return failure(404);
    }

  private:
    static std::string part(const std::string& body, const std::string& name) {
        const auto head = body.find("name=\"chunk[" + name + "]\"");
        const auto begin = body.find("\r\n\r\n", head) + 4;
        const std::string boundary = body.substr(0, body.find("\r\n"));
        return body.substr(begin, body.find("\r\n" + boundary, begin) - begin);
    }
    static UploadedChunk takeApart(const std::string& body) {
        return {nlohmann::ordered_json::parse(part(body, "timeline")),
                nlohmann::ordered_json::parse(part(body, "info")), part(body, "playback")};
    }
};

}  // namespace mireth::test
