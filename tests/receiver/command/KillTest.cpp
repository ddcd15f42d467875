// The program killed at moments that nobody chose, a hundred times over the same data.
#include <gtest/gtest.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <random>
#include <thread>

#include "support/KilledReceiver.hpp"
#include "support/Program.hpp"
#include "support/TemporaryDirectory.hpp"

namespace mireth::receiver::test {
namespace {

class Kill : public testing::Test {
  protected:
    static int portOf(Program& program) {
        const auto ready = nlohmann::json::parse(program.readLine());
        return std::stoi(ready.at("listen").get<std::string>().substr(10));
    }
    std::vector<std::string> command() const {
        return receiverCommand(
            {"--listen", "127.0.0.1:0", "--data", data_, "--config", config_, "--print-ready"});
    }
    /// As many as there are rows, and all of them whole.
    void checkFiles(int port) const {
        const auto files = std::distance(std::filesystem::directory_iterator(data_ + "/videos"), {});
        EXPECT_EQ(static_cast<std::size_t>(files), chunksKept(port));
    }

    const TemporaryDirectory directory_;
    const std::string data_ = directory_.file("data");
    const std::string config_ =
        directory_.write("config.json", R"({"default":{"uploadRate":{"perSecond":100000,"burst":100000}}})");
    std::mt19937 random_{20231114};
};

TEST_F(Kill, AHundredTimesNothingAcknowledgedIsLostAndNothingHalfIsSeen) {
    Ledger ledger;
    for (int round = 0; round < 100; ++round) {
        Program program(command());
        const int port = portOf(program);
        checkFiles(port);
        // Everything now and then, for it grows; so that every round's losses would be seen in the end.
        if (round % 20 == 19) {
            ledger.check(port);
        }
        std::thread removing([&] { removeUntilTheEnd(port, ledger); });
        std::vector<std::thread> uploading;
        for (int i = 0; i < 3; ++i) {
            uploading.emplace_back([&] { uploadUntilTheEnd(port, ledger); });
        }
        // Now and then at the very beginning; else however long a chunk takes on this machine.
        const auto before = ledger.acknowledged();
        const auto patience = std::chrono::steady_clock::now() + std::chrono::seconds(20);
        while (round % 4 != 0 && ledger.acknowledged() == before &&
               std::chrono::steady_clock::now() < patience) {
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
        std::this_thread::sleep_for(std::chrono::microseconds(random_() % 60'000));
        program.signal(SIGKILL);
        EXPECT_EQ(program.wait().status, -1);
        removing.join();
        for (auto& thread : uploading) {
            thread.join();
        }
        if (HasFailure()) {
            FAIL() << "in round " << round;
        }
    }
    Program program(command());
    const int port = portOf(program);
    checkFiles(port);
    ledger.check(port);
    EXPECT_GE(ledger.acknowledged(), 75U);
    EXPECT_GT(ledger.removals(), 0U);
    program.signal(SIGTERM);
    EXPECT_EQ(program.wait().status, 0);
}

}  // namespace
}  // namespace mireth::receiver::test
