// An observable value.
#pragma once

#include <cstdint>
#include <memory>
#include <mutex>
#include <utility>

#include "MirethVex/Base/PassthroughSubject.hpp"

namespace mireth {

/// Assigning sends the value to the subscribers; a new subscriber first gets the current value. Any thread
/// may read, assign and subscribe. A value assigned while a subscription is being made, by another thread or
/// by the new subscriber itself, may be skipped for a later one or come twice, but the last one always comes.
/// Receivers run on the assigning (for the first value: subscribing) thread with no lock held. What one of
/// them throws reaches whoever assigned, after the value was set, or whoever subscribed, who then has no
/// subscription.
template <class T>
class Published {
  public:
    using Receiver = typename AnyPublisher<T>::Receiver;

    explicit Published(T initial = T{}) : state_(std::make_shared<State>(std::move(initial))) {}
    Published(const Published&) = delete;
    Published& operator=(const Published&) = delete;

    Published& operator=(T value) {
        const T sent = value;
        {
            const std::lock_guard lock(state_->mutex);
            state_->value = std::move(value);
            ++state_->version;
        }
        state_->subject.send(sent);
        return *this;
    }

    T value() const {
        const std::lock_guard lock(state_->mutex);
        return state_->value;
    }

    AnyCancellable sink(Receiver receiver) const { return state_->add(std::move(receiver)); }

    /// A read-only view. It outlives this object and keeps giving the last value to new subscribers.
    AnyPublisher<T> eraseToAnyPublisher() const {
        return AnyPublisher<T>(
            [state = state_](Receiver receiver) { return state->add(std::move(receiver)); });
    }

  private:
    struct State {
        explicit State(T initial) : value(std::move(initial)) {}

        AnyCancellable add(Receiver receiver) {
            auto shared = std::make_shared<Receiver>(std::move(receiver));
            for (;;) {
                std::unique_lock lock(mutex);
                const T current = value;
                const std::uint64_t seen = version;
                lock.unlock();
                (*shared)(current);
                lock.lock();
                // Attached under the lock, so that an assignment either is seen here or finds the subscriber.
                if (version == seen) {
                    return subject.sink([shared](const T& next) { (*shared)(next); });
                }
            }
        }

        std::mutex mutex;
        T value;                    // guarded by mutex
        std::uint64_t version = 0;  // guarded by mutex; counts the assignments
        PassthroughSubject<T> subject;
    };

    std::shared_ptr<State> state_;
};

}  // namespace mireth
