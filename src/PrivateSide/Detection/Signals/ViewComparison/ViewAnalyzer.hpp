// Finds out whether a window changes within the time that an app may take to react to a tap.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <utility>

#include "MirethVex/Base/Work.hpp"
#include "MirethVex/Platform/MainQueue.hpp"
#include "PrivateSide/Detection/Signals/ViewComparison/LayerComparator.hpp"
#include "PrivateSide/Detection/Signals/ViewComparison/TimeoutEvaluator.hpp"
#include "PrivateSide/Detection/Signals/ViewComparison/ViewContentComparator.hpp"
#include "PrivateSide/Logger/MemoryUseLines.hpp"
#include "PrivateSide/Logger/MirethLog.hpp"

namespace mireth {

/// Main thread. Always owned by std::shared_ptr. Several analyses may wait at once; each compares with what
/// it began with.
class ViewAnalyzer : public std::enable_shared_from_this<ViewAnalyzer> {
  public:
    struct ComparisonResult {
        enum class Kind { error, equal, notEqual };

        static ComparisonResult error(std::string message) { return {Kind::error, std::move(message)}; }
        static ComparisonResult equal() { return {Kind::equal, {}}; }
        static ComparisonResult notEqual() { return {Kind::notEqual, {}}; }

        bool operator==(const ComparisonResult&) const = default;

        Kind kind;
        /// Of an error.
        std::string message;
    };
    using Completion = std::function<void(const ComparisonResult&)>;
    /// Runs a unit of work later on the main thread.
    using Dispatcher = std::function<void(Work)>;

    /// Waits on `mainQueue`, for as long as suits the device.
    ViewAnalyzer(MirethLog& log, ViewContentComparator viewContentComparator, LayerComparator layerComparator,
                 std::shared_ptr<platform::MainQueue> mainQueue,
                 DevicePerformanceEvaluator devicePerformanceEvaluator);
    /// Leaves the wait to `dispatcher`.
    ViewAnalyzer(MirethLog& log, ViewContentComparator viewContentComparator, LayerComparator layerComparator,
                 Dispatcher dispatcher, TimeoutEvaluator timeoutEvaluator);

    /// Determined once, at construction.
    platform::Seconds timeout() const noexcept { return timeout_; }

    /// Captures the window at once, and again after the wait; then `completion` is called with what the
    /// comparison gave. The wait does not keep this object alive: when it is gone by then, that is the error.
    /// When the views throw while they are captured, what they throw is the error, and comes at once if they
    /// do so the first time. `completion` may drop this object; it must not throw.
    void analyzeView(Completion completion);

  private:
    struct State {
        LayerSnapshot layers;
        std::string content;
    };

    State capture();
    ComparisonResult compareWithNow(const State& before);

    const platform::Seconds timeout_;
    ViewContentComparator viewContentComparator_;
    LayerComparator layerComparator_;
    Dispatcher dispatcher_;
    const MemoryUseLines memoryUse_;
};

}  // namespace mireth
