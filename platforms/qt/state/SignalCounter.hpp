// Counts how often an object has sent one of a few signals.
#pragma once

#include <QObject>
#include <QPointer>
#include <atomic>
#include <cstdint>
#include <span>

namespace mireth::qt {

/// For objects of Qt's own classes: one of the app's could hear of it in its `connectNotify`. The object may
/// go before the counter. To be made and destroyed on the main thread.
class SignalCounter final : public QObject {
    Q_OBJECT
  public:
    /// `indexes` are those of signals among the methods of the sender's class.
    SignalCounter(const QObject& sender, std::span<const int> indexes);

    std::uint64_t count() const noexcept { return count_.load(std::memory_order_relaxed); }
    bool isOf(const QObject& sender) const { return sender_ == &sender; }

  private Q_SLOTS:
    void add() { count_.fetch_add(1, std::memory_order_relaxed); }

  private:
    static int indexOfAdd();

    const QPointer<const QObject> sender_;
    /// Models belong on the main thread; those that do not keep to it count, too.
    std::atomic<std::uint64_t> count_ = 0;
};

}  // namespace mireth::qt
