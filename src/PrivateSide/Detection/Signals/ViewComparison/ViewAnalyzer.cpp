#include "PrivateSide/Detection/Signals/ViewComparison/ViewAnalyzer.hpp"

#include "Base/CurrentException.hpp"
#include "Platform/Async/Task.hpp"

namespace mireth {

ViewAnalyzer::ViewAnalyzer(MirethLog& log, ViewContentComparator viewContentComparator,
                           LayerComparator layerComparator, std::shared_ptr<platform::MainQueue> mainQueue,
                           DevicePerformanceEvaluator devicePerformanceEvaluator)
    : ViewAnalyzer(log, std::move(viewContentComparator), std::move(layerComparator), nullptr,
                   TimeoutEvaluator(devicePerformanceEvaluator)) {
    dispatcher_ = [mainQueue = std::move(mainQueue), delay = timeout_](Work work) {
        mainQueue->postAfter(delay, std::move(work));
    };
}

ViewAnalyzer::ViewAnalyzer(MirethLog& log, ViewContentComparator viewContentComparator,
                           LayerComparator layerComparator, Dispatcher dispatcher,
                           TimeoutEvaluator timeoutEvaluator)
    : timeout_(timeoutEvaluator.determineTimeoutPeriod()),
      viewContentComparator_(std::move(viewContentComparator)),
      layerComparator_(std::move(layerComparator)),
      dispatcher_(std::move(dispatcher)),
      memoryUse_(log, "PrivateSide/Detection/Signals/ViewComparison/ViewAnalyzer") {}

void ViewAnalyzer::analyzeView(Completion completion) {
    // A view that is captured may drop the owner of this object.
    const auto self = shared_from_this();
    State before;
    try {
        before = capture();
    } catch (...) {
        completion(ComparisonResult::error(describeCurrentException()));
        return;
    }
    dispatcher_([weak = std::weak_ptr(self), before = std::move(before), completion = std::move(completion)] {
        const auto analyzer = weak.lock();
        completion(analyzer ? analyzer->compareWithNow(before)
                            : ComparisonResult::error("ViewAnalyzer was deallocated before completion."));
    });
}

ViewAnalyzer::State ViewAnalyzer::capture() {
    return {layerComparator_.captureLayerSnapshot(), viewContentComparator_.serializeContent()};
}

ViewAnalyzer::ComparisonResult ViewAnalyzer::compareWithNow(const State& before) {
    try {
        const State after = capture();
        const bool sameLayers = LayerComparator::compareLayers(before.layers, after.layers);
        const bool sameContent = ViewContentComparator::compareContent(before.content, after.content);
        return sameLayers && sameContent ? ComparisonResult::equal() : ComparisonResult::notEqual();
    } catch (...) {
        return ComparisonResult::error(describeCurrentException());
    }
}

}  // namespace mireth
