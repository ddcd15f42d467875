// Wires the receiver's parts as its program does, with clocks and reports of the test's own.
#include "support/RunningReceiver.hpp"

#include <filesystem>
#include <nlohmann/json.hpp>
#include <sstream>
#include <stdexcept>
#include <utility>

namespace mireth::receiver::test {

RunningReceiver::RunningReceiver(const std::string& configJson, std::optional<TlsFiles> tls,
                                 AccessRules rules)
    : config_(Config::parse(configJson, "test").value()), tls_(std::move(tls)), rules_(std::move(rules)) {
    static std::ostringstream unused;
    environment_ = Environment::real(unused);
    environment_.wallMillis = [this] { return wall_.load(); };
    environment_.steadyNow = [this] {
        const std::lock_guard lock(mutex_);
        return now_;
    };
    environment_.report = [this](std::string_view line) {
        const std::lock_guard lock(mutex_);
        reports_.emplace_back(line);
    };
    start();
}

void RunningReceiver::start() {
    store_ =
        std::move(SqliteStore::open(data(), environment_.newIdentifier,
                                    {.most = config_.limits.diskBytes, .keepFree = config_.limits.freeBytes})
                      .value());
    exporter_ = std::move(
        ProgramExporter::create(MIRETH_RECEIVER_PROGRAM, data(), environment_.newIdentifier).value());
    router_ = std::make_unique<Router>(services(), rules_);
    server_ = std::move(HttpServer::start({.host = "127.0.0.1", .port = 0, .tls = tls_}, config_.limits,
                                          *router_, environment_)
                            .value());
}

void RunningReceiver::restart() {
    server_.reset();
    router_.reset();
    store_.reset();
    start();
}

RawResponse RunningReceiver::post(const std::string& target, const std::string& body,
                                  const std::string& headers) const {
    return request(port(), "POST", target, body,
                   "Content-Type: application/json; charset=UTF-8\r\n" + headers);
}

RawResponse RunningReceiver::get(const std::string& target, const std::string& headers) const {
    return request(port(), "GET", target, "", headers);
}

nlohmann::json RunningReceiver::getJson(const std::string& target) const {
    const auto response = get(target);
    if (response.status != 200) {
        throw std::runtime_error(target + ": " + std::to_string(response.status) + " " + response.body);
    }
    return nlohmann::json::parse(response.body);
}

RawResponse RunningReceiver::remove(const std::string& target, const std::string& headers) const {
    return request(port(), "DELETE", target, "", "X-Mireth-Request: 1\r\n" + headers);
}

RawResponse RunningReceiver::put(const Upload& upload) const {
    return request(port(), "PUT", "/mobile-sr-ingestion/v1/sessions/record-playback?M_BID=b1", upload.body(),
                   "Content-Type: " + upload.contentType() + "\r\n");
}

std::string RunningReceiver::createSession(const std::string& brandId, const std::string& projectId) const {
    const auto response = post("/mobile-sr-ingestion/v1/sessions/create",
                               R"({"brandId":")" + brandId + R"(","brandDc":"US_WEST","projectId":")" +
                                   projectId + R"(","isTestSession":false})");
    return nlohmann::json::parse(response.body).at("sessionInfo").at("sessionId");
}

RawResponse RunningReceiver::closeSession(const std::string& id, const std::string& brandId,
                                          const std::string& projectId) const {
    return post("/mobile-sr-ingestion/v1/sessions/" + id + "/close-session",
                R"({"brandId":")" + brandId + R"(","projectId":")" + projectId + R"("})");
}

std::size_t RunningReceiver::videoFiles() const {
    std::size_t count = 0;
    for ([[maybe_unused]] const auto& entry : std::filesystem::directory_iterator(data() + "/videos")) {
        ++count;
    }
    return count;
}

SessionContents RunningReceiver::contents(const std::string& id) {
    return store_->contents(id).value().value();
}

std::string RunningReceiver::video(const Chunk& chunk) {
    const auto source = std::move(store_->openVideo(chunk.video.key).value());
    std::vector<unsigned char> bytes(source->size());
    if (!source->readAt(0, bytes)) {
        throw std::runtime_error("the video cannot be read");
    }
    return {bytes.begin(), bytes.end()};
}

std::vector<std::string> RunningReceiver::takeReports() {
    const std::lock_guard lock(mutex_);
    return std::exchange(reports_, {});
}

void RunningReceiver::passSeconds(int seconds) {
    const std::lock_guard lock(mutex_);
    now_ += std::chrono::seconds(seconds);
}

}  // namespace mireth::receiver::test
