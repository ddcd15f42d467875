// Main thread and background of a test, both driven by hand, and tasks that run there.
#pragma once

#include <exception>
#include <memory>
#include <string>
#include <utility>

#include "Platform/Async/QueueExecutors.hpp"
#include "Platform/Async/Task.hpp"
#include "tests/support/ManualBackgroundExecutor.hpp"
#include "tests/support/ManualMainQueue.hpp"

namespace mireth::test {

/// How a task ended, if it has.
struct TaskOutcome {
    bool isDone = false;
    std::exception_ptr error;

    bool succeeded() const { return isDone && error == nullptr; }

    /// What the task threw, in words; empty without an error.
    std::string message() const {
        if (error == nullptr) {
            return {};
        }
        try {
            std::rethrow_exception(error);
        } catch (const std::exception& exception) {
            return exception.what();
        } catch (...) {
            return "unknown";
        }
    }
};

/// The test's thread is the main thread, and the background too.
struct AsyncPhone {
    std::shared_ptr<ManualMainQueue> mainQueue = std::make_shared<ManualMainQueue>();
    std::shared_ptr<ManualBackgroundExecutor> backgroundExecutor =
        std::make_shared<ManualBackgroundExecutor>();
    Executor main = makeMainExecutor(mainQueue);
    Executor background = makeBackgroundExecutor(backgroundExecutor);

    /// Starts `task`; it gets to its first wait at once on the main executor.
    static std::shared_ptr<TaskOutcome> start(const Executor& executor, Task<void> task) {
        auto outcome = std::make_shared<TaskOutcome>();
        asio::co_spawn(executor, std::move(task), [outcome](std::exception_ptr error) {
            outcome->isDone = true;
            outcome->error = std::move(error);
        });
        return outcome;
    }
    std::shared_ptr<TaskOutcome> start(Task<void> task) const { return start(main, std::move(task)); }

    /// Runs both until neither has anything left to do.
    void runUntilIdle() const {
        while (mainQueue->runAll() || backgroundExecutor->runAll()) {
        }
    }
};

}  // namespace mireth::test
