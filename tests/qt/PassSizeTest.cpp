// That a pass over a window ends, however many widgets or items it holds.
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QQuickItem>
#include <QQuickWindow>
#include <QWidget>
#include <memory>
#include <string>
#include <vector>

#include "MirethVex/Platform/TextViews.hpp"
#include "MirethVex/Qt/QtPlatform.hpp"
#include "PrivateSide/Extensions/CALayerExtensions/ViewTreeWalk.hpp"
#include "platforms/qt/objects/PassSize.hpp"
#include "qt/support/QmlScene.hpp"

namespace mireth::qttest {

namespace {

constexpr std::size_t tooMany = qt::maximumPassSize + 100;

std::size_t viewsIn(const platform::View& view) {
    std::size_t count = 1;
    for (const auto& subview : view.subviews()) {
        count += viewsIn(*subview);
    }
    return count;
}

/// The digest of all that the window holds.
std::string stateOf(const platform::Window& window) {
    const auto label = std::dynamic_pointer_cast<platform::Label>(window.subviews().front());
    return label != nullptr ? label->content.text.value_or("") : std::string();
}

/// Each in `parent`, which deletes them.
std::vector<QQuickItem*> addItems(QQuickItem& parent, std::size_t count) {
    std::vector<QQuickItem*> items;
    for (std::size_t i = 0; i < count; ++i) {
        items.push_back(new QQuickItem(&parent));
    }
    return items;
}

class QtPassSize : public testing::Test {
  protected:
    const qt::QtPlatform platform_;
};

TEST_F(QtPassSize, IsThatOfTheLibrary) {
    EXPECT_EQ(qt::maximumPassSize, ViewTreeWalk::maxViews);
}

TEST_F(QtPassSize, WhatComesAfterItAmongItemsIsNoView) {
    QmlScene scene("");
    addItems(*scene.window().contentItem(), tooMany);
    const auto recorded = platform_.windowOf(scene.window());
    // With the window, its content and its state.
    EXPECT_EQ(viewsIn(*recorded), qt::maximumPassSize + 3);
    // Each pass anew.
    EXPECT_EQ(viewsIn(*recorded), qt::maximumPassSize + 3);
}

TEST_F(QtPassSize, WhatComesAfterItAmongWidgetsIsNoView) {
    QWidget window;
    for (std::size_t i = 0; i < tooMany; ++i) {
        (void)new QWidget(&window);
    }
    window.show();
    // Else each widget's destructor looks for its own among those of all.
    QCoreApplication::sendPostedEvents();
    EXPECT_EQ(viewsIn(*platform_.windowOf(window)), qt::maximumPassSize + 3);
}

TEST_F(QtPassSize, WhatComesAfterItInABlockIsNotLookedAt) {
    QmlScene scene("Text { objectName: 'block' }");
    const auto items = addItems(*qobject_cast<QQuickItem*>(&scene.object("block")), tooMany);
    const auto recorded = platform_.windowOf(scene.window());
    const std::string before = stateOf(*recorded);
    ASSERT_FALSE(before.empty());
    items.back()->setWidth(10);
    EXPECT_EQ(stateOf(*recorded), before);
    items.front()->setWidth(10);
    EXPECT_NE(stateOf(*recorded), before);
}

}  // namespace

}  // namespace mireth::qttest
