// Ownership and order in the view tree.
#include "MirethVex/Platform/View.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "MirethVex/Platform/ViewController.hpp"

namespace mireth::platform {
namespace {

using testing::ElementsAre;

TEST(View, SubviewsStandBackToFront) {
    const auto parent = std::make_shared<View>();
    const auto back = std::make_shared<View>();
    const auto front = std::make_shared<View>();
    parent->addSubview(back);
    parent->addSubview(front);
    EXPECT_THAT(parent->subviews(), ElementsAre(back, front));
    EXPECT_EQ(back->superview(), parent);
}

TEST(View, AddingASubviewAgainBringsItToTheFront) {
    const auto parent = std::make_shared<View>();
    const auto first = std::make_shared<View>();
    const auto second = std::make_shared<View>();
    parent->addSubview(first);
    parent->addSubview(second);
    parent->addSubview(parent->subviews().front());
    EXPECT_THAT(parent->subviews(), ElementsAre(second, first));
}

TEST(View, ViewWithASuperviewIsMoved) {
    const auto oldParent = std::make_shared<View>();
    const auto newParent = std::make_shared<View>();
    const auto view = std::make_shared<View>();
    oldParent->addSubview(view);
    newParent->addSubview(view);
    EXPECT_TRUE(oldParent->subviews().empty());
    EXPECT_EQ(view->superview(), newParent);
}

TEST(View, IsNeverAddedBelowItself) {
    const auto grandparent = std::make_shared<View>();
    const auto parent = std::make_shared<View>();
    const auto child = std::make_shared<View>();
    grandparent->addSubview(parent);
    parent->addSubview(child);
    child->addSubview(child);
    child->addSubview(parent);
    child->addSubview(grandparent);
    EXPECT_TRUE(child->subviews().empty());
    EXPECT_EQ(parent->superview(), grandparent);
    EXPECT_EQ(grandparent->superview(), nullptr);
    EXPECT_THAT(grandparent->subviews(), ElementsAre(parent));
}

TEST(View, NullIsNotAdded) {
    const auto parent = std::make_shared<View>();
    parent->addSubview(nullptr);
    EXPECT_TRUE(parent->subviews().empty());
}

TEST(View, SuperviewOwnsItsSubviews) {
    auto parent = std::make_shared<View>();
    std::weak_ptr<View> child;
    {
        const auto made = std::make_shared<View>();
        child = made;
        parent->addSubview(made);
    }
    ASSERT_FALSE(child.expired());
    parent.reset();
    EXPECT_TRUE(child.expired());
}

TEST(View, SubviewHeldElsewhereOutlivesItsSuperview) {
    auto parent = std::make_shared<View>();
    const auto child = std::make_shared<View>();
    child->addSubview(std::make_shared<View>());
    parent->addSubview(child);
    parent.reset();
    EXPECT_EQ(child->superview(), nullptr);
    EXPECT_EQ(child->subviews().size(), 1U);
}

TEST(View, RemovedViewMayLoseItsLastOwner) {
    const auto parent = std::make_shared<View>();
    parent->addSubview(std::make_shared<View>());
    View& child = *parent->subviews().front();
    const std::weak_ptr<View> watched = child.weak_from_this();
    child.removeFromSuperview();
    EXPECT_TRUE(watched.expired());
    EXPECT_TRUE(parent->subviews().empty());
}

TEST(View, RemovingAViewWithoutSuperviewDoesNothing) {
    const auto view = std::make_shared<View>();
    view->removeFromSuperview();
    EXPECT_EQ(view->superview(), nullptr);
}

TEST(View, VeryDeepTreeIsTakenDown) {
    auto root = std::make_shared<View>();
    for (int depth = 0; depth < 200'000; ++depth) {
        auto above = std::make_shared<View>();
        above->addSubview(root);
        root = std::move(above);
    }
    const std::weak_ptr<View> watched = root;
    root.reset();
    EXPECT_TRUE(watched.expired());
}

TEST(View, ParentViewControllerIsTheNearestAbove) {
    const auto outer = std::make_shared<ViewController>("Outer");
    const auto inner = std::make_shared<ViewController>("Inner");
    const auto root = std::make_shared<View>();
    const auto part = std::make_shared<View>();
    const auto leaf = std::make_shared<View>();
    root->addSubview(part);
    part->addSubview(leaf);
    EXPECT_EQ(leaf->parentViewController(), nullptr);
    outer->setView(root);
    EXPECT_EQ(leaf->parentViewController(), outer);
    inner->setView(part);
    EXPECT_EQ(leaf->parentViewController(), inner);
    EXPECT_EQ(part->parentViewController(), inner);
    EXPECT_EQ(root->parentViewController(), outer);
}

TEST(View, PresentationLayerIsNullUntilSet) {
    View view;
    EXPECT_EQ(view.presentationLayer(), nullptr);
    const auto shown = std::make_shared<Layer>();
    view.setPresentationLayer(shown);
    EXPECT_EQ(view.presentationLayer(), shown);
}

}  // namespace
}  // namespace mireth::platform
