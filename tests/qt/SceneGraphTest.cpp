// What is recorded on a screen is drawn as the environment asked for, so that both ways are tested.
#include <gtest/gtest.h>

#include <QGuiApplication>
#include <QSGRendererInterface>

#include "qt/support/QmlScene.hpp"

namespace mireth::qttest {

namespace {

TEST(SceneGraph, DrawsARealWindowInTheWayThatWasAskedFor) {
    EXPECT_EQ(QGuiApplication::platformName(), "xcb");
    QmlScene scene("Text { text: 'Hello' }");
    const auto expected = qgetenv("QT_QUICK_BACKEND") == "software" ? QSGRendererInterface::Software
                                                                    : QSGRendererInterface::OpenGL;
    EXPECT_EQ(scene.window().rendererInterface()->graphicsApi(), expected);
}

}  // namespace

}  // namespace mireth::qttest
