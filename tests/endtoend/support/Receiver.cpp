#include "endtoend/support/Receiver.hpp"

#include <gtest/gtest.h>

#include <stdexcept>
#include <utility>

namespace mireth::endtoend {

namespace {

std::vector<std::string> serving(const std::string& data, std::vector<std::string> more) {
    std::vector<std::string> command{MIRETH_RECEIVER_PROGRAM, "--listen", "127.0.0.1:0", "--data", data,
                                     "--print-ready"};
    command.insert(command.end(), more.begin(), more.end());
    return command;
}

}  // namespace

Receiver::Receiver(std::string data, std::vector<std::string> more)
    : data_(std::move(data)), process_(serving(data_, std::move(more))) {
    const auto ready = process_.readLine();
    if (!ready) {
        throw std::runtime_error("the receiver did not begin: " + process_.wait().errors);
    }
    origin_ = Json::parse(*ready).at("sr");
}

Receiver::~Receiver() {
    process_.terminate();
    const Ended ended = process_.wait();
    EXPECT_EQ(ended.status, 0) << ended.errors;
    EXPECT_FALSE(ended.gaveUp);
}

std::string Receiver::originAt(const std::string& host) const {
    return origin_.substr(0, origin_.find("://") + 3) + host + origin_.substr(origin_.rfind(':'));
}

std::vector<Json> Receiver::sessions() const {
    return report({"list"}).at("sessions");
}

Json Receiver::show(const std::string& sessionId) const {
    return report({"show", sessionId});
}

void Receiver::exportVideo(const std::string& sessionId, const std::string& file) const {
    const Ended ended =
        runProcess({MIRETH_RECEIVER_PROGRAM, "export", sessionId, "--data", data_, "--output", file});
    if (ended.status != 0) {
        throw std::runtime_error(ended.errors);
    }
}

Json Receiver::looseLogLines() const {
    return report({"list"}).at("logLines");
}

Json Receiver::report(std::vector<std::string> arguments) const {
    arguments.insert(arguments.begin(), MIRETH_RECEIVER_PROGRAM);
    arguments.insert(arguments.end(), {"--data", data_, "--json"});
    const Ended ended = runProcess(std::move(arguments));
    if (ended.status != 0) {
        throw std::runtime_error(ended.errors);
    }
    return Json::parse(ended.out);
}

}  // namespace mireth::endtoend
