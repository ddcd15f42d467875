// The headless loop on a thread of its own, for suites that wait for what runs there.
#pragma once

#include <atomic>
#include <future>
#include <memory>
#include <thread>
#include <utility>

#include "MirethVex/Headless/VirtualMainQueue.hpp"
#include "TestSupport.hpp"

namespace mireth::test {

/// A queue of virtual time, made and driven by a thread for as long as the loop lives.
class DrivenLoop {
  public:
    DrivenLoop() {
        std::promise<std::shared_ptr<headless::VirtualMainQueue>> made;
        auto queue = made.get_future();
        thread_ = std::thread([this, &made] { drive(made); });
        queue_ = queue.get();
    }
    ~DrivenLoop() { end(); }
    DrivenLoop(const DrivenLoop&) = delete;
    DrivenLoop& operator=(const DrivenLoop&) = delete;

    /// Null after `end`.
    const std::shared_ptr<headless::VirtualMainQueue>& queue() const { return queue_; }
    int loggedErrors() { return errors_.count(); }

    /// Waits for the work that is running; the queue drops the rest.
    void end() {
        ended_ = true;
        if (const auto queue = std::exchange(queue_, nullptr)) {
            queue->post(nullptr);  // wakes a loop that waits for what is in flight
        }
        if (thread_.joinable()) {
            thread_.join();
        }
    }

  private:
    void drive(std::promise<std::shared_ptr<headless::VirtualMainQueue>>& made) {
        const auto queue = std::make_shared<headless::VirtualMainQueue>(
            std::nullopt, [this](std::string_view) { errors_.increment(); });
        made.set_value(queue);
        while (!queue->runUntil([this] { return ended_.load(); }, queue->now())) {
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
        queue->shutDown();
    }

    Counter errors_;
    std::atomic<bool> ended_{false};
    std::shared_ptr<headless::VirtualMainQueue> queue_;
    std::thread thread_;
};

}  // namespace mireth::test
