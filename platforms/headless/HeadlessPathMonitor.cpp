// Path changes, queued and reported one by one.
#include "HeadlessPathMonitor.hpp"

#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>
#include <utility>

namespace mireth::headless {

using platform::NetworkPath;

struct HeadlessPathMonitor::Reports {
    UpdateHandler handler;  // set before the first report, constant afterwards

    std::mutex mutex;
    std::condition_variable idle;
    std::deque<NetworkPath> waiting;  // guarded by mutex
    AnyCancellable subscription;      // guarded by mutex
    bool cancelled = false;           // guarded by mutex
    bool running = false;             // guarded by mutex
    std::thread::id runner;           // guarded by mutex; meaningful while running

    void add(const NetworkPath& path) {
        const std::lock_guard lock(mutex);
        waiting.push_back(path);
    }

    /// Reports all that waits, unless another thread is at it.
    void deliver() {
        std::unique_lock lock(mutex);
        if (running) {
            return;
        }
        running = true;
        runner = std::this_thread::get_id();
        while (!waiting.empty() && !cancelled) {
            const NetworkPath path = waiting.front();
            waiting.pop_front();
            lock.unlock();
            handler(path);
            lock.lock();
        }
        running = false;
        idle.notify_all();
    }

    /// A report may have cancelled already: it may come before the subscription is known here.
    void keep(AnyCancellable made) {
        const std::lock_guard lock(mutex);
        if (!cancelled) {
            subscription = std::move(made);
        }
    }

    void cancel() {
        // Ended when no lock is held any more: the publisher has one of its own.
        AnyCancellable ended;
        std::unique_lock lock(mutex);
        cancelled = true;
        waiting.clear();
        ended = std::move(subscription);
        if (runner != std::this_thread::get_id()) {
            idle.wait(lock, [this] { return !running; });
        }
    }
};

HeadlessPathMonitor::HeadlessPathMonitor(AnyPublisher<NetworkPath> paths,
                                         std::shared_ptr<platform::BackgroundExecutor> background)
    : paths_(std::move(paths)), background_(std::move(background)), reports_(std::make_shared<Reports>()) {}

HeadlessPathMonitor::~HeadlessPathMonitor() {
    cancel();
}

void HeadlessPathMonitor::start(UpdateHandler handler) {
    reports_->handler = std::move(handler);
    reports_->keep(paths_.sink([reports = reports_, background = background_](const NetworkPath& path) {
        reports->add(path);
        background->post([reports] { reports->deliver(); });
    }));
}

void HeadlessPathMonitor::cancel() {
    reports_->cancel();
}

}  // namespace mireth::headless
