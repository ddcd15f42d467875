#include "PrivateSide/Detection/Signals/ViewComparison/ViewContentComparator.hpp"

#include <gtest/gtest.h>

#include <stdexcept>

#include "MirethVex/Platform/ImageView.hpp"
#include "MirethVex/Platform/TextViews.hpp"
#include "PrivateSide/Extensions/CALayerExtensions/TextSerializable.hpp"

namespace mireth {
namespace {

using platform::Label;
using platform::View;

std::shared_ptr<Label> labelWith(const std::string& text) {
    auto label = std::make_shared<Label>();
    label->content.text = text;
    return label;
}

std::string contentOf(const std::shared_ptr<const View>& root) {
    return ViewContentComparator(root).serializeContent();
}

TEST(ViewContentComparator, ViewsWithoutTextYieldAnEmptyText) {
    const auto root = std::make_shared<View>();
    root->addSubview(std::make_shared<platform::ImageView>());
    EXPECT_EQ(contentOf(root), "");
}

TEST(ViewContentComparator, TextsStandInTreeOrderWithNothingBetweenThem) {
    const auto root = labelWith("root");
    const auto plain = std::make_shared<View>();
    const auto inner = labelWith("inner");
    const auto field = std::make_shared<platform::TextField>();
    const auto area = std::make_shared<platform::TextView>();
    root->addSubview(plain);
    root->addSubview(area);
    plain->addSubview(inner);
    plain->addSubview(field);
    EXPECT_EQ(contentOf(root), serialize(*root) + serialize(*inner) + serialize(*field) + serialize(*area));
}

TEST(ViewContentComparator, TextBelowALabelCounts) {
    const auto root = labelWith("outer");
    root->addSubview(labelWith("inner"));
    EXPECT_NE(contentOf(root).find("inner"), std::string::npos);
}

TEST(ViewContentComparator, TypesSeenBeforeAreReadTheSameWay) {
    const auto root = std::make_shared<View>();
    for (int number = 0; number < 3; ++number) {
        root->addSubview(std::make_shared<View>());
        root->addSubview(labelWith(std::to_string(number)));
    }
    ViewContentComparator comparator(root);
    const std::string first = comparator.serializeContent();
    EXPECT_EQ(first, serialize(*labelWith("0")) + serialize(*labelWith("1")) + serialize(*labelWith("2")));
    EXPECT_EQ(comparator.serializeContent(), first);
}

TEST(ViewContentComparator, AnotherRootViewTakesThePlaceOfTheFirst) {
    const auto first = labelWith("first");
    const auto second = labelWith("second");
    ViewContentComparator comparator(first);
    comparator.setRootView(second);
    EXPECT_EQ(comparator.serializeContent(), serialize(*second));
}

TEST(ViewContentComparator, RootViewIsNotOwnedAndHasNoTextOnceItIsGone) {
    auto root = labelWith("text");
    ViewContentComparator comparator(root);
    const std::weak_ptr<View> weak = root;
    root.reset();
    EXPECT_TRUE(weak.expired());
    EXPECT_EQ(comparator.serializeContent(), "");
}

TEST(ViewContentComparator, TextsAreComparedToTheLastCharacter) {
    EXPECT_TRUE(ViewContentComparator::compareContent("", ""));
    EXPECT_TRUE(ViewContentComparator::compareContent("Total: 1", "Total: 1"));
    EXPECT_FALSE(ViewContentComparator::compareContent("Total: 1", "Total: 2"));
    EXPECT_FALSE(ViewContentComparator::compareContent("Total", "Total "));
    EXPECT_FALSE(ViewContentComparator::compareContent(std::string("a\0b", 3), std::string("a\0c", 3)));
}

TEST(ViewContentComparator, TreeWithoutEndIsReadAsFarAsItIsCopied) {
    /// Builds the next level whenever it is asked.
    class Endless final : public Label {
      public:
        const std::vector<std::shared_ptr<View>>& subviews() const override {
            children = {std::make_shared<Endless>()};
            return children;
        }
        mutable std::vector<std::shared_ptr<View>> children;
    };
    const std::size_t length = serialize(Label()).size();
    EXPECT_EQ(contentOf(std::make_shared<Endless>()).size(), ViewTreeWalk::maxDepth * length);
}

TEST(ViewContentComparator, WhatAViewThrowsReachesTheCaller) {
    class Broken final : public View {
      public:
        const std::vector<std::shared_ptr<View>>& subviews() const override {
            throw std::runtime_error("widget is gone");
        }
    };
    const auto root = std::make_shared<View>();
    root->addSubview(std::make_shared<Broken>());
    EXPECT_THROW(contentOf(root), std::runtime_error);
}

}  // namespace
}  // namespace mireth
