// Holds the queue on Qt's loop to the contract, and to what a Qt application expects besides.
#include <QDialog>
#include <QTimer>
#include <thread>

#include "contract/services/MainQueueContract.hpp"
#include "platforms/qt/system/QtMainQueue.hpp"
#include "qt/support/EventLoop.hpp"

namespace mireth::test {

namespace {

using platform::Seconds;
using qt::QtMainQueue;

class QtMainQueueHarness final : public MainQueueHarness {
  public:
    platform::MainQueue& queue() override { return *queue_; }
    double now() override {
        return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
    }
    bool runUntil(const std::function<bool()>& done, double limit) override {
        return qttest::runUntil(done, limit);
    }
    void destroyQueue() override { queue_.reset(); }
    int loggedErrors() override { return errors_; }

  private:
    int errors_ = 0;
    std::unique_ptr<QtMainQueue> queue_ =
        std::make_unique<QtMainQueue>([this](std::string_view) { ++errors_; });
};

INSTANTIATE_TEST_SUITE_P(Qt, MainQueueContract,
                         testing::Values(Implementation<MainQueueHarness>{
                             "QtMainQueue", [] { return std::make_unique<QtMainQueueHarness>(); }}),
                         nameOfImplementation);

TEST(QtMainQueue, TicksAndWorkGoOnWhileAModalDialogRunsItsOwnLoop) {
    QtMainQueue queue;
    QDialog dialog;
    int ticks = 0;
    bool ranPosted = false;
    bool ranDelayed = false;
    const auto timer = queue.scheduleRepeating(Seconds(0.005), [&] {
        if (++ticks >= 3 && ranDelayed) {
            dialog.accept();
        }
    });
    QTimer::singleShot(0, &dialog, [&] {
        queue.post([&] { ranPosted = true; });
        queue.postAfter(Seconds(0.01), [&] { ranDelayed = true; });
    });
    QTimer::singleShot(20'000, &dialog, &QDialog::reject);
    EXPECT_EQ(dialog.exec(), QDialog::Accepted);
    EXPECT_TRUE(ranPosted);
}

TEST(QtMainQueue, WorkMayDestroyTheQueueThatRunsIt) {
    auto queue = std::make_unique<QtMainQueue>();
    bool ran = false;
    bool ranAfter = false;
    const auto timer = queue->scheduleRepeating(Seconds(0.001), [] {});
    queue->post([&] {
        queue.reset();
        ran = true;
    });
    queue->post([&] { ranAfter = true; });
    EXPECT_TRUE(qttest::runUntil([&] { return ran; }));
    qttest::runFor(0.02);
    EXPECT_FALSE(ranAfter);
}

TEST(QtMainQueue, ATickMayDestroyTheQueue) {
    auto queue = std::make_unique<QtMainQueue>();
    int ticks = 0;
    const auto timer = queue->scheduleRepeating(Seconds(0.001), [&] {
        queue.reset();
        ++ticks;
    });
    qttest::runFor(0.05);
    EXPECT_EQ(ticks, 1);
}

TEST(QtMainQueue, MayBeDestroyedOnAnotherThread) {
    auto queue = std::make_unique<QtMainQueue>();
    bool ran = false;
    queue->postAfter(Seconds(0.001), [&] { ran = true; });
    std::thread([&] { queue.reset(); }).join();
    qttest::runFor(0.02);
    EXPECT_FALSE(ran);
}

}  // namespace

}  // namespace mireth::test
