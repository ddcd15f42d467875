// A controller and its root view.
#include "MirethVex/Platform/ViewController.hpp"

#include <gtest/gtest.h>

namespace mireth::platform {
namespace {

TEST(ViewController, ItsViewAnswersWithIt) {
    const auto controller = std::make_shared<ViewController>("CartViewController");
    const auto view = std::make_shared<View>();
    controller->setView(view);
    EXPECT_EQ(controller->view(), view);
    EXPECT_EQ(view->viewController(), controller);
    EXPECT_EQ(controller->className(), "CartViewController");
}

class CheckoutController : public ViewController {
  public:
    using ViewController::ViewController;
};
class GiftController final : public CheckoutController {};
template <class Item>
class ListController final : public ViewController {};

TEST(ViewController, WithoutANameItBearsThatOfItsClassWithoutItsNamespaces) {
    EXPECT_EQ(ViewController().className(), "ViewController");
    EXPECT_EQ(CheckoutController().className(), "CheckoutController");
    EXPECT_EQ(GiftController().className(), "GiftController");
    EXPECT_TRUE(ListController<GiftController>().className().starts_with("ListController<"));
    EXPECT_EQ(CheckoutController("").className(), "CheckoutController");
}

TEST(ViewController, FormerViewForgetsIt) {
    const auto controller = std::make_shared<ViewController>();
    const auto former = std::make_shared<View>();
    controller->setView(former);
    controller->setView(std::make_shared<View>());
    EXPECT_EQ(former->viewController(), nullptr);
    controller->setView(nullptr);
    EXPECT_EQ(controller->view(), nullptr);
}

TEST(ViewController, FormerViewThatHasAnotherControllerKeepsThat) {
    const auto first = std::make_shared<ViewController>();
    const auto second = std::make_shared<ViewController>();
    const auto view = std::make_shared<View>();
    first->setView(view);
    second->setView(view);
    first->setView(nullptr);
    EXPECT_EQ(view->viewController(), second);
}

TEST(ViewController, ViewDoesNotKeepItAlive) {
    auto controller = std::make_shared<ViewController>();
    const auto view = std::make_shared<View>();
    controller->setView(view);
    controller.reset();
    EXPECT_EQ(view->viewController(), nullptr);
}

}  // namespace
}  // namespace mireth::platform
