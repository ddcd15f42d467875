// An answer that did not come says nothing: the chunk may be kept or not, the session removed or not.
#include "support/KilledReceiver.hpp"

#include <gtest/gtest.h>

#include <chrono>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <thread>

#include "support/RawClient.hpp"
#include "support/Upload.hpp"

namespace mireth::receiver::test {
namespace {

using nlohmann::json;

// Status 0 when the receiver is gone.
RawResponse ask(int port, const std::string& method, const std::string& target, const std::string& body = {},
                const std::string& headers = {}) {
    try {
        return request(port, method, target, body, headers);
    } catch (const std::runtime_error&) {
        return {};
    }
}

std::string createSession(int port) {
    const auto created = ask(port, "POST", "/mobile-sr-ingestion/v1/sessions/create",
                             R"({"brandId":"b1","brandDc":"d","projectId":"p1","isTestSession":true})");
    // The head may have arrived and the body not.
    const auto answer = json::parse(created.body, nullptr, false);
    return answer.is_discarded() ? "" : answer.at("sessionInfo").at("sessionId").get<std::string>();
}

bool upload(int port, const std::string& session, std::int64_t number) {
    const auto chunk = chunkUpload(session, number, videoOfNumber(number));
    const auto answer = ask(port, "PUT", "/mobile-sr-ingestion/v1/sessions/record-playback", chunk.body(),
                            "Content-Type: " + chunk.contentType() + "\r\n");
    return answer.body == R"({"status":"SUCCESS"})";
}

}  // namespace

void Ledger::created(const std::string& session) {
    const std::lock_guard lock(mutex_);
    kept_[session];
}

void Ledger::kept(const std::string& session, std::int64_t number) {
    const std::lock_guard lock(mutex_);
    ++acknowledged_;
    if (const auto found = kept_.find(session); found != kept_.end()) {
        found->second.insert(number);
    }
}

std::optional<std::string> Ledger::takeForRemoval() {
    const std::lock_guard lock(mutex_);
    for (const auto& [session, numbers] : kept_) {
        if (numbers.size() >= 3) {
            auto taken = session;
            kept_.erase(taken);
            return taken;
        }
    }
    return std::nullopt;
}

void Ledger::removed(const std::string& session) {
    const std::lock_guard lock(mutex_);
    removed_.insert(session);
}

void Ledger::check(int port) const {
    const std::lock_guard lock(mutex_);
    for (const auto& [session, numbers] : kept_) {
        checkChunks(port, session, numbers);
    }
    for (const auto& session : removed_) {
        EXPECT_EQ(ask(port, "GET", "/api/sessions/" + session).status, 404) << session;
    }
}

void Ledger::checkChunks(int port, const std::string& session,
                         const std::set<std::int64_t>& acknowledged) const {
    const auto replay = ask(port, "GET", "/api/sessions/" + session);
    ASSERT_EQ(replay.status, 200) << session;
    std::set<std::int64_t> there;
    const auto answer = json::parse(replay.body);
    for (const auto& chunk : answer.at("chunks")) {
        const std::int64_t number = chunk.at("number");
        there.insert(number);
        EXPECT_EQ(ask(port, "GET", chunk.at("url")).body, videoOfNumber(number)) << session << ' ' << number;
    }
    for (const auto number : acknowledged) {
        EXPECT_TRUE(there.contains(number)) << session << ' ' << number;
    }
    // Every chunk's events come with it: one upload's timeline has eight.
    EXPECT_EQ(answer.at("timeline").size(), 8 * there.size()) << session;
    EXPECT_EQ(answer.at("session").at("chunks"), there.size()) << session;
}

std::size_t Ledger::acknowledged() const {
    const std::lock_guard lock(mutex_);
    return acknowledged_;
}

std::size_t Ledger::removals() const {
    const std::lock_guard lock(mutex_);
    return removed_.size();
}

std::string videoOfNumber(std::int64_t number) {
    return mp4({.bytesPerFrame = 100 + static_cast<std::uint32_t>(number * 37 % 400),
                .filler = static_cast<char>('a' + number % 26)});
}

void uploadUntilTheEnd(int port, Ledger& ledger) {
    for (;;) {
        const auto session = createSession(port);
        if (session.empty()) {
            return;
        }
        ledger.created(session);
        for (std::int64_t number = 0; number < 6; ++number) {
            if (!upload(port, session, number)) {
                break;  // the receiver is gone, or the session was removed
            }
            ledger.kept(session, number);
        }
    }
}

void removeUntilTheEnd(int port, Ledger& ledger) {
    for (;;) {
        const auto session = ledger.takeForRemoval();
        const auto answer = ask(port, session ? "DELETE" : "GET",
                                session ? "/api/sessions/" + *session : std::string("/healthz"), "",
                                "X-Mireth-Request: 1\r\n");
        if (answer.status == 0) {
            return;
        }
        if (session && answer.status == 204) {
            ledger.removed(*session);
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(30));
    }
}

std::size_t chunksKept(int port) {
    const auto text = ask(port, "GET", "/metrics").body;
    const std::string name = "\nmireth_receiver_chunks ";
    const auto at = text.find(name);
    if (at == std::string::npos) {
        throw std::runtime_error("no metrics");
    }
    return std::stoul(text.substr(at + name.size()));
}

}  // namespace mireth::receiver::test
