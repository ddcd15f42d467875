// Routing, and the endpoints of sessions and configurations. Chunk uploads are in RecordPlayback, log lines
// in ClientLogs.
#include "ingestion/Endpoints.hpp"

#include <algorithm>
#include <array>
#include <nlohmann/json.hpp>
#include <span>
#include <string_view>

#include "base/JsonText.hpp"
#include "base/ObjectReader.hpp"
#include "exchange/Answers.hpp"
#include "exchange/RequestTarget.hpp"
#include "exchange/SmallExchange.hpp"
#include "ingestion/RecordPlayback.hpp"

namespace mireth::receiver {
namespace {

using Json = nlohmann::ordered_json;

constexpr std::size_t longestJsonBody = std::size_t{16} * 1024;
// Of one project. Far more than its clients come to; nothing else bounds it when strangers know of it.
constexpr UploadRate creationRate{.perSecond = 20, .burst = 200};
constexpr const char* errorBody = R"({"status":"ERROR"})";

// "*" stands for any one segment.
constexpr std::array<std::string_view, 4> createPath{"mobile-sr-ingestion", "v1", "sessions", "create"};
constexpr std::array<std::string_view, 5> closePath{"mobile-sr-ingestion", "v1", "sessions", "*",
                                                    "close-session"};
constexpr std::array<std::string_view, 4> recordPath{"mobile-sr-ingestion", "v1", "sessions",
                                                     "record-playback"};
constexpr std::array<std::string_view, 5> configurationPath{"app-insights", "v1", "*", "*",
                                                            "sessionReplayConfig"};
constexpr std::array<std::string_view, 2> logPath{"WRTarrowEngine", "Ajax.php"};

bool matches(const std::vector<std::string>& segments, std::span<const std::string_view> path) {
    return std::ranges::equal(segments, path, [](const std::string& segment, std::string_view expected) {
        return expected == "*" || segment == expected;
    });
}

Route refusal(int status) {
    return fixedRoute("other", {.status = status, .body = errorBody});
}

Route wrongMethod(const char* endpoint, const char* right) {
    return fixedRoute(endpoint, {.status = 405, .body = errorBody, .headers = {{"Allow", right}}});
}

}  // namespace

Route Endpoints::begin(const RequestHead& head, const RequestTarget& target) {
    const auto& path = target.segments;
    if (matches(path, createPath)) {
        return head.method == "POST" ? Route{"create", createSession()} : wrongMethod("create", "POST");
    }
    if (matches(path, closePath)) {
        return head.method == "POST" ? Route{"close", closeSession(path[3])} : wrongMethod("close", "POST");
    }
    if (matches(path, recordPath)) {
        return head.method == "PUT" ? Route{"record", recordPlayback(head.contentType)}
                                    : wrongMethod("record", "PUT");
    }
    if (matches(path, configurationPath)) {
        return head.method == "GET" ? Route{"configuration", configuration(path[2], path[3])}
                                    : wrongMethod("configuration", "GET");
    }
    if (matches(path, logPath) && target.queryItem("action") == "ClientLog") {
        return head.method == "POST" ? Route{"log", clientLog(target)} : wrongMethod("log", "POST");
    }
    return refusal(404);
}

std::unique_ptr<Exchange> Endpoints::createSession() {
    return std::make_unique<SmallExchange>(longestJsonBody, errorBody,
                                           [this](const std::string& body) { return answerCreate(body); });
}

std::unique_ptr<Exchange> Endpoints::closeSession(const std::string& sessionId) {
    return std::make_unique<SmallExchange>(
        longestJsonBody, errorBody,
        [this, sessionId](const std::string& body) { return answerClose(sessionId, body); });
}

std::unique_ptr<Exchange> Endpoints::recordPlayback(const std::string& contentType) {
    return std::make_unique<RecordPlayback>(services_, shared_, contentType);
}

std::unique_ptr<Exchange> Endpoints::configuration(const std::string& brandId, const std::string& projectId) {
    return std::make_unique<SmallExchange>(0, errorBody, [this, brandId, projectId](const std::string&) {
        return answerConfiguration(brandId, projectId);
    });
}

std::unique_ptr<Exchange> Endpoints::clientLog(const RequestTarget& target) {
    return std::make_unique<SmallExchange>(
        ClientLogs::longestBody, ClientLogs::refusal,
        [this, brandId = target.queryItem("M_BID").value_or(""),
         projectId = target.queryItem("M_ZoneID").value_or("")](const std::string& body) {
            return logs_.answer(brandId, projectId, body);
        });
}

// Clients decode the session's members whatever the status, so a refusal carries them too, empty.
Answer Endpoints::refuseSession(int httpStatus, const std::string& why, const char* status) const {
    services_.environment.report("a session was refused: " + why);
    const Json body{{"status", status},
                    {"sessionInfo",
                     {{"sessionId", ""},
                      {"sessionStartTime", ""},
                      {"creationDataCenter", ""},
                      {"isTestSession", false}}}};
    return {.status = httpStatus, .body = jsonText(body)};
}

Answer Endpoints::answerCreate(const std::string& body) {
    const auto json = parseJson(body, {.bytes = longestJsonBody});
    if (!json) {
        return refuseSession(400, "its body is " + json.error());
    }
    ObjectReader reader(*json);
    Session session{.id = services_.environment.newIdentifier(),
                    .brandId = reader.text("brandId"),
                    .brandDc = reader.text("brandDc"),
                    .projectId = reader.text("projectId"),
                    .isTestSession = reader.boolean("isTestSession"),
                    .startMillis = services_.environment.wallMillis(),
                    .closedMillis = std::nullopt};
    if (const auto complaint = reader.complaint(); !complaint.empty()) {
        return refuseSession(400, complaint);
    }
    const auto* const project = services_.config.find(session.brandId, session.projectId);
    if (project == nullptr) {
        return refuseSession(200, "unknown project " + session.brandId + "/" + session.projectId);
    }
    if (!project->acceptsMobileSessions()) {
        return refuseSession(
            200, "mobile sessions are off for project " + session.brandId + "/" + session.projectId);
    }
    const auto [payingBrand, payingProject] = services_.config.payerOf(session.brandId, session.projectId);
    if (!creations_.take(payingBrand, payingProject, creationRate, services_.environment.steadyNow())) {
        return refuseSession(200, "the project creates sessions too fast", "THROTTLED");
    }
    const auto kept = services_.store.addSession(session);
    if (!kept || !*kept) {
        return kept ? refuseSession(507, "there is no room left on the disk")
                    : refuseSession(500, kept.error());
    }
    const Json answer{{"status", "SUCCESS"},
                      {"sessionInfo",
                       {{"sessionId", session.id},
                        {"sessionStartTime", isoTime(session.startMillis)},
                        {"creationDataCenter", project->dataCenter},
                        {"isTestSession", session.isTestSession}}}};
    return {.status = 200, .body = jsonText(answer)};
}

Answer Endpoints::answerClose(const std::string& sessionId, const std::string& body) {
    const auto json = parseJson(body, {.bytes = longestJsonBody});
    if (!json) {
        services_.environment.report("closing a session was refused: its body is " + json.error());
        return statusAnswer("ERROR", 400);
    }
    ObjectReader reader(*json);
    const auto brandId = reader.text("brandId");
    const auto projectId = reader.text("projectId");
    if (const auto complaint = reader.complaint(); !complaint.empty()) {
        services_.environment.report("closing a session was refused: " + complaint);
        return statusAnswer("ERROR", 400);
    }
    const auto outcome =
        services_.store.closeSession(sessionId, brandId, projectId, services_.environment.wallMillis());
    if (!outcome) {
        services_.environment.report(outcome.error());
        return statusAnswer("ERROR", 500);
    }
    return statusAnswer(*outcome == CloseOutcome::closed ? "SUCCESS" : "ERROR");
}

Answer Endpoints::answerConfiguration(const std::string& brandId, const std::string& projectId) const {
    const auto* const project = services_.config.find(brandId, projectId);
    if (project == nullptr) {
        services_.environment.report("a configuration was refused: unknown project " + brandId + "/" +
                                     projectId);
        return statusAnswer("ERROR", 404);
    }
    Json answer = Json::object();
    if (project->srEnabled) {
        answer["srEnabled"] = *project->srEnabled;
    }
    answer["dataCenter"] = project->dataCenter;
    answer["samplingRate"] = project->samplingRate;
    answer["customSignal"] = project->customSignal;
    return {.status = 200, .body = jsonText(answer)};
}

}  // namespace mireth::receiver
