// One connection for each request, as the receiver wants it.
#include "benchmarks/ServedReceiver.hpp"

#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <stdexcept>

namespace mireth::benchmarks {
namespace {

using receiver::test::RawResponse;

std::string configuration(const std::string& data) {
    std::filesystem::create_directories(data);
    const auto path = data + "/config.json";
    std::ofstream(path) << R"({"default":{"uploadRate":{"perSecond":1000000,"burst":1000000}},)"
                        << R"("limits":{"requestBytes":1000000000,"chunks":1000000}})";
    return path;
}

std::string bodyOf(const RawResponse& response) {
    if (response.status != 200) {
        throw std::runtime_error("status " + std::to_string(response.status) + ": " + response.body);
    }
    return response.body;
}

}  // namespace

ServedReceiver::ServedReceiver(const std::string& data)
    : program_(receiver::test::receiverCommand(
          {"--listen", "127.0.0.1:0", "--data", data, "--config", configuration(data), "--print-ready"})) {
    const auto ready = nlohmann::json::parse(program_.readLine());
    port_ = std::stoi(ready.at("listen").get<std::string>().substr(10));
    origin_ = ready.at("sr");
}

std::string ServedReceiver::get(const std::string& target) const {
    return bodyOf(receiver::test::request(port_, "GET", target));
}

std::string ServedReceiver::createSession() const {
    const auto answer = bodyOf(
        receiver::test::request(port_, "POST", "/mobile-sr-ingestion/v1/sessions/create",
                                R"({"brandId":"b1","brandDc":"d","projectId":"p1","isTestSession":true})"));
    return nlohmann::json::parse(answer).at("sessionInfo").at("sessionId");
}

void ServedReceiver::upload(const receiver::test::Upload& upload) const {
    const auto answer =
        bodyOf(receiver::test::request(port_, "PUT", "/mobile-sr-ingestion/v1/sessions/record-playback",
                                       upload.body(), "Content-Type: " + upload.contentType() + "\r\n"));
    if (answer != R"({"status":"SUCCESS"})") {
        throw std::runtime_error(answer);
    }
}

}  // namespace mireth::benchmarks
