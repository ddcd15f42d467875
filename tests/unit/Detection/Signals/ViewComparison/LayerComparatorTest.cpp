#include "PrivateSide/Detection/Signals/ViewComparison/LayerComparator.hpp"

#include <gtest/gtest.h>

#include "MirethVex/Platform/TextViews.hpp"
#include "MirethVex/Platform/Window.hpp"

namespace mireth {
namespace {

using platform::View;
using platform::Window;

TEST(LayerComparator, WindowThatStaysAsItIsIsEqual) {
    const auto window = std::make_shared<Window>(Size{390, 844});
    window->addSubview(std::make_shared<View>());
    LayerComparator comparator(window);
    const auto before = comparator.captureLayerSnapshot();
    EXPECT_TRUE(LayerComparator::compareLayers(before, comparator.captureLayerSnapshot()));
}

TEST(LayerComparator, LaterChangesOfTheWindowDoNotTouchTheSnapshot) {
    const auto window = std::make_shared<Window>(Size{390, 844});
    LayerComparator comparator(window);
    const auto before = comparator.captureLayerSnapshot();
    window->addSubview(std::make_shared<View>());
    const auto after = comparator.captureLayerSnapshot();
    EXPECT_FALSE(LayerComparator::compareLayers(before, after));
    window->subviews()[0]->removeFromSuperview();
    EXPECT_TRUE(LayerComparator::compareLayers(before, comparator.captureLayerSnapshot()));
}

TEST(LayerComparator, NothingIsMasked) {
    const auto window = std::make_shared<Window>(Size{390, 844});
    const auto label = std::make_shared<platform::Label>();
    const auto inside = std::make_shared<View>();
    label->addSubview(inside);
    window->addSubview(label);
    LayerComparator comparator(window);
    const auto before = comparator.captureLayerSnapshot();
    inside->mutableLayer().appearance.hidden = true;
    EXPECT_FALSE(LayerComparator::compareLayers(before, comparator.captureLayerSnapshot()));
}

TEST(LayerComparator, WindowIsNotOwnedAndHasChangedOnceItIsGone) {
    auto window = std::make_shared<Window>(Size{390, 844});
    LayerComparator comparator(window);
    const auto before = comparator.captureLayerSnapshot();
    const std::weak_ptr<Window> weak = window;
    window.reset();
    EXPECT_TRUE(weak.expired());
    const auto after = comparator.captureLayerSnapshot();
    EXPECT_FALSE(LayerComparator::compareLayers(before, after));
    EXPECT_FALSE(LayerComparator::compareLayers(after, after)) << "gone both times";
}

}  // namespace
}  // namespace mireth
