// A read-only view of a Published value or a PassthroughSubject, and the operators on it.
#pragma once

#include <atomic>
#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <type_traits>
#include <utility>

#include "MirethVex/Base/AnyCancellable.hpp"

namespace mireth {

/// A stream of values that one can subscribe to but not send on. Copyable; copies share the source.
/// Receivers are not null and run synchronously on the thread that sends. What one of them, a predicate or a
/// transform throws reaches whoever sends, and those that subscribed later do not get the value.
template <class T>
class AnyPublisher {
  public:
    using Receiver = std::function<void(const T&)>;
    using Attach = std::function<AnyCancellable(Receiver)>;

    /// `attach` subscribes a receiver to the source.
    explicit AnyPublisher(Attach attach) : attach_(std::move(attach)) {}

    /// Calls `receiver` for every value until the token is cancelled or dropped.
    AnyCancellable sink(Receiver receiver) const { return attach_(std::move(receiver)); }

    /// Copies every value into `member` of `owner`, which is held weakly: once it is gone nothing happens.
    template <class Owner>
    AnyCancellable assign(T Owner::* member, std::weak_ptr<Owner> owner) const {
        return sink([member, owner = std::move(owner)](const T& value) {
            if (auto strong = owner.lock()) {
                (*strong).*member = value;
            }
        });
    }

    /// Only the values for which `predicate` is true.
    AnyPublisher filter(std::function<bool(const T&)> predicate) const {
        return AnyPublisher([attach = attach_, predicate = std::move(predicate)](Receiver receiver) {
            return attach([predicate, receiver = std::move(receiver)](const T& value) {
                if (predicate(value)) {
                    receiver(value);
                }
            });
        });
    }

    /// `transform` of every value, without those for which it gives nothing.
    template <class Transform>
    auto compactMap(Transform transform) const {
        using Result = typename std::invoke_result_t<Transform&, const T&>::value_type;
        return AnyPublisher<Result>([attach = attach_, transform = std::move(transform)](
                                        typename AnyPublisher<Result>::Receiver receiver) {
            return attach([transform, receiver = std::move(receiver)](const T& value) {
                if (auto result = transform(value)) {
                    receiver(*result);
                }
            });
        });
    }

    /// Everything but the first `count` values that a subscriber would get. Over a Published value,
    /// `dropFirst()` leaves out the current value and passes on what is assigned later.
    AnyPublisher dropFirst(std::size_t count = 1) const {
        return AnyPublisher([attach = attach_, count](Receiver receiver) {
            // Shared and atomic: several threads may send at once.
            auto left = std::make_shared<std::atomic<std::size_t>>(count);
            return attach([left, receiver = std::move(receiver)](const T& value) {
                std::size_t current = left->load();
                while (current > 0 && !left->compare_exchange_weak(current, current - 1)) {
                }
                if (current == 0) {
                    receiver(value);
                }
            });
        });
    }

  private:
    Attach attach_;
};

}  // namespace mireth
