// Many clients that take their time, beside those that work: the program itself, as an operator runs
// it.
#include <gtest/gtest.h>

#include <atomic>
#include <csignal>
#include <list>
#include <nlohmann/json.hpp>
#include <thread>
#include <vector>

#include "support/Program.hpp"
#include "support/RawClient.hpp"
#include "support/TemporaryDirectory.hpp"
#include "support/Upload.hpp"

namespace mireth::receiver::test {
namespace {

constexpr const char* recordPath = "/mobile-sr-ingestion/v1/sessions/record-playback";

class SlowClients : public testing::Test {
  protected:
    explicit SlowClients(std::string limits = R"("limits":{})") : limits_(std::move(limits)) {}

    std::string createSession() const {
        const auto created =
            request(port_, "POST", "/mobile-sr-ingestion/v1/sessions/create",
                    R"({"brandId":"b1","brandDc":"d","projectId":"p1","isTestSession":true})");
        if (created.status != 200) {
            return {};
        }
        return nlohmann::json::parse(created.body).at("sessionInfo").at("sessionId");
    }
    RawResponse upload(const std::string& id, int number, const std::string& video = mp4()) const {
        const auto chunk = chunkUpload(id, number, video);
        return request(port_, "PUT", recordPath, chunk.body(),
                       "Content-Type: " + chunk.contentType() + "\r\n");
    }
    /// True when everything it asked for was done.
    bool work() const {
        const auto id = createSession();
        bool good = !id.empty();
        for (int number = 0; number < 3; ++number) {
            good = good && upload(id, number).body == R"({"status":"SUCCESS"})";
        }
        const auto closed =
            request(port_, "POST", "/mobile-sr-ingestion/v1/sessions/" + id + "/close-session",
                    R"({"brandId":"b1","projectId":"p1"})");
        return good && closed.body == R"({"status":"SUCCESS"})";
    }

    int finishedOf(int clients) const {
        std::atomic<int> finished = 0;
        std::vector<std::thread> working;
        for (int i = 0; i < clients; ++i) {
            working.emplace_back([&] { finished += work() ? 1 : 0; });
        }
        for (auto& thread : working) {
            thread.join();
        }
        return finished;
    }

    const std::string limits_;
    const TemporaryDirectory directory_;
    // Each of the working clients may upload as fast as it can.
    const std::string config_ = directory_.write(
        "config.json", R"({"default":{"uploadRate":{"perSecond":1000,"burst":1000}},)" + limits_ + "}");
    Program program_{receiverCommand({"--listen", "127.0.0.1:0", "--data", directory_.file("data"),
                                      "--config", config_, "--print-ready"})};
    const nlohmann::json ready_ = nlohmann::json::parse(program_.readLine());
    const int port_ = std::stoi(ready_.at("listen").get<std::string>().substr(10));
};

/// Sends a little to each of its connections, again and again.
class Dripping {
  public:
    Dripping(std::list<RawConnection>& connections, std::string drop)
        : thread_([this, &connections, drop = std::move(drop)] {
              while (!ended_) {
                  for (const auto& connection : connections) {
                      connection.send(drop);
                  }
                  std::this_thread::sleep_for(std::chrono::milliseconds(100));
              }
          }) {}
    Dripping(const Dripping&) = delete;
    Dripping& operator=(const Dripping&) = delete;
    ~Dripping() {
        ended_ = true;
        thread_.join();
    }

  private:
    std::atomic<bool> ended_ = false;
    std::thread thread_;
};

TEST_F(SlowClients, FiveHundredOfThemDoNotKeepFiftyFromTheirWork) {
    const auto id = createSession();
    ASSERT_EQ(upload(id, 0, mp4({.bytesPerFrame = 400'000})).status, 200);
    std::list<RawConnection> silent;
    std::list<RawConnection> dripping;
    for (int i = 0; i < 158; ++i) {
        silent.emplace_back(port_);
        dripping.emplace_back(port_).send("GET / HTTP/1.1\r\nX: ");
        dripping.emplace_back(port_).send("PUT " + std::string(recordPath) +
                                          " HTTP/1.1\r\nContent-Length: 100000\r\nContent-Type: "
                                          "multipart/form-data; boundary=b\r\n\r\n");
    }
    // These ask for more than the system buffers, and read none of it.
    for (int i = 0; i < 26; ++i) {
        silent.emplace_back(port_, 4096)
            .send("GET /api/sessions/" + id + "/chunks/0.mp4 HTTP/1.1\r\nHost: localhost\r\n\r\n");
    }
    ASSERT_EQ(silent.size() + dripping.size(), 500U);
    {
        const Dripping dripper(dripping, "-");
        EXPECT_EQ(finishedOf(50), 50);
    }
    silent.clear();
    dripping.clear();
    program_.signal(SIGTERM);
    EXPECT_EQ(program_.wait().status, 0);
}

class FewConnections : public SlowClients {
  protected:
    FewConnections() : SlowClients(R"("limits":{"connections":60})") {}
};

// They are quick enough to look like a phone far out, and would take for hours what they could get.
TEST_F(FewConnections, ClientsThatAreNotQuiteSoSlowTakeThemAllFromNobody) {
    std::list<RawConnection> dripping;
    for (int i = 0; i < 60; ++i) {
        dripping.emplace_back(port_).send("PUT " + std::string(recordPath) +
                                          " HTTP/1.1\r\nContent-Length: 20000000\r\nContent-Type: "
                                          "multipart/form-data; boundary=b\r\n\r\n");
    }
    const Dripping dripper(dripping, std::string(250, '-'));
    EXPECT_EQ(finishedOf(10), 10);
}

// Log posts need no token.
TEST_F(FewConnections, StrangersTakeThemAllFromNobody) {
    std::list<RawConnection> dripping;
    for (int i = 0; i < 60; ++i) {
        dripping.emplace_back(port_).send(
            "POST /WRTarrowEngine/Ajax.php?action=ClientLog&M_BID=b&M_ZoneID=p HTTP/1.1\r\n"
            "Content-Length: 130000\r\n\r\nMessage=");
    }
    const Dripping dripper(dripping, std::string(250, '-'));
    EXPECT_EQ(finishedOf(10), 10);
}

}  // namespace
}  // namespace mireth::receiver::test
