// Answers as the recording service does when all is well.
#include "FakeService.hpp"

#include <httplib.h>

#include <algorithm>
#include <chrono>
#include <thread>

namespace mireth::phone {

namespace {

const char* answerTo(const std::string& path) {
    if (path.ends_with("/sessionReplayConfig")) {
        return R"({"srEnabled":"SR_ENABLED_FOR_MOBILE_ONLY","dataCenter":"US_WEST.example","samplingRate":100,"customSignal":[]})";
    }
    if (path.ends_with("/sessions/create")) {
        return R"({"status":"SUCCESS","sessionInfo":{"sessionId":"S1","sessionStartTime":"2023-11-14T22:13:20.000Z","creationDataCenter":"US_WEST","isTestSession":false}})";
    }
    return R"({"status":"SUCCESS"})";
}

}  // namespace

struct FakeService::Server {
    httplib::Server http;
    int port = 0;
    std::thread thread;

    mutable std::mutex mutex;
    std::vector<ReceivedRequest> requests;  // guarded by mutex

    void receive(const httplib::Request& request, const std::string& body, httplib::Response& response) {
        {
            const std::lock_guard lock(mutex);
            requests.push_back({request.method, request.target, body});
        }
        // The library looks for both and complains when one is missing.
        response.set_header("x-transaction-id", "T1");
        response.set_header("x-request-id", "R1");
        response.set_content(answerTo(request.path), "application/json");
    }
};

FakeService::FakeService() : server_(std::make_unique<Server>()) {
    auto* const server = server_.get();
    server->http.Get(
        ".*", [server](const auto& request, auto& response) { server->receive(request, "", response); });
    // Bodies are taken as they come; the server would take a multipart body apart.
    const httplib::Server::HandlerWithContentReader read = [server](const auto& request, auto& response,
                                                                    const auto& content) {
        std::string body;
        if (request.is_multipart_form_data()) {
            content(
                [&body](const httplib::MultipartFormData& part) {
                    body += part.name + "|" + part.filename + "|" + part.content_type + "\n";
                    return true;
                },
                [&body](const char* data, std::size_t size) {
                    body.append(data, size);
                    return true;
                });
        } else {
            content([&body](const char* data, std::size_t size) {
                body.append(data, size);
                return true;
            });
        }
        server->receive(request, body, response);
    };
    server->http.Post(".*", read);
    server->http.Put(".*", read);
    server->port = server->http.bind_to_any_port("127.0.0.1");
    server->thread = std::thread([server] { server->http.listen_after_bind(); });
    // The port is bound already; a stop before the loop runs would be lost.
    while (!server->http.is_running()) {
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
}

FakeService::~FakeService() {
    server_->http.stop();
    server_->thread.join();
}

std::string FakeService::origin() const {
    return "http://127.0.0.1:" + std::to_string(server_->port);
}

std::vector<ReceivedRequest> FakeService::requests() const {
    const std::lock_guard lock(server_->mutex);
    return server_->requests;
}

std::size_t FakeService::countOf(const std::string& text) const {
    const auto all = requests();
    return static_cast<std::size_t>(std::ranges::count_if(all, [&text](const ReceivedRequest& request) {
        return request.path.find(text) != std::string::npos;
    }));
}

}  // namespace mireth::phone
