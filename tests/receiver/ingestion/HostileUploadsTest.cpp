// Hundreds of uploads that no client sends, against the program itself.
#include "support/HostileUploads.hpp"

#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>
#include <nlohmann/json.hpp>

#include "support/Program.hpp"
#include "support/RawClient.hpp"
#include "support/TemporaryDirectory.hpp"
#include "support/Upload.hpp"

namespace mireth::receiver::test {
namespace {

constexpr const char* refused = R"({"status":"ERROR"})";
constexpr const char* taken = R"({"status":"SUCCESS"})";

class HostileUploads : public testing::Test {
  protected:
    RawResponse put(const std::string& body, const std::string& type) const {
        return request(port_, "PUT", "/mobile-sr-ingestion/v1/sessions/record-playback", body,
                       "Content-Type: " + type + "\r\n");
    }
    nlohmann::json chunks() const {
        const auto replay = request(port_, "GET", "/api/sessions/" + id_);
        EXPECT_EQ(replay.status, 200);
        return nlohmann::json::parse(replay.body).at("chunks");
    }
    /// Of all that is in the data directory.
    std::vector<std::string> files(const std::string& folder) const {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(directory_.file("data") + folder)) {
            names.push_back(entry.path().filename());
        }
        return names;
    }

    const TemporaryDirectory directory_;
    const std::string config_ =
        directory_.write("config.json", R"({"default":{"uploadRate":{"perSecond":100000,"burst":100000}}})");
    Program program_{receiverCommand({"--listen", "127.0.0.1:0", "--data", directory_.file("data"),
                                      "--config", config_, "--print-ready"})};
    const nlohmann::json ready_ = nlohmann::json::parse(program_.readLine());
    const int port_ = std::stoi(ready_.at("listen").get<std::string>().substr(10));
    const std::string id_ = nlohmann::json::parse(
        request(port_, "POST", "/mobile-sr-ingestion/v1/sessions/create",
                R"({"brandId":"b1","brandDc":"d","projectId":"p1","isTestSession":true})")
            .body)["sessionInfo"]["sessionId"];
};

TEST_F(HostileUploads, NoneIsTakenNoneDoesHarmAndMemoryStaysBounded) {
    const auto uploads = hostileUploads(id_);
    EXPECT_GE(uploads.size(), 200U);
    for (const auto& upload : uploads) {
        const auto response = put(upload.body, upload.contentType);
        EXPECT_EQ(response.body, refused) << upload.name;
        EXPECT_TRUE(response.status == 200 || response.status == 400 || response.status == 413)
            << upload.name << ": " << response.status;
    }
    EXPECT_EQ(chunks().size(), 0U);
    EXPECT_TRUE(files("/videos").empty());
    EXPECT_LT(program_.peakMemory(), std::uint64_t{MIRETH_PEAK_MEMORY} << 20U);
    const auto sound = chunkUpload(id_, 0);
    EXPECT_EQ(put(sound.body(), sound.contentType()).body, taken);
    program_.signal(SIGTERM);
    EXPECT_EQ(program_.wait().status, 0);
}

TEST_F(HostileUploads, NamesOfFilesLeadNowhere) {
    const auto before = files("");
    const auto uploads = harmlessUploads(id_);
    for (const auto& upload : uploads) {
        EXPECT_EQ(put(upload.body, upload.contentType).body, taken) << upload.name;
    }
    EXPECT_EQ(chunks().size(), uploads.size());
    EXPECT_EQ(files("").size(), before.size());
    for (const auto& name : files("/videos")) {
        EXPECT_EQ(name.size(), 40U) << name;
        EXPECT_EQ(name.find_first_not_of("0123456789abcdef-"), 36U) << name;
    }
    EXPECT_FALSE(std::filesystem::exists("/tmp/escaped.mp4"));
}

}  // namespace
}  // namespace mireth::receiver::test
