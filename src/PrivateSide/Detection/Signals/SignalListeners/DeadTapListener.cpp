#include "PrivateSide/Detection/Signals/SignalListeners/DeadTapListener.hpp"

#include <utility>

namespace mireth {

namespace {

DeadTapSignalData toDeadTapSignalData(const TouchData& touchData) {
    return {touchData.eventTime, touchData.target()};
}

}  // namespace

DeadTapListener::DeadTapListener(MirethLog& log, const MirethGestureRecognizer& mirethGestureRecognizer,
                                 std::shared_ptr<ViewAnalyzer> viewAnalyzer)
    : viewAnalyzer_(std::move(viewAnalyzer)),
      signalData_(std::make_shared<SignalData>()),
      period_(std::make_shared<Period>()),
      recognizedGestureSubscription_(
          mirethGestureRecognizer.recognizedGestures()
              .filter([](const GestureEvent& gesture) { return gesture.isSingleTap(); })
              .sink([&log, analyzer = std::weak_ptr(viewAnalyzer_),
                     judgement = Judgement{signalData_, period_}](const GestureEvent& gesture) {
                  if (const auto strong = analyzer.lock()) {
                      handleGesture(log, *strong, judgement, gesture);
                  }
              })),
      memoryUse_(log, "PrivateSide/Detection/Signals/SignalListeners/DeadTapListener") {}

void DeadTapListener::handleGesture(MirethLog& log, ViewAnalyzer& viewAnalyzer, const Judgement& judgement,
                                    const GestureEvent& gesture) {
    viewAnalyzer.analyzeView(
        [&log, judgement, gesture, tapped = *judgement.now](const ViewAnalyzer::ComparisonResult& result) {
            using Kind = ViewAnalyzer::ComparisonResult::Kind;
            if (result.kind == Kind::error) {
                log.error(LogTag::signal, "Error during analysis: " + result.message);
                return;
            }
            const auto published = judgement.signalData.lock();
            if (result.kind == Kind::equal && published && judgement.now->follows(tapped) &&
                gesture.getTouchData()) {
                *published = toDeadTapSignalData(*gesture.getTouchData());
            }
        });
}

}  // namespace mireth
