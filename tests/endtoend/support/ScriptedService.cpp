#include "endtoend/support/ScriptedService.hpp"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <utility>

namespace mireth::endtoend {

namespace {

using Json = nlohmann::json;

Request kindOf(const std::string& requestLine) {
    static const std::vector<std::pair<std::string, Request>> kinds{
        {"/sessionReplayConfig", Request::configuration},
        {"/sessions/create", Request::create},
        {"/record-playback", Request::upload},
        {"/close-session", Request::close},
        {"/Ajax.php", Request::log}};
    const auto found = std::ranges::find_if(kinds, [&requestLine](const auto& kind) {
        return requestLine.find(kind.first) != std::string::npos;
    });
    return found == kinds.end() ? Request::other : found->second;
}

std::string wellMeantAnswer(Request request) {
    switch (request) {
        case Request::configuration:
            return configuredFor("US_WEST");
        case Request::create:
            return createdSession(ScriptedService::sessionId);
        case Request::upload:
        case Request::close:
            return okWith(R"({"status":"SUCCESS"})");
        case Request::log:
            return okWith(R"({"status":"Success"})");
        case Request::other:
            break;
    }
    return "HTTP/1.1 404 Not Found\r\nContent-Length: 0\r\nConnection: close\r\n\r\n";
}

}  // namespace

ScriptedService::ScriptedService(std::map<Request, std::string> answers, std::function<void(Request)> before)
    : answers_(std::move(answers)),
      before_(std::move(before)),
      server_([this](test::Connection& connection) { answer(connection); }) {}

std::vector<std::string> ScriptedService::requestLines() const {
    const std::lock_guard lock(mutex_);
    return requestLines_;
}

std::size_t ScriptedService::count(Request request) const {
    const auto lines = requestLines();
    return static_cast<std::size_t>(
        std::ranges::count_if(lines, [request](const auto& line) { return kindOf(line) == request; }));
}

void ScriptedService::answer(test::Connection& connection) {
    const std::string request = connection.readRequest();
    const std::string line = request.substr(0, request.find("\r\n"));
    if (line.empty()) {
        return;
    }
    {
        const std::lock_guard lock(mutex_);
        requestLines_.push_back(line);
    }
    const Request kind = kindOf(line);
    before_(kind);
    const auto scripted = answers_.find(kind);
    connection.write(scripted == answers_.end() ? wellMeantAnswer(kind) : scripted->second);
}

std::string okWith(const std::string& body) {
    return "HTTP/1.1 200 OK\r\nContent-Type: application/json\r\nx-transaction-id: t\r\nx-request-id: r\r\n"
           "Connection: close\r\nContent-Length: " +
           std::to_string(body.size()) + "\r\n\r\n" + body;
}

std::string createdSession(const std::string& sessionId) {
    return okWith(Json{{"status", "SUCCESS"},
                       {"sessionInfo",
                        {{"sessionId", sessionId},
                         {"sessionStartTime", "2023-11-14T22:13:20.000Z"},
                         {"creationDataCenter", "US_WEST"},
                         {"isTestSession", false}}}}
                      .dump());
}

std::string configuredFor(const std::string& dataCenter) {
    return okWith(Json{{"srEnabled", "SR_ENABLED_FOR_MOBILE_ONLY"},
                       {"dataCenter", dataCenter},
                       {"samplingRate", 100.0},
                       {"customSignal", Json::array()}}
                      .dump());
}

}  // namespace mireth::endtoend
