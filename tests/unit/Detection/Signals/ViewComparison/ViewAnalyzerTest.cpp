#include "PrivateSide/Detection/Signals/ViewComparison/ViewAnalyzer.hpp"

#include <gmock/gmock.h>

#include <deque>
#include <functional>
#include <ostream>
#include <stdexcept>
#include <vector>

#include "MirethVex/Platform/TextViews.hpp"
#include "support/LogCapture.hpp"
#include "support/ManualMainQueue.hpp"

namespace mireth {

std::ostream& operator<<(std::ostream& out, const ViewAnalyzer::ComparisonResult& result) {
    return out << static_cast<int>(result.kind) << " \"" << result.message << '"';
}

namespace {

using platform::Seconds;
using platform::View;
using testing::ElementsAre;
using testing::IsEmpty;
using Result = ViewAnalyzer::ComparisonResult;

constexpr std::uint64_t mebibyte = 1U << 20U;

/// Does what the test says whenever it is asked for its subviews.
class Scripted final : public View {
  public:
    const std::vector<std::shared_ptr<View>>& subviews() const override {
        if (onSubviews) {
            onSubviews();
        }
        return View::subviews();
    }
    std::function<void()> onSubviews;
};

/// An analyzer whose waits end when the test says so, one by one.
struct Analyzer : testing::Test {
    test::LogCapture capture{{}};
    std::shared_ptr<View> root = std::make_shared<View>();
    std::shared_ptr<platform::Label> label = std::make_shared<platform::Label>();
    std::shared_ptr<Scripted> scripted = std::make_shared<Scripted>();
    std::deque<Work> waiting;
    std::shared_ptr<ViewAnalyzer> analyzer;
    std::vector<Result> results;

    Analyzer() {
        root->addSubview(label);
        root->addSubview(scripted);
        analyzer = std::make_shared<ViewAnalyzer>(
            capture.log(), ViewContentComparator(root), LayerComparator(root),
            [this](Work work) { waiting.push_back(std::move(work)); },
            TimeoutEvaluator(DevicePerformanceEvaluator(0)));
    }

    void analyze() {
        analyzer->analyzeView([this](const Result& result) { results.push_back(result); });
    }
    void endWait() {
        ASSERT_FALSE(waiting.empty());
        Work work = std::move(waiting.front());
        waiting.pop_front();
        work();
    }
    std::shared_ptr<ViewAnalyzer> analyzerOn(const std::shared_ptr<platform::MainQueue>& queue,
                                             std::uint64_t memory) {
        return std::make_shared<ViewAnalyzer>(capture.log(), ViewContentComparator(root),
                                              LayerComparator(root), queue,
                                              DevicePerformanceEvaluator(memory));
    }
};

TEST_F(Analyzer, WindowThatStaysAsItIsIsEqualAfterTheWait) {
    analyze();
    EXPECT_THAT(results, IsEmpty());
    endWait();
    EXPECT_THAT(results, ElementsAre(Result::equal()));
}

TEST_F(Analyzer, LayerThatChangesIsNotEqual) {
    analyze();
    label->mutableLayer().appearance.hidden = true;
    endWait();
    EXPECT_THAT(results, ElementsAre(Result::notEqual()));
}

TEST_F(Analyzer, TextThatChangesIsNotEqual) {
    analyze();
    label->content.text = "new";
    endWait();
    EXPECT_THAT(results, ElementsAre(Result::notEqual()));
}

TEST_F(Analyzer, ChangeThatIsTakenBackDuringTheWaitIsEqual) {
    analyze();
    label->content.text = "new";
    label->mutableLayer().appearance.hidden = true;
    label->content.text.reset();
    label->mutableLayer().appearance.hidden = false;
    endWait();
    EXPECT_THAT(results, ElementsAre(Result::equal()));
}

TEST_F(Analyzer, WindowThatGoesAwayDuringTheWaitIsNotEqual) {
    analyze();
    root.reset();
    endWait();
    EXPECT_THAT(results, ElementsAre(Result::notEqual()));
}

TEST_F(Analyzer, EachAnalysisComparesWithWhatItBeganWith) {
    analyze();
    label->content.text = "changed by the first";
    analyze();
    endWait();
    endWait();
    EXPECT_THAT(results, ElementsAre(Result::notEqual(), Result::equal()));
}

TEST_F(Analyzer, AnalyzerThatIsGoneAfterTheWaitIsAnError) {
    analyze();
    analyzer.reset();
    endWait();
    EXPECT_THAT(results, ElementsAre(Result::error("ViewAnalyzer was deallocated before completion.")));
}

TEST_F(Analyzer, WhatAViewThrowsAtFirstIsAnErrorAtOnce) {
    scripted->onSubviews = [] { throw std::runtime_error("widget is gone"); };
    analyze();
    EXPECT_THAT(waiting, IsEmpty());
    EXPECT_THAT(results, ElementsAre(Result::error("widget is gone")));
}

TEST_F(Analyzer, WhatAViewThrowsAfterTheWaitIsAnErrorThen) {
    analyze();
    scripted->onSubviews = [] { throw 7; };
    endWait();
    EXPECT_THAT(results, ElementsAre(Result::error("An error of an unknown kind.")));
    scripted->onSubviews = nullptr;
    analyze();
    endWait();
    EXPECT_EQ(results.back(), Result::equal()) << "the next one is not affected";
}

TEST_F(Analyzer, ViewThatIsCapturedMayDropTheAnalyzer) {
    scripted->onSubviews = [this] { analyzer.reset(); };
    analyze();
    endWait();
    EXPECT_THAT(results, ElementsAre(Result::error("ViewAnalyzer was deallocated before completion.")));
}

TEST_F(Analyzer, ViewThatIsCapturedAfterTheWaitMayDropTheAnalyzer) {
    analyze();
    scripted->onSubviews = [this] { analyzer.reset(); };
    endWait();
    EXPECT_THAT(results, ElementsAre(Result::equal()));
}

TEST_F(Analyzer, ViewThatIsCapturedMayBeginAnotherAnalysis) {
    scripted->onSubviews = [this] {
        scripted->onSubviews = nullptr;
        analyze();
    };
    analyze();
    endWait();
    endWait();
    EXPECT_THAT(results, ElementsAre(Result::equal(), Result::equal()));
}

TEST_F(Analyzer, KeepsNoMaskAliveDuringTheWait) {
    auto mask = std::make_shared<platform::Layer>();
    mask->content.contents = platform::Image::filled(2, 2, 7);
    const std::weak_ptr<platform::Layer> weak = mask;
    label->mutableLayer().appearance.mask = std::move(mask);
    analyze();
    label->mutableLayer().appearance.mask = nullptr;
    EXPECT_TRUE(weak.expired());
    endWait();
    EXPECT_THAT(results, ElementsAre(Result::notEqual()));
}

TEST_F(Analyzer, ResultsAreEqualWhenTheirKindsAndMessagesAre) {
    EXPECT_EQ(Result::error("a"), Result::error("a"));
    EXPECT_NE(Result::error("a"), Result::error("b"));
    EXPECT_NE(Result::equal(), Result::notEqual());
    EXPECT_NE(Result::error(""), Result::equal());
}

TEST_F(Analyzer, WaitsOnTheMainQueueForAsLongAsSuitsTheDevice) {
    struct Expected {
        std::uint64_t memory;
        double seconds;
    };
    for (const auto& [memory, seconds] :
         {Expected{2999 * mebibyte, 2.0}, Expected{3000 * mebibyte, 1.5}, Expected{6000 * mebibyte, 1.0}}) {
        const auto queue = std::make_shared<test::ManualMainQueue>();
        analyzer = analyzerOn(queue, memory);
        EXPECT_EQ(analyzer->timeout(), Seconds(seconds));
        results.clear();
        analyze();
        constexpr Seconds moment(0.125);
        queue->advance(Seconds(seconds) - moment);
        EXPECT_THAT(results, IsEmpty()) << seconds;
        queue->advance(moment);
        EXPECT_THAT(results, ElementsAre(Result::equal())) << seconds;
    }
}

TEST_F(Analyzer, WritesItsMemoryUse) {
    capture.log().setAllowedTags({LogTag::memoryUse});
    analyzer = analyzerOn(std::make_shared<test::ManualMainQueue>(), 0);
    analyzer.reset();
    capture.expectLines({test::infoLine(LogTag::memoryUse, "ViewAnalyzer: Succesfully initialized"),
                         test::infoLine(LogTag::memoryUse, "ViewAnalyzer: Succesfully deinitialized"),
                         test::infoLine(LogTag::memoryUse, "ViewAnalyzer: Succesfully deinitialized")});
    capture.log().setAllowedTags({});
}

}  // namespace
}  // namespace mireth
