// Sends values to those who subscribed before; remembers nothing.
#pragma once

#include <algorithm>
#include <atomic>
#include <memory>
#include <mutex>
#include <utility>
#include <vector>

#include "MirethVex/Base/AnyPublisher.hpp"

namespace mireth {

/// A stream whose values come from `send`. Any thread may send, subscribe and cancel. Receivers run
/// synchronously on the sending thread, in the order in which they subscribed, with no lock held: they may
/// send, subscribe or cancel themselves. A subscriber added during a send does not get that value. What a
/// receiver throws leaves `send`, and those that subscribed after it do not get the value.
template <class T>
class PassthroughSubject {
  public:
    using Receiver = typename AnyPublisher<T>::Receiver;

    PassthroughSubject() = default;
    PassthroughSubject(const PassthroughSubject&) = delete;
    PassthroughSubject& operator=(const PassthroughSubject&) = delete;

    void send(const T& value) const {
        for (const auto& subscriber : subscribers_->snapshot()) {
            if (subscriber->active.load(std::memory_order_acquire)) {
                subscriber->receiver(value);
            }
        }
    }

    AnyCancellable sink(Receiver receiver) const { return subscribers_->add(std::move(receiver)); }

    /// A read-only view. It outlives the subject, but gets nothing after the subject is gone.
    AnyPublisher<T> eraseToAnyPublisher() const {
        return AnyPublisher<T>([subscribers = subscribers_](Receiver receiver) {
            return subscribers->add(std::move(receiver));
        });
    }

  private:
    struct Subscriber {
        explicit Subscriber(Receiver function) : receiver(std::move(function)) {}
        Receiver receiver;
        std::atomic<bool> active{true};
    };

    struct Subscribers : std::enable_shared_from_this<Subscribers> {
        std::vector<std::shared_ptr<Subscriber>> snapshot() {
            const std::lock_guard lock(mutex);
            return list;
        }

        AnyCancellable add(Receiver receiver) {
            auto subscriber = std::make_shared<Subscriber>(std::move(receiver));
            {
                const std::lock_guard lock(mutex);
                list.push_back(subscriber);
            }
            return AnyCancellable([self = std::weak_ptr(this->shared_from_this()), subscriber] {
                subscriber->active.store(false, std::memory_order_release);
                if (auto strong = self.lock()) {
                    const std::lock_guard lock(strong->mutex);
                    std::erase(strong->list, subscriber);
                }
            });
        }

        std::mutex mutex;
        std::vector<std::shared_ptr<Subscriber>> list;
    };

    std::shared_ptr<Subscribers> subscribers_ = std::make_shared<Subscribers>();
};

}  // namespace mireth
