// When an input tells that it takes a frame.
#include <gtest/gtest.h>

#include <deque>
#include <memory>

#include "tests/contract/media/AssetWriterContract.hpp"

namespace mireth::platform {

GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(AssetWriterReadiness);

namespace {

/// Work posted by readiness callbacks, run by the test.
class ManualQueue {
  public:
    std::function<void(Work)> poster() {
        return [this](Work work) { works.push_back(std::move(work)); };
    }
    bool runOne() {
        if (works.empty()) {
            return false;
        }
        Work work = std::move(works.front());
        works.pop_front();
        work();
        return true;
    }
    std::deque<Work> works;
};

TEST_P(AssetWriterReadiness, ReadinessIsPostedAtOnceAndAfterEachFrame) {
    ManualQueue queue;
    const WriterTrack track = startTrack({64, 64});
    int calls = 0;
    track.input->requestMediaDataWhenReady(queue.poster(), [&calls] { ++calls; });
    EXPECT_EQ(calls, 0);
    EXPECT_TRUE(queue.runOne());
    EXPECT_EQ(calls, 1);
    EXPECT_FALSE(queue.runOne());
    ASSERT_TRUE(track.append({0, 600}));
    ASSERT_TRUE(track.append({300, 600}));
    EXPECT_TRUE(queue.runOne());
    EXPECT_EQ(calls, 2);
    EXPECT_FALSE(queue.runOne());
}

TEST_P(AssetWriterReadiness, ReadinessAskedForBeforeWritingComesWhenItBegins) {
    ManualQueue queue;
    const WriterTrack track = makeTrack({64, 64});
    int calls = 0;
    track.input->requestMediaDataWhenReady(queue.poster(), [&calls] { ++calls; });
    EXPECT_FALSE(queue.runOne());
    ASSERT_TRUE(track.writer->startWriting());
    track.writer->startSession(MediaTime::zero());
    EXPECT_TRUE(queue.runOne());
    EXPECT_EQ(calls, 1);
}

TEST_P(AssetWriterReadiness, AWholeChunkIsFedFromReadinessCallbacks) {
    ManualQueue queue;
    const WriterTrack track = startTrack({64, 64});
    int appended = 0;
    track.input->requestMediaDataWhenReady(queue.poster(), [&] {
        if (appended < 20) {
            EXPECT_TRUE(track.append({appended * 300, 600}));
            ++appended;
        } else {
            track.input->markAsFinished();
        }
    });
    while (queue.runOne()) {
    }
    EXPECT_EQ(appended, 20);
    track.finish();
    EXPECT_EQ(decoded().packets.size(), 20U);
}

TEST_P(AssetWriterReadiness, NoReadinessIsToldAfterTheInputIsFinished) {
    ManualQueue queue;
    const WriterTrack track = startTrack({64, 64});
    int calls = 0;
    auto witness = std::make_shared<int>(0);
    const std::weak_ptr<int> held = witness;
    track.input->requestMediaDataWhenReady(queue.poster(),
                                           [&calls, witness = std::move(witness)] { ++calls; });
    EXPECT_FALSE(held.expired());
    track.input->markAsFinished();
    EXPECT_TRUE(held.expired());
    while (queue.runOne()) {
    }
    track.input->requestMediaDataWhenReady(queue.poster(), [&calls] { ++calls; });
    EXPECT_FALSE(queue.runOne());
    EXPECT_EQ(calls, 0);
}

TEST_P(AssetWriterReadiness, NoReadinessIsToldAfterTheWriterHasFailedOrIsGone) {
    ManualQueue queue;
    int calls = 0;
    // What the input still holds of a request, if anything.
    std::weak_ptr<int> held;
    const auto request = [&](const WriterTrack& track) {
        auto witness = std::make_shared<int>(0);
        held = witness;
        track.input->requestMediaDataWhenReady(queue.poster(),
                                               [&calls, witness = std::move(witness)] { ++calls; });
    };
    const WriterTrack failing = startTrack({64, 64});
    request(failing);
    EXPECT_FALSE(failing.append({-1, 600}));
    EXPECT_TRUE(held.expired()) << "how a waiting encoder learns of it";
    while (queue.runOne()) {
    }
    WriterTrack gone = startTrack({64, 64});
    request(gone);
    gone.writer.reset();
    EXPECT_TRUE(held.expired());
    while (queue.runOne()) {
    }
    EXPECT_EQ(calls, 0);
}

}  // namespace
}  // namespace mireth::platform
