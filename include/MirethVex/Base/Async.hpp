// The result of an asynchronous call of the public side.
#pragma once

#include <condition_variable>
#include <coroutine>
#include <exception>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <stdexcept>
#include <utility>
#include <vector>

#include "MirethVex/Base/Work.hpp"

namespace mireth {

/// Thrown by `Async::get()` when it is called on the main thread, where waiting would stop the very queue
/// that has to deliver the result.
class WaitOnMainThreadError : public std::logic_error {
  public:
    WaitOnMainThreadError()
        : std::logic_error("Async::get() was called on the main thread; use then() or co_await there.") {}
};

template <class T>
class AsyncPromise;

/// A value that arrives later, exactly once. Copyable; copies share the value. Any thread may use it.
/// Dropping every copy does not cancel the work behind it. The value never arrives when the main queue is
/// destroyed first or does not run.
template <class T>
class [[nodiscard]] Async {
  public:
    /// Runs `receiver`, which is not null, once with the value, on the main thread, never before `then`
    /// returns. It and what it owns are kept until then, or until nobody holds the other side any more. What
    /// it throws is caught and reported by the main queue.
    void then(std::function<void(const T&)> receiver) const {
        Value value;
        {
            const std::lock_guard lock(state_->mutex);
            if (!state_->value) {
                state_->receivers.push_back(std::move(receiver));
                return;
            }
            value = state_->value;
        }
        state_->deliver(std::move(value), std::move(receiver));
    }

    /// Blocks until the value is there, for ever when none arrives. Throws WaitOnMainThreadError on the main
    /// thread.
    T get() const {
        if (state_->isMain()) {
            throw WaitOnMainThreadError();
        }
        std::unique_lock lock(state_->mutex);
        state_->ready.wait(lock, [this] { return state_->value != nullptr; });
        return *state_->value;
    }

    /// True once the value is there.
    bool isReady() const {
        const std::lock_guard lock(state_->mutex);
        return state_->value != nullptr;
    }

    /// `co_await` in a host's coroutine of any kind, on any thread; it always suspends, and resumes on the
    /// main thread.
    auto operator co_await() const {
        struct Awaiter {
            Async async;
            std::optional<T> value;
            bool await_ready() const noexcept { return false; }
            void await_suspend(std::coroutine_handle<> handle) {
                // A copy: the coroutine, and this awaiter with it, may be gone before `then` returns.
                const Async awaited = async;
                awaited.then([this, handle](const T& arrived) {
                    value = arrived;
                    handle.resume();
                });
            }
            T await_resume() { return std::move(*value); }
        };
        return Awaiter{*this, std::nullopt};
    }

  private:
    friend class AsyncPromise<T>;

    using Receiver = std::function<void(const T&)>;
    using Value = std::shared_ptr<const T>;

    struct State {
        std::function<void(Work)> postToMain;  // constant after construction
        std::function<bool()> isMain;          // constant after construction

        std::mutex mutex;
        std::condition_variable ready;
        Value value;                      // guarded by mutex until set, constant afterwards
        std::vector<Receiver> receivers;  // guarded by mutex

        /// What is posted owns the value and not this state, which may own the queue it is posted to.
        void deliver(Value arrived, Receiver receiver) const {
            postToMain(
                [arrived = std::move(arrived), receiver = std::move(receiver)] { receiver(*arrived); });
        }
    };

    explicit Async(std::shared_ptr<State> state) : state_(std::move(state)) {}
    std::shared_ptr<State> state_;
};

/// The side that produces the value of an Async.
template <class T>
class AsyncPromise {
  public:
    /// `postToMain` runs work on the main thread and never inline; `isMain` tells whether the caller is on
    /// it.
    AsyncPromise(std::function<void(Work)> postToMain, std::function<bool()> isMain)
        : state_(std::make_shared<typename Async<T>::State>()) {
        state_->postToMain = std::move(postToMain);
        state_->isMain = std::move(isMain);
    }

    Async<T> async() const { return Async<T>(state_); }

    /// Delivers the value. The first call counts; later ones do nothing.
    void fulfil(T value) const {
        const auto arrived = std::make_shared<const T>(std::move(value));
        std::vector<typename Async<T>::Receiver> receivers;
        {
            const std::lock_guard lock(state_->mutex);
            if (state_->value) {
                return;
            }
            state_->value = arrived;
            receivers.swap(state_->receivers);
        }
        state_->ready.notify_all();
        for (auto& receiver : receivers) {
            state_->deliver(arrived, std::move(receiver));
        }
    }

  private:
    std::shared_ptr<typename Async<T>::State> state_;
};

}  // namespace mireth
