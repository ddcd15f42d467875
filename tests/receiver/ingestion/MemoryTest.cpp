// What the program's memory comes to when many uploads or viewers want much of it at once.
#include <gtest/gtest.h>

#include <atomic>
#include <csignal>
#include <memory>
#include <nlohmann/json.hpp>
#include <thread>
#include <vector>

#include "support/Program.hpp"
#include "support/RawClient.hpp"
#include "support/TemporaryDirectory.hpp"
#include "support/Upload.hpp"

namespace mireth::receiver::test {
namespace {

// Very many events, of the shape that takes the most memory to read: nearly 3 MB.
std::string hugeTimeline(std::int64_t number) {
    std::string text;
    for (int i = 0; i < 30'000; ++i) {
        text += (text.empty() ? "[" : ",") +
                (R"({"timestamp":1,"type":"MetadataCaptured","chunkNumber":)" + std::to_string(number)) +
                R"(,"eventDetails":{"metadata":[]}})";
    }
    return text + "]";
}

// Few events, but as long a timeline.
std::string longTimeline(std::int64_t number) {
    std::string text;
    for (int i = 0; i < 40; ++i) {
        text += (text.empty() ? "[" : ",") +
                (R"({"timestamp":1,"type":"ScreenChange","chunkNumber":)" + std::to_string(number)) +
                R"(,"eventDetails":{"changeType":"appear","detectionType":"auto","screenHierarchy":[)"
                R"({"depth":0,"screenType":"Screen","screenName":")" +
                std::string(100'000, 'x') + R"("}]}})";
    }
    return text + "]";
}

class Memory : public testing::Test {
  protected:
    std::string createSession() const {
        const auto created =
            request(port_, "POST", "/mobile-sr-ingestion/v1/sessions/create",
                    R"({"brandId":"b1","brandDc":"d","projectId":"p1","isTestSession":true})");
        return nlohmann::json::parse(created.body)["sessionInfo"]["sessionId"];
    }
    RawResponse put(const Upload& upload) const {
        return request(port_, "PUT", "/mobile-sr-ingestion/v1/sessions/record-playback", upload.body(),
                       "Content-Type: " + upload.contentType() + "\r\n");
    }
    RawResponse put(const std::string& session, std::int64_t number, const std::string& timeline) const {
        auto upload = chunkUpload(session, number);
        upload.parts[0] = jsonPart("timeline", timeline);
        return put(upload);
    }
    // Twice what uploads one by one may take.
    void expectLittleMemory() const {
        EXPECT_LT(program_.peakMemory(), std::uint64_t{2 * MIRETH_PEAK_MEMORY} << 20U);
    }

    const TemporaryDirectory directory_;
    Program program_{
        receiverCommand({"--listen", "127.0.0.1:0", "--data", directory_.file("data"), "--print-ready"})};
    const nlohmann::json ready_ = nlohmann::json::parse(program_.readLine());
    const int port_ = std::stoi(ready_.at("listen").get<std::string>().substr(10));
};

TEST_F(Memory, ManyHugeTimelinesAtOnceTakeNoMoreThanAFew) {
    std::atomic<int> taken = 0;
    std::vector<std::thread> clients;
    for (int i = 0; i < 24; ++i) {
        clients.emplace_back([&] {
            const auto response = put(createSession(), 0, hugeTimeline(0));
            EXPECT_TRUE(response.status == 200 || response.status == 503) << response.status;
            taken += response.status == 200 ? 1 : 0;
        });
    }
    // One of ordinary size is taken all the same.
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(put(chunkUpload(createSession(), 0)).body, R"({"status":"SUCCESS"})");
    }
    for (auto& client : clients) {
        client.join();
    }
    EXPECT_GT(taken, 0);
    expectLittleMemory();
    EXPECT_EQ(put(createSession(), 0, hugeTimeline(0)).status, 200);
}

TEST_F(Memory, ManyViewersOfASessionFullOfEventsTakeLittle) {
    const auto session = createSession();
    for (std::int64_t number = 0; number < 3; ++number) {
        EXPECT_EQ(put(session, number, longTimeline(number)).body, R"({"status":"SUCCESS"})");
    }
    // Nobody reads on before all have asked.
    std::vector<std::unique_ptr<RawConnection>> viewers;
    for (int i = 0; i < 8; ++i) {
        viewers.push_back(std::make_unique<RawConnection>(port_));
        viewers.back()->send("GET /api/sessions/" + session + (i % 2 == 0 ? "" : "/timeline.json") +
                             " HTTP/1.1\r\nHost: localhost\r\n\r\n");
    }
    std::vector<std::thread> readers;
    for (const auto& viewer : viewers) {
        readers.emplace_back([&] {
            const auto response = viewer->receive();
            EXPECT_EQ(response.status, 200);
            EXPECT_GT(response.body.size(), std::size_t{11} << 20U);
        });
    }
    for (auto& reader : readers) {
        reader.join();
    }
    expectLittleMemory();
}

}  // namespace
}  // namespace mireth::receiver::test
