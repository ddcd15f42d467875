// The user caches directory is not as the library would like it.
#include <atomic>
#include <filesystem>
#include <set>

#include "endtoend/support/EndToEnd.hpp"
#include "endtoend/support/ScriptedService.hpp"

namespace mireth::endtoend {

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

std::set<std::string> entriesBelow(const std::string& directory) {
    std::set<std::string> entries;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(directory)) {
        entries.insert(entry.path().lexically_relative(directory));
    }
    return entries;
}

class EndToEndStorage : public EndToEnd {};

TEST_F(EndToEndStorage, AFileInTheWayCostsTheChunksAndNotTheSession) {
    const auto receiver = startReceiver();
    test::writeFile(caches() + "/mireth", "in the way");
    const auto run = play(recordingFor(12), receiver->origin());
    EXPECT_THAT(run.results(),
                ElementsAre("initializeProject success", "startRecording success", "stopRecording success"));
    EXPECT_THAT(run.errors(), Contains("Failed to create chunk").Times(2));
    EXPECT_THAT(run.errors(), Contains("Failed to save video chunk").Times(2));
    const Json session = receiver->show(run.sessionIds().at(0));
    EXPECT_THAT(session.at("chunks"), IsEmpty());
    EXPECT_EQ(session.at("session").at("state"), "closed");
    EXPECT_EQ(readFile(caches() + "/mireth"), "in the way");
}

TEST_F(EndToEndStorage, ALinkPlantedAtAChunksNameIsNotFollowed) {
    const std::string victim = path("victim");
    test::writeFile(victim, "untouched");
    std::atomic<int> uploads = 0;
    const ScriptedService service({}, [&](Request request) {
        // While the first chunk is on its way the phone's clock stands still.
        if (request == Request::upload && uploads++ == 0) {
            std::filesystem::create_symlink(victim, playback() + "/" + ScriptedService::sessionId + "-1.mp4");
        }
    });
    const auto run = play(recordingFor(20), service.origin());
    EXPECT_THAT(run.results(), Contains("stopRecording success"));
    EXPECT_THAT(run.errors(), IsEmpty());
    EXPECT_EQ(uploads, 2);
    EXPECT_EQ(readFile(victim), "untouched");
    EXPECT_FALSE(std::filesystem::is_symlink(playback() + "/" + ScriptedService::sessionId + "-1.mp4"));
}

TEST_F(EndToEndStorage, ALinkLeftInTheStoreIsClearedAndNotWhatItLeadsTo) {
    const std::string secret = path("secret");
    test::writeFile(secret, "a secret of the user's");
    const auto receiver = startReceiver();
    const auto first = play(recordingFor(1), receiver->origin());
    const std::string chunk = playback() + "/" + first.sessionIds().at(0) + "-0.mp4";
    std::filesystem::remove(chunk);
    std::filesystem::create_symlink(secret, chunk);
    play(recordingFor(1), receiver->origin());
    EXPECT_FALSE(std::filesystem::is_symlink(std::filesystem::symlink_status(chunk)))
        << "what was left is cleared";
    EXPECT_EQ(readFile(secret), "a secret of the user's");
}

TEST_F(EndToEndStorage, ALinkInPlaceOfTheStoreIsNotFollowed) {
    const auto receiver = startReceiver();
    const std::string elsewhere = path("elsewhere");
    const std::set<std::string> precious{"precious.txt", "playback", "playback/precious.txt"};
    test::writeFile(elsewhere + "/precious.txt", "precious");
    test::writeFile(elsewhere + "/playback/precious.txt", "precious");
    for (const std::string link : {"mireth", "mireth/playback"}) {
        const auto where = std::filesystem::path(caches()) / link;
        std::filesystem::remove_all(caches());
        std::filesystem::create_directories(where.parent_path());
        std::filesystem::create_directory_symlink(elsewhere, where);
        const auto run = play(recordingFor(1), receiver->origin());
        EXPECT_THAT(run.results(), Contains("stopRecording success")) << link;
        EXPECT_THAT(run.errors(), Contains("Failed to create chunk")) << link;
        EXPECT_EQ(entriesBelow(elsewhere), precious) << link;
    }
}

TEST_F(EndToEndStorage, FilesAndFoldersAreTheUsersAlone) {
    const auto receiver = startReceiver();
    const auto run = play(recordingFor(1), receiver->origin());
    const auto mode = [](const std::string& file) { return std::filesystem::status(file).permissions(); };
    using enum std::filesystem::perms;
    EXPECT_EQ(mode(caches() + "/mireth"), owner_all);
    EXPECT_EQ(mode(playback()), owner_all);
    EXPECT_EQ(mode(playback() + "/" + run.sessionIds().at(0) + "-0.mp4"), owner_read | owner_write);
}

TEST_F(EndToEndStorage, AFullStoreRefusesChunksAndTheRecordingGoesOn) {
    const auto receiver = startReceiver();
    auto scenario = scenarioOf({{{"at", 0}, {"call", "startRecording"}},
                                {{"at", 0}, {"call", "pauseRecording"}},
                                {{"at", 1815}, {"network", "wifi"}},
                                {{"at", 1825}, {"call", "stopRecording"}}});
    scenario["network"] = "none";
    const auto run = play(scenario, receiver->origin());
    EXPECT_THAT(run.results(), Contains("stopRecording success"));
    EXPECT_THAT(run.logged("Failed to create chunk"),
                testing::AllOf(testing::SizeIs(3), Contains(HasSubstr("\"chunkNumber\": \"180\"")).Times(3)));
    std::size_t files = 0;
    for ([[maybe_unused]] const auto& entry : std::filesystem::directory_iterator(playback())) {
        ++files;
    }
    EXPECT_EQ(files, 180U);
}

}  // namespace

}  // namespace mireth::endtoend
