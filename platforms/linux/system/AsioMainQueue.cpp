#include "platforms/linux/system/AsioMainQueue.hpp"

#include <unistd.h>
#include <atomic>
#include <boost/asio/executor_work_guard.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/post.hpp>
#include <boost/asio/steady_timer.hpp>
#include <thread>
#include <utility>

#include "platforms/linux/system/RepeatingTimer.hpp"

namespace mireth::platform {

namespace asio = boost::asio;

namespace {

bool isFirstThreadOfProcess() noexcept {
    return gettid() == getpid();
}

}  // namespace

/// Kept alive by `run` too, so that work may drop the queue that runs it.
struct AsioMainQueue::Loop {
    explicit Loop(EscapedErrorHandler handler) : onEscapedError(std::move(handler)) {}

    void runWork(Work& work) const noexcept {
        if (work) {
            runGuarded("work on the main queue", work, onEscapedError);
        }
    }

    const EscapedErrorHandler onEscapedError;
    /// Of no thread before the first `run`.
    std::atomic<std::thread::id> runner = std::thread::id();

    asio::io_context context;
    asio::executor_work_guard<asio::io_context::executor_type> busy = asio::make_work_guard(context);
};

AsioMainQueue::AsioMainQueue(EscapedErrorHandler onEscapedError)
    : loop_(std::make_shared<Loop>(std::move(onEscapedError))) {}

AsioMainQueue::~AsioMainQueue() {
    loop_->context.stop();
}

void AsioMainQueue::run() {
    const auto loop = loop_;
    loop->runner = std::this_thread::get_id();
    loop->context.run();
    // Not before running: a stop that came first must count.
    loop->context.restart();
}

void AsioMainQueue::stop() {
    loop_->context.stop();
}

void AsioMainQueue::post(Work work) {
    asio::post(loop_->context,
               [loop = loop_.get(), work = std::move(work)]() mutable { loop->runWork(work); });
}

void AsioMainQueue::postAfter(Seconds delay, Work work) {
    if (!(delay.count() > 0)) {
        post(std::move(work));
        return;
    }
    // The handler owns its timer; whatever ends the wait, or the loop, ends both.
    auto timer = std::make_shared<asio::steady_timer>(loop_->context, clampedDuration(delay));
    timer->async_wait(
        [loop = loop_.get(), timer, work = std::move(work)](const boost::system::error_code& error) mutable {
            if (!error) {
                loop->runWork(work);
            }
        });
}

std::unique_ptr<Timer> AsioMainQueue::scheduleRepeating(Seconds interval, Work tick) {
    auto timer =
        std::make_shared<RepeatingTimer>(loop_->context, interval, std::move(tick), loop_->onEscapedError);
    timer->start();
    return std::make_unique<RepeatingTimerToken>(timer);
}

bool AsioMainQueue::isCurrent() const noexcept {
    const std::thread::id runner = loop_->runner.load();
    return runner == std::thread::id() ? isFirstThreadOfProcess() : runner == std::this_thread::get_id();
}

}  // namespace mireth::platform
